// SPDX-License-Identifier: MIT
#pragma once

#include "discoplan/export.h"
#include "discoplan/render/plot_area.h"

namespace discoplan {

class Surface;
struct WaferData;

/// Each value written at its site, in the colour of its class, within the outline of the test area.
/// A value at which the scale begins is written in white. A step that fails is dropped. The result
/// is the value at which the scale of heights began.
DISCOPLAN_EXPORT float DrawValues(const WaferData& data, Surface& surface, const PlotArea& area);

}  // namespace discoplan
