// SPDX-License-Identifier: MIT
#include "discoplan/controls/histo.h"

#include "discoplan/dialogs/map_dialogs.h"
#include "discoplan/print/print_wafer.h"
#include "discoplan/render/control_limits.h"
#include "discoplan/render/plots/histogram_plot.h"

namespace discoplan {
namespace {

constexpr std::int16_t kHourglass = 11;
constexpr std::int16_t kDefaultPointer = 0;
constexpr float kDefaultClasses = 10;
constexpr std::int16_t kGap = 4;  // pixels between axis and chart

// Twips.
constexpr float kMinimum = 2000;
constexpr float kTakenMinimum = 2100;
constexpr float kSideMargin = 120;
constexpr float kTopMargin = 240;
constexpr float kHeightMargin = 360;
// Pixels around the bars, for labels and ticks: above, and on the other three sides.
constexpr float kNarrowMargin = 20;
constexpr float kWideMargin = 40;

constexpr TwipsBox kCommand1{4680, 0, 1200, 240};

}  // namespace

Histo::Histo(Platform& platform, Container* container)
    : PlotControl(platform, container, kClass),
      frmhist_(root_.Add(NodeKind::Frame, "frmhist", {})),
      hist_pic_(AddPicture(frmhist_, "histPic", {})),
      plota_(AddPicture(hist_pic_, "PLOTA", {})),
      lbl_x_(AddLabel(frmhist_, "lblX(0)", {})),
      command1_(root_.Add(NodeKind::Button, "Command1", kCommand1)) {
  frmhist_.Bordered(true);
  frmhist_.Text(" Wafer ");
  frmhist_.Forwards(kForwardsAll);
  lbl_x_.Visible(false);
  command1_.Text("Plot- Options");
  command1_.on_click = [this] { ShowPlotOption(); };
}

void Histo::PlotType(PlotTyEnum type) {
  const bool known = type >= PlotTyEnum::vbbottom && type <= PlotTyEnum::vbRight;
  plot_type_ = known ? type : PlotTyEnum::vbbottom;
  Changed("PlotType");
}

void Histo::Resolution(float classes) {
  resolution_ = ToInt16(classes == 0 ? kDefaultClasses : classes);
  Changed("Resolution");
}

void Histo::SetChartDim(float topC, float heightC) {
  top_c_ = topC;
  height_c_ = heightC;
  Resize();
}

void Histo::Borderstyle(std::int16_t Bstyle) { frmhist_.Bordered(Bstyle != 0); }

void Histo::ShowControlLimit(float LCLs, float UCLs) {
  ThreadControlLimits() = {.shown = true, .lower = LCLs, .upper = UCLs};
}

void Histo::ResetControlLimit() { ThreadControlLimits().shown = false; }

void Histo::ApplyBackColor(Colour colour) {
  for (Node* node : {&root_, &frmhist_, &hist_pic_, &lbl_x_}) node->BackColor(colour);
}

void Histo::RedrawHistogram() {
  SetPointer(kHourglass);
  plota_.Picture()->Cls();
  hist_pic_.Picture()->Cls();
  const Screen& screen = platform_.screen();
  const TwipsBox& place = plota_.Box();
  wafer_.Statistic(static_cast<std::int16_t>(plot_type_), *plota_.Picture(), *hist_pic_.Picture(),
                   {.left = place.left / screen.twips_per_pixel_x,
                    .top = place.top / screen.twips_per_pixel_y,
                    .width = place.width / screen.twips_per_pixel_x - 1,
                    .height = place.height / screen.twips_per_pixel_y - 1,
                    .bins = static_cast<float>(resolution_),
                    .gap = kGap,
                    .plot_left = 0,
                    .plot_top = 0,
                    .mode = 0});
  plot_valid_ = true;
  SetPointer(kDefaultPointer);
}

void Histo::Resize() {
  if (TakesLeastSize({kMinimum, kMinimum}, {kTakenMinimum, kTakenMinimum})) return;
  const TwipsBox& control = root_.Box();
  const Screen& screen = platform_.screen();
  frmhist_.Move({0, 0, control.width, control.height});
  const TwipsBox axes{kSideMargin, kTopMargin, control.width - 2 * kSideMargin,
                      control.height - kHeightMargin};
  hist_pic_.Move(axes);
  const float margins_x = 2 * kWideMargin * screen.twips_per_pixel_x;
  const float margins_y = (kWideMargin + kNarrowMargin) * screen.twips_per_pixel_y;
  TwipsBox bars{kWideMargin * screen.twips_per_pixel_x, kNarrowMargin * screen.twips_per_pixel_y,
                axes.width - margins_x, axes.height - margins_y};
  if (top_c_ != 0) {
    bars.top = top_c_;
    bars.height = height_c_;
  }
  plota_.Move(bars);
  TwipsBox button = kCommand1;
  button.left = control.width - button.width - kSideMargin;
  command1_.Move(button);
}

HistogramPrint Histo::Printed() const {
  return {.plot_type = static_cast<std::int16_t>(plot_type_),
          .bins = static_cast<float>(resolution_),
          .caption = PlotCaption()};
}

void Histo::PrintOn(PrintWafer& print, PageArea& area) {
  print.Print_Histo(wafer_, area, Printed());
}

void Histo::PrintThinOn(PrintWafer& print, PageArea& area) {
  print.Print_Histo_THN(wafer_, area, Printed());
}

void Histo::ShowPlotOption() {
  const auto dialog = std::make_shared<frmPlotHist>(platform_);
  dialog->SetValues(wafer_, static_cast<float>(resolution_), plota_.Picture()->BackColor());
  ShowDialog(dialog, [this, dialog] {
    resolution_ = ToInt16(dialog->GetResolution());
    const Colour back_color = plota_.Picture()->BackColor();
    if (dialog->GetBackColor() != back_color) ApplyBackColor(dialog->GetBackColor());
    RedrawHistogram();
  });
}

}  // namespace discoplan
