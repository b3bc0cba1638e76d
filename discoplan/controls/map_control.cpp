// SPDX-License-Identifier: MIT
#include "discoplan/controls/map_control.h"

#include <algorithm>
#include <new>
#include <utility>

#include "discoplan/base/numbers.h"

namespace discoplan {
namespace {

constexpr std::int16_t kHourglass = 11;
constexpr std::int16_t kDefaultPointer = 0;

// Twips.
constexpr float kLeastLegendWidth = 1695;
constexpr float kLegendFrameMargin = 240;
constexpr float kPanelMargin = 210;
constexpr double kFrameAspect = 0.97;

// Where the children stand at first, so that the whole panel fits into the minimum height.
constexpr float kRowPitch = 165;
constexpr float kChipWidth = 300;
constexpr float kRowLeft = 375;
constexpr TwipsBox kFrplot{0, 0, 3855, 3855};
constexpr TwipsBox kPlota{105, 225, 3645, 3525};
constexpr TwipsBox kFrmove{3855, 0, 2145, 3180};
constexpr TwipsBox kFrame1{0, 0, 2145, 2835};
constexpr TwipsBox kFrleg{105, 0, 1935, 1920};
constexpr TwipsBox kLegende{120, 210, 1695, wafer::kLegendRows* kRowPitch};
constexpr TwipsBox kFrintBelowRows{120, 1245, 1695, 480};
constexpr TwipsBox kFrintAlone{105, 0, 1935, 480};
constexpr TwipsBox kLabel8{120, 195, 690, 195};
constexpr TwipsBox kLbldist{825, 195, 480, 195};
constexpr TwipsBox kLabel30{1335, 195, 240, 195};
constexpr TwipsBox kFnlabel{105, 1950, 1935, 885};
constexpr TwipsBox kFnpic{120, 195, 1695, 645};
constexpr TwipsBox kCommand1{105, 2865, 1935, 300};

Node& AddFrame(Node& parent, std::string name, const TwipsBox& place, std::string title = {}) {
  Node& frame = parent.Add(NodeKind::Frame, std::move(name), place);
  frame.Bordered(!title.empty());
  frame.Text(std::move(title));
  return frame;
}

}  // namespace

MapControl::MapControl(Platform& platform, Container* container, const ControlClass& own_class,
                       Legend legend)
    : PlotControl(platform, container, own_class),
      frplot_(AddFrame(root_, "Frplot", kFrplot, " Wafer ")),
      plota_(AddPicture(frplot_, "PLOTA", kPlota)),
      replot_(frplot_.Add(NodeKind::Image, "RePlot", kPlota)),
      frmove_(AddFrame(root_, "frmove", kFrmove)),
      frame1_(AddFrame(frmove_, "Frame1", kFrame1)),
      fnlabel_(AddFrame(frame1_, "FNLabel", kFnlabel, "Flat")),
      fnpic_(AddPicture(fnlabel_, "FNPic", kFnpic)),
      command1_(frmove_.Add(NodeKind::Button, "Command1", kCommand1)),
      legend_(legend) {
  frplot_.Forwards(kForwardsAll);
  frmove_.Forwards(kForwardsAll);
  replot_.Visible(false);
  command1_.Text("Plot- Options");
  command1_.on_click = [this] { ShowPlotOption(); };
  if (legend_ == Legend::Interval) {
    AddInterval(frame1_, kFrintAlone);
  } else {
    AddRows();
  }
  if (legend_ == Legend::Sigma) AddInterval(*frleg_, kFrintBelowRows);
}

void MapControl::AddInterval(Node& parent, const TwipsBox& place) {
  frint_ = &AddFrame(parent, "frInt", place);
  frint_->Bordered(true);
  AddLabel(*frint_, "Label8", kLabel8, "Interval:");
  lbldist_ = &AddLabel(*frint_, "lbldist", kLbldist);
  unit_ = &AddLabel(*frint_, "Label30", kLabel30, "%");
}

void MapControl::AddRows() {
  frleg_ = &AddFrame(frame1_, "frleg", kFrleg, "Legend");
  legende_ = &AddFrame(*frleg_, "legende", kLegende);
  for (std::size_t i = 0; i < row_nodes_.size(); ++i) {
    const float top = static_cast<float>(i) * kRowPitch;
    row_nodes_[i] =
        &AddLabel(*legende_, IndexedName("ScaleValue", i + 1), {kRowLeft, top, 0, kRowPitch});
    SizeByText(*row_nodes_[i]);
    rows_[i] = row_nodes_[i];
    chips_[i] =
        &AddLabel(*legende_, IndexedName("scalCol", i + 1), {0, top, kChipWidth, kRowPitch});
  }
}

const Node* MapControl::Focused() { return command1_.IsShown() ? &command1_ : nullptr; }

void MapControl::ClearSurface() { plota_.Picture()->Cls(); }

void MapControl::DropSnapshot() {
  replot_.Visible(false);
  replot_.Image(nullptr);
}

void MapControl::ApplyBackColor(Colour colour) {
  for (Node* node :
       {&frmove_, legende_, &fnpic_, &fnlabel_, &root_, &frplot_, frleg_, &frame1_, frint_}) {
    if (node != nullptr) node->BackColor(colour);
  }
}

PrintResult MapControl::PrintLegend(float left, float top) {
  return PrintBlock([&](PrintWafer& print) { PrintLegendOn(print, left, top); });
}

std::optional<SurfacePoint> MapControl::PointAt(const SurfacePoint& pixel) const {
  constexpr double kMargin = 6;  // pixels around a map
  const Canvas& canvas = std::as_const(*plota_.Picture()).canvas();
  const double side = ShownSide();
  const double pixels = std::min(canvas.Width(), canvas.Height()) - kMargin;
  if (wafer_.GetNop() == 0 || !(side > 0) || !(pixels > 0)) return {};
  const double pitch = side / pixels;  // mm to a pixel
  return SurfacePoint{static_cast<float>((pixel.x - canvas.Width() / 2.0) * pitch),
                      static_cast<float>((canvas.Height() / 2.0 - pixel.y) * pitch)};
}

void MapControl::RedrawPlot() {
  SetPointer(kHourglass);
  if (wafer_.GetNop() > 0) {
    if (replot_.Visible()) {
      ShowSurface();
      DropSnapshot();
    }
    platform_.RunPendingEvents();
    CheckBeforeDrawing();
    float centre_x = 34;
    float centre_y = 34;
    const View view = IndicatorView();
    wafer_.FlatNotchShow(&fnlabel_, *fnpic_.Picture(), centre_x, centre_y, 30, view.rotation,
                         view.inclination);
    if (legend_ != Legend::Intervals) ShowLegend();
    container().Repaint();
    try {
      DrawPlot(*plota_.Picture());
    } catch (const std::bad_alloc&) {
      plota_.Picture()->ForeColor(kBlack);  // as the next plot expects it
      throw;
    }
    plota_.Picture()->ForeColor(kBlack);
    plot_valid_ = true;
    replot_.Image(std::make_shared<Canvas>(plota_.Picture()->canvas()));
  }
  SetPointer(kDefaultPointer);
}

// Each statement stands for itself: one that fails is dropped, and the layout goes on.
void MapControl::Resize() {
  Attempt([&] { container().UseTwips(); });
  if (legend_ == Legend::Intervals) Attempt([&] { ShowLegend(); });
  if (legend_shown_) {
    if (TakesLeastSize({4500, 3180})) return;
    if (legend_ == Legend::Intervals) WidenPanel();
    PlacePanel();
    PlacePlot(std::min(root_.Box().width - frmove_.Box().width, root_.Box().height));
  } else {
    if (TakesLeastSize({750, 750})) return;
    PlacePlot(std::min(root_.Box().width, root_.Box().height));
  }
  if (!plot_valid_) {
    Attempt([&] { RedrawPlot(); });
  } else if (!replot_.Visible()) {
    ShowSnapshot();
  }
}

/// Long legend values widen the whole panel.
void MapControl::WidenPanel() {
  float width = kLeastLegendWidth;
  for (const Node* row : row_nodes_) width = std::max(width, row->Right());
  legende_->Width(width);
  frleg_->Width(legende_->Box().width + kLegendFrameMargin);
  frame1_.Width(frleg_->Box().width + kPanelMargin);
  frmove_.Width(frame1_.Box().width);
  command1_.Width(frleg_->Box().width);
  fnlabel_.Width(frleg_->Box().width);
}

void MapControl::PlacePanel() {
  TwipsBox place = frmove_.Box();
  place.left = root_.Box().width - place.width;
  frmove_.Move(place);
}

void MapControl::PlacePlot(double side) {
  TwipsBox frame = frplot_.Box();
  frame.width = static_cast<float>(kFrameAspect * side);
  frame.height = static_cast<float>(side);
  frplot_.Move(frame);
  TwipsBox plot = plota_.Box();
  plot.width = frame.width - 2 * plot.left;
  plot.height = frame.height - plot.top - plot.left;
  plota_.Move(plot);
  replot_.Move(plot);
}

void MapControl::ShowSnapshot() {
  plota_.Visible(false);
  replot_.Visible(true);
}

}  // namespace discoplan
