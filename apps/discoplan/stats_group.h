// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "data/lot.h"
#include "discoplan/analysis/lot_summary.h"

namespace discoplan::app {

/// The wafers that were measured in one parameter, summed up.
struct StatsGroup {
  const data::Parameter* parameter;
  std::vector<const data::Wafer*> wafers;
  std::vector<std::vector<Site>> sites;
  analysis::LotSummary summary;  ///< of these wafers, in their order
};

/// One for each parameter that has wafers.
std::vector<StatsGroup> GroupsOf(const data::Lot& lot);

/// Square roots of the variance components; nothing for a single wafer.
std::optional<double> SigmaWithin(const analysis::LotSummary& summary);
std::optional<double> SigmaBetween(const analysis::LotSummary& summary);
inline constexpr std::string_view kWithinFormula =
    "s_w = sqrt(MSE), MSE = sum_i sum_j (z_ij - mean_i)^2 / (N - a)";
inline constexpr std::string_view kBetweenFormula =
    "s_b = sqrt((MSA - MSE) / n0), MSA = sum_i n_i (mean_i - mean)^2 / (a - 1)";

/// "mean", "sigma" or "mean and sigma": what is outlying about a wafer; nothing for "".
std::string_view WordFor(analysis::Outlying outlying);

/// "Slot25 (mean), Slot3 (sigma)"; "none".
std::string OutlyingOnes(const analysis::LotSummary& summary);

}  // namespace discoplan::app
