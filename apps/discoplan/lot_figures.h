// SPDX-License-Identifier: MIT
#pragma once

/// Lots in the modern look.

#include <vector>

#include "apps/discoplan/figure_plots.h"
#include "apps/discoplan/lot_request.h"

namespace discoplan::app {

/// What the figures of a lot show: one for each parameter that was measured. They read the lot as
/// long as they live.
struct LotFigureOptions {
  const ReadRequest& data;
  const LookRequest& look;
  std::optional<std::string> style;  ///< "notch" or "flat"
  LotSheetOptions sheet;
  bool centred = false;  ///< The middle of the colours is 0, unless there are limits.
};
std::vector<figures::LotPlot> LotPlotsOf(const Lot& measured, const LotFigureOptions& options);

/// Writes the sheets of a lot. A picture and an SVG file have their pages below each other.
void PlotLotFigures(const LotRequest& request);

}  // namespace discoplan::app
