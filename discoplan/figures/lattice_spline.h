// SPDX-License-Identifier: MIT
#pragma once

/// A smoothing spline near any number of sites: cubic B-splines on a square lattice of knots, by
/// least squares with a penalty on bending, of which a plane has none. With knots as close as the
/// sites it is, to all that is seen, the thin-plate spline with smoothing; its work grows with the
/// sites and the knots alone.
///
/// Source: P. H. C. Eilers, B. D. Marx, "Flexible smoothing with B-splines and penalties" (1996).

#include <span>
#include <vector>

#include "discoplan/figures/refine.h"
#include "discoplan/figures/thin_plate.h"

namespace discoplan::figures {

class DISCOPLAN_EXPORT LatticeSpline {
 public:
  /// Knots about `pitch` apart over the rectangle from -x to x and -y to y, in mm.
  LatticeSpline(Point half_sides, double pitch);

  void Add(std::span<const Sample> samples);
  /// Coefficients at the knots, for a weight of bending in mm^2, to about `precision` of what the
  /// values vary; from those of another weight if there are some.
  std::vector<float> Solve(double bending, double precision, std::vector<float> from = {}) const;

  const Lattice& Knots() const { return knots_; }
  double At(std::span<const float> coefficients, double x, double y) const;

 private:
  /// A row of numbers for each knot, with a rim of zeros around them.
  using Cells = std::vector<float>;

  std::size_t Cell(int row, int column) const;
  Cells MatrixOf(double bending) const;
  void Multiply(const Cells& matrix, const Cells& x, Cells& product) const;
  /// Adds what a spline on the coarser lattice has at the knots.
  void AddFiner(const Cells& coarse, Cells& fine) const;
  /// The other way round, the sums of what the coarser knots would give.
  void SumCoarser(const Cells& fine, Cells& coarse) const;
  /// Inverse squares of the unknowns of this lattice, the coarser one, and so on.
  using Scaling = std::vector<Cells>;
  Scaling ScalingOf(const Cells& matrix, double bending) const;
  void Scale(std::span<const Cells> scaling, const Cells& rest, Cells& scaled) const;
  void Improve(double bending, double precision, Cells& x) const;

  Lattice knots_;
  std::size_t stride_ = 0;
  Cells products_;  // sums of products of a spline and those at or after it, `kPartners` for each
  Cells right_;
  std::vector<LatticeSpline> coarser_;  // none or one: where the search begins
  std::vector<Tap> across_;             // from the coarser lattice to this one's columns
  std::vector<Tap> down_;               // and rows
};

}  // namespace discoplan::figures
