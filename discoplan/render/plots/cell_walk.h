// SPDX-License-Identifier: MIT
#pragma once

/// The walk over a lattice of cells that maps and surfaces are painted by.

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <limits>
#include <span>
#include <vector>

#include "discoplan/render/plots/plot_frame.h"

namespace discoplan {

/// A cell between the lattice lines i and i + 1, j and j + 1.
struct LatticeCell {
  /// From (i, j).
  struct Corner {
    int across;
    int down;
    std::size_t height;  // its place in `heights`
  };

  /// The corners in the order of the outline.
  static constexpr std::array<Corner, 4> kOutline = {{{0, 0, 0}, {1, 0, 1}, {1, 1, 3}, {0, 1, 2}}};

  std::array<float, 4> heights;  // at (i, j), (i + 1, j), (i, j + 1), (i + 1, j + 1)
  int i;
  int j;

  /// Corners without data have the height zero.
  bool IsWhole() const {
    return heights[0] != 0 && heights[1] != 0 && heights[2] != 0 && heights[3] != 0;
  }
  std::ptrdiff_t CornersOff() const {
    return IsWhole() ? 0 : std::count(heights.begin(), heights.end(), 0.0F);
  }
  double MeanHeight() const {
    return (static_cast<double>(heights[0]) + heights[1] + heights[2] + heights[3]) / 4;
  }
};

/// Stands in a line for a height that failed.
inline constexpr float kFailedHeight = std::numeric_limits<float>::quiet_NaN();

/// A height to be kept in a line: what doesn't fit has failed.
inline float HeightOrFailed(double height) {
  float kept = kFailedHeight;
  return Narrow(height, kept) ? kept : kFailedHeight;
}

/// Calls `paint` for each cell, row by row, and refreshes the picture after each row. `line(j, to)`
/// fills in the heights at the corners (i, j). One that has failed is dropped in its turn: it is
/// zero along the top line and at the beginning of any other, and that of the corner before
/// elsewhere.
template <class Line, class Paint>
void WalkCells(PlotFrame& frame, int columns, int rows, Line&& line, Paint&& paint) {
  const auto corners = static_cast<std::size_t>(columns) + 1;
  std::vector<float> upper(corners);
  std::vector<float> lower(corners);
  const auto take = [&](float& height, float before) {
    if (!std::isnan(height)) return;
    height = before;
    frame.Drop();
  };
  line(0, std::span(upper));
  for (float& height : upper) take(height, 0);
  for (int j = 0; j < rows; ++j) {
    line(j + 1, std::span(lower));
    take(lower[0], 0);
    for (int i = 0; i < columns; ++i) {
      const auto at = static_cast<std::size_t>(i);
      take(lower[at + 1], lower[at]);
      paint({.heights = {upper[at], upper[at + 1], lower[at], lower[at + 1]}, .i = i, .j = j});
    }
    upper.swap(lower);
    frame.Refresh();
  }
}

}  // namespace discoplan
