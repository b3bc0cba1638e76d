// SPDX-License-Identifier: MIT
#include "discoplan/analysis/variance_components.h"

#include <algorithm>

#include "discoplan/analysis/compensated_sum.h"

namespace discoplan::analysis {
namespace {

double CountOf(const Sample& wafer) { return static_cast<double>(wafer.Count()); }

}  // namespace

std::optional<VarianceComponents> VarianceComponentsOf(std::span<const Sample> wafers) {
  std::size_t total = 0;
  for (const Sample& wafer : wafers) total += wafer.Count();
  if (wafers.size() < 2 || total <= wafers.size()) return {};
  const auto sites = static_cast<double>(total);
  const auto groups = static_cast<double>(wafers.size());

  VarianceComponents parts;
  parts.wafers = wafers.size();
  parts.sites = total;
  parts.mean = SumOver(wafers, [](const Sample& w) { return CountOf(w) * w.mean; }) / sites;
  parts.within = SumOver(wafers, [](const Sample& w) { return w.squares; }) / (sites - groups);
  const double among = SumOver(wafers, [&](const Sample& w) {
    return CountOf(w) * (w.mean - parts.mean) * (w.mean - parts.mean);
  });
  const double of_squares =
      SumOver(wafers, [](const Sample& w) { return CountOf(w) * CountOf(w); });
  parts.effective_sites = (sites - of_squares / sites) / (groups - 1);
  parts.estimate = (among / (groups - 1) - parts.within) / parts.effective_sites;
  parts.between = std::max(0.0, parts.estimate);
  return parts;
}

}  // namespace discoplan::analysis
