// SPDX-License-Identifier: MIT
#pragma once

#include "discoplan/controls/map_control.h"

namespace discoplan {

enum class ResoEnum : std::int16_t { LowQuality = 0, HighQuality = 1, Automatic = 2 };
enum class ExconEnum : std::int16_t { Exact = 1, Converted = 2, None = 3 };
enum class DrawColEnum : std::int32_t { BWhitePlot = 0, ColorPlot = -1 };

template <>
inline constexpr std::string_view EnumName<ResoEnum> = "ResoEnum";
template <>
inline constexpr std::array kEnumerators<ResoEnum> = {
    Enumerator{"LowQuality", 0}, Enumerator{"HighQuality", 1}, Enumerator{"Automatic", 2}};
template <>
inline constexpr std::string_view EnumName<ExconEnum> = "ExconEnum";
template <>
inline constexpr std::array kEnumerators<ExconEnum> = {
    Enumerator{"Exact", 1}, Enumerator{"Converted", 2}, Enumerator{"None", 3}};
template <>
inline constexpr std::string_view EnumName<DrawColEnum> = "DrawColEnum";
template <>
inline constexpr std::array kEnumerators<DrawColEnum> = {Enumerator{"BWhitePlot", 0},
                                                         Enumerator{"ColorPlot", -1}};

/// Contour lines: at the mean, and above and below it in steps of a part of the mean.
class DISCOPLAN_EXPORT Plot2DC final : public MapControl {
 public:
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
  const MemberTable& Members() const override;
  const StoredProperties& Stored() const override;

 private:
  static constexpr ColourSlot kMean{"MeanCurveColor", true, 1};
  static constexpr ColourSlot kUpper{"UpperCurveColor", true, 0};
  static constexpr ColourSlot kLower{"LowerCurveColor", true, 2};

  void InitOwnProperties() override;
  void PrintOn(PrintWafer& print, PageArea& area) override;
  void PrintThinOn(PrintWafer& print, PageArea& area) override;
  ContourSettings Lines() const;
  ContourPrint Printed() const;
  void FillDefaults() override;
  void ShowLegend() override;
  void DrawPlot(Surface& surface) override;

  float interval_ = 0;
  ExconEnum mark_sites_{};
  ResoEnum resolution_{};
  DrawColEnum plot_colored_{};
};

}  // namespace discoplan
