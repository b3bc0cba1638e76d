// SPDX-License-Identifier: MIT
#pragma once

/// The options that say what to read, the same for every command that reads measured data.

#include <CLI/CLI.hpp>

#include "data/read.h"

namespace discoplan::app {

/// How to read; `AddDataOptions` has the file too.
void AddReadingOptions(CLI::App& command, data::ReadRequest& request);
void AddDataOptions(CLI::App& command, data::ReadRequest& request);

}  // namespace discoplan::app
