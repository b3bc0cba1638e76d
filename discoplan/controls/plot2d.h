// SPDX-License-Identifier: MIT
#pragma once

/// Coloured map of a wafer with a legend of ten intervals.
///
///     Plot2D plot(host);
///     plot.SetSize(6000, 4500);
///     plot.SetWaferData(x, y, thickness);
///     plot.Plot();

#include "discoplan/controls/map_control.h"

namespace discoplan {

class DISCOPLAN_EXPORT Plot2D final : public MapControl {
 public:
  explicit Plot2D(Platform& platform, Container* container = nullptr);

  /// Cell side in mm; 0 or less becomes 5, and a quarter of the test diameter is the most.
  float Resolution() const { return resolution_; }
  void Resolution(float resolution);
  Sites ShowSites() const { return show_sites_ ? Sites::ShowSite : Sites::HideSite; }
  void ShowSites(Sites shown);
  /// Colour of an interval, 0 the highest to 9.
  Colour IntervalColor(std::size_t interval) const { return TableColour(IntervalSlot(interval)); }
  void IntervalColor(std::size_t interval, Colour colour) {
    TableColour(IntervalSlot(interval), colour);
  }

  const MemberTable& Members() const override;

 private:
  void InitOwnProperties() override;
  void FillDefaults() override;
  void CheckBeforeDrawing() override;
  void ShowLegend() override { wafer_.scale_colored(chips_, rows_); }
  void DrawPlot(Surface& surface) override;

  float resolution_ = 0;
  bool show_sites_ = false;
};

}  // namespace discoplan
