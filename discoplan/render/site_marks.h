// SPDX-License-Identifier: MIT
#pragma once

#include "discoplan/render/plot_frame.h"

namespace discoplan {

/// Marks every site with a minus, or with a plus where its value is above the mean, black on a
/// white ground. `scale` is in pixels per mm, the wafer's centre in the middle of the frame.
void DrawSiteMarks(const wafer& source, Surface& surface, PlotFrame& frame, double scale);

}  // namespace discoplan
