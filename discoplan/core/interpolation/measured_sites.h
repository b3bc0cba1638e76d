// SPDX-License-Identifier: MIT
#pragma once

/// What an interpolation reads of a wafer. It refers to sites and cells that another one holds, and
/// must not outlive a change of them.

#include <span>

namespace discoplan {

struct SiteCells;
class WorkerPool;

/// A point of the wafer in mm from its centre, Y up, with its value.
struct Site {
  float x = 0;
  float y = 0;
  float z = 0;

  bool operator==(const Site&) const = default;
};

/// The fewest sites that have an interpolation at all.
inline constexpr float kFewestInterpolatedSites = 4;
/// The fewest sites that are searched through cells.
inline constexpr float kFewestSitesInCells = 10;

struct MeasuredSites {
  std::span<const Site> sites;
  float count = 0;           ///< Of the sites, as the host gave it: a fraction counts.
  float wafer_diameter = 0;  ///< In mm, as is the next.
  float test_diameter = 0;
  const SiteCells* cells = nullptr;  ///< Never nothing where they are searched.
  WorkerPool* workers = nullptr;     ///< Who share the interpolation of large lattices, if any.

  /// A part of a site more than three is drawn, whether or not it has an interpolation.
  bool IsDrawn() const { return count > kFewestInterpolatedSites - 1; }
  bool HasInterpolation() const { return count >= kFewestInterpolatedSites; }
  bool SearchesCells() const { return count >= kFewestSitesInCells; }
};

}  // namespace discoplan
