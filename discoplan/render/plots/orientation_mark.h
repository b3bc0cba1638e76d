// SPDX-License-Identifier: MIT
#pragma once

/// The small outline of a wafer that shows where its notch or flat is.

#include "discoplan/base/points.h"
#include "discoplan/export.h"

namespace discoplan {

class Label;
class Surface;

/// How the outline is seen. Angles in degrees.
struct MarkView {
  float rotation = 0;      ///< 0 is at the bottom; grows to the right.
  float inclination = 90;  ///< 90 is seen from straight above.
};

/// In the middle of the surface; the result is the centre there. The label, named after a notch,
/// may be missing.
DISCOPLAN_EXPORT SurfacePoint DrawOrientationMark(bool notch, Label* label, Surface& surface,
                                                  const MarkView& view);

/// An open outline around that centre, filled with the surface's current fill: it leaves no trace
/// on a coloured background.
DISCOPLAN_EXPORT void DrawOpenOrientationMark(bool notch, Label* label, Surface& surface,
                                              const SurfacePoint& centre, float radius,
                                              const MarkView& view);

}  // namespace discoplan
