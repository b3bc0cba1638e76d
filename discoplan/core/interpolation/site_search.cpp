// SPDX-License-Identifier: MIT
#include "discoplan/core/interpolation/site_search.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "discoplan/base/numbers.h"
#include "discoplan/core/interpolation/neighbours.h"
#include "discoplan/core/interpolation/site_cells.h"

namespace discoplan {
namespace {

/// The four slots and the walk over the cells around a point.
class CellSearch {
 public:
  CellSearch(const MeasuredSites& measured, float x, float y)
      : sites_(measured.sites),
        cells_(*measured.cells),
        x_(x),
        y_(y),
        replacement_(ReplacementDistance(measured)) {
    slots_.fill({StartDistance(measured), 0});
  }

  const Neighbours& Run() {
    float u = 0;
    float v = 0;
    Attempt([&] { u = ToFloat(Divide(x_, cells_.size)); });
    Attempt([&] { v = ToFloat(Divide(y_, cells_.size)); });
    std::int32_t column = 0;
    std::int32_t row = 0;
    Attempt([&] { column = Index(x_); });
    Attempt([&] { row = Index(y_); });
    // Begins in cells and grows in millimetres; the mixture decides where the search stops.
    double reach = std::min(ToBorder(v), ToBorder(u));
    OfferCell(column, row);
    const std::int32_t last_ring = LastRing(column, row);
    for (std::int32_t ring = 1; slots_[3].distance > reach * reach && ring <= last_ring; ++ring) {
      reach += cells_.size;
      OfferRing(column, row, ring);
    }
    return slots_;
  }

 private:
  std::int32_t Index(float position) const {
    return ToInt32(Divide(position, cells_.size) + cells_.half_count);
  }

  static double ToBorder(float cells) {
    const double part = cells - Floor(cells);
    return part >= 0.5 ? 1 - part : part;
  }

  static double Floor(double value) {
    if (!(std::abs(value) < 1e9)) return std::floor(value);
    const double nearest = RoundHalfEven(value);
    return nearest > value ? nearest - 1 : nearest;
  }

  /// The last ring that still has a cell of the index in it, among those that are walked at all.
  std::int32_t LastRing(std::int32_t column, std::int32_t row) const {
    const auto farthest = [&](std::int64_t at) {
      return std::max(std::abs(at), std::abs(at - (cells_.columns - 1)));
    };
    const std::int64_t ring = std::max(farthest(column), farthest(row));
    return static_cast<std::int32_t>(std::min<std::int64_t>(ring, 32767));
  }

  /// Top row to the right, right column down, bottom row to the left, left column up.
  void OfferRing(std::int64_t column, std::int64_t row, std::int32_t ring) {
    OfferSide(column - ring, row + ring, +1, 0, ring);
    OfferSide(column + ring, row + ring, 0, -1, ring);
    OfferSide(column + ring, row - ring, -1, 0, ring);
    OfferSide(column - ring, row - ring, 0, +1, ring);
  }

  /// The 2 x `ring` cells from the given one along the step, as far as they lie in the index.
  void OfferSide(std::int64_t column, std::int64_t row, int step_column, int step_row,
                 std::int32_t ring) {
    const std::int64_t last = cells_.columns - 1;
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
    if (column < 0 || row < 0 || column >= cells_.columns || row >= cells_.columns) return;
    const std::size_t cell = cells_.NumberOf(column, row);
    for (std::int32_t i = cells_.first[cell]; i < cells_.first[cell + 1]; ++i) {
      Offer(cells_.sites[static_cast<std::size_t>(i)]);
    }
  }

  void Offer(std::int32_t number) {
    const Site& site = sites_[static_cast<std::size_t>(number)];
    const double square = SquaredDistance(site.x, site.y, x_, y_);
    if (square > farthest_square_) return;
    const Neighbour offered{std::sqrt(square), number};
    if (slots_[3].distance > replacement_) {
      TakeWhileFar(offered);
    } else {
      Take(offered);
    }
    farthest_square_ = SquareBound(slots_[3].distance);
  }

  void Take(const Neighbour& offered) {
    if (!(offered.distance < slots_[3].distance)) return;
    const bool first = offered.distance < slots_[0].distance;
    const bool second = offered.distance < slots_[1].distance;
    const bool third = offered.distance < slots_[2].distance;
    slots_[3] = third ? slots_[2] : offered;
    slots_[2] = second ? slots_[1] : third ? offered : slots_[2];
    slots_[1] = first ? slots_[0] : second ? offered : slots_[1];
    slots_[0] = first ? offered : slots_[0];
  }

  /// The tests run one after the other on the same site: while the slots are far away, the first
  /// site met takes the outer ones too, at the replacement distance.
  void TakeWhileFar(Neighbour offered) {
    for (std::size_t slot = 0; slot < slots_.size(); ++slot) {
      if (!(offered.distance < slots_[slot].distance)) continue;
      Insert(slots_, slot, offered);
      offered.distance = replacement_;
    }
  }

  const std::span<const Site> sites_;
  const SiteCells& cells_;
  const float x_;
  const float y_;
  const double replacement_;
  double farthest_square_ = std::numeric_limits<double>::infinity();
  Neighbours slots_;  // nearest first
};

}  // namespace

float StartDistance(const MeasuredSites& measured) {
  const double test_radius = measured.test_diameter / 2.0;
  float start = 0;
  Attempt([&] { start = ToFloat(9 * test_radius * test_radius); });
  return start;
}

double ReplacementDistance(const MeasuredSites& measured) {
  return 4.0 * (measured.wafer_diameter / 2);
}

float InterpolateFromCells(const MeasuredSites& measured, float x, float y) noexcept {
  float value = 0;
  Attempt([&] {
    CellSearch search(measured, x, y);
    value = WeightedMean(search.Run(), [&](std::int32_t site) {
      return measured.sites[static_cast<std::size_t>(site)].z;
    });
  });
  return value;
}

float InterpolateFromAll(const MeasuredSites& measured, float x, float y) noexcept {
  constexpr std::int32_t kNoSite = -1;
  float value = 0;
  Attempt([&] {
    const double radius = measured.wafer_diameter / 2.0;
    Neighbours slots;
    slots.fill({ToFloat(3 * radius), kNoSite});
    std::int32_t number = 0;
    for (const Site& site : measured.sites) {
      const Neighbour met{std::sqrt(SquaredDistance(site.x, site.y, x, y)), number++};
      std::size_t slot = 0;
      while (slot < slots.size() && !(met.distance < slots[slot].distance)) ++slot;
      if (slot < slots.size()) Insert(slots, slot, met);
    }
    value = WeightedMean(slots, [&](std::int32_t site) {
      if (site == kNoSite) throw RunTimeError(Fault::Subscript, "fewer than four sites in reach");
      return measured.sites[static_cast<std::size_t>(site)].z;
    });
  });
  return value;
}

}  // namespace discoplan
