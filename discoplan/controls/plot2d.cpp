// SPDX-License-Identifier: MIT
#include "discoplan/controls/plot2d.h"

#include "discoplan/dialogs/map_dialogs.h"

namespace discoplan {

Plot2D::Plot2D(Platform& platform, Container* container)
    : LatticeControl(platform, container, kClass, {.ignores_same_limits = true},
                     Legend::Intervals) {}

void Plot2D::InitOwnProperties() {
  Resolution(5);
  ShowSites(Sites::HideSite);
  HideLegend(false);
  PlotCaption("Wafer");
}

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

const StoredProperties& Plot2D::Stored() const {
  static const StoredProperties stored = StoredWith({
      .prefix = "2D",
      .last_prefix = "2D",
      .own = WithIntervals("2D", {StoredInt16("StdResx2D", 5, "Resolution"),
                                  StoredInt32("StdMark2D", 0, "ShowSites")}),
  });
  return stored;
}

}  // namespace discoplan
