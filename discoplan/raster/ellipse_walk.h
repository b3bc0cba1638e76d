// SPDX-License-Identifier: MIT
#pragma once

/// The integer midpoint walk round an ellipse's outline, row by row from any row on.
///
/// The walk follows one quadrant from the equator to the pole. With F(x, y) = b^2 x^2 + a^2 y^2 -
/// a^2 b^2 in half pixels from the centre, it steps from (x, y) inward to x - 2 where
/// F(x, y + 2) + F(x - 2, y + 2) >= 0, and toward the pole to y + 2 where
/// F(x - 2, y + 2) + F(x - 2, y) <= 0 (A. Zingl, "A Rasterizing Algorithm for Drawing Curves",
/// 2012). Both conditions are solved for x, so that a row costs the same however long it is.

#include <cstdint>

#include "discoplan/raster/integer_math.h"

namespace discoplan {

/// A row's outline pixels in one quadrant: x from `inner` to `outer`, in half pixels.
struct EllipseRun {
  std::int64_t y;
  std::int64_t outer;
  std::int64_t inner;
  std::int64_t previous_inner;  ///< In the row nearer the equator, if any.
  std::int64_t next_outer;      ///< In the row nearer the pole, if any.
};

class EllipseWalk {
 public:
  /// Diameters `a` across and `b` down, in pixels, less one (at most 2^32 - 1); `first` is even or
  /// odd as `b` is, and at most `b`.
  EllipseWalk(std::int64_t a, std::int64_t b, std::int64_t first);

  const EllipseRun& Run() const { return run_; }
  void Advance();

 private:
  /// The farthest x whose nearest pixel in row `y` is the outline's, and in its column.
  std::int64_t NearestInRow(std::int64_t y) const;
  std::int64_t NearestInColumns(std::int64_t y) const;
  void EnterRow(std::int64_t y, std::int64_t outer);

  std::int64_t a_;
  std::int64_t b_;
  EllipseRun run_;
};

}  // namespace discoplan
