// SPDX-License-Identifier: MIT
#pragma once

#include "discoplan/controls/view_control.h"

namespace discoplan {

/// The wafer's values as a surface in perspective.
class DISCOPLAN_EXPORT Plot3D final : public SurfaceControl {
 public:
  static constinit const ControlClass kClass;

  explicit Plot3D(Platform& platform, Container* container = nullptr);

  PlotTypeEnum PlotType() const { return plot_type_; }
  void PlotType(PlotTypeEnum type);
  /// Colour of an interval, 0 the highest to 9.
  Colour IntervalColor(std::size_t interval) const { return TableColour(IntervalSlot(interval)); }
  void IntervalColor(std::size_t interval, Colour colour) {
    TableColour(IntervalSlot(interval), colour);
  }

  /// Pressing on the snapshot brings the surface itself back.
  void Mouse(Node& node, const MouseAction& action) override;
  void ShowPlotOption() override;

 private:
  void PrintOn(PrintWafer& print, PageArea& area) override;
  void FillDefaults() override;
  void ShowLegend() override { wafer_.scale_colored(chips_, rows_); }
  void DrawPlot(Surface& surface) override;

  PlotTypeEnum plot_type_{};
};

}  // namespace discoplan
