// SPDX-License-Identifier: MIT
#pragma once

#include "discoplan/controls/map_control.h"
#include "discoplan/render/plot_area.h"

namespace discoplan {

/// The measured value written at each site, in the colour of its interval. It has no options: its
/// button does nothing.
class DISCOPLAN_EXPORT Plot2DN final : public MapControl {
 public:
  static constinit const ControlClass kClass;

  explicit Plot2DN(Platform& platform, Container* container = nullptr);

  /// Colour of an interval, 0 the highest to 9.
  Colour IntervalColor(std::size_t interval) const { return TableColour(IntervalSlot(interval)); }
  void IntervalColor(std::size_t interval, Colour colour) {
    TableColour(IntervalSlot(interval), colour);
  }

  const Node* Focused() override { return nullptr; }
  void ShowPlotOption() override {}

 private:
  void PrintOn(PrintWafer& print, PageArea& area) override;
  void ShowLegend() override { wafer_.scale_colored(chips_, rows_); }
  double ShownSide() const override { return wafer_.TestDiameter; }
  void DrawPlot(Surface& surface) override { wafer_.D2Number(surface, {}); }
};

}  // namespace discoplan
