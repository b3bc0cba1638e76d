// SPDX-License-Identifier: MIT
#pragma once

/// The sites of a wafer in square cells that are centred on the multiples of their side, the middle
/// one on the wafer's centre: where a search for the sites around a point begins.

#include <cstdint>
#include <span>
#include <vector>

#include "discoplan/base/numbers.h"
#include "discoplan/export.h"

namespace discoplan {

struct Site;

struct SiteCells {
  /// Sorts the sites into cells that four of `count` sites share on the average, spread evenly over
  /// a wafer of this radius. `Subscript` for a site more than about half a cell outside the radius
  /// in X or Y: `size` and `half_count` are new by then, the cells as they were, without the
  /// copies.
  DISCOPLAN_EXPORT void Build(std::span<const Site> from, double radius, std::int16_t count);
  /// Drops the cells.
  void Clear();
  /// To be called when a site was changed: the cells stand, the copies go.
  void DropCopies() { x.clear(); }
  bool HasCopies() const { return !x.empty(); }

  /// The column or the row of a position, a whole number. Not a number or huge for a position that
  /// has none.
  double IndexOf(float position) const {
    return RoundHalfEven(position / static_cast<double>(size) + half_count);
  }
  /// The number of a cell, by rows.
  std::size_t NumberOf(std::int32_t column, std::int32_t row) const {
    return static_cast<std::size_t>(row) * static_cast<std::size_t>(columns) +
           static_cast<std::size_t>(column);
  }

  float size = 0;               ///< Side of a cell in mm.
  std::int16_t half_count = 0;  ///< Cells on each side of the middle one.
  std::int32_t columns = 0;     ///< Cells in a row.

  std::vector<std::int32_t> first;  ///< By cell, and one more: where its sites begin.
  std::vector<std::int16_t> sites;  ///< Numbers from 0, ascending within a cell.
  /// Copies of the sites in this order, padded.
  std::vector<float> x;
  std::vector<float> y;
  std::vector<float> z;

 private:
  void FindCells(std::span<const Site> from, std::int32_t cells_in_row);

  std::vector<std::int32_t> cell_of_;  // by site; kept for its memory
};

}  // namespace discoplan
