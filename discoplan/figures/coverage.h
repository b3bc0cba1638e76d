// SPDX-License-Identifier: MIT
#pragma once

/// Which places of a wafer are too far from every site to be told. Three sites tell of the triangle
/// between them, fewer and those in line of their surroundings alone.

#include <algorithm>
#include <string>
#include <vector>

#include "discoplan/figures/wafer_figure.h"

namespace discoplan::figures {

class DISCOPLAN_EXPORT Coverage {
 public:
  explicit Coverage(const WaferPlot& plot);

  /// One and a half times what nine of ten sites are at most away from the next one, in mm; what is
  /// beyond a triangle by more is far from it.
  double Far() const { return far_; }
  /// Whether a part of the test area is farther than that from every site.
  bool HasFar() const { return has_far_; }
  /// What is known of a height, for many places there.
  struct Row {
    const float* upper;  ///< Distances of the lattice's row above it.
    double below;        ///< How far below that row it lies, in steps.
  };
  Row RowAt(double y) const;
  /// About, in mm; the place is in mm too.
  double DistanceAt(const Row& row, double x) const {
    const double across = (x - lattice_.x0) / lattice_.step;
    const int column = std::clamp(static_cast<int>(across), 0, kAcross - 2);
    const double right = across - column;
    const float* upper = row.upper + column;
    const float* lower = upper + kAcross;
    return (1 - row.below) * ((1 - right) * upper[0] + right * upper[1]) +
           row.below * ((1 - right) * lower[0] + right * lower[1]);
  }
  double DistanceAt(Point place) const { return DistanceAt(RowAt(place.y), place.x); }
  struct Stretch {
    double left;
    double right;
  };
  /// Parts of the line at that height, from left to right, outside of which no place is as far from
  /// the sites as `distance`. Gives the height down to which they stay the same.
  double FindFar(double y, double distance, std::vector<Stretch>& stretches) const;
  bool IsFar(Point place) const { return has_far_ && DistanceAt(place) > far_; }
  /// "hatched: more than 12 mm from every site"; empty where there is no such part.
  std::string Note(const char* look) const;

 private:
  static constexpr int kAcross = 96;  // points of the lattice

  double far_;
  bool triangle_;
  Lattice lattice_;
  std::vector<float> distances_;
  bool has_far_ = false;
};

/// How far each point of a lattice is from the nearest site, to a fraction of its step.
std::vector<float> DistancesToSites(const Lattice& lattice, const SiteView& sites);

}  // namespace discoplan::figures
