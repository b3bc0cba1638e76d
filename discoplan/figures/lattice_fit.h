// SPDX-License-Identifier: MIT
#pragma once

/// The spline on a lattice of knots that is near many sites, with as much smoothing as foretells
/// best the sites that are left out.

#include <optional>
#include <span>
#include <vector>

#include "discoplan/figures/lattice_spline.h"

namespace discoplan::figures {

/// Usual distance of so many neighbours on a wafer, in mm.
double SpacingOf(std::size_t count, double radius);

/// All that follows from the places of the sites, for values there.
class LatticeFit {
 public:
  /// Of more places it serves only once, for the memory.
  static constexpr std::size_t kMostKept = 8000;

  /// Doesn't read the values of `places`.
  LatticeFit(const std::vector<Sample>& places, double radius);

  struct Result {
    Lattice knots;
    std::vector<float> coefficients;
    double error;  ///< Root mean square of those of sites that were left out.
  };
  /// For values that vary by about 1, in the places' order.
  Result Of(std::span<const float> values);

 private:
  /// A spline near all sites but each tenth from `turn` on.
  struct Trial {
    LatticeSpline spline;
    std::size_t turn;
    Knots sums;
    Knots found;
  };
  struct Choice {
    double bending;
    double error;
    Knots found;  // by the first trial
  };
  /// The weight of bending by which sites that were left out are foretold best.
  Choice Choose(std::span<const float> values);
  double SquaredErrors(Trial& trial, std::span<const float> values, double bending);
  LatticeSpline::Aim AimFor(double bending) const;

  double spacing_;
  std::vector<SplineTap> taps_;
  std::vector<Trial> trials_;
  std::optional<LatticeSpline> spline_;  // near all sites
  bool again_ = false;                   // other values came before
};

}  // namespace discoplan::figures
