// SPDX-License-Identifier: MIT
#include <algorithm>
#include <array>
#include <cmath>

#include "discoplan/core/numbers.h"
#include "discoplan/core/wafer.h"

namespace discoplan {
namespace {

struct Neighbour {
  double distance;
  std::int32_t site;
};

double Distance(const Site& site, float x, float y) {
  const double dx = static_cast<double>(x) - site.x;
  const double dy = static_cast<double>(y) - site.y;
  return std::sqrt(dx * dx + dy * dy);
}

/// Puts a neighbour into the slot `at` and moves those behind it outward; the farthest drops out.
void Insert(std::array<Neighbour, 4>& nearest_first, std::size_t at, Neighbour neighbour) {
  std::move_backward(nearest_first.begin() + static_cast<std::ptrdiff_t>(at),
                     nearest_first.end() - 1, nearest_first.end());
  nearest_first[at] = neighbour;
}

/// Inverse-distance-squared mean, nearest first. The numerator is a 32-bit sum, the denominator a
/// 64-bit one. `site_at` gives the site of a slot or raises.
template <class SiteAt>
float WeightedMean(const std::array<Neighbour, 4>& nearest_first, SiteAt&& site_at) {
  if (nearest_first[0].distance == 0) return site_at(nearest_first[0].site).z;
  float numerator = 0;
  double denominator = 0;
  for (const Neighbour& neighbour : nearest_first) {
    const double square = neighbour.distance * neighbour.distance;
    numerator = ToFloat(numerator + site_at(neighbour.site).z / square);
    denominator += 1 / square;
  }
  return ToFloat(numerator / denominator);
}

}  // namespace

void wafer::BuildSiteCells() {
  const double radius = WaferDiameter / 2.0;
  const std::int16_t count = ToInt16(nop_);
  cell_size_ = ToFloat(count >= 4 ? std::sqrt(radius * radius * kPi * 4 / count) : radius + radius);
  cell_half_count_ = ToInt16(Divide(radius, cell_size_));

  SiteCells cells;
  cells.side = 2 * cell_half_count_ + 1;
  const auto index_along = [&](float position) {
    const std::int32_t index =
        ToInt32(position / static_cast<double>(cell_size_) + cell_half_count_);
    if (index < 0 || index >= cells.side) {
      throw RunTimeError(Fault::Subscript, "a site lies outside the wafer");
    }
    return index;
  };
  std::vector<std::int32_t> cell_of(sites_.size());
  cells.first.assign(
      static_cast<std::size_t>(cells.side) * static_cast<std::size_t>(cells.side) + 1, 0);
  for (std::size_t i = 0; i < sites_.size(); ++i) {
    const std::int32_t column = index_along(sites_[i].x);
    cell_of[i] = index_along(sites_[i].y) * cells.side + column;
    ++cells.first[static_cast<std::size_t>(cell_of[i]) + 1];
  }
  for (std::size_t c = 1; c < cells.first.size(); ++c) cells.first[c] += cells.first[c - 1];
  cells.sites.resize(sites_.size());
  std::vector<std::int32_t> next(cells.first.begin(), cells.first.end() - 1);
  for (std::size_t i = 0; i < sites_.size(); ++i) {
    std::int32_t& slot = next[static_cast<std::size_t>(cell_of[i])];
    cells.sites[static_cast<std::size_t>(slot++)] = static_cast<std::int16_t>(i);
  }
  cells_ = std::move(cells);
}

/// The four slots and the walk over the cells around a point.
class wafer::CellSearch {
 public:
  CellSearch(const wafer& owner, float x, float y) : owner_(owner), x_(x), y_(y) {
    const double test_radius = owner.TestDiameter / 2.0;
    // Square millimetres against plain distances: far enough that any site replaces it.
    float start = 0;
    Attempt([&] { start = ToFloat(9 * test_radius * test_radius); });
    slots_.fill({start, 0});
    replacement_ = 4.0 * owner.WaferRadius;
  }

  const std::array<Neighbour, 4>& Run() {
    float u = 0;
    float v = 0;
    Attempt([&] { u = ToFloat(Divide(x_, owner_.cell_size_)); });
    Attempt([&] { v = ToFloat(Divide(y_, owner_.cell_size_)); });
    std::int32_t column = 0;
    std::int32_t row = 0;
    Attempt([&] { column = Index(x_); });
    Attempt([&] { row = Index(y_); });
    // Begins in cells and grows in millimetres; the mixture decides where the search stops.
    double reach = std::min(ToBorder(v), ToBorder(u));
    OfferCell(column, row);
    const std::int32_t last_ring = LastRing(column, row);
    for (std::int32_t ring = 1; slots_[3].distance > reach * reach && ring <= last_ring; ++ring) {
      reach += owner_.cell_size_;
      OfferRing(column, row, ring);
    }
    return slots_;
  }

 private:
  std::int32_t Index(float position) const {
    return ToInt32(Divide(position, owner_.cell_size_) + owner_.cell_half_count_);
  }

  static double ToBorder(float cells) {
    const double part = cells - std::floor(static_cast<double>(cells));
    return part >= 0.5 ? 1 - part : part;
  }

  /// The last ring that still has a cell of the index in it, among those that are walked at all.
  std::int32_t LastRing(std::int32_t column, std::int32_t row) const {
    const auto farthest = [&](std::int64_t at) {
      return std::max(std::abs(at), std::abs(at - (owner_.cells_.side - 1)));
    };
    const std::int64_t ring = std::max(farthest(column), farthest(row));
    return static_cast<std::int32_t>(std::min<std::int64_t>(ring, 32767));
  }

  /// Top row to the right, right column down, bottom row to the left, left column up.
  void OfferRing(std::int32_t column, std::int32_t row, std::int32_t ring) {
    OfferSide(column - ring, row + ring, +1, 0, ring);
    OfferSide(column + ring, row + ring, 0, -1, ring);
    OfferSide(column + ring, row - ring, -1, 0, ring);
    OfferSide(column - ring, row - ring, 0, +1, ring);
  }

  /// The 2 x `ring` cells from the given one along the step, as far as they lie in the index.
  void OfferSide(std::int64_t column, std::int64_t row, int step_column, int step_row,
                 std::int32_t ring) {
    const std::int64_t last = owner_.cells_.side - 1;
    const std::int64_t fixed = step_column == 0 ? column : row;
    if (fixed < 0 || fixed > last) return;
    const std::int64_t start = step_column == 0 ? row : column;
    const bool rising = step_column + step_row > 0;
    const std::int64_t begin = std::max<std::int64_t>(0, rising ? -start : start - last);
    const std::int64_t end = std::min<std::int64_t>(2 * ring, (rising ? last - start : start) + 1);
    for (std::int64_t step = begin; step < end; ++step) {
      OfferCell(static_cast<std::int32_t>(column + step * step_column),
                static_cast<std::int32_t>(row + step * step_row));
    }
  }

  void OfferCell(std::int32_t column, std::int32_t row) {
    const SiteCells& cells = owner_.cells_;
    if (column < 0 || row < 0 || column >= cells.side || row >= cells.side) return;
    const auto cell = static_cast<std::size_t>(row) * static_cast<std::size_t>(cells.side) +
                      static_cast<std::size_t>(column);
    for (std::int32_t i = cells.first[cell]; i < cells.first[cell + 1]; ++i) {
      Offer(cells.sites[static_cast<std::size_t>(i)]);
    }
  }

  /// The tests run one after the other on the same site: while the slots are far away, the first
  /// site met takes the outer ones too, at the replacement distance.
  void Offer(std::int32_t site) {
    double distance = Distance(owner_.sites_[static_cast<std::size_t>(site)], x_, y_);
    for (std::size_t slot = 0; slot < slots_.size(); ++slot) {
      if (!(distance < slots_[slot].distance)) continue;
      Insert(slots_, slot, {distance, site});
      distance = replacement_;
    }
  }

  const wafer& owner_;
  const float x_;
  const float y_;
  double replacement_;
  std::array<Neighbour, 4> slots_;  // nearest first
};

float wafer::InterpolateFromCells(float x, float y) const {
  CellSearch search(*this, x, y);
  return WeightedMean(search.Run(), [&](std::int32_t site) -> const Site& {
    return sites_[static_cast<std::size_t>(site)];
  });
}

float wafer::Interpolation_Einfach(float x, float y) const {
  constexpr std::int32_t kNoSite = -1;
  const double radius = WaferDiameter / 2.0;
  std::array<Neighbour, 4> slots;
  slots.fill({ToFloat(3 * radius), kNoSite});
  for (std::size_t i = 0; i < sites_.size(); ++i) {
    const double distance = Distance(sites_[i], x, y);
    const auto slot = std::ranges::find_if(
        slots, [&](const Neighbour& taken) { return distance < taken.distance; });
    if (slot == slots.end()) continue;
    Insert(slots, static_cast<std::size_t>(slot - slots.begin()),
           {distance, static_cast<std::int32_t>(i)});
  }
  return WeightedMean(slots, [&](std::int32_t site) -> const Site& {
    if (site == kNoSite) throw RunTimeError(Fault::Subscript, "fewer than four sites in reach");
    return sites_[static_cast<std::size_t>(site)];
  });
}

float wafer::Interpolation(float x, float y) const noexcept {
  if (!(nop_ >= 4)) return 0;
  float value = 0;
  Attempt([&] { value = nop_ < 10 ? Interpolation_Einfach(x, y) : InterpolateFromCells(x, y); });
  return value;
}

}  // namespace discoplan
