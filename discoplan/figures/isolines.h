// SPDX-License-Identifier: MIT
#pragma once

/// Lines of equal value over a lattice.

#include <array>
#include <cstdint>
#include <functional>
#include <span>
#include <vector>

#include "discoplan/export.h"
#include "discoplan/figures/shapes.h"
#include "discoplan/figures/value_field.h"

namespace discoplan::figures {

/// By marching squares; the middle of a saddle's cell tells which corners belong together. Reads
/// the values as long as it lives.
class DISCOPLAN_EXPORT IsolineFinder {
 public:
  IsolineFinder(const Lattice& lattice, std::span<const float> values);

  /// Joined pieces in the lattice's millimetres, ends on its border or closed.
  std::vector<std::vector<Point>> Lines(double level);

 private:
  using Number = std::uint32_t;
  /// Of an edge of the lattice, of which the one to the right of point i is 2 i and the one below
  /// it 2 i + 1; with the two crossings at most that the line goes on to.
  struct Crossing {
    Number edge;
    std::array<Number, 2> next;
  };

  void Cross(std::size_t at, std::size_t column, unsigned mask);
  void Link(Number a, Number b);
  void Unlink(Number from, Number to);
  Point PointOf(Number edge) const;
  std::vector<Point> Follow(Number crossing);

  Lattice lattice_;
  std::span<const float> values_;
  double level_ = 0;
  std::vector<Crossing> crossings_;
  // Of those, what the next cells share: the last ones below the cells of a row, and the one to the
  // right of the last cell.
  std::vector<Number> below_;
  Number right_ = 0;
};

/// The line without points that aren't needed: each lies within `tolerance` of what is left, whose
/// points are some of them.
///
/// Source: Z. Zhao, A. Saalfeld, "Linear-time sleeve-fitting polyline simplification" (1997).
DISCOPLAN_EXPORT std::vector<Point> Thinned(const std::vector<Point>& line, double tolerance);

/// The pieces of a line that lie inside, their ends on the border.
DISCOPLAN_EXPORT std::vector<std::vector<Point>> Clipped(
    const std::vector<Point>& line, const std::function<bool(Point)>& is_inside);

}  // namespace discoplan::figures
