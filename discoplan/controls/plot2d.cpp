// SPDX-License-Identifier: MIT
#include "discoplan/controls/plot2d.h"

namespace discoplan {

Plot2D::Plot2D(Platform& platform, Container* container)
    : LatticeControl(platform, container, {.class_name = "Plot2D", .ignores_same_limits = true},
                     Legend::Intervals) {}

void Plot2D::InitOwnProperties() {
  Resolution(5);
  ShowSites(Sites::HideSite);
  HideLegend(false);
  PlotCaption("Wafer");
}

const MemberTable& Plot2D::Members() const {
  static const MemberTable table =
      MembersWith({.properties = {LatticeMembers()}, .colours = kIntervalSlots});
  return table;
}

void Plot2D::DrawPlot(Surface& surface) {
  constexpr std::int16_t kIntervalColours = 5;
  wafer_.D2Plot(surface, resolution_, kIntervalColours, 0, show_sites_, {});
}

}  // namespace discoplan
