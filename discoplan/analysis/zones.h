// SPDX-License-Identifier: MIT
#pragma once

/// Parts of a wafer, and what the values are like in each.
///
///     for (const Zone& ring : RingsOf(sites, {.rings = 4, .rule = RingRule::EqualArea})) {
///       Show(ring.name, ring.count, ring.mean);
///     }

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "discoplan/core/wafer.h"
#include "discoplan/export.h"

namespace discoplan::analysis {

/// A part of the wafer. Mean, extremes and sigma are empty where the sites are too few for them.
struct Zone {
  std::string name;  ///< "0 to 49 mm", "quadrant 1"
  double inner = 0;  ///< Radii in mm, of a ring.
  double outer = 0;
  std::vector<Site> sites;
  std::size_t count = 0;
  std::optional<double> mean;
  std::optional<double> sigma;
  std::optional<double> minimum;
  std::optional<double> maximum;
};

enum class RingRule {
  EqualWidth,  ///< radii R k / n
  EqualArea,   ///< radii R sqrt(k / n)
  /// A disc of half the width of the rings around it, w = 2 R / (2 n - 1): the sites of a polar
  /// pattern, which lie on circles at equal distances, then lie in the middle of their rings.
  AroundDisc,
};

struct RingOptions {
  /// As many as are asked for; for 0, `RingsFor` the sites.
  int rings = 0;
  RingRule rule = RingRule::EqualWidth;
  /// Of the outermost ring, in mm: the farthest site's, unless given. Sites beyond are of that
  /// ring.
  double radius = 0;
};

/// As many rings as that many sites fill.
DISCOPLAN_EXPORT int RingsFor(std::size_t sites);

/// From the centre outwards. A site belongs to the ring with inner < r <= outer; the centre to the
/// first.
DISCOPLAN_EXPORT std::vector<Zone> RingsOf(std::span<const Site> sites, const RingOptions& options);

/// Counter-clockwise from the one with X and Y positive. A site on an axis belongs to the quadrant
/// that begins there; the centre to none.
DISCOPLAN_EXPORT std::vector<Zone> QuadrantsOf(std::span<const Site> sites);

/// The mean as a function of the radius, in rings around a disc.
struct DISCOPLAN_EXPORT RadialProfile {
  std::vector<Zone> rings;

  /// Mean of the ring that the position lies in.
  double At(double x, double y) const;
};
/// At least one site.
DISCOPLAN_EXPORT RadialProfile ProfileOf(std::span<const Site> sites, int rings = 0);

}  // namespace discoplan::analysis
