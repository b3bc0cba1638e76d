// SPDX-License-Identifier: MIT
#include "discoplan/controls/plot3ds.h"

#include "discoplan/dialogs/view_dialogs.h"
#include "discoplan/print/print_wafer.h"
#include "discoplan/print/surface_print.h"
#include "discoplan/render/plots/surface_plot.h"

namespace discoplan {

Plot3DS::Plot3DS(Platform& platform, Container* container)
    : SigmaControl(platform, container, kClass) {}

void Plot3DS::DrawPlot(Surface& surface) {
  constexpr std::int16_t kSigmaColours = 4;
  wafer_.D3Plot(surface, SurfaceSettings(), kSigmaColours, SigmaRange(), false, {});
}

void Plot3DS::PrintOn(PrintWafer& print, PageArea& area) {
  print.Print_3DSigmaPlot(
      wafer_, area,
      {.view = SurfaceSettings(), .sigma_range = SigmaRange(), .caption = PlotCaption()});
}

void Plot3DS::ShowPlotOption() {
  const auto dialog = std::make_shared<frmPlotOpt3ds>(platform_);
  dialog->SetValues(wafer_, DialogValues(), SigmaRange(), SurfaceBackColor());
  RunDialog(dialog, [this](const frmPlotOpt3ds& confirmed) {
    TakeSurface(confirmed);
    sigma_range_ = confirmed.GetSigRange();
  });
}

}  // namespace discoplan
