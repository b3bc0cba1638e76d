// SPDX-License-Identifier: MIT
#pragma once

/// What stands in a legend, on the screen and on paper.

#include <array>
#include <span>
#include <string>

#include "discoplan/export.h"

namespace discoplan {

class Label;
struct WaferData;

/// Ten rows of a legend.
inline constexpr int kLegendRows = 10;
using LegendLabels = std::span<Label* const, kLegendRows>;

/// Of row 0 for the highest values to row 9. With a plot limit in force the first and the last row
/// are open.
DISCOPLAN_EXPORT std::string IntervalLegendText(const WaferData& data, std::size_t row);

/// What stands before the sigma range above, within and below it.
inline constexpr std::array<const char*, 3> kRangePrefixes = {">   ", "+-  ", "< - "};

/// Fill the swatches and the texts of a legend, from the top.
DISCOPLAN_EXPORT void ShowIntervalLegend(const WaferData& data, LegendLabels chips,
                                         LegendLabels rows);
DISCOPLAN_EXPORT void ShowSigmaLegend(const WaferData& data, LegendLabels chips, LegendLabels rows,
                                      float sigma_range);

}  // namespace discoplan
