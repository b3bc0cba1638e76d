// SPDX-License-Identifier: MIT
#pragma once

/// How far an interpolated map can be trusted: each site is left out in turn, and foretold from the
/// others. M. Stone, "Cross-Validatory Choice and Assessment of Statistical Predictions", J. R.
/// Stat. Soc. B 36 (1974).

#include <cstddef>
#include <optional>
#include <span>

#include "discoplan/core/wafer.h"
#include "discoplan/export.h"

namespace discoplan::analysis {

struct InterpolationError {
  double rms = 0;         ///< sqrt(mean (z - foretold)^2), in the values' unit.
  double largest = 0;     ///< max |z - foretold|
  std::size_t worst = 0;  ///< The site of the largest error, from 0.
};

/// Of the interpolation by `InterpolatedAt`; empty for fewer than five sites.
DISCOPLAN_EXPORT std::optional<InterpolationError> LeaveOneOut(std::span<const Site> sites);

}  // namespace discoplan::analysis
