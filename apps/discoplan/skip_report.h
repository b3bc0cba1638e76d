// SPDX-License-Identifier: MIT
#pragma once

/// What was left out of a data file, as one line for standard error.

#include <string>

#include "apps/discoplan/data_file.h"

namespace discoplan::app {

/// "dies.csv: left out 485 rows: 485 empty values (first on line 12)", without an end of line.
/// Empty if nothing was left out. `file` is shown as it is given.
std::string SkipReport(const std::string& file, const DataResult& result);

}  // namespace discoplan::app
