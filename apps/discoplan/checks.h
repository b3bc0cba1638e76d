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

/// A text that isn't empty, as an empty variable of a script is.
CLI::Validator GivenText();
CLI::Validator InputFile();

}  // namespace discoplan::app
