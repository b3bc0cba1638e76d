// SPDX-License-Identifier: MIT
#include "discoplan/analysis/difference.h"

#include <algorithm>
#include <optional>

#include "discoplan/analysis/compensated_sum.h"
#include "discoplan/analysis/sample.h"
#include "discoplan/analysis/site_tree.h"

namespace discoplan::analysis {
namespace {

/// Looks up another wafer's values, and keeps count of how.
class Partner {
 public:
  Partner(std::span<const Site> sites, double tolerance) : tree_(sites), tolerance_(tolerance) {}

  std::optional<double> At(const Site& site, Derived& derived) const {
    const std::vector<Neighbour> nearest = tree_.Nearest(site.x, site.y, 1);
    const bool is_same = !nearest.empty() && nearest.front().distance <= tolerance_;
    if (!is_same && tree_.Sites().size() < kInterpolationSites) {
      ++derived.missing;
      return {};
    }
    derived.farthest = std::max(derived.farthest, nearest.front().distance);
    if (is_same) {
      ++derived.matched;
      return DecimalOf(tree_.Sites()[nearest.front().site].z);
    }
    ++derived.interpolated;
    return InterpolatedAt(tree_, site.x, site.y);
  }

 private:
  SiteTree tree_;
  double tolerance_;
};

}  // namespace

Derived DifferenceOf(std::span<const Site> sites, std::span<const Site> other, double tolerance) {
  const Partner partner(other, tolerance);
  Derived difference;
  difference.sites.reserve(sites.size());
  for (const Site& site : sites) {
    const std::optional<double> value = partner.At(site, difference);
    if (!value) continue;
    difference.sites.push_back({site.x, site.y, static_cast<float>(DecimalOf(site.z) - *value)});
  }
  return difference;
}

Derived MeanWafer(std::span<const std::span<const Site>> wafers, double tolerance) {
  std::vector<Partner> others;
  for (const std::span<const Site> other : wafers.subspan(1)) others.emplace_back(other, tolerance);
  Derived mean;
  for (const Site& site : wafers.front()) {
    CompensatedSum sum;
    sum += DecimalOf(site.z);
    bool is_everywhere = true;
    for (const Partner& other : others) {
      const std::optional<double> value = other.At(site, mean);
      is_everywhere &= value.has_value();
      sum += value.value_or(0);
    }
    if (!is_everywhere) continue;
    const double value = sum.Value() / static_cast<double>(wafers.size());
    mean.sites.push_back({site.x, site.y, static_cast<float>(value)});
  }
  return mean;
}

}  // namespace discoplan::analysis
