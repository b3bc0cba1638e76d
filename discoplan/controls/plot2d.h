// SPDX-License-Identifier: MIT
#pragma once

/// Coloured map of a wafer with a legend of ten intervals.
///
///     Plot2D plot(host);
///     plot.SetSize(6000, 4500);
///     if (plot.SetWaferData(x, y, thickness) == LoadResult::Loaded) plot.Plot();

#include "discoplan/controls/lattice_control.h"

namespace discoplan {

class DISCOPLAN_EXPORT Plot2D final : public LatticeControl {
 public:
  static constinit const ControlClass kClass;

  explicit Plot2D(Platform& platform, Container* container = nullptr);

  /// Colour of an interval, 0 the highest to 9.
  Colour IntervalColor(std::size_t interval) const { return TableColour(IntervalSlot(interval)); }
  void IntervalColor(std::size_t interval, Colour colour) {
    TableColour(IntervalSlot(interval), colour);
  }

  void ShowPlotOption() override;

 private:
  void PrintOn(PrintWafer& print, PageArea& area) override;
  void ShowLegend() override { wafer_.scale_colored(chips_, rows_); }
  void DrawPlot(Surface& surface) override;
};

}  // namespace discoplan
