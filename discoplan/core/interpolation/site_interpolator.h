// SPDX-License-Identifier: MIT
#pragma once

/// The value at any point of a wafer: the inverse-distance-squared mean of four sites around it.
///
///     const SiteInterpolator interpolator(measured);
///     float value = interpolator.At(12.5F, -40.0F);
///     std::vector<Site> points;                      // x and y in mm, row after row
///     interpolator.Evaluate(points, columns);        // sets each z
///
/// Which search serves when, and why each must stay:
///
/// - Fewer than 4 sites: none, the value is 0.
/// - 4 to 9 sites: a pass over all of them (`site_search.h`). Its slots begin elsewhere than those
///   of the walk, so that the values differ far off the sites.
/// - 10 sites or more: the walk over the cells around a point, ring by ring (`site_search.h`). It
///   may end before it has met the four nearest, and so it is what defines the value. It takes the
///   points that the faster ways leave: far off, with few sites around or very many, on stale
///   cells.
/// - Points of a lattice, 16 at a time (`lattice/kernel.h`, once for each instruction set): the
///   nearest sites by 32-bit keys of their distances, in a fraction of the walk's time. A value is
///   taken only where the fourth distance is such that the walk must have ended with the same
///   four, and where the keys tell their order.
/// - Points of a lattice between 4 to 9 sites: the same, as all sites are around. What the keys
///   don't tell takes the pass.
/// - A single point between more: 64-bit keys, which tell more and need no second point.
/// - Ties, among points of either kind: the exact distances, equal ones in the order of the walk.
///
/// So each value has the bits of the walk, whichever way it came, and a test may ask for the walk
/// alone as it may ask for an instruction set. It reads the sites and must not outlive a change of
/// them. Any number of threads may use one.

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "discoplan/core/interpolation/measured_sites.h"
#include "discoplan/export.h"

namespace discoplan {

struct Neighbour;

namespace lattice {
struct Surroundings;
struct SureDistances;
struct Tile;
struct TileSites;
}  // namespace lattice

/// How sites are found: by the defining searches alone, or by the kernels where these are sure.
enum class SiteSearch { Plain, Portable, Sse2, Avx2, Avx512 };

/// Those that this processor can do, the fastest one last.
DISCOPLAN_EXPORT std::span<const SiteSearch> SiteSearches();

class SiteInterpolator {
 public:
  DISCOPLAN_EXPORT explicit SiteInterpolator(const MeasuredSites& measured,
                                             SiteSearch search = SiteSearches().back());

  /// Sets the value of each point but those whose `x` is not a number: they aren't asked for. The
  /// last row may be shorter than the others; all points are one row for 0 columns. Never fails.
  /// The wafer's workers take their share where there are points enough.
  DISCOPLAN_EXPORT void Evaluate(std::span<Site> points, std::size_t columns) const noexcept;
  /// The same for a single point.
  DISCOPLAN_EXPORT float At(float x, float y) const noexcept;

 private:
  using Kernel = std::uint32_t (*)(const lattice::Surroundings&, const lattice::SureDistances&,
                                   lattice::Tile&);

  struct FewSites;

  /// The columns or rows of cells around a tile.
  struct CellRange {
    std::int32_t first;
    std::int32_t last;
    bool is_one_cell;
  };

  void EvaluateRows(std::span<Site> points, std::size_t columns) const;
  void EvaluateTile(lattice::Tile& tile) const;
  void EvaluateTile(lattice::Tile& tile, const FewSites& few) const;
  bool RangeAround(std::span<const float> positions, CellRange& range) const;
  bool Surround(const lattice::Tile& tile, lattice::Surroundings& around,
                lattice::SureDistances& sure) const;
  bool Resolve(const lattice::Tile& tile, const lattice::SureDistances& sure, std::size_t point,
               float& value) const;
  std::array<Neighbour, 4> NearestInOrder(const lattice::TileSites& sites,
                                          std::span<const std::uint32_t> among, double limit,
                                          float x, float y) const;
  float Plain(float x, float y) const;

  const MeasuredSites measured_;
  const Kernel kernel_;
  double farthest_slot_;  // any nearer neighbour takes a slot
  bool has_kernel_;       // and the four nearest can be told without the walk
  bool has_few_;          // or all sites are passed over
};

}  // namespace discoplan
