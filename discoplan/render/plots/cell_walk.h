// SPDX-License-Identifier: MIT
#pragma once

/// The walk over a lattice of cells that maps and surfaces are painted by.

#include <algorithm>
#include <array>
#include <cstddef>
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

/// Calls `paint` for each cell, row by row, and refreshes the picture after each row. The height at
/// a corner (i, j) is `line(j)(i)`. Where that fails it is zero along the top line and at the
/// beginning of any other, and that of the corner before elsewhere.
template <class Line, class Paint>
void WalkCells(PlotFrame& frame, int columns, int rows, Line&& line, Paint&& paint) {
  const auto index = [](int i) { return static_cast<std::size_t>(i); };
  std::vector<float> upper(index(columns) + 1);
  std::vector<float> lower(index(columns) + 1);
  const auto top = line(0);
  for (int i = 0; i <= columns; ++i) frame([&] { upper[index(i)] = top(i); });
  for (int j = 0; j < rows; ++j) {
    const auto height = line(j + 1);
    // The line at once, unless a step fails: those are dropped in their turn.
    const bool complete = Attempt([&] {
      for (int i = 0; i <= columns; ++i) lower[index(i)] = height(i);
    });
    const auto step = [&](int i, float before) {
      lower[index(i)] = before;
      frame([&] { lower[index(i)] = height(i); });
    };
    if (!complete) step(0, 0);
    for (int i = 0; i < columns; ++i) {
      const std::size_t at = index(i);
      if (!complete) step(i + 1, lower[at]);
      paint({.heights = {upper[at], upper[at + 1], lower[at], lower[at + 1]}, .i = i, .j = j});
    }
    upper.swap(lower);
    frame.Refresh();
  }
}

}  // namespace discoplan
