// SPDX-License-Identifier: MIT
#pragma once

/// Small pictures that dialogs and pages draw.

#include <vector>

#include "discoplan/core/wafer.h"
#include "discoplan/dialogs/fields.h"
#include "discoplan/render/surface.h"

namespace discoplan {

/// The wafer's outline from above, with its mark at an angle in degrees.
void ShowWaferPreview(const wafer& source, Surface& picture, float rotation);

/// The three ways to draw a surface, as a group.
std::vector<OptionGroup::Option> SurfaceStyles();
/// One of them: filled faces, white faces, lines.
void DrawSurfaceStyle(Surface& picture, int style);

/// Bars that stand on the value axis at that side, as `PlotTyEnum` numbers them.
void DrawHistogramSide(Surface& picture, int side);

/// A cross from corner to corner.
void DrawMarkerCross(Surface& picture, Colour colour);

}  // namespace discoplan
