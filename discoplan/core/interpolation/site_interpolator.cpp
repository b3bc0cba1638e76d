// SPDX-License-Identifier: MIT
#include "discoplan/core/interpolation/site_interpolator.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <limits>
#include <optional>

#include "discoplan/base/algorithms.h"
#include "discoplan/base/bits.h"
#include "discoplan/base/numbers.h"
#include "discoplan/core/interpolation/lattice/tile.h"
#include "discoplan/core/interpolation/neighbours.h"
#include "discoplan/core/interpolation/site_cells.h"
#include "discoplan/core/interpolation/site_search.h"
#include "discoplan/core/worker_pool.h"

namespace discoplan {

using lattice::Kernel;
using lattice::kMostSites;
using lattice::kTilePoints;
using lattice::SureDistances;
using lattice::Surroundings;
using lattice::Tile;
using lattice::TileSites;

namespace {

constexpr std::size_t kTileSide = 4;
/// Points that take longer than waking another thread.
constexpr std::size_t kWorthSharing = 4096;
/// Rows of tiles that one thread takes at a time.
constexpr std::size_t kSharedTileRows = 2;
/// Cells beyond are left to the plain way, lest squared distances leave the range of a float.
constexpr double kLargestCell = 1e9;
/// Takes up what is rounded where a distance is compared with a cell's side.
constexpr double kTolerance = 1e-6;
/// Largest square of the reach that the search begins with, half a cell.
constexpr double kFirstReachSquare = 0.25;

constexpr std::int32_t kNoSite = -1;

/// When the search comes by a cell so many columns and rows from the first one: each ring along its
/// top to the right, down, to the left and up.
double VisitRank(double columns, double rows) {
  const double ring = std::max(std::abs(columns), std::abs(rows));
  const double before = (2 * ring - 1) * (2 * ring - 1);
  if (ring == 0) return 0;
  if (rows == ring && columns < ring) return before + columns + ring;
  if (columns == ring && rows > -ring) return before + 3 * ring - rows;
  if (rows == -ring && columns > -ring) return before + 5 * ring - columns;
  return before + 7 * ring + rows;
}

/// The four nearest by keys as the kernels have them, but of 64 bits and without a branch. False if
/// two are too close to tell.
bool NearestByKeys(const TileSites& sites, float x, float y, Neighbours& nearest) {
  constexpr std::uint64_t kNumberMask = kMostSites - 1;
  constexpr double kClearlyFarther = 1 + 4.0 * kMostSites / (std::uint64_t{1} << 52);
  const auto square_to = [&](std::uint32_t site) {
    return SquaredDistance(sites.x[site], sites.y[site], x, y);
  };
  std::array<double, 5> keys;
  keys.fill(1e60);
  for (std::int32_t i = 0; i < sites.near_count; ++i) {
    const std::uint32_t site = sites.near[i];
    const auto bits = BitCast<std::uint64_t>(square_to(site));
    auto key = BitCast<double>((bits & ~kNumberMask) | site);
    for (double& nearer : keys) {
      const double farther = std::max(nearer, key);
      nearer = std::min(nearer, key);
      key = farther;
    }
  }
  for (std::size_t slot = 0; slot < nearest.size(); ++slot) {
    if (!(keys[slot] * kClearlyFarther < keys[slot + 1])) return false;
    const auto site = static_cast<std::uint32_t>(BitCast<std::uint64_t>(keys[slot]) & kNumberMask);
    nearest[slot] = {std::sqrt(square_to(site)), static_cast<std::int32_t>(site)};
  }
  return true;
}

Kernel KernelFor([[maybe_unused]] SiteSearch search) {
#if defined(__x86_64__)
  switch (search) {
    case SiteSearch::Plain:
    case SiteSearch::Portable:
      break;
    case SiteSearch::Sse2:
      return lattice::InterpolateSse2;
    case SiteSearch::Avx2:
      return lattice::InterpolateAvx2;
    case SiteSearch::Avx512:
      return lattice::InterpolateAvx512;
  }
#endif
  return lattice::InterpolatePortable;
}

std::size_t CountSearches() {
#if defined(__x86_64__)
  const bool has_avx2 = __builtin_cpu_supports("avx2") != 0;
  const bool has_avx512 = has_avx2 && __builtin_cpu_supports("avx512f") != 0;
  return has_avx512 ? 5 : has_avx2 ? 4 : 3;
#else
  return 2;
#endif
}

}  // namespace

std::span<const SiteSearch> SiteSearches() {
  static constexpr std::array kAll = {SiteSearch::Plain, SiteSearch::Portable, SiteSearch::Sse2,
                                      SiteSearch::Avx2, SiteSearch::Avx512};
  static const std::size_t count = CountSearches();
  return std::span(kAll).first(count);
}

SiteInterpolator::SiteInterpolator(const MeasuredSites& measured, SiteSearch search)
    : measured_(measured),
      kernel_(KernelFor(search)),
      farthest_slot_(std::min(double{StartDistance(measured)}, ReplacementDistance(measured))),
      has_kernel_(search != SiteSearch::Plain && measured.SearchesCells() &&
                  measured.cells->HasCopies() && measured.cells->size <= kLargestCell &&
                  farthest_slot_ > 0),
      has_few_(search != SiteSearch::Plain && measured.HasInterpolation() &&
               !measured.SearchesCells()) {}

void SiteInterpolator::Evaluate(std::span<Site> points, std::size_t columns) const noexcept {
  if (columns == 0) columns = points.size();
  if (measured_.workers == nullptr || points.size() < kWorthSharing) {
    EvaluateRows(points, columns);
    return;
  }
  const std::size_t share = kSharedTileRows * kTileSide * columns;
  const auto shares = static_cast<std::int32_t>((points.size() + share - 1) / share);
  measured_.workers->Run(shares, [&](std::int32_t i) {
    const std::size_t begin = static_cast<std::size_t>(i) * share;
    EvaluateRows(points.subspan(begin, std::min(share, points.size() - begin)), columns);
  });
}

/// Sites that are passed over, as a kernel reads them.
struct SiteInterpolator::FewSites {
  static constexpr std::size_t kMost = 9;
  /// In mm. Beyond, squares may leave the range of a float; below, they lose their precision.
  static constexpr float kFarthest = 1e6F;
  static constexpr double kNearest = 1e-6;

  explicit FewSites(const MeasuredSites& measured) {
    const std::span<const Site> sites = measured.sites;
    const double reach = 3 * (measured.wafer_diameter / 2.0);  // as the pass has it
    if (sites.size() < 4 || sites.size() > kMost || !(reach > kNearest && reach < kFarthest))
      return;
    for (std::size_t i = 0; i < sites.size(); ++i) {
      x[i] = sites[i].x;
      y[i] = sites[i].y;
      z[i] = sites[i].z;
      if (!IsNear(x[i]) || !IsNear(y[i])) return;
    }
    around = {.x = x, .y = y, .z = z, .runs = {}, .run_count = 1};
    around.runs[0] = {0, static_cast<std::int32_t>(sites.size())};
    sure = {.above = kNearest, .below = static_cast<float>(reach)};
    serve = true;
  }

  static bool IsNear(float position) { return std::abs(position) < kFarthest; }

  bool serve = false;
  Surroundings around;
  SureDistances sure;
  float x[kMost + lattice::kPadding] = {};
  float y[kMost + lattice::kPadding] = {};
  float z[kMost + lattice::kPadding] = {};
};

void SiteInterpolator::EvaluateRows(std::span<Site> points, std::size_t columns) const {
  std::optional<FewSites> few;
  if (has_few_) few.emplace(measured_);
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
          if (std::isnan(points[i].x)) continue;
          tile.x[count] = points[i].x;
          tile.y[count] = points[i].y;
          asked[count++] = &points[i];
        }
      }
      if (count == 0) continue;
      tile.count = static_cast<std::int32_t>(count);
      few && few->serve ? EvaluateTile(tile, *few) : EvaluateTile(tile);
      for (std::size_t i = 0; i < count; ++i) asked[i]->z = tile.value[i];
    }
  }
}

float SiteInterpolator::At(float x, float y) const noexcept {
  Tile tile;
  tile.x[0] = x;
  tile.y[0] = y;
  tile.count = 1;
  EvaluateTile(tile);
  return tile.value[0];
}

void SiteInterpolator::EvaluateTile(Tile& tile) const {
  const auto count = static_cast<std::size_t>(tile.count);
  if (count > 1) {
    std::fill(tile.x + count, std::end(tile.x), tile.x[0]);
    std::fill(tile.y + count, std::end(tile.y), tile.y[0]);
  }
  Surroundings around;
  SureDistances sure;
  const bool is_surrounded = has_kernel_ && Surround(tile, around, sure);
  const std::uint32_t certain = is_surrounded ? kernel_(around, sure, tile) : 0;
  for (std::size_t i = 0; i < count; ++i) {
    if ((certain >> i & 1) != 0) continue;
    if (is_surrounded && Resolve(tile, sure, i, tile.value[i])) continue;
    tile.value[i] = Plain(tile.x[i], tile.y[i]);
  }
}

void SiteInterpolator::EvaluateTile(Tile& tile, const FewSites& few) const {
  const auto count = static_cast<std::size_t>(tile.count);
  std::fill(tile.x + count, std::end(tile.x), tile.x[0]);
  std::fill(tile.y + count, std::end(tile.y), tile.y[0]);
  const bool is_near = std::all_of(tile.x, std::end(tile.x), FewSites::IsNear) &&
                       std::all_of(tile.y, std::end(tile.y), FewSites::IsNear);
  const std::uint32_t certain = is_near ? kernel_(few.around, few.sure, tile) : 0;
  for (std::size_t i = 0; i < count; ++i) {
    if ((certain >> i & 1) == 0) tile.value[i] = Plain(tile.x[i], tile.y[i]);
  }
}

float SiteInterpolator::Plain(float x, float y) const {
  if (!measured_.HasInterpolation()) return 0;
  return measured_.SearchesCells() ? InterpolateFromCells(measured_, x, y)
                                   : InterpolateFromAll(measured_, x, y);
}

/// The value by the exact distances to the tile's sites. False if the search over the cells may end
/// with others than the four nearest of them.
bool SiteInterpolator::Resolve(const Tile& tile, const SureDistances& sure, std::size_t point,
                               float& value) const {
  const TileSites& sites = tile.sites;
  if (sites.near_count < 4) return false;
  const float x = tile.x[point];
  const float y = tile.y[point];
  const std::span near(sites.near, static_cast<std::size_t>(sites.near_count));
  Neighbours nearest;
  if (tile.count == 1) {
    if (!NearestByKeys(sites, x, y, nearest)) {
      nearest = NearestInOrder(sites, near, std::numeric_limits<double>::infinity(), x, y);
    }
  } else {
    // Points of a larger tile come here since they have ties, often among the four alone.
    std::array<std::uint32_t, 4> four;
    for (std::size_t slot = 0; slot < four.size(); ++slot) {
      four[slot] = BitCast<std::uint32_t>(tile.keys[slot][point]) & lattice::kNumberMask;
    }
    const float limit = tile.keys[3][point] * lattice::kClearlyFarther;
    const bool has_the_four = limit < tile.keys[4][point];
    nearest = NearestInOrder(sites, has_the_four ? std::span<const std::uint32_t>(four) : near,
                             limit, x, y);
  }
  const double fourth = nearest[3].distance;
  if (nearest[0].distance != 0 && !(sure.above < fourth && fourth < sure.below)) return false;
  value = 0;
  Attempt([&] { value = WeightedMean(nearest, [&](std::int32_t site) { return sites.z[site]; }); });
  return true;
}

/// The four nearest within a squared distance, equally near ones in the order in which the search
/// over the cells meets them.
Neighbours SiteInterpolator::NearestInOrder(const TileSites& sites,
                                            std::span<const std::uint32_t> among, double limit,
                                            float x, float y) const {
  const SiteCells& cells = *measured_.cells;
  const double column = cells.IndexOf(x);
  const double row = cells.IndexOf(y);
  const auto rank = [&](std::int32_t site) {
    return VisitRank(cells.IndexOf(sites.x[site]) - column, cells.IndexOf(sites.y[site]) - row);
  };
  const auto precedes = [&](const Neighbour& a, const Neighbour& b) {
    if (a.distance != b.distance) return a.distance < b.distance;
    if (b.site == kNoSite) return false;
    const double a_rank = rank(a.site);
    const double b_rank = rank(b.site);
    return a_rank < b_rank || (a_rank == b_rank && a.site < b.site);
  };
  Neighbours nearest;
  nearest.fill({std::numeric_limits<double>::infinity(), kNoSite});
  double farthest_square = limit;
  for (const std::uint32_t site : among) {
    const double square = SquaredDistance(sites.x[site], sites.y[site], x, y);
    if (!(square <= farthest_square)) continue;
    const Neighbour met{std::sqrt(square), static_cast<std::int32_t>(site)};
    std::size_t slot = nearest.size();
    while (slot > 0 && precedes(met, nearest[slot - 1])) --slot;
    if (slot == nearest.size()) continue;
    Insert(nearest, slot, met);
    farthest_square = std::min(limit, SquareBound(nearest[3].distance));
  }
  return nearest;
}

/// False for positions beyond the cells.
bool SiteInterpolator::RangeAround(std::span<const float> positions, CellRange& range) const {
  const auto [low, high] = MinMax(positions);
  const double first = measured_.cells->IndexOf(low);
  const double last = low == high ? first : measured_.cells->IndexOf(high);
  const std::int32_t columns = measured_.cells->columns;
  if (!(first >= -1 && last <= columns)) return false;
  range.is_one_cell = first == last;
  range.first = std::max(static_cast<std::int32_t>(first) - 1, 0);
  range.last = std::min(static_cast<std::int32_t>(last) + 1, columns - 1);
  return true;
}

/// The cells of the first ring around each point. False if there are too many sites in them.
bool SiteInterpolator::Surround(const Tile& tile, Surroundings& around, SureDistances& sure) const {
  const auto count = static_cast<std::size_t>(tile.count);
  CellRange columns;
  CellRange rows;
  if (!RangeAround(std::span(tile.x).first(count), columns)) return false;
  if (!RangeAround(std::span(tile.y).first(count), rows)) return false;
  if (rows.last - rows.first >= Surroundings::kMostRuns) return false;
  const SiteCells& cells = *measured_.cells;
  around.x = cells.x.data();
  around.y = cells.y.data();
  around.z = cells.z.data();
  around.run_count = 0;
  std::int32_t sites = 0;
  for (std::int32_t row = rows.first; row <= rows.last; ++row) {
    const std::int32_t begin = cells.first[cells.NumberOf(columns.first, row)];
    const std::int32_t end = cells.first[cells.NumberOf(columns.last, row) + 1];
    around.runs[around.run_count++] = {begin, end};
    sites += end - begin;
  }
  // Sites outside the first ring are a cell away. Where none but the ring's sites are around, the
  // search must end with that ring instead, when the squared reach is a squared cell at least.
  const double cell = measured_.cells->size;
  const bool has_ring_only = columns.is_one_cell && rows.is_one_cell;
  const double in_ring = (has_ring_only ? std::max(cell, cell * cell) : cell) * (1 - kTolerance);
  sure.above = kFirstReachSquare;
  sure.below = std::min(farthest_slot_, in_ring);
  return sites <= kMostSites;
}

}  // namespace discoplan
