// SPDX-License-Identifier: MIT
#pragma once

/// What a picture or a table of a lot shows: the same for every look and every format.
///
///     const LotSummary lot = SummaryOf(wafers);
///     DrawMaps(lot.scale);
///     for (const WaferSummary& wafer : lot.wafers) Mark(wafer.name, wafer.outlying);

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "discoplan/analysis/figures_of_merit.h"
#include "discoplan/analysis/sample.h"
#include "discoplan/analysis/variance_components.h"
#include "discoplan/export.h"

namespace discoplan::analysis {

/// One wafer as it comes in. Its sites outlive what is made from it; at least one.
struct LotWafer {
  std::string name;
  std::span<const Site> sites;
};

/// Why a wafer stands out of its lot.
enum class Outlying { No, Mean, Sigma, Both };
/// The rule in words, for a legend.
inline constexpr std::string_view kOutlyingRule =
    "|x - median| > 3.5 x 1.4826 MAD of the wafers' means or sigmas";

struct WaferSummary {
  std::string name;
  Sample sample;
  Outlying outlying = Outlying::No;
};

struct LotSummary {
  std::vector<WaferSummary> wafers;  ///< In the order of the data.
  Sample all;                        ///< The sites of all wafers alike.
  RobustRange scale;                 ///< Of the colours of all maps: the fences of all sites.
  std::optional<VarianceComponents> components;
  /// Index of the wafer with the largest sigma, the first of equal ones; none where no wafer has a
  /// sigma.
  std::optional<std::size_t> worst;
};

/// At least one wafer. A wafer is outlying by the modified z-score of B. Iglewicz and D. Hoaglin,
/// "How to Detect and Handle Outliers" (1993): where its mean, or its sigma if that is above the
/// median, is more than 3.5 times 1.4826 MAD off the median of the lot's. For a MAD of 0 the mean
/// distance from the median times 1.2533 takes the place of 1.4826 MAD. Below four wafers none is.
DISCOPLAN_EXPORT LotSummary SummaryOf(std::span<const LotWafer> wafers);

/// For each value whether it is outlying by that rule.
DISCOPLAN_EXPORT std::vector<bool> OutlyingOf(std::span<const double> values);

}  // namespace discoplan::analysis
