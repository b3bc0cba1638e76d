// SPDX-License-Identifier: MIT
#pragma once

#include "discoplan/controls/map_control.h"

namespace discoplan {

struct ContourPrint;
struct ContourSettings;

/// Contour lines: at the mean, and above and below it in steps of a part of the mean.
class DISCOPLAN_EXPORT Plot2DC final : public MapControl {
 public:
  static constinit const ControlClass kClass;

  explicit Plot2DC(Platform& platform, Container* container = nullptr);

  /// Distance of the lines in percent of the mean; 0 or less becomes 1.
  float Interval() const { return interval_; }
  void Interval(float percent);
  ExconEnum markSites() const { return mark_sites_; }
  void markSites(ExconEnum marked);
  ResoEnum Resolution() const { return resolution_; }
  void Resolution(ResoEnum resolution);
  DrawColEnum PlotColored() const { return plot_colored_; }
  void PlotColored(DrawColEnum coloured);
  Colour MeanCurveColor() const { return TableColour(kMean); }
  void MeanCurveColor(Colour colour) { TableColour(kMean, colour); }
  Colour UpperCurveColor() const { return TableColour(kUpper); }
  void UpperCurveColor(Colour colour) { TableColour(kUpper, colour); }
  Colour LowerCurveColor() const { return TableColour(kLower); }
  void LowerCurveColor(Colour colour) { TableColour(kLower, colour); }

  /// The plot alone, for a small place on a page.
  PrintResult PrintPlot_THN(float& left, float& top, float& width, float& height) {
    return PrintPlotAs(true, left, top, width, height);
  }

  void ShowPlotOption() override;

 private:
  static constexpr ColourSlot kMean{"MeanCurveColor", true, 1};
  static constexpr ColourSlot kUpper{"UpperCurveColor", true, 0};
  static constexpr ColourSlot kLower{"LowerCurveColor", true, 2};

  void PrintOn(PrintWafer& print, PageArea& area) override;
  void PrintThinOn(PrintWafer& print, PageArea& area) override;
  ContourSettings Lines() const;
  ContourPrint Printed() const;
  void FillDefaults() override;
  void ShowLegend() override;
  void DrawPlot(Surface& surface) override;
  double ShownSide() const override { return wafer_.WaferDiameter; }

  float interval_ = 0;
  ExconEnum mark_sites_{};
  ResoEnum resolution_{};
  DrawColEnum plot_colored_{};
};

}  // namespace discoplan
