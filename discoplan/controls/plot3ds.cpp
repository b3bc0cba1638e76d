// SPDX-License-Identifier: MIT
#include "discoplan/controls/plot3ds.h"

#include "discoplan/dialogs/view_dialogs.h"

namespace discoplan {

Plot3DS::Plot3DS(Platform& platform, Container* container)
    : SigmaControl(platform, container, kClass) {}

void Plot3DS::InitOwnProperties() {
  SigmaRange(0.5F);
  XResolution(5);
  YResolution(5);
  GridRotation(40);
  WaferRotation(40);
  GridInclination(35);
  PlotScale(40);
  HideLegend(false);
  PlotCaption("Wafer");
}

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
  dialog->SetValues(wafer_, SurfaceSettings(), SigmaRange(), SurfaceBackColor());
  RunDialog(dialog, [this](const frmPlotOpt3ds& confirmed) {
    TakeSurface(confirmed);
    sigma_range_ = confirmed.GetSigRange();
  });
}

const StoredProperties& Plot3DS::Stored() const {
  static const StoredProperties stored = StoredWith({
      .prefix = "3DS",
      .last_prefix = "3DS",
      .own = WithRangeColours("3DS", {StoredInt16("StdResx3DS", 5, "XResolution"),
                                      StoredInt16("StdResy3DS", 5, "YResolution"),
                                      StoredInt16("StdAlp3DS", 40, "GridRotation"),
                                      StoredInt16("StdPhi3DS", 40, "WaferRotation"),
                                      StoredInt16("StdThet3DS", 35, "GridInclination"),
                                      StoredDouble("StdSigRange3DS", 0.5, "SigmaRange"),
                                      StoredInt16("StdD3Scale3DS", 40, "PlotScale")}),
      .style_read_as = StoredKind::Int16,
  });
  return stored;
}

}  // namespace discoplan
