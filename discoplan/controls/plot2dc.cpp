// SPDX-License-Identifier: MIT
#include "discoplan/controls/plot2dc.h"

#include <algorithm>

#include "discoplan/dialogs/map_dialogs.h"
#include "discoplan/print/contour_print.h"
#include "discoplan/print/print_wafer.h"
#include "discoplan/render/number_text.h"
#include "discoplan/render/plots/contour_plot.h"

namespace discoplan {
namespace {

constexpr float kDefaultInterval = 1;
constexpr double kMargin = 6;  // pixels that the outline leaves free, as on the other maps

}  // namespace

Plot2DC::Plot2DC(Platform& platform, Container* container)
    : MapControl(platform, container, kClass, Legend::Interval) {}

void Plot2DC::Interval(float percent) {
  interval_ = percent <= 0 ? kDefaultInterval : percent;
  Changed("Interval");
}

void Plot2DC::markSites(ExconEnum marked) {
  mark_sites_ = marked;
  Changed("markSites");
}

void Plot2DC::Resolution(ResoEnum resolution) {
  resolution_ = resolution;
  Changed("Resolution");
}

void Plot2DC::PlotColored(DrawColEnum coloured) {
  plot_colored_ =
      coloured == DrawColEnum::BWhitePlot ? DrawColEnum::BWhitePlot : DrawColEnum::ColorPlot;
  Changed("PlotColored");
}

void Plot2DC::FillDefaults() {
  if (interval_ == 0) Interval(kDefaultInterval);
}

void Plot2DC::ShowLegend() { lbldist_->caption(PlainNumber(interval_)); }

ContourSettings Plot2DC::Lines() const {
  return {.interval = interval_,
          .mark_sites = static_cast<std::int16_t>(mark_sites_),
          .resolution = static_cast<std::int16_t>(resolution_),
          .plot_colored = static_cast<std::int16_t>(plot_colored_)};
}

void Plot2DC::DrawPlot(Surface& surface) {
  const double side = std::min(surface.ScaleWidth(), surface.ScaleHeight());
  ContourSettings settings = Lines();
  settings.radius = ToInt16((side - kMargin) / 2);
  wafer_.D2Contour(surface, settings, {},
                   [this](const Message& message) { platform_.Show(message); });
}

ContourPrint Plot2DC::Printed() const {
  return {.settings = Lines(), .caption = PlotCaption(), .show = [this](const Message& message) {
            platform_.Show(message);
          }};
}

void Plot2DC::PrintOn(PrintWafer& print, PageArea& area) {
  print.Print_Contour(wafer_, area, Printed());
}

void Plot2DC::PrintThinOn(PrintWafer& print, PageArea& area) {
  print.Print_Contour_THN(wafer_, area, Printed());
}

void Plot2DC::ShowPlotOption() {
  const auto dialog = std::make_shared<frmPlotOpt2DC>(platform_);
  dialog->SetValues(wafer_, Lines(), SurfaceBackColor());
  RunDialog(dialog, [this](const frmPlotOpt2DC& confirmed) {
    interval_ = confirmed.GetDist();
    mark_sites_ = static_cast<ExconEnum>(confirmed.GetMarkeSites());
    resolution_ = static_cast<ResoEnum>(confirmed.GetReso());
    plot_colored_ = static_cast<DrawColEnum>(confirmed.GetShowColor());
  });
}

}  // namespace discoplan
