// SPDX-License-Identifier: MIT
#include "discoplan/dialogs/scan_dialog.h"

#include <algorithm>

#include "discoplan/base/numbers.h"
#include "discoplan/core/enumerations.h"
#include "discoplan/core/number_checks.h"
#include "discoplan/dialogs/previews.h"
#include "discoplan/render/number_text.h"
#include "discoplan/render/plots/scan_plot.h"

namespace discoplan {
namespace {

// Twips.
constexpr float kSideHeight = 2400;
constexpr TwipsBox kPicture{210, 270, 1980, 1980};
constexpr float kMarkerSide = 105;
constexpr float kFirstField = 1200;
constexpr float kPitch = 330;

constexpr std::array<const char*, 6> kPointLabels = {
    "Start Point X: ", "Start Point Y: ",    "End Point X: ",
    "End Point Y: ",   "Rotation Point X: ", "Rotation Point Y: ",
};
constexpr std::array<Colour, 3> kMarkerColours = {kPalette[9], kPalette[9], kPalette[12]};

}  // namespace

frmPlotOpt1D::frmPlotOpt1D(Platform& platform)
    : OptionDialog(platform, "frmPlotOpt1D", {"Frame2", "Line Scan"}),
      line_group_(AddOptions("", "optline",
                             {{"Point + Angle :", PlotTypeEnumLineScan::vbAngle},
                              {"Two Points :", PlotTypeEnumLineScan::vbline}})),
      side_(AddSideFrame("Frame1", "Wafer", kSideHeight)),
      picture_(AddPicture(side_, "Plot", kPicture)),
      line_(side_.Add(NodeKind::Line, "line1", {})),
      angle_label_(frame_.Add(NodeKind::Label, "lblAngle",
                              {kOptionLabelLeft, kFirstField + 2 * kPitch, 1500, 285})),
      angle_(AddField("AngleValue", kFirstField + 2 * kPitch), AngleEntry::kStrictTurn) {
  line_.ForeColor(kPalette[4]);
  for (std::size_t i = 0; i < kPoints; ++i) AddPoint(i);
  side_.Add(NodeKind::Image, "NvalidImage", {0, 0, kMarkerSide, kMarkerSide}).Visible(false);
  angle_label_.Text("Start Angle: ");
  angle_.OnChange([this] { ShowLine(); });
  line_group_.node().on_change = [this] {
    ShowMode();
    ShowLine();
  };
  Reserve(kFirstField + 4 * kPitch);
  FinishWithoutBackground();
}

Node& frmPlotOpt1D::AddField(std::string name, float top) {
  Node& field = frame_.Add(NodeKind::Text, std::move(name),
                           {kOptionFieldLeft, top, kOptionFieldWidth, kFieldHeight});
  field.BackColor(kWhite);
  field.Text(PlainNumber(0));
  return field;
}

/// The rotation point stands where the start point stands in the other mode.
void frmPlotOpt1D::AddPoint(std::size_t i) {
  const float top = kFirstField + kPitch * 2 * static_cast<float>(i % 2);
  PointFields& point = points_[i];
  for (std::size_t axis = 0; axis < 2; ++axis) {
    const float row = top + kPitch * static_cast<float>(axis);
    point.labels[axis] = &frame_.Add(NodeKind::Label, IndexedName("lblLine", 2 * i + axis),
                                     {kOptionLabelLeft, row, 1500, kFieldHeight});
    point.labels[axis]->Text(kPointLabels[2 * i + axis]);
    Node*& field = axis == 0 ? point.x : point.y;
    field = &AddField(IndexedName(axis == 0 ? "resx" : "resy", i), row);
    field->on_leave = [this, i, left = field] { return LeavePoint(i, *left); };
  }
  point.marker = &AddPicture(side_, IndexedName("picgrid", i), {0, 0, kMarkerSide, kMarkerSide});
  DrawMarkerCross(*point.marker->Picture(), kMarkerColours[i]);
}

void frmPlotOpt1D::SetValues(const wafer& source, const ScanSettings& settings) {
  running_ = false;
  Begin(source);
  line_group_.Choose(settings.type == 2 ? 2 : 1);
  float centre_x = 33;
  float centre_y = 33;
  source.FlatNotchShow(nullptr, *picture_.Picture(), centre_x, centre_y, 20, 0, 90);
  for (std::size_t i = 0; i < kPoints; ++i) {
    points_[i].x->Text(PlainNumber(settings.x[i]));
    points_[i].y->Text(PlainNumber(settings.y[i]));
    MovePoint(i);
  }
  angle_.Open(settings.angle);
  ShowMode();
  running_ = true;
  ShowLine();
}

ScanSettings frmPlotOpt1D::GetResult() const {
  ScanSettings result{.type = ByLine() ? std::int16_t{2} : std::int16_t{1},
                      .angle = angle_.value()};
  for (std::size_t i = 0; i < kPoints; ++i) {
    result.x[i] = ToFloat(NumberIn(*points_[i].x));
    result.y[i] = ToFloat(NumberIn(*points_[i].y));
  }
  return result;
}

void frmPlotOpt1D::ShowMode() {
  for (std::size_t i = 0; i < kPoints; ++i) {
    const bool shown = ByLine() == (i < 2);
    const PointFields& point = points_[i];
    for (Node* node : {point.labels[0], point.labels[1], point.x, point.y, point.marker}) {
      node->Visible(shown);
    }
  }
  for (Node* node : {&angle_label_, &angle_.node()}) node->Visible(!ByLine());
}

bool frmPlotOpt1D::Refuse(Node& field, const char* text) {
  platform_.Show({.text = text, .title = "Input Error"});
  field.Text(PlainNumber(0));
  return false;
}

bool frmPlotOpt1D::LeavePoint(std::size_t i, Node& field) {
  if (source() == nullptr) return true;  // cancelled: closing the window takes the focus away
  if (!CheckDecimalText(field.Text(), false)) return Refuse(field, "Enter a numeric experssion");
  const double x = NumberIn(*points_[i].x);
  const double y = NumberIn(*points_[i].y);
  const double radius = source()->TestDiameter / 2.0;
  if (radius * radius <= x * x + y * y) return Refuse(field, "Testdiameter exeded");
  MovePoint(i);
  if (running_) ShowLine();
  return true;
}

SurfacePoint frmPlotOpt1D::OnPicture(float x, float y) const {
  const double diameter = source()->TestDiameter;
  // Whole millimetres, at most 38 to the radius.
  double cell = ToInt16(diameter / 50);
  if (cell == 0) cell = 1;
  const double half = ToInt16(diameter / 2 / cell);
  const Surface& surface = *picture_.Picture();
  const double raster = Divide(1, half * cell * 2);
  const double step =
      std::min(surface.ScaleWidth() * raster, surface.ScaleHeight() * raster);  // pixels a mm
  const double twips_x = Divide(picture_.Box().width, surface.ScaleWidth());
  const double twips_y = Divide(picture_.Box().height, surface.ScaleHeight());
  return {ToFloat(picture_.Box().left + picture_.Box().width / 2 + x * step * twips_x),
          ToFloat(picture_.Box().top + picture_.Box().height / 2 - y * step * twips_y)};
}

void frmPlotOpt1D::MovePoint(std::size_t i) {
  Attempt([&] {
    const SurfacePoint place =
        OnPicture(ToFloat(NumberIn(*points_[i].x)), ToFloat(NumberIn(*points_[i].y)));
    points_[i].marker->Move(
        {place.x - kMarkerSide / 2, place.y - kMarkerSide / 2, kMarkerSide, kMarkerSide});
  });
}

void frmPlotOpt1D::ShowLine() {
  if (!running_ || source() == nullptr) return;
  line_.Visible(Attempt([&] {
    const ScanSettings now = GetResult();
    const std::size_t first = ByLine() ? 0 : 2;
    const CutEnds ends = source()->EndsOf({.at_angle = !ByLine(),
                                           .x1 = now.x[first],
                                           .y1 = now.y[first],
                                           .x2 = now.x[1],
                                           .y2 = now.y[1],
                                           .angle = now.angle});
    const SurfacePoint from = OnPicture(ends.ax, ends.ay);
    const SurfacePoint to = OnPicture(ends.bx, ends.by);
    line_.Move({from.x, from.y, to.x - from.x, to.y - from.y});
  }));
}

}  // namespace discoplan
