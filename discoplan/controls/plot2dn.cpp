// SPDX-License-Identifier: MIT
#include "discoplan/controls/plot2dn.h"

#include "discoplan/print/print_wafer.h"

namespace discoplan {

Plot2DN::Plot2DN(Platform& platform, Container* container)
    : MapControl(platform, container, kClass, Legend::Intervals) {
  root_.Forwards(kForwardsDblClick | kForwardsMouse);
}

void Plot2DN::PrintOn(PrintWafer& print, PageArea& area) {
  print.Print_2DNPlot(wafer_, area, PlotCaption());
}

}  // namespace discoplan
