// SPDX-License-Identifier: MIT
#include "discoplan/controls/plot2dn.h"

namespace discoplan {

Plot2DN::Plot2DN(Platform& platform, Container* container)
    : MapControl(platform, container, {.class_name = "Plot2DN", .ignores_same_limits = true},
                 Legend::Intervals) {
  root_.forwards = kForwardsDblClick | kForwardsMouse;
}

void Plot2DN::InitOwnProperties() {
  HideLegend(false);
  PlotCaption("Wafer");
}

const MemberTable& Plot2DN::Members() const {
  static const MemberTable table = MembersWith({.properties = {}, .colours = kIntervalSlots});
  return table;
}

}  // namespace discoplan
