// SPDX-License-Identifier: MIT
#pragma once

/// What stands in a legend, on the screen and on paper.

#include <array>
#include <string>

#include "discoplan/core/wafer.h"

namespace discoplan {

/// Of row 0 for the highest values to row 9. With a plot limit in force the first and the last row
/// are open.
std::string IntervalLegendText(const wafer& source, std::size_t row);

/// What stands before the sigma range above, within and below it.
inline constexpr std::array<const char*, 3> kRangePrefixes = {">   ", "+-  ", "< - "};

}  // namespace discoplan
