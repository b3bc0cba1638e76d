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
/// It is made from the wafer as it is and must not outlive a change of the sites.

#include <cstdint>
#include <span>
#include <vector>

#include "discoplan/core/wafer.h"
#include "discoplan/export.h"

namespace discoplan {

namespace lattice {
struct Surroundings;
struct SureDistances;
struct Tile;
}  // namespace lattice

enum class InstructionSet { Portable, Sse2, Avx2, Avx512 };

/// Those that this processor has, the best one last.
DISCOPLAN_EXPORT std::span<const InstructionSet> InstructionSets();

class DISCOPLAN_EXPORT LatticeInterpolation {
 public:
  explicit LatticeInterpolation(const wafer& source,
                                InstructionSet instructions = InstructionSets().back());

  /// Sets the value of each point but those whose `x` is not a number: they aren't asked for. The
  /// last row may be shorter than the others. Never fails, like `wafer::Interpolation`.
  void Evaluate(std::span<Site> points, std::size_t columns) const noexcept;

 private:
  /// The columns or rows of cells around a tile.
  struct CellRange {
    std::int32_t first;
    std::int32_t last;
    bool is_one_cell;
  };

  bool TakeSites();
  void EvaluateTile(std::span<Site* const> points, lattice::Tile& tile) const;
  bool RangeAround(std::span<const float> positions, CellRange& range) const;
  bool Surround(const lattice::Tile& tile, lattice::Surroundings& around,
                lattice::SureDistances& sure) const;

  using Kernel = std::uint32_t (*)(const lattice::Surroundings&, const lattice::SureDistances&,
                                   lattice::Tile&);

  const wafer& source_;
  const Kernel kernel_;
  // In the order of the cells.
  std::vector<float> x_;
  std::vector<float> y_;
  std::vector<float> z_;
  bool has_cells_ = false;
  double nearest_miss_ = 0;      // no site is nearer than this outside the first ring of cells
  double farthest_in_ring_ = 0;  // with a fourth neighbour as near the search ends with that ring
  double farthest_slot_ = 0;     // no nearer neighbour is kept from a slot
};

}  // namespace discoplan
