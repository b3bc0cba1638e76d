// SPDX-License-Identifier: MIT
#pragma once

/// The four neighbours of a point and the mean that is weighted by them.

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>

#include "discoplan/base/numbers.h"
#include "discoplan/core/interpolation/measured_sites.h"

namespace discoplan {

struct Neighbour {
  double distance;
  std::int32_t site;
};

using Neighbours = std::array<Neighbour, 4>;

inline double SquaredDistance(float site_x, float site_y, float x, float y) {
  const double dx = static_cast<double>(x) - site_x;
  const double dy = static_cast<double>(y) - site_y;
  return dx * dx + dy * dy;
}

/// A squared distance above this has a root that isn't below `distance`.
inline double SquareBound(double distance) { return distance * distance * (1 + 1e-15); }

/// Puts a neighbour into the slot `at` and moves those behind it outward; the farthest drops out.
inline void Insert(Neighbours& nearest_first, std::size_t at, Neighbour neighbour) {
  for (std::size_t slot = nearest_first.size() - 1; slot > at; --slot) {
    nearest_first[slot] = nearest_first[slot - 1];
  }
  nearest_first[at] = neighbour;
}

/// Inverse-distance-squared mean, nearest first. The numerator is a 32-bit sum, the denominator a
/// 64-bit one. `value_of` gives the value of a neighbour's site or raises.
template <class ValueOf>
float WeightedMean(const Neighbours& nearest_first, ValueOf&& value_of) {
  if (nearest_first[0].distance == 0) return value_of(nearest_first[0].site);
  float numerator = 0;
  double denominator = 0;
  for (const Neighbour& neighbour : nearest_first) {
    const double square = neighbour.distance * neighbour.distance;
    numerator = ToFloat(numerator + value_of(neighbour.site) / square);
    denominator += 1 / square;
  }
  return ToFloat(numerator / denominator);
}

}  // namespace discoplan
