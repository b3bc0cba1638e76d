// SPDX-License-Identifier: MIT
#include "discoplan/controls/plot2d.h"

#include "discoplan/dialogs/map_dialogs.h"
#include "discoplan/print/print_wafer.h"
#include "discoplan/render/plot_area.h"

namespace discoplan {

Plot2D::Plot2D(Platform& platform, Container* container)
    : LatticeControl(platform, container, kClass, Legend::Intervals) {}

void Plot2D::PrintOn(PrintWafer& print, PageArea& area) {
  print.Print_2DPlot(
      wafer_, area,
      {.resolution = resolution_, .caption = PlotCaption(), .show_sites = show_sites_});
}

void Plot2D::ShowPlotOption() {
  const auto dialog = std::make_shared<frmPlotOpt2d>(platform_);
  dialog->SetValues(wafer_, resolution_, show_sites_, SurfaceBackColor());
  RunDialog(dialog, [this](const frmPlotOpt2d& confirmed) {
    resolution_ = confirmed.GetXRes();
    show_sites_ = confirmed.GetMarkeSites() != 0;
  });
}

void Plot2D::DrawPlot(Surface& surface) {
  constexpr std::int16_t kIntervalColours = 5;
  wafer_.D2Plot(surface, resolution_, kIntervalColours, 0, show_sites_, {});
}

}  // namespace discoplan
