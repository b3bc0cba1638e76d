// SPDX-License-Identifier: MIT
#include "discoplan/analysis/site_tree.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <numeric>

#include "discoplan/analysis/compensated_sum.h"

namespace discoplan::analysis {

struct SiteTree::Query {
  double x;
  double y;
  std::size_t count;
  std::size_t without;
  std::vector<Neighbour> found;  // in order

  bool IsFull() const { return found.size() == count; }
  double Reach() const { return found.back().distance; }

  void Offer(const Neighbour& candidate) {
    const auto is_nearer = [](const Neighbour& a, const Neighbour& b) {
      return a.distance < b.distance || (a.distance == b.distance && a.site < b.site);
    };
    if (IsFull() && !is_nearer(candidate, found.back())) return;
    if (IsFull()) found.pop_back();
    found.insert(std::upper_bound(found.begin(), found.end(), candidate, is_nearer), candidate);
  }
};

SiteTree::SiteTree(std::span<const Site> sites) : sites_(sites), order_(sites.size()) {
  std::iota(order_.begin(), order_.end(), std::size_t{0});
  Build({0, order_.size(), 0});
}

double SiteTree::Coordinate(std::size_t place, int axis) const {
  const Site& site = sites_[order_[place]];
  return axis == 0 ? site.x : site.y;
}

void SiteTree::Build(const Part& part) {
  if (part.end - part.begin < 2) return;
  const std::size_t middle = part.begin + (part.end - part.begin) / 2;
  const auto at = [&](std::size_t place) {
    return order_.begin() + static_cast<std::ptrdiff_t>(place);
  };
  std::nth_element(at(part.begin), at(middle), at(part.end), [&](std::size_t a, std::size_t b) {
    return part.axis == 0 ? sites_[a].x < sites_[b].x : sites_[a].y < sites_[b].y;
  });
  Build({part.begin, middle, 1 - part.axis});
  Build({middle + 1, part.end, 1 - part.axis});
}

void SiteTree::Search(const Part& part, Query& query) const {
  if (part.begin == part.end) return;
  const std::size_t middle = part.begin + (part.end - part.begin) / 2;
  const std::size_t site = order_[middle];
  if (site != query.without) {
    query.Offer({site, std::hypot(query.x - sites_[site].x, query.y - sites_[site].y)});
  }
  const double beyond = (part.axis == 0 ? query.x : query.y) - Coordinate(middle, part.axis);
  const Part low{part.begin, middle, 1 - part.axis};
  const Part high{middle + 1, part.end, 1 - part.axis};
  Search(beyond < 0 ? low : high, query);
  if (!query.IsFull() || std::abs(beyond) <= query.Reach()) Search(beyond < 0 ? high : low, query);
}

std::vector<Neighbour> SiteTree::Nearest(double x, double y, std::size_t count,
                                         std::size_t without) const {
  if (count == 0) return {};
  Query query{x, y, count, without, {}};
  query.found.reserve(count + 1);
  Search({0, order_.size(), 0}, query);
  return std::move(query.found);
}

double InterpolatedAt(const SiteTree& tree, double x, double y, std::size_t without) {
  const std::vector<Neighbour> nearest = tree.Nearest(x, y, kInterpolationSites, without);
  assert(!nearest.empty());
  const std::span<const Site> sites = tree.Sites();
  if (nearest.front().distance == 0) return sites[nearest.front().site].z;
  CompensatedSum values;
  CompensatedSum weights;
  for (const Neighbour& near : nearest) {
    const double weight = 1 / (near.distance * near.distance);
    values += weight * sites[near.site].z;
    weights += weight;
  }
  return values.Value() / weights.Value();
}

}  // namespace discoplan::analysis
