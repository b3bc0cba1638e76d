// SPDX-License-Identifier: MIT
#pragma once

/// Interpolation at many points of one wafer, several at a time. Each value is to the bit that of
/// `wafer::Interpolation`; points that lie near each other in the span's rows and columns take a
/// fraction of its time.
///
///     const LatticeInterpolation interpolation(lot_wafer);
///     std::vector<Site> points;                      // x and y in mm, row after row
///     interpolation.Evaluate(points, columns);       // sets each z
///
/// It reads the wafer and must not outlive a change of it.

#include <array>
#include <cstdint>
#include <span>

#include "discoplan/core/wafer.h"
#include "discoplan/export.h"

namespace discoplan {

struct Neighbour;

namespace lattice {
struct Surroundings;
struct SureDistances;
struct Tile;
struct TileSites;
}  // namespace lattice

enum class InstructionSet { Portable, Sse2, Avx2, Avx512 };

/// Those that this processor has, the best one last.
DISCOPLAN_EXPORT std::span<const InstructionSet> InstructionSets();

class LatticeInterpolation {
 public:
  DISCOPLAN_EXPORT explicit LatticeInterpolation(
      const wafer& source, InstructionSet instructions = InstructionSets().back());

  /// Sets the value of each point but those whose `x` is not a number: they aren't asked for. The
  /// last row may be shorter than the others. `columns` is above 0. Never fails, like
  /// `wafer::Interpolation`. The wafer's workers take their share where there are points enough.
  DISCOPLAN_EXPORT void Evaluate(std::span<Site> points, std::size_t columns) const noexcept;
  /// The same for a single point.
  DISCOPLAN_EXPORT float At(float x, float y) const noexcept;

 private:
  using Kernel = std::uint32_t (*)(const lattice::Surroundings&, const lattice::SureDistances&,
                                   lattice::Tile&);

  /// The columns or rows of cells around a tile.
  struct CellRange {
    std::int32_t first;
    std::int32_t last;
    bool is_one_cell;
  };

  void EvaluateRows(std::span<Site> points, std::size_t columns) const;
  void EvaluateTile(lattice::Tile& tile) const;
  bool RangeAround(std::span<const float> positions, CellRange& range) const;
  bool Surround(const lattice::Tile& tile, lattice::Surroundings& around,
                lattice::SureDistances& sure) const;
  bool Resolve(const lattice::Tile& tile, const lattice::SureDistances& sure, std::size_t point,
               float& value) const;
  std::array<Neighbour, 4> NearestInOrder(const lattice::TileSites& sites,
                                          std::span<const std::uint32_t> among, double limit,
                                          float x, float y) const;
  float Plain(float x, float y) const;

  const wafer& source_;
  const Kernel kernel_;
  double farthest_slot_;  // any nearer neighbour takes a slot
  bool has_cells_;        // and the four nearest can be told without the walk
};

}  // namespace discoplan
