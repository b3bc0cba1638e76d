// SPDX-License-Identifier: MIT
#pragma once

/// The cells of a map as one shape for each colour.
///
/// Viewers show hair lines of background between shapes that abut. So each shape reaches under all
/// that are painted after it, and what shows between two of them is the colour of one of them.

#include <span>
#include <vector>

#include "discoplan/render/surface.h"
#include "hosts/qt/export.h"

namespace discoplan {

/// A rectangle without outline; right and bottom edge don't belong to it.
struct ColourCell {
  PixelPoint corner;    ///< Upper left.
  PixelPoint opposite;  ///< Lower right.
  Colour colour = 0;
};

/// To be filled by the even-odd rule.
struct ColourRegion {
  Colour colour = 0;
  std::vector<std::vector<PixelPoint>> outlines;
};

/// Regions that show, painted in their order, what the cells show, painted in theirs.
DISCOPLAN_QT_EXPORT std::vector<ColourRegion> MergeCells(std::span<const ColourCell> cells);

}  // namespace discoplan
