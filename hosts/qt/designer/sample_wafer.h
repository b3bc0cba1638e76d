// SPDX-License-Identifier: MIT
#pragma once

#include "hosts/qt/plot_widget.h"

namespace discoplan::qt {

/// Gives a plot a made-up wafer of 49 sites on rings, bowl-shaped with a tilt, and draws it: so
/// that a designer sees what the settings do. Icons are drawn of it too.
void PlotSample(PlotWidget& plot);

}  // namespace discoplan::qt
