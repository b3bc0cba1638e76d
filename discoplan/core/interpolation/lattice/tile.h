// SPDX-License-Identifier: MIT
#pragma once

/// What a kernel works on: a few points close to each other and the sites around them. A kernel is
/// compiled for one instruction set, so that this header and what it includes define no function
/// that another unit might be given in place of its own.

#include <cstdint>

namespace discoplan::lattice {

inline constexpr std::int32_t kTilePoints = 16;
/// Most sites around a tile, a power of two.
inline constexpr std::int32_t kMostSites = 256;
/// As many numbers may be read or written behind the last.
inline constexpr std::int32_t kPadding = 16;

/// A key is the squared distance as a float, the last bits replaced by the site's number.
inline constexpr std::uint32_t kNumberMask = kMostSites - 1;
/// The two squares of a difference, their sum and the number err by less than a quarter of this.
inline constexpr float kClearlyFarther = 1 + 4.0F * kMostSites / (1 << 23);

/// Sites that follow each other in the order of the cells.
struct Run {
  std::int32_t begin;
  std::int32_t end;
};

/// The sites of a rectangle of cells, row by row.
struct Surroundings {
  static constexpr std::int32_t kMostRuns = 16;

  const float* x;
  const float* y;
  const float* z;
  Run runs[kMostRuns];
  std::int32_t run_count;
};

/// Only a fourth neighbour strictly between these distances is sure to be found by the search over
/// the cells, whatever ring it stops at. In mm.
struct SureDistances {
  double above;
  double below;
};

/// A kernel's copy of the sites around a tile, in their order.
struct TileSites {
  alignas(64) float x[kMostSites + kPadding];
  alignas(64) float y[kMostSites + kPadding];
  alignas(64) float z[kMostSites + kPadding];
  std::int32_t count;
  std::uint32_t near[kMostSites + kPadding];  ///< Those that can be among a point's four nearest.
  std::int32_t near_count;
};

struct Tile {
  alignas(64) float x[kTilePoints];
  alignas(64) float y[kTilePoints];
  alignas(64) float value[kTilePoints];
  alignas(64) float keys[5][kTilePoints];  ///< Of the five sites of the least keys, by these.
  std::int32_t count;  ///< Of the points that are asked for; those behind must be finite.
  TileSites sites;
};

/// Sets the sites, values and keys of a tile. Bit i of the result tells that value i is certainly
/// that of the plain search. For a single point, or if fewer than four sites are near, only
/// the sites are set.
using Kernel = std::uint32_t (*)(const Surroundings&, const SureDistances&, Tile&);

std::uint32_t InterpolatePortable(const Surroundings&, const SureDistances&, Tile&);
std::uint32_t InterpolateSse2(const Surroundings&, const SureDistances&, Tile&);
std::uint32_t InterpolateAvx2(const Surroundings&, const SureDistances&, Tile&);
std::uint32_t InterpolateAvx512(const Surroundings&, const SureDistances&, Tile&);

}  // namespace discoplan::lattice
