// SPDX-License-Identifier: MIT
#pragma once

/// How much of a lot's variance lies within its wafers, and how much between them.
///
///     const auto parts = VarianceComponentsOf(samples);
///     if (parts) Show(std::sqrt(parts->within), std::sqrt(parts->between));
///
/// The model is z_ij = mean + wafer_i + site_ij with random wafers. The estimators are those of the
/// analysis of variance, for wafers of equal and of different numbers of sites alike: S. Searle,
/// G. Casella and C. McCulloch, "Variance Components" (1992), 3.5 and 3.6.
///
///     within  = MSE = sum_i sum_j (z_ij - mean_i)^2 / (N - a)
///     MSA     = sum_i n_i (mean_i - mean)^2 / (a - 1)
///     n0      = (N - sum_i n_i^2 / N) / (a - 1)
///     between = (MSA - MSE) / n0, or 0 if that is negative

#include <cstddef>
#include <optional>
#include <span>

#include "discoplan/analysis/sample.h"
#include "discoplan/export.h"

namespace discoplan::analysis {

struct VarianceComponents {
  std::size_t wafers = 0;
  std::size_t sites = 0;
  double mean = 0;      ///< Of all sites alike.
  double within = 0;    ///< Variance of the sites of a wafer.
  double between = 0;   ///< Variance of the wafers' true means; 0 where the estimate is negative.
  double estimate = 0;  ///< The same with its sign.
  double effective_sites = 0;  ///< n0; the sites of each wafer where they are equally many.
};

/// Empty for fewer than two wafers, and where no wafer has a second site.
DISCOPLAN_EXPORT std::optional<VarianceComponents> VarianceComponentsOf(
    std::span<const Sample> wafers);

}  // namespace discoplan::analysis
