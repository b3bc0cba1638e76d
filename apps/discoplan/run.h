// SPDX-License-Identifier: MIT
#pragma once

#include <CLI/CLI.hpp>

namespace discoplan::app {

/// Parses the command line and runs its command: the status that the program ends with.
int Run(CLI::App& program, int argc, const char* const* argv);

/// Ends the program with a word that memory is short, where no error can be raised.
[[noreturn]] void EndForMemory();

}  // namespace discoplan::app
