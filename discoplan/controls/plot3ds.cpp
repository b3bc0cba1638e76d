// SPDX-License-Identifier: MIT
#include "discoplan/controls/plot3ds.h"

namespace discoplan {

Plot3DS::Plot3DS(Platform& platform, Container* container)
    : SigmaControl(platform, container, "Plot3DS") {}

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

const MemberTable& Plot3DS::Members() const {
  static const MemberTable table = MembersWith(
      {.properties = {SurfaceMembers(), ViewMembers(), SigmaMembers()}, .colours = kSlots});
  return table;
}

}  // namespace discoplan
