// SPDX-License-Identifier: MIT
#pragma once

/// The walk over a lattice of cells that maps and surfaces are painted by.

#include <algorithm>
#include <array>
#include <cstddef>
#include <vector>

namespace discoplan {

/// A cell between the lattice lines i and i + 1, j and j + 1.
struct LatticeCell {
  struct Corner {
    int i;
    int j;
    std::size_t height;  // its place in `heights`
  };

  std::array<float, 4> heights;  // at (i, j), (i + 1, j), (i, j + 1), (i + 1, j + 1)
  int i;
  int j;

  /// The corners in the order of the outline.
  std::array<Corner, 4> Outline() const {
    return {{{i, j, 0}, {i + 1, j, 1}, {i + 1, j + 1, 3}, {i, j + 1, 2}}};
  }
  /// Corners without data have the height zero.
  std::ptrdiff_t CornersOff() const { return std::ranges::count(heights, 0.0F); }
  double MeanHeight() const {
    return (static_cast<double>(heights[0]) + heights[1] + heights[2] + heights[3]) / 4;
  }
};

/// Calls `paint` for each cell, row by row, and `end_row` after each row. `evaluate` is asked to
/// set the height at each corner (i, j), once.
template <class Evaluate, class Paint, class EndRow>
void WalkCells(int columns, int rows, Evaluate&& evaluate, Paint&& paint, EndRow&& end_row) {
  std::vector<float> line(static_cast<std::size_t>(columns) + 1);  // heights along the upper line
  for (int i = 0; i <= columns; ++i) evaluate(line[static_cast<std::size_t>(i)], i, 0);
  for (int j = 0; j < rows; ++j) {
    float next = 0;
    evaluate(next, 0, j + 1);
    for (int i = 0; i < columns; ++i) {
      const auto at = static_cast<std::size_t>(i);
      const float below = next;
      evaluate(next, i + 1, j + 1);
      const LatticeCell cell{.heights = {line[at], line[at + 1], below, next}, .i = i, .j = j};
      line[at] = below;
      paint(cell);
    }
    line.back() = next;
    end_row();
  }
}

}  // namespace discoplan
