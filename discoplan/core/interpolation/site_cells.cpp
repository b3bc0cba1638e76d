// SPDX-License-Identifier: MIT
#include "discoplan/core/interpolation/site_cells.h"

#include <cmath>
#include <numeric>

#include "discoplan/base/angles.h"
#include "discoplan/core/interpolation/lattice/tile.h"
#include "discoplan/core/interpolation/measured_sites.h"

namespace discoplan {

void SiteCells::Clear() {
  columns = 0;
  first.clear();
  sites.clear();
  DropCopies();
}

void SiteCells::Build(std::span<const Site> from, double radius, std::int16_t count) {
  DropCopies();
  size = ToFloat(count >= kFewestInterpolatedSites ? std::sqrt(radius * radius * kPi * 4 / count)
                                                   : radius + radius);
  half_count = ToInt16(Divide(radius, size));
  const std::int32_t cells_in_row = 2 * half_count + 1;
  FindCells(from, cells_in_row);

  columns = cells_in_row;
  first.assign(NumberOf(0, columns) + 1, 0);
  for (const std::int32_t cell : cell_of_) ++first[static_cast<std::size_t>(cell)];
  // First where each cell ends; filled from behind, then where it begins.
  std::partial_sum(first.begin(), first.end(), first.begin());
  sites.resize(from.size());
  for (std::vector<float>* axis : {&x, &y, &z}) axis->resize(from.size() + lattice::kPadding);
  for (std::size_t i = from.size(); i-- > 0;) {
    const auto slot = static_cast<std::size_t>(--first[static_cast<std::size_t>(cell_of_[i])]);
    sites[slot] = static_cast<std::int16_t>(i);
    x[slot] = from[i].x;
    y[slot] = from[i].y;
    z[slot] = from[i].z;
  }
}

void SiteCells::FindCells(std::span<const Site> from, std::int32_t cells_in_row) {
  const auto index_of = [&](float position) {
    const double index = IndexOf(position);
    if (index >= 0 && index < cells_in_row) return static_cast<std::int32_t>(index);
    throw RunTimeError(std::abs(index) < 2147483648.0 ? Fault::Subscript : Fault::Overflow,
                       "a site lies outside the wafer");
  };
  cell_of_.resize(from.size());
  for (std::size_t i = 0; i < from.size(); ++i) {
    cell_of_[i] = index_of(from[i].y) * cells_in_row + index_of(from[i].x);
  }
}

}  // namespace discoplan
