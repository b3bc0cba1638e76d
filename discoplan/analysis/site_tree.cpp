// SPDX-License-Identifier: MIT
#include "discoplan/analysis/site_tree.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <cmath>
#include <limits>

#include "discoplan/analysis/compensated_sum.h"
#include "discoplan/analysis/decimal.h"

namespace discoplan::analysis {

/// Places from `begin` to `end`. Unless they are few, the first half of them lies at or below the
/// border of its number, the others at or above it.
struct SiteTree::Part {
  std::size_t begin;
  std::size_t end;
  std::size_t number;
  bool upwards;   // divided along Y
  double across;  // how far it lies from the searched position, at least
  double up;

  bool IsSmall() const { return end - begin <= kFewPlaces; }
  std::size_t Middle() const { return begin + (end - begin) / 2; }
  Part Low() const { return {begin, Middle(), 2 * number + 1, !upwards, across, up}; }
  Part High() const { return {Middle(), end, 2 * number + 2, !upwards, across, up}; }
};

/// The nearest sites so far, in order. Distances are only drawn from their squares to tell sites
/// apart that lie about as far.
struct SiteTree::Query {
  /// More than what rounding adds to a square, as a share.
  static constexpr double kRounding = 1e-12;

  static double Square(double across, double up) { return across * across + up * up; }

  /// What is surely farther than something that far.
  static double Beyond(double square) {
    return square * (1 + kRounding) + std::numeric_limits<double>::min();
  }

  bool IsNearer(const Candidate& a, double beyond_a, const Candidate& b) const {
    if (b.square > beyond_a) return true;
    if (a.square > Beyond(b.square)) return false;
    const double first = tree.DistanceTo(a.site, x, y);
    const double second = tree.DistanceTo(b.site, x, y);
    return first < second || (first == second && a.site < b.site);
  }

  void Offer(const Place& place) {
    const double square =
        Square(x - static_cast<double>(place.x), y - static_cast<double>(place.y));
    if (square > limit || place.site == without) return;
    const Candidate candidate{square, place.site};
    const double beyond = Beyond(square);
    std::size_t at = count;
    if (count < found.size()) {
      ++count;
    } else if (!IsNearer(candidate, beyond, found[--at])) {
      return;
    }
    for (; at > 0 && IsNearer(candidate, beyond, found[at - 1]); --at) found[at] = found[at - 1];
    found[at] = candidate;
    if (count == found.size()) limit = Beyond(found.back().square);
  }

  const SiteTree& tree;
  double x;
  double y;
  std::size_t without;
  std::span<Candidate> found;
  std::size_t count = 0;
  double limit = std::numeric_limits<double>::infinity();
};

SiteTree::SiteTree(std::span<const Site> sites) : sites_(sites) {
  places_.reserve(sites.size());
  for (const Site& site : sites) places_.push_back({site.x, site.y, places_.size()});
  Build(Whole());
}

SiteTree::Part SiteTree::Whole() const { return {0, places_.size(), 0, false, 0, 0}; }

void SiteTree::Build(const Part& part) {
  if (part.IsSmall()) return;
  const auto at = [&](std::size_t place) {
    return places_.begin() + static_cast<std::ptrdiff_t>(place);
  };
  const auto middle = at(part.Middle());
  std::nth_element(
      at(part.begin), middle, at(part.end),
      [up = part.upwards](const Place& a, const Place& b) { return up ? a.y < b.y : a.x < b.x; });
  if (borders_.size() <= part.number) borders_.resize(part.number + 1);
  borders_[part.number] = part.upwards ? middle->y : middle->x;
  Build(part.Low());
  Build(part.High());
}

double SiteTree::DistanceTo(std::size_t site, double x, double y) const {
  return std::hypot(x - sites_[site].x, y - sites_[site].y);
}

std::size_t SiteTree::Find(double x, double y, std::size_t without,
                           std::span<Candidate> room) const {
  if (room.empty()) return 0;
  Query query{*this, x, y, without, room};
  std::array<Part, kDeepest> later;  // from the farthest on, mostly
  std::size_t left = 0;
  later[left++] = Whole();
  while (left > 0) {
    Part part = later[--left];
    if (Query::Square(part.across, part.up) > query.limit) continue;
    while (!part.IsSmall()) {
      const double beyond = (part.upwards ? y : x) - static_cast<double>(borders_[part.number]);
      Part far = beyond < 0 ? part.High() : part.Low();
      (part.upwards ? far.up : far.across) = beyond;
      later[left++] = far;
      part = beyond < 0 ? part.Low() : part.High();
    }
    for (std::size_t i = part.begin; i < part.end; ++i) query.Offer(places_[i]);
  }
  return query.count;
}

std::vector<Neighbour> SiteTree::Nearest(double x, double y, std::size_t count,
                                         std::size_t without) const {
  std::vector<Candidate> room(std::min(count, places_.size()));
  room.resize(Find(x, y, without, room));
  std::vector<Neighbour> found;
  for (const Candidate& near : room) found.push_back({near.site, DistanceTo(near.site, x, y)});
  return found;
}

double InterpolatedAt(const SiteTree& tree, double x, double y, std::size_t without) {
  std::array<SiteTree::Candidate, kInterpolationSites> room;
  const std::span<const SiteTree::Candidate> nearest(room.data(), tree.Find(x, y, without, room));
  assert(!nearest.empty());
  const std::span<const Site> sites = tree.Sites();
  CompensatedSum values;
  CompensatedSum weights;
  for (const SiteTree::Candidate& near : nearest) {
    const double distance = tree.DistanceTo(near.site, x, y);
    if (distance == 0) return DecimalOf(sites[near.site].z);  // the first one, if any
    const double weight = 1 / (distance * distance);
    values += weight * DecimalOf(sites[near.site].z);
    weights += weight;
  }
  return values.Value() / weights.Value();
}

}  // namespace discoplan::analysis
