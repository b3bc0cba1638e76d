// SPDX-License-Identifier: MIT
#pragma once

#include <array>

#include "discoplan/controls/plot_control.h"
#include "discoplan/dialogs/scan_dialog.h"

namespace discoplan {

struct ScanLine;

/// The value along a straight cut across the wafer. The user turns the cut with an angle box and a
/// spinner; the curve follows at once. It keeps no snapshot: each occasion draws anew.
class DISCOPLAN_EXPORT LineScan final : public PlotControl {
 public:
  static constinit const ControlClass kClass;

  explicit LineScan(Platform& platform, Container* container = nullptr);

  /// Degrees, 0 to 360, where 360 counts as 0; another value tells the user and changes nothing.
  /// At 0 the cut runs up the wafer, and it turns counterclockwise: at 90 it runs from right to
  /// left, so that X falls along it.
  std::int16_t angle() const { return angle_; }
  void angle(std::int16_t degrees);
  PlotTypeEnumLineScan PlotType() const { return plot_type_; }
  void PlotType(PlotTypeEnumLineScan type);
  // Points in mm from the wafer's centre.
  std::int16_t RotationPointX() const { return rotation_x_; }
  void RotationPointX(std::int16_t x) { TakePoint(rotation_x_, x, "RotationPointX"); }
  std::int16_t RotationPointY() const { return rotation_y_; }
  void RotationPointY(std::int16_t y) { TakePoint(rotation_y_, y, "RotationPointY"); }
  std::int16_t LineStartPointX() const { return start_x_; }
  void LineStartPointX(std::int16_t x) { TakePoint(start_x_, x, "LineStartPointX"); }
  std::int16_t LineStartPointY() const { return start_y_; }
  void LineStartPointY(std::int16_t y) { TakePoint(start_y_, y, "LineStartPointY"); }
  std::int16_t LineEndPointX() const { return end_x_; }
  void LineEndPointX(std::int16_t x) { TakePoint(end_x_, x, "LineEndPointX"); }
  std::int16_t LineEndPointY() const { return end_y_; }
  void LineEndPointY(std::int16_t y) { TakePoint(end_y_, y, "LineEndPointY"); }
  void SetPlotNotVaild() override { ClearSurface(); }

  const Node* Focused() override { return options_.IsShown() ? &options_ : nullptr; }
  void Shown() override;
  void ScreenChanged() override;
  void ShowPlotOption() override;

 private:
  /// The indicator of one mode: a small wafer, the cut, and a marker on its end.
  struct Indicator {
    Node& frame;
    Node& wafer_picture;
    Node& line;
    Node& marker;
  };

  void PrintOn(PrintWafer& print, PageArea& area) override;
  void PresentPlot() override { RedrawLineScan(); }
  void Resize() override;
  void ClearSurface() override { plota_.Picture()->Cls(); }
  void ShowLegendPanel(bool shown) override { panel_.Visible(shown); }
  void ApplyBackColor(Colour colour) override;
  void LimitsChanged() override { ShowReadOuts(); }
  Node& TitledFrame() const override { return plot_; }

  void AddReadOuts();
  void AddAngleBox();
  void ShowMode();
  void TakePoint(std::int16_t& field, std::int16_t value, std::string_view property);
  ScanLine AngleCut() const;
  ScanLine Cut() const;
  bool ByLine() const { return plot_type_ == PlotTypeEnumLineScan::vbline; }
  Indicator& IndicatorOf(bool line) { return indicators_[line ? 1 : 0]; }
  Node& AddMarker(Node& frame, const char* name);
  void DrawMarkers(Colour colour);
  Indicator AddIndicator(const char* frame, const char* picture, const char* marker);

  bool Layout();
  void PlaceReadOuts();
  void RedrawLineScan();
  void DrawIndicator(Indicator& indicator, const ScanLine& cut);
  void ShowWafer(Indicator& indicator);
  void ShowReadOuts();
  void DrawCurve();
  void SetLineOptions(const ScanSettings& settings);
  void SetAngleText(const std::string& text);
  void AngleTextChanged();
  void Spin(int steps);

  Node& plot_;
  Node& plota_;
  Node& panel_;
  Node& frame1_;
  std::array<Indicator, 2> indicators_;  // by angle, by line
  Node& plus_;                           // on the wafer's centre
  std::array<Node*, 2> point_markers_;   // on the points that a line goes through
  Node& angle_value_;
  Node& up_down_;
  Node& options_;
  std::array<Node*, 5> x_nodes_{};
  std::array<Node*, 5> y_nodes_{};
  std::array<Label*, 5> x_labels_{};
  std::array<Label*, 5> y_labels_{};

  std::int16_t angle_ = 0;
  std::int16_t rotation_x_ = 0;
  std::int16_t rotation_y_ = 0;
  std::int16_t start_x_ = 0;
  std::int16_t start_y_ = 0;
  std::int16_t end_x_ = 0;
  std::int16_t end_y_ = 0;
  PlotTypeEnumLineScan plot_type_ = PlotTypeEnumLineScan::vbAngle;
};

}  // namespace discoplan
