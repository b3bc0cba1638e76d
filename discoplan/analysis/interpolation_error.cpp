// SPDX-License-Identifier: MIT
#include "discoplan/analysis/interpolation_error.h"

#include <cmath>

#include "discoplan/analysis/compensated_sum.h"
#include "discoplan/analysis/site_tree.h"

namespace discoplan::analysis {

std::optional<InterpolationError> LeaveOneOut(std::span<const Site> sites) {
  if (sites.size() <= kInterpolationSites) return {};
  const SiteTree tree(sites);
  InterpolationError error;
  CompensatedSum squares;
  for (std::size_t i = 0; i < sites.size(); ++i) {
    const double off = std::abs(sites[i].z - InterpolatedAt(tree, sites[i].x, sites[i].y, i));
    squares += off * off;
    if (off > error.largest) {
      error.largest = off;
      error.worst = i;
    }
  }
  error.rms = std::sqrt(squares.Value() / static_cast<double>(sites.size()));
  return error;
}

}  // namespace discoplan::analysis
