// SPDX-License-Identifier: MIT
#include "discoplan/controls/plot2ds.h"

#include "discoplan/dialogs/map_dialogs.h"
#include "discoplan/print/print_wafer.h"
#include "discoplan/render/plot_area.h"

namespace discoplan {

Plot2DS::Plot2DS(Platform& platform, Container* container)
    : SigmaControl(platform, container, kClass) {}

void Plot2DS::PrintOn(PrintWafer& print, PageArea& area) {
  print.Print_2DSigmaPlot(wafer_, area,
                          {.resolution = resolution_,
                           .sigma_range = SigmaRange(),
                           .caption = PlotCaption(),
                           .show_sites = show_sites_});
}

float Plot2DS::PrintPlot(float& left, float& top, float& width, float& height) {
  return static_cast<float>(PrintPlotAs(false, left, top, width, height));
}

void Plot2DS::ShowPlotOption() {
  const auto dialog = std::make_shared<frmPlotOpt2ds>(platform_);
  dialog->SetValues(wafer_, resolution_, SigmaRange(), show_sites_, SurfaceBackColor());
  RunDialog(dialog, [this](const frmPlotOpt2ds& confirmed) {
    resolution_ = confirmed.GetXRes();
    sigma_range_ = confirmed.GetSigRange();
    show_sites_ = confirmed.GetMarkeSites() != 0;
  });
}

void Plot2DS::DrawPlot(Surface& surface) {
  constexpr std::int16_t kSigmaColours = 4;
  wafer_.D2Plot(surface, resolution_, kSigmaColours, SigmaRange(), show_sites_, {});
}

}  // namespace discoplan
