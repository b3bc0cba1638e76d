// SPDX-License-Identifier: MIT
#pragma once

#include "discoplan/controls/plot_control.h"

namespace discoplan {

struct HistogramPrint;

/// Histogram of the values with a Gauss curve. It has no legend panel and no snapshot: each `Plot`
/// draws anew. Control limits are shown in all histograms of a thread.
class DISCOPLAN_EXPORT Histo final : public PlotControl {
 public:
  static constinit const ControlClass kClass;

  explicit Histo(Platform& platform, Container* container = nullptr);

  PlotTyEnum PlotType() const { return plot_type_; }
  /// What is none of the four becomes `vbbottom`.
  void PlotType(PlotTyEnum type);
  /// Number of classes, rounded; 0 becomes 10.
  float Resolution() const { return resolution_; }
  void Resolution(float classes);
  Colour BeamColor() const { return TableColour(kBeam); }
  void BeamColor(Colour colour) { TableColour(kBeam, colour); }
  Colour GaussCurveColor() const { return TableColour(kGaussCurve); }
  void GaussCurveColor(Colour colour) { TableColour(kGaussCurve, colour); }
  /// Aligns the chart with a plot beside it: its top and height in twips, unless the top is 0.
  void SetChartDim(float topC, float heightC);
  void Borderstyle(std::int16_t Bstyle);
  /// Shown from the next draw on, where the value axis stands upright.
  void ShowControlLimit(float LCLs, float UCLs);
  void ResetControlLimit();
  void SetPlotNotVaild() override {}

  const Node* Focused() override { return command1_.IsShown() ? &command1_ : nullptr; }
  /// The plot alone, for a small place on a page.
  PrintResult PrintPlot_THN(float& left, float& top, float& width, float& height) {
    return PrintPlotAs(true, left, top, width, height);
  }

  void ShowPlotOption() override;

 private:
  static constexpr ColourSlot kBeam{"BeamColor", true, 1};
  static constexpr ColourSlot kGaussCurve{"GaussCurveColor", true, 0};

  void PrintOn(PrintWafer& print, PageArea& area) override;
  void PrintThinOn(PrintWafer& print, PageArea& area) override;
  HistogramPrint Printed() const;
  void PresentPlot() override { RedrawHistogram(); }
  void Resize() override;
  void ClearSurface() override { plota_.Picture()->Cls(); }
  void ShowLegendPanel(bool) override {}
  void ApplyBackColor(Colour colour) override;
  Node& TitledFrame() const override { return frmhist_; }
  void RedrawHistogram();

  Node& frmhist_;
  Node& hist_pic_;
  Node& plota_;
  Node& lbl_x_;
  Node& command1_;
  std::int16_t resolution_ = 0;
  float top_c_ = 0;
  float height_c_ = 0;
  PlotTyEnum plot_type_{};
};

}  // namespace discoplan
