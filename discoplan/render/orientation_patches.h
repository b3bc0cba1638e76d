// SPDX-License-Identifier: MIT
#pragma once

#include "discoplan/export.h"
#include "discoplan/render/surface.h"

namespace discoplan {

/// A small tilted board of ten by ten fields that shows how a grid is turned: the field in the
/// last row and column is red. Angles in degrees.
DISCOPLAN_EXPORT void DrawOrientationPatches(Surface& surface, float rotation, float inclination);

}  // namespace discoplan
