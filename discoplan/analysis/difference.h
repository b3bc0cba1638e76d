// SPDX-License-Identifier: MIT
#pragma once

/// One wafer minus another, and the mean of several.
///
///     const Derived change = DifferenceOf(after, before);
///     if (change.interpolated > 0) Say("between the sites of the other wafer, interpolated");
///
/// A site of the one takes its partner from the other where there is one within the tolerance, and
/// an interpolated value (`InterpolatedAt`) where there is none. Both are counted.

#include <cstddef>
#include <span>
#include <vector>

#include "discoplan/core/wafer.h"
#include "discoplan/export.h"

namespace discoplan::analysis {

/// As far as positions of one recipe differ from file to file, in mm.
inline constexpr double kSameSite = 0.1;

struct Derived {
  std::vector<Site> sites;
  std::size_t matched = 0;       ///< Values that come from a site within the tolerance.
  std::size_t interpolated = 0;  ///< Values that come from the four nearest.
  std::size_t missing = 0;       ///< Sites left out: no partner, and too few to interpolate from.
  double farthest = 0;           ///< Largest distance in mm from a site to what it was paired with.
};

/// `sites` minus `other` at the positions of `sites`, in their order.
DISCOPLAN_EXPORT Derived DifferenceOf(std::span<const Site> sites, std::span<const Site> other,
                                      double tolerance = kSameSite);

/// Mean value of all wafers at the positions of the first one. The counts are over all wafers but
/// the first; a site that misses a wafer is left out. At least one wafer.
DISCOPLAN_EXPORT Derived MeanWafer(std::span<const std::span<const Site>> wafers,
                                   double tolerance = kSameSite);

}  // namespace discoplan::analysis
