// SPDX-License-Identifier: MIT
#pragma once

/// What the values of options must be like, checked before a command runs.

#include <CLI/CLI.hpp>

namespace discoplan::app {

/// Numbers that a 32-bit float holds.
CLI::Validator FiniteNumber();
CLI::Validator PositiveNumber();

/// The name of a file; of one to read, "-" becomes the name of standard input.
CLI::Validator FileName();
CLI::Validator InputFile();

}  // namespace discoplan::app
