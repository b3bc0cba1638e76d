// SPDX-License-Identifier: MIT
#pragma once

/// The cells of a map as one shape for each colour.
///
/// Viewers show hair lines of background between shapes that abut. So each shape reaches under all
/// that are painted after it, and what shows between two of them is the colour of one of them.

#include <optional>
#include <span>
#include <vector>

#include "discoplan/export.h"
#include "discoplan/render/surface.h"

namespace discoplan {

/// A rectangle without outline; right and bottom edge don't belong to it.
struct ColourCell {
  PixelPoint corner;    ///< Upper left.
  PixelPoint opposite;  ///< Lower right.
  Colour colour = 0;

  bool IsEmpty() const { return corner.x >= opposite.x || corner.y >= opposite.y; }
};

/// To be filled by the even-odd rule.
struct ColourRegion {
  Colour colour = 0;
  std::vector<std::vector<PixelPoint>> outlines;
};

/// The cell that a surface in that state draws as a polygon; nothing for what is no upright
/// rectangle, or has an outline. One without extent shows nothing, and is a cell all the same.
DISCOPLAN_EXPORT std::optional<ColourCell> CellOf(std::span<const PixelPoint> corners,
                                                  const Surface& surface);

/// Regions that show, painted in their order, what the cells show, painted in theirs.
DISCOPLAN_EXPORT std::vector<ColourRegion> MergeCells(std::span<const ColourCell> cells);

}  // namespace discoplan
