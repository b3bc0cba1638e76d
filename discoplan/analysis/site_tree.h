// SPDX-License-Identifier: MIT
#pragma once

/// Finds the sites nearest to a position: a k-d tree in two dimensions (J. Bentley,
/// "Multidimensional Binary Search Trees Used for Associative Searching", CACM 18 (1975)).
///
///     const SiteTree tree(sites);
///     for (const Neighbour& near : tree.Nearest(12.5, -40, 4)) Use(sites[near.site],
///     near.distance);

#include <cstddef>
#include <span>
#include <vector>

#include "discoplan/core/wafer.h"
#include "discoplan/export.h"

namespace discoplan::analysis {

struct Neighbour {
  std::size_t site = 0;  ///< Index into the sites, from 0.
  double distance = 0;   ///< In mm.
};

class DISCOPLAN_EXPORT SiteTree {
 public:
  static constexpr std::size_t kNobody = static_cast<std::size_t>(-1);

  /// The sites outlive the tree.
  explicit SiteTree(std::span<const Site> sites);

  /// The nearest sites, the nearest first, equal ones by their index; fewer than `count` if there
  /// are no more. The site of the index `without` is passed over.
  std::vector<Neighbour> Nearest(double x, double y, std::size_t count,
                                 std::size_t without = kNobody) const;
  std::span<const Site> Sites() const { return sites_; }
  /// The sites in an order in which those that follow each other are near each other; `place` is
  /// below their number.
  std::size_t SiteAt(std::size_t place) const { return places_[place].site; }

 private:
  friend double InterpolatedAt(const SiteTree& tree, double x, double y, std::size_t without);

  static constexpr std::size_t kFewPlaces = 8;  // are looked at one by one
  static constexpr std::size_t kDeepest = 64;

  struct Part;
  struct Query;
  struct Place {
    float x;
    float y;
    std::size_t site;
  };
  struct Candidate {
    double square = 0;  // of the distance
    std::size_t site = 0;
  };
  Part Whole() const;
  void Build(const Part& part);
  double DistanceTo(std::size_t site, double x, double y) const;
  /// Fills `room` with the nearest sites, in order; their number.
  std::size_t Find(double x, double y, std::size_t without, std::span<Candidate> room) const;

  std::span<const Site> sites_;
  std::vector<Place> places_;
  std::vector<float> borders_;
};

/// What the sites of the tree say about a position: the mean of the four nearest, weighted by the
/// inverse square of their distance (D. Shepard, "A Two-dimensional Interpolation Function for
/// Irregularly-spaced Data", 1968), or a site's own value on it. Four sites at least. It is the
/// interpolation of the plots, but that its neighbours are always the nearest, and of the decimal
/// numbers that the values stand for.
DISCOPLAN_EXPORT double InterpolatedAt(const SiteTree& tree, double x, double y,
                                       std::size_t without = SiteTree::kNobody);
inline constexpr std::size_t kInterpolationSites = 4;

}  // namespace discoplan::analysis
