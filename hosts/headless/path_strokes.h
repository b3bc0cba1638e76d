// SPDX-License-Identifier: MIT
#pragma once

/// What a pen covers along a path. Joins and caps are those of Anti-Grain Geometry; with the walk
/// along the path here, its headers are all that is needed of it, on any system.

#include "hosts/headless/pixel_path.h"

namespace discoplan {

struct LinePen {
  double width = 1;
  /// Heights between which its line is looked at.
  double top = 0;
  double bottom = 0;
};

/// Outlines of a line along each piece of the path: round joins, butt ends. To be filled by the
/// non-zero rule, which gives what it would of the whole line where that is looked at; what lies
/// elsewhere is left out.
PixelPath Outlined(const PixelPath& path, const LinePen& pen);

/// The path cut into dashes with gaps of the same length, each piece beginning with a dash.
PixelPath Dashed(const PixelPath& path, double length);

}  // namespace discoplan
