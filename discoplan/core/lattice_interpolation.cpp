// SPDX-License-Identifier: MIT
#include "discoplan/core/lattice_interpolation.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "discoplan/core/lattice/tile.h"
#include "discoplan/core/numbers.h"

namespace discoplan {

using lattice::Kernel;
using lattice::kMostSites;
using lattice::kPadding;
using lattice::kTilePoints;
using lattice::SureDistances;
using lattice::Surroundings;
using lattice::Tile;

namespace {

constexpr std::size_t kTileSide = 4;
/// Cells beyond are left to the plain way, lest squared distances leave the range of a float.
constexpr double kLargestCell = 1e9;
/// Takes up what is rounded where a position is compared with the border of a cell.
constexpr double kBorderTolerance = 1e-9;
/// Largest square of the reach that the search begins with, half a cell.
constexpr double kFirstReachSquare = 0.25;

Kernel KernelFor([[maybe_unused]] InstructionSet instructions) {
#if defined(__x86_64__)
  switch (instructions) {
    case InstructionSet::Portable:
      break;
    case InstructionSet::Sse2:
      return lattice::InterpolateSse2;
    case InstructionSet::Avx2:
      return lattice::InterpolateAvx2;
    case InstructionSet::Avx512:
      return lattice::InterpolateAvx512;
  }
#endif
  return lattice::InterpolatePortable;
}

std::size_t CountInstructionSets() {
#if defined(__x86_64__)
  const bool has_avx2 = __builtin_cpu_supports("avx2") != 0;
  const bool has_avx512 = has_avx2 && __builtin_cpu_supports("avx512f") != 0;
  return has_avx512 ? 4 : has_avx2 ? 3 : 2;
#else
  return 1;
#endif
}

}  // namespace

std::span<const InstructionSet> InstructionSets() {
  static constexpr std::array kAll = {InstructionSet::Portable, InstructionSet::Sse2,
                                      InstructionSet::Avx2, InstructionSet::Avx512};
  static const std::size_t count = CountInstructionSets();
  return std::span(kAll).first(count);
}

LatticeInterpolation::LatticeInterpolation(const wafer& source, InstructionSet instructions)
    : source_(source), kernel_(KernelFor(instructions)) {
  const double cell = source.cell_size_;
  has_cells_ = source.nop_ >= 10 && cell > 0 && cell <= kLargestCell && TakeSites();
  const double test_radius = source.TestDiameter / 2.0;
  farthest_slot_ = std::min(static_cast<double>(static_cast<float>(9 * test_radius * test_radius)),
                            4.0 * source.WaferRadius);
  nearest_miss_ = cell * (1 - 1e-6);
  farthest_in_ring_ = cell * cell * (1 - 1e-6);
}

/// False if a site isn't in its cell any more, since the sites were moved after `MaxMin`.
bool LatticeInterpolation::TakeSites() {
  const wafer::SiteCells& cells = source_.cells_;
  const double size = source_.cell_size_;
  const double half = size * (0.5 + kBorderTolerance);
  bool all_in_place = true;
  for (std::vector<float>* axis : {&x_, &y_, &z_}) axis->resize(cells.sites.size() + kPadding);
  std::size_t cell = 0;
  for (std::int32_t row = 0; row < cells.side; ++row) {
    const double middle_y = (row - source_.cell_half_count_) * size;
    for (std::int32_t column = 0; column < cells.side; ++column, ++cell) {
      const double middle_x = (column - source_.cell_half_count_) * size;
      const auto end = static_cast<std::size_t>(cells.first[cell + 1]);
      for (auto i = static_cast<std::size_t>(cells.first[cell]); i < end; ++i) {
        const Site& site = source_.sites_[static_cast<std::size_t>(cells.sites[i])];
        x_[i] = site.x;
        y_[i] = site.y;
        z_[i] = site.z;
        all_in_place &= std::abs(site.x - middle_x) <= half && std::abs(site.y - middle_y) <= half;
      }
    }
  }
  return all_in_place && cells.side > 0;
}

void LatticeInterpolation::Evaluate(std::span<Site> points, std::size_t columns) const noexcept {
  const std::size_t height = columns < points.size() ? kTileSide : 1;
  const std::size_t width = kTilePoints / height;
  Tile tile;
  std::array<Site*, kTilePoints> asked;
  for (std::size_t top = 0; top < points.size(); top += height * columns) {
    for (std::size_t left = 0; left < columns; left += width) {
      std::size_t count = 0;
      for (std::size_t row = 0; row < height; ++row) {
        const std::size_t begin = top + row * columns + left;
        const std::size_t end = std::min(begin + std::min(width, columns - left), points.size());
        for (std::size_t i = begin; i < end; ++i) {
          if (!std::isnan(points[i].x)) asked[count++] = &points[i];
        }
      }
      if (count > 0) EvaluateTile(std::span(asked).first(count), tile);
    }
  }
}

void LatticeInterpolation::EvaluateTile(std::span<Site* const> points, Tile& tile) const {
  for (std::size_t i = 0; i < kTilePoints; ++i) {
    const Site& point = *points[i < points.size() ? i : 0];
    tile.x[i] = point.x;
    tile.y[i] = point.y;
  }
  tile.count = static_cast<std::int32_t>(points.size());
  Surroundings around;
  SureDistances sure;
  const std::uint32_t certain =
      has_cells_ && Surround(tile, around, sure) ? kernel_(around, sure, tile) : 0;
  for (std::size_t i = 0; i < points.size(); ++i) {
    Site& point = *points[i];
    point.z = (certain >> i & 1) != 0 ? tile.value[i] : source_.Interpolation(point.x, point.y);
  }
}

/// False for positions beyond the cells.
bool LatticeInterpolation::RangeAround(std::span<const float> positions, CellRange& range) const {
  const auto [low, high] = std::ranges::minmax(positions);
  const auto index = [&](double position) {
    return RoundHalfEven(position / source_.cell_size_ + source_.cell_half_count_);
  };
  const double first = index(low);
  const double last = index(high);
  const std::int32_t side = source_.cells_.side;
  if (!(first >= -1 && last <= side)) return false;
  range.is_one_cell = first == last;
  range.first = std::max(static_cast<std::int32_t>(first) - 1, 0);
  range.last = std::min(static_cast<std::int32_t>(last) + 1, side - 1);
  return true;
}

/// The cells of the first ring around each point. False if there are too many sites in them.
bool LatticeInterpolation::Surround(const Tile& tile, Surroundings& around,
                                    SureDistances& sure) const {
  const auto count = static_cast<std::size_t>(tile.count);
  CellRange columns;
  CellRange rows;
  if (!RangeAround(std::span(tile.x).first(count), columns)) return false;
  if (!RangeAround(std::span(tile.y).first(count), rows)) return false;
  if (rows.last - rows.first >= Surroundings::kMostRuns) return false;
  const wafer::SiteCells& cells = source_.cells_;
  around = {.x = x_.data(), .y = y_.data(), .z = z_.data(), .runs = {}, .run_count = 0};
  std::int32_t sites = 0;
  for (std::int32_t row = rows.first; row <= rows.last; ++row) {
    const std::size_t row_begin =
        static_cast<std::size_t>(row) * static_cast<std::size_t>(cells.side);
    const std::int32_t begin = cells.first[row_begin + static_cast<std::size_t>(columns.first)];
    const std::int32_t end = cells.first[row_begin + static_cast<std::size_t>(columns.last) + 1];
    around.runs[around.run_count++] = {begin, end};
    sites += end - begin;
  }
  const bool one_search = columns.is_one_cell && rows.is_one_cell;
  sure.above = kFirstReachSquare;
  sure.below = std::min(farthest_slot_,
                        one_search ? std::max(nearest_miss_, farthest_in_ring_) : nearest_miss_);
  return sites <= kMostSites;
}

}  // namespace discoplan
