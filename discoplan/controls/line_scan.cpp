// SPDX-License-Identifier: MIT
#include "discoplan/controls/line_scan.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "discoplan/core/number_checks.h"
#include "discoplan/dialogs/scan_dialog.h"
#include "discoplan/print/print_wafer.h"
#include "discoplan/print/scan_print.h"
#include "discoplan/render/label.h"
#include "discoplan/render/plots/scan_plot.h"

namespace discoplan {
namespace {

constexpr std::int16_t kHourglass = 11;
constexpr std::int16_t kDefaultPointer = 0;
constexpr std::int16_t kFullCircle = 360;
constexpr std::int16_t kSteps = 88;
constexpr Colour kCurveColour = kPalette[4];
constexpr int kKeyUp = 38;
constexpr int kKeyDown = 40;
constexpr int kIncrement = 1;  // degrees

// Twips.
constexpr float kMinimumWidth = 4000;
constexpr float kMinimumHeight = 2850;
constexpr float kMinimumHeightWithoutLegend = 1770;
constexpr float kPanelWidth = 1680;
constexpr float kTopMargin = 300;
constexpr float kLabelHeight = 195;
constexpr float kReadOutWidth = 690;
constexpr float kGap = 60;
constexpr TwipsBox kFrame1{0, 0, kPanelWidth, 2280};
constexpr TwipsBox kIndicator{105, 0, 1470, 1635};
constexpr TwipsBox kWaferPicture{105, 240, 1260, 1260};
constexpr TwipsBox kMarker{0, 0, 105, 105};
constexpr TwipsBox kAngleTitle{105, 1755, 480, 195};
constexpr TwipsBox kAngleValue{630, 1710, 660, 285};
constexpr TwipsBox kUpDown{1305, 1710, 270, 285};
constexpr TwipsBox kOptions{105, 2370, 1470, 300};

Node& AddFrame(Node& parent, std::string name, const TwipsBox& place, bool bordered) {
  Node& frame = parent.Add(NodeKind::Frame, std::move(name), place);
  frame.Bordered(bordered);
  return frame;
}

/// Where a point of a wafer picture lies, in twips of the frame around it.
SurfacePoint Over(const Node& picture, const SurfacePoint& point) {
  const Surface& scale = *picture.Picture();
  const double x = static_cast<double>(point.x) - scale.ScaleLeft();
  const double y = static_cast<double>(point.y) - scale.ScaleTop();
  return {ToFloat(picture.Box().left + Divide(x * picture.Box().width, scale.ScaleWidth())),
          ToFloat(picture.Box().top + Divide(y * picture.Box().height, scale.ScaleHeight()))};
}

void CentreOn(Node& marker, const SurfacePoint& place) {
  const TwipsBox& own = marker.Box();
  marker.Move({place.x - own.width / 2, place.y - own.height / 2, own.width, own.height});
}

/// Moves a marker and a line over a wafer picture in the same frame.
class NodeMarker final : public Marker {
 public:
  NodeMarker(Node& marker, Node& line, const Node& picture)
      : marker_(marker), line_(line), picture_(picture) {}

  void Move(const SurfacePoint& begin, const SurfacePoint& end) override {
    const SurfacePoint from = Over(picture_, begin);
    const SurfacePoint to = Over(picture_, end);
    line_.Move({from.x, from.y, to.x - from.x, to.y - from.y});
    CentreOn(marker_, to);
  }
  void Visible(bool visible) override {
    marker_.Visible(visible);
    line_.Visible(visible);
  }

 private:
  Node& marker_;
  Node& line_;
  const Node& picture_;
};

/// A cross, from corner to corner or upright.
void DrawCross(Node& marker, bool upright) {
  Surface& surface = *marker.Picture();
  const float right = surface.ScaleWidth();
  const float bottom = surface.ScaleHeight();
  const auto line = [&](const SurfacePoint& from, const SurfacePoint& to) {
    surface.Line({.from = from, .to = to, .colour = upright ? kBlack : kLightRed});
  };
  surface.Cls();
  if (upright) {
    line({0, std::floor(bottom / 2)}, {right, std::floor(bottom / 2)});
    line({std::floor(right / 2), 0}, {std::floor(right / 2), bottom});
  } else {
    line({0, 0}, {right, bottom});
    line({right - 1, 0}, {-1, bottom});
  }
}

}  // namespace

LineScan::LineScan(Platform& platform, Container* container)
    : PlotControl(platform, container, kClass),
      plot_(AddFrame(root_, "Plot", {}, true)),
      plota_(AddPicture(plot_, "PLOTA", {})),
      panel_(AddFrame(root_, "frmove", {}, false)),
      frame1_(AddFrame(panel_, "Frame1", kFrame1, false)),
      indicators_{{AddIndicator("FNLabel(0)", "FNPic", "picplus"),
                   AddIndicator("FNLabel(1)", "Picture1", "Picture2")}},
      plus_(AddMarker(IndicatorOf(false).frame, "plus")),
      point_markers_{&AddMarker(IndicatorOf(true).frame, "Picture3"),
                     &AddMarker(IndicatorOf(true).frame, "Picture4")},
      angle_value_(frame1_.Add(NodeKind::Text, "AngleValue", kAngleValue)),
      up_down_(frame1_.Add(NodeKind::Spinner, "UpDown1", kUpDown)),
      options_(panel_.Add(NodeKind::Button, "btnoptions", kOptions)) {
  plot_.Text(" Wafer ");
  plot_.Forwards(kForwardsAll);
  options_.Text("Plot- Options");
  options_.on_click = [this] { ShowPlotOption(); };
  DrawMarkers(kButtonFace);
  AddReadOuts();
  AddAngleBox();
  ShowMode();
}

LineScan::Indicator LineScan::AddIndicator(const char* frame_name, const char* picture,
                                           const char* marker) {
  Node& frame = AddFrame(frame1_, frame_name, kIndicator, true);
  Indicator indicator{.frame = frame,
                      .wafer_picture = AddPicture(frame, picture, kWaferPicture),
                      .line = frame.Add(NodeKind::Line, "Line1", {}),
                      .marker = AddMarker(frame, marker)};
  indicator.line.ForeColor(kCurveColour);
  indicator.line.Visible(false);
  return indicator;
}

Node& LineScan::AddMarker(Node& frame, const char* name) {
  Node& marker = AddPicture(frame, name, kMarker);
  marker.Visible(false);
  return marker;
}

/// In the colour around them. Those on the ends and on the points of the cut are crosses; the
/// centre has an upright one.
void LineScan::DrawMarkers(Colour colour) {
  for (Node* marker : {&IndicatorOf(false).marker, &IndicatorOf(true).marker, &plus_,
                       point_markers_[0], point_markers_[1]}) {
    marker->BackColor(colour);
    DrawCross(*marker, marker == &plus_);
  }
}

void LineScan::AddReadOuts() {
  for (std::size_t i = 0; i < x_nodes_.size(); ++i) {
    x_nodes_[i] = &AddLabel(plot_, IndexedName("lblX", i), {0, 0, kReadOutWidth, 2 * kLabelHeight});
    x_nodes_[i]->Alignment(Alignment::Centre);
    x_nodes_[i]->BreakBefore("Y=");
    y_nodes_[i] = &AddLabel(plot_, IndexedName("lblY", i), {0, 0, 0, kLabelHeight});
    SizeByText(*y_nodes_[i]);
    x_labels_[i] = x_nodes_[i];
    y_labels_[i] = y_nodes_[i];
    x_nodes_[i]->Forwards(kForwardsAll);
    y_nodes_[i]->Forwards(kForwardsAll);
  }
}

void LineScan::AddAngleBox() {
  AddLabel(frame1_, "Label1", kAngleTitle, "Angle:");
  angle_value_.Text(std::to_string(angle_));
  angle_value_.BackColor(kWhite);
  angle_value_.on_change = [this] { AngleTextChanged(); };
  angle_value_.on_key = [this](int key) {
    if (key == kKeyUp) Spin(+1);
    if (key == kKeyDown) Spin(-1);
  };
  up_down_.on_spin = [this](int steps) { Spin(steps); };
}

void LineScan::angle(std::int16_t degrees) {
  if (degrees < 0 || degrees > kFullCircle) {
    platform_.Show({.text = "Angle value must be between 0 and 359",
                    .title = "Input Error",
                    .critical = true,
                    .system_modal = true});
    return;
  }
  SetAngleText(std::to_string(degrees % kFullCircle));
  Changed("angle");
}

void LineScan::PlotType(PlotTypeEnumLineScan type) {
  plot_type_ = type;
  plot_valid_ = false;
  ClearSurface();
  ShowMode();
  Changed("PlotType");
}

void LineScan::ShowMode() {
  IndicatorOf(false).frame.Visible(!ByLine());
  IndicatorOf(true).frame.Visible(ByLine());
}

void LineScan::TakePoint(std::int16_t& field, std::int16_t value, std::string_view property) {
  plot_valid_ = false;
  ClearSurface();
  field = value;
  Changed(property);
}

ScanLine LineScan::AngleCut() const {
  return {.x1 = static_cast<float>(rotation_x_),
          .y1 = static_cast<float>(rotation_y_),
          .angle = angle_};
}

ScanLine LineScan::Cut() const {
  const auto mm = [](std::int16_t length) { return static_cast<float>(length); };
  if (!ByLine()) return AngleCut();
  return {.at_angle = false,
          .x1 = mm(start_x_),
          .y1 = mm(start_y_),
          .x2 = mm(end_x_),
          .y2 = mm(end_y_)};
}

void LineScan::ApplyBackColor(Colour colour) {
  for (Node* node :
       {&root_, &plot_, &IndicatorOf(false).frame, &IndicatorOf(true).frame,
        &IndicatorOf(false).wafer_picture, &IndicatorOf(true).wafer_picture, &frame1_, &panel_}) {
    node->BackColor(colour);
  }
  DrawMarkers(colour);
  for (Indicator& indicator : indicators_) ShowWafer(indicator);
  DrawIndicator(IndicatorOf(true), {.at_angle = false});
}

// Drawing. A cut that misses the wafer leaves its part of the drawing out.

void LineScan::ShowWafer(Indicator& indicator) {
  Attempt([&] {
    Surface& surface = *indicator.wafer_picture.Picture();
    surface.ScaleMode(Surface::kPixels);  // the marker's scale is in millimetres
    float centre_x = 33;
    float centre_y = 33;
    wafer_.FlatNotchShow(&indicator.frame, surface, centre_x, centre_y, 20, 0, 90);
  });
}

void LineScan::DrawIndicator(Indicator& indicator, const ScanLine& cut) {
  Attempt([&] {
    NodeMarker marker(indicator.marker, indicator.line, indicator.wafer_picture);
    const Node& picture = indicator.wafer_picture;
    wafer_.draw_indicator(*picture.Picture(), marker, cut);
    const auto show = [&](Node& node, float x, float y) {
      CentreOn(node, Over(picture, {x, -y}));
      node.Visible(true);
    };
    if (cut.at_angle) return show(plus_, 0, 0);
    show(*point_markers_[0], cut.x1, cut.y1);
    show(*point_markers_[1], cut.x2, cut.y2);
  });
}

void LineScan::ShowReadOuts() {
  Attempt([&] { wafer_.D1Plot_Show_lblXY(x_labels_, y_labels_, Cut()); });
}

void LineScan::DrawCurve() {
  Attempt([&] { wafer_.D1Plot(*plota_.Picture(), kSteps, Cut(), kCurveColour, {}); });
}

void LineScan::RedrawLineScan() {
  SetPointer(kHourglass);
  Layout();
  if (ByLine()) {
    if (plot_requested_) {
      ClearSurface();
      ShowReadOuts();
      ShowWafer(IndicatorOf(true));
      DrawIndicator(IndicatorOf(true), Cut());
      DrawCurve();
    }
  } else if (plot_type_ == PlotTypeEnumLineScan::vbAngle) {
    ShowWafer(IndicatorOf(false));
    IndicatorOf(false).frame.caption("Angle :");
    if (ParseNumber(angle_value_.Text()).value_or(0) == angle_) {
      DrawIndicator(IndicatorOf(false), Cut());
      ShowReadOuts();
      if (plot_requested_) DrawCurve();
    }
    SetAngleText(std::to_string(angle_));
  }
  SetPointer(kDefaultPointer);
}

void LineScan::Shown() {
  if (plot_requested_) DrawCurve();
}

// Angle box and spinner.

void LineScan::SetAngleText(const std::string& text) {
  if (angle_value_.Text() == text) return;
  angle_value_.Text(text);
  AngleTextChanged();
}

void LineScan::AngleTextChanged() {
  const std::string text = angle_value_.Text();
  if (!CheckIntegerText(text) || !CheckRangeTyping(text, -1, kFullCircle)) {
    return SetAngleText("0");
  }
  ClearSurface();
  angle_ = ToInt16(ParseNumber(text).value_or(0));
  up_down_.Value(angle_);
  DrawIndicator(IndicatorOf(false), AngleCut());
  ShowReadOuts();
  if (plot_requested_) DrawCurve();
}

void LineScan::Spin(int steps) {
  const int turned = (up_down_.Value() + steps % kFullCircle * kIncrement) % kFullCircle;
  up_down_.Value((turned + kFullCircle) % kFullCircle);
  SetAngleText(std::to_string(up_down_.Value()));
}

// Layout.

void LineScan::Resize() {
  if (Layout() && plot_requested_) DrawCurve();
}

/// False if the control was too small.
bool LineScan::Layout() {
  Attempt([&] { container().UseTwips(); });
  if (TakesLeastSize(
          {kMinimumWidth, legend_shown_ ? kMinimumHeight : kMinimumHeightWithoutLegend})) {
    return false;
  }
  const TwipsBox& control = root_.Box();
  ShowReadOuts();
  const float panel = legend_shown_ ? kPanelWidth : 0;
  plot_.Move({0, 0, control.width - panel, control.height});
  panel_.Move({control.width - kPanelWidth, 0, kPanelWidth, control.height});
  PlaceReadOuts();
  plota_.Picture()->DropPicture();
  ClearSurface();
  Attempt([&] {
    Surface& surface = *plota_.Picture();
    wafer_.D1Plot_AdjustLines(surface, 0, 0, surface.ScaleWidth() - 1, surface.ScaleHeight() - 1);
  });
  return true;
}

/// The left margin follows from the values beside the chart, the lower one from the positions
/// under it.
void LineScan::PlaceReadOuts() {
  float widest = 0;
  for (const Node* label : y_nodes_) widest = std::max(widest, label->Box().width);
  const float left = 2 * kGap + std::max(widest, kReadOutWidth / 2);
  const TwipsBox chart{left, kTopMargin, plot_.Box().width - left - kReadOutWidth / 2 - kGap,
                       plot_.Box().height - kTopMargin - 2 * kLabelHeight - 2 * kGap};
  if (chart.width != plota_.Box().width || chart.left != plota_.Box().left ||
      chart.height != plota_.Box().height) {
    plota_.Move(chart);
  }
  const float pitch = chart.width / 4;
  for (std::size_t i = 0; i < x_nodes_.size(); ++i) {
    const float share = static_cast<float>(i) / 4;
    TwipsBox below = x_nodes_[i]->Box();
    below.left = chart.left + share * chart.width - kReadOutWidth / 2;
    below.top = chart.top + chart.height + kGap;
    x_nodes_[i]->Move(below);
    x_nodes_[i]->Visible(i % 2 == 0 || pitch >= kReadOutWidth);
    TwipsBox beside = y_nodes_[i]->Box();
    beside.left = chart.left - kGap - beside.width;
    beside.top = chart.top + (1 - share) * chart.height - kLabelHeight / 2;
    y_nodes_[i]->Move(beside);
  }
}

void LineScan::PrintOn(PrintWafer& print, PageArea& area) {
  print.Print_1DPlot(wafer_, area, {.cut = Cut(), .caption = PlotCaption()});
}

void LineScan::ShowPlotOption() {
  const auto dialog = std::make_shared<frmPlotOpt1D>(platform_);
  const auto mm = [](std::int16_t length) { return static_cast<float>(length); };
  dialog->SetValues(wafer_, {.type = static_cast<std::int16_t>(plot_type_),
                             .angle = angle_,
                             .x = {mm(start_x_), mm(end_x_), mm(rotation_x_)},
                             .y = {mm(start_y_), mm(end_y_), mm(rotation_y_)}});
  ShowDialog(dialog, [this, dialog] {
    SetLineOptions(dialog->GetResult());
    RedrawLineScan();
  });
}

/// The markers are pictures of fixed size, which only colours draw.
void LineScan::ScreenChanged() {
  const ObjectRef held = Hold();
  PlotControl::ScreenChanged();
  DrawMarkers(plus_.BackColor());
}

void LineScan::SetLineOptions(const ScanSettings& settings) {
  plot_type_ = static_cast<PlotTypeEnumLineScan>(settings.type);
  up_down_.Value(settings.angle);
  ShowMode();
  if (ByLine()) {
    start_x_ = ToInt16(settings.x[0]);
    start_y_ = ToInt16(settings.y[0]);
    end_x_ = ToInt16(settings.x[1]);
    end_y_ = ToInt16(settings.y[1]);
  } else {
    rotation_x_ = ToInt16(settings.x[2]);
    rotation_y_ = ToInt16(settings.y[2]);
    SetAngleText(std::to_string(settings.angle));
  }
}

}  // namespace discoplan
