// SPDX-License-Identifier: MIT
#pragma once

/// Surfaces fitted to a wafer's values by least squares, and what they leave.
///
///     const ZernikeFit fit = FitZernike(sites, 4);
///     if (!fit.IsUnique()) Warn("too few sites, or too regular ones, for that order");
///     const std::vector<Site> rest = ResidualsOf(sites, fit);

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

#include "discoplan/analysis/decimal.h"
#include "discoplan/analysis/least_squares.h"
#include "discoplan/core/wafer.h"
#include "discoplan/export.h"

namespace discoplan::analysis {

/// z = offset + slope_x x + slope_y y. Slopes are in the values' unit for each mm.
struct DISCOPLAN_EXPORT PlaneFit {
  static constexpr std::size_t kTerms = 3;

  double offset = 0;
  double slope_x = 0;
  double slope_y = 0;
  std::size_t rank = 0;  ///< 3, unless there are too few sites or all lie on a line.

  bool IsUnique() const { return rank == kTerms; }
  double At(double x, double y) const { return offset + slope_x * x + slope_y * y; }
  /// sqrt(slope_x^2 + slope_y^2): the steepest rise.
  double Tilt() const;
  /// Where it rises, in degrees from 0 to 360 counter-clockwise from the positive X axis; 0 for a
  /// level plane.
  double Direction() const;
};
DISCOPLAN_EXPORT PlaneFit FitPlane(std::span<const Site> sites);

/// Best planes of values one after the other. What follows from the places is kept as long as they
/// stay the same, as they mostly do from wafer to wafer. One thread's.
class DISCOPLAN_EXPORT PlaneFitter {
 public:
  /// As many values as there are sites, in place of theirs.
  PlaneFit Fit(std::span<const Site> places, std::span<const double> values);

 private:
  bool KnowsPlaces(std::span<const Site> places) const;

  std::vector<Site> places_;
  std::optional<FactoredDesign> design_;
  std::vector<double> values_;  // kept for its memory
};

/// The coefficients of `Zernike` by number, over a circle of that radius in mm.
struct DISCOPLAN_EXPORT ZernikeFit {
  int order = 0;
  double radius = 0;
  std::vector<double> coefficients;
  std::size_t rank = 0;

  /// Whether the sites tell all terms apart.
  bool IsUnique() const { return rank == coefficients.size(); }
  double At(double x, double y) const;
};
/// Up to a radial order of 0 or more. The radius is that of the farthest site from the centre,
/// unless given.
DISCOPLAN_EXPORT ZernikeFit FitZernike(std::span<const Site> sites, int order, double radius = 0);

/// Of the farthest site from the wafer's centre, in mm; 0 for none.
DISCOPLAN_EXPORT double FarthestRadius(std::span<const Site> sites);

/// The sites with what the surface leaves of their values.
template <class Fit>
std::vector<Site> ResidualsOf(std::span<const Site> sites, const Fit& fit) {
  std::vector<Site> rest(sites.begin(), sites.end());
  for (Site& site : rest) site.z = static_cast<float>(DecimalOf(site.z) - fit.At(site.x, site.y));
  return rest;
}

}  // namespace discoplan::analysis
