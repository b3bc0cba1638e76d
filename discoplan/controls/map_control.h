// SPDX-License-Identifier: MIT
#pragma once

/// The frame of the seven controls that show the whole wafer: a near-square plot at the left, a
/// panel with legend, indicator and options button at the right.
///
/// A redraw draws on `PLOTA` and keeps a snapshot of it; a later change of size only stretches the
/// snapshot (`RePlot`), so that dragging a control larger doesn't interpolate anew.

#include <array>

#include "discoplan/controls/plot_control.h"

namespace discoplan {

class DISCOPLAN_EXPORT MapControl : public PlotControl {
 public:
  const Node* Focused() override;

 protected:
  MapControl(Platform& platform, Container* container, const Traits& traits);

  /// Draws the plot itself on the surface.
  virtual void DrawPlot(Surface& surface) = 0;
  /// Brings the legend's rows up to date, in each resize.
  virtual void ShowLegend() = 0;
  /// Checked before a redraw: mends what has become impossible and tells the user.
  virtual void CheckBeforeDrawing() {}
  /// The view from which the indicator shows the wafer, in degrees.
  struct View {
    float rotation = 0;
    float inclination = 90;
  };
  virtual View IndicatorView() const { return {}; }

  void RedrawPlot();
  void Resize() override;
  void ClearSurface() override;
  void DropSnapshot() override;
  void ShowSurface() override { plota_.visible = true; }
  void ShowLegendPanel(bool shown) override { frmove_.visible = shown; }
  void ApplyBackColor(Colour colour) override;
  Node& TitledFrame() override { return frplot_; }

  Node& frplot_;
  Node& plota_;
  Node& replot_;
  Node& frmove_;
  Node& frame1_;
  Node& frleg_;
  Node& legende_;
  Node& fnlabel_;
  Node& fnpic_;
  Node& command1_;
  std::array<Label*, wafer::kLegendRows> rows_;   // ScaleValue
  std::array<Label*, wafer::kLegendRows> chips_;  // scalCol

 private:
  void AddLegendRows();
  bool TakeMinimum(float width, float height);
  void WidenPanel();
  void PlacePanel();
  void PlacePlot(double side);
  void ShowSnapshot();

  std::array<Node*, wafer::kLegendRows> row_nodes_;
};

}  // namespace discoplan
