// SPDX-License-Identifier: MIT
#include "discoplan/controls/plot2dn.h"

namespace discoplan {

Plot2DN::Plot2DN(Platform& platform, Container* container)
    : MapControl(platform, container, kClass, {.ignores_same_limits = true}, Legend::Intervals) {
  root_.Forwards(kForwardsDblClick | kForwardsMouse);
}

void Plot2DN::InitOwnProperties() {
  HideLegend(false);
  PlotCaption("Wafer");
}

void Plot2DN::PrintOn(PrintWafer& print, PageArea& area) {
  print.Print_2DNPlot(wafer_, area, PlotCaption());
}

const StoredProperties& Plot2DN::Stored() const {
  static const StoredProperties stored =
      StoredWith({.prefix = "2DN", .last_prefix = "2DN", .own = WithIntervals("2DN", {})});
  return stored;
}

}  // namespace discoplan
