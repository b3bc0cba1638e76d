// SPDX-License-Identifier: MIT
#pragma once

/// A smoothing spline near any number of sites: cubic B-splines on a square lattice of knots, by
/// least squares with a penalty on bending, of which a plane has none. With knots as close as the
/// sites it is, to all that is seen, the thin-plate spline with smoothing; its work grows with the
/// sites and the knots alone.
///
///     LatticeSpline spline(150, 5);  // mm
///     Knots sums = spline.None();
///     for (const Sample& sample : samples) {
///       const SplineTap tap = spline.TapOf(sample.x, sample.y);
///       spline.Add(tap);
///       spline.AddValue(tap, sample.value, sums);
///     }
///     Knots found = spline.None();
///     spline.Improve(sums, {.bending = 20, .enough = 1e-4}, found);
///     float value = spline.At(found, spline.TapOf(10, -20));
///
/// Source: P. H. C. Eilers, B. D. Marx, "Flexible smoothing with B-splines and penalties" (1996).

#include <cstdint>
#include <map>
#include <vector>

#include "discoplan/figures/knot_solver.h"
#include "discoplan/figures/thin_plate.h"
#include "discoplan/figures/value_field.h"

namespace discoplan::figures {

/// The sixteen knots that tell the value at a place, and where it is among the inner four: in parts
/// of the way to the right and down.
struct SplineTap {
  std::uint32_t first;
  float across;
  float down;
};

class DISCOPLAN_EXPORT LatticeSpline {
 public:
  /// Knots `pitch` apart over the square from -half_side to half_side, in mm.
  LatticeSpline(double half_side, double pitch);
  /// Near the same sites, with nothing kept.
  LatticeSpline Copy() const;

  SplineTap TapOf(double x, double y) const;
  /// Takes in a site there.
  void Add(const SplineTap& place);
  /// Of a site that was taken in.
  void AddValue(const SplineTap& place, float value, Knots& sums) const;
  Knots None() const { return Knots(grid_.Size()); }

  struct Aim {
    double bending;     ///< Its weight, in mm^2.
    double enough;      ///< Sum of the squares of what may be wrong at the sites.
    bool keeps = true;  ///< What follows from the places and the weight, for more values there.
  };
  /// Coefficients at the knots, from the sums of the sites' values, and better ones than `found`
  /// has. Gives the number of steps.
  int Improve(const Knots& sums, Aim aim, Knots& found);

  Lattice KnotLattice() const;
  float At(const Knots& found, const SplineTap& place) const;
  /// Row by row without what is between the rows.
  std::vector<float> Coefficients(const Knots& found) const;

 private:
  LatticeSpline(KnotGrid grid, double pitch) : grid_(grid), pitch_(pitch) {}

  KnotGrid grid_;
  double pitch_;
  std::vector<KnotMatrix> sites_;  // sums of products of splines; coarser ones once they are asked
  std::map<double, KnotSolver> of_bending_;
};

}  // namespace discoplan::figures
