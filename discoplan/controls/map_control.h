// SPDX-License-Identifier: MIT
#pragma once

/// The frame of the seven controls that show the whole wafer: a near-square plot at the left, a
/// panel with legend, indicator and options button at the right.
///
/// A redraw draws on `PLOTA` and keeps a snapshot of it; a later change of size only stretches the
/// snapshot (`RePlot`), so that dragging a control larger doesn't interpolate anew.

#include <array>
#include <optional>

#include "discoplan/controls/plot_control.h"
#include "discoplan/dialogs/option_dialog.h"
#include "discoplan/print/print_wafer.h"

namespace discoplan {

class DISCOPLAN_EXPORT MapControl : public PlotControl {
 public:
  const Node* Focused() override;
  /// As on the screen, in a frame.
  PrintResult PrintLegend(float left, float top);
  /// The point of the wafer in mm from its centre, Y up, that a pixel of `PLOTA` shows, counted
  /// from its upper left corner; it may lie off the wafer. Nothing without data, and on a plot in
  /// perspective.
  std::optional<SurfacePoint> PointAt(const SurfacePoint& pixel) const;

 protected:
  enum class Legend {
    Intervals,  ///< Ten rows of values, brought up to date in each resize.
    Sigma,      ///< Three rows and the range, brought up to date in each redraw.
    Interval,   ///< The distance of lines alone.
  };

  MapControl(Platform& platform, Container* container, const ControlClass& own_class,
             Legend legend);

  /// Draws the plot itself on the surface.
  virtual void DrawPlot(Surface& surface) = 0;
  /// Brings the legend up to date.
  virtual void ShowLegend() = 0;
  virtual void PrintLegendOn(PrintWafer& print, float left, float top) {
    print.DrawColoredLegend(wafer_, left, top);
  }
  /// Checked before a redraw: mends what has become impossible and tells the user.
  virtual void CheckBeforeDrawing() {}
  /// The view from which the indicator shows the wafer, in degrees.
  struct View {
    float rotation = 0;
    float inclination = 90;
  };
  virtual View IndicatorView() const { return {}; }
  /// What of the wafer a flat map fits into its picture, in mm; 0 on a plot in perspective.
  virtual double ShownSide() const { return 0; }

  /// Shows the dialog, which has its values, and draws with those that `take` stores if the user
  /// confirms them.
  template <class Dialog, class Take>
  void RunDialog(const std::shared_ptr<Dialog>& dialog, Take take) {
    ShowDialog(dialog, [this, dialog, take] {
      take(*dialog);
      if (dialog->GetBackColor() != SurfaceBackColor()) ApplyBackColor(dialog->GetBackColor());
      RedrawPlot();
    });
  }
  Colour SurfaceBackColor() const { return plota_.Picture()->BackColor(); }

  void RedrawPlot();
  void Resize() override;
  void ClearSurface() override;
  void DropSnapshot() override;
  void ShowSurface() override { plota_.Visible(true); }
  void ShowLegendPanel(bool shown) override { frmove_.Visible(shown); }
  void ApplyBackColor(Colour colour) override;
  Node& TitledFrame() const override { return frplot_; }

  Node& frplot_;
  Node& plota_;
  Node& replot_;
  Node& frmove_;
  Node& frame1_;
  Node* frleg_ = nullptr;  // these five as far as the legend has them
  Node* legende_ = nullptr;
  Node* frint_ = nullptr;
  Node* lbldist_ = nullptr;
  Node* unit_ = nullptr;  // Label30
  Node& fnlabel_;
  Node& fnpic_;
  Node& command1_;
  std::array<Label*, wafer::kLegendRows> rows_{};   // ScaleValue
  std::array<Label*, wafer::kLegendRows> chips_{};  // scalCol
  std::array<Node*, wafer::kLegendRows> row_nodes_{};

 private:
  void AddRows();
  void AddInterval(Node& parent, const TwipsBox& place);
  void WidenPanel();
  void PlacePanel();
  void PlacePlot(double side);
  void ShowSnapshot();

  const Legend legend_;
};

}  // namespace discoplan
