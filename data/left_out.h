// SPDX-License-Identifier: MIT
#pragma once

/// What was left out of a file or of a wafer, in words.

#include <string>

#include "data/lot.h"

namespace discoplan::data {

/// "dies.csv: left out 485 rows: 485 empty values (first on line 12)", without an end of line: one
/// line for standard error. Empty if no row was left out.
std::string SkipReport(const Lot& lot);

/// "49 of 52 sites; 2 beyond 147 mm, 1 outlier", or "52 sites" if nothing was left out.
std::string SitesSentence(const Wafer& wafer);

/// Counts one more that is left out.
void Count(Reason reason, std::vector<LeftOut>& left_out, std::int64_t count = 1);

}  // namespace discoplan::data
