// SPDX-License-Identifier: MIT
#include "discoplan/analysis/interpolation_error.h"

#include <cmath>
#include <vector>

#include "discoplan/analysis/compensated_sum.h"
#include "discoplan/analysis/decimal.h"
#include "discoplan/analysis/site_tree.h"

namespace discoplan::analysis {

std::optional<InterpolationError> LeaveOneOut(std::span<const Site> sites) {
  if (sites.size() <= kInterpolationSites) return {};
  const SiteTree tree(sites);
  std::vector<double> offs(sites.size());
  // Neighbours one after the other are found along the same way through the tree.
  for (std::size_t place = 0; place < sites.size(); ++place) {
    const std::size_t i = tree.SiteAt(place);
    offs[i] = std::abs(DecimalOf(sites[i].z) - InterpolatedAt(tree, sites[i].x, sites[i].y, i));
  }
  InterpolationError error;
  CompensatedSum squares;
  for (std::size_t i = 0; i < sites.size(); ++i) {
    squares += offs[i] * offs[i];
    if (offs[i] > error.largest) {
      error.largest = offs[i];
      error.worst = i;
    }
  }
  error.rms = std::sqrt(squares.Value() / static_cast<double>(sites.size()));
  return error;
}

}  // namespace discoplan::analysis
