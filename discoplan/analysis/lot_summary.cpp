// SPDX-License-Identifier: MIT
#include "discoplan/analysis/lot_summary.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "discoplan/analysis/compensated_sum.h"

namespace discoplan::analysis {
namespace {

/// Of the distances from the median, as sigma of normal values.
double SpreadOf(const Sample& sample) {
  constexpr double kOfMean = 1.2533141373155003;
  const double deviation = sample.MedianDeviation();
  if (deviation > 0) return kSigmaOfMedianDeviation * deviation;
  const double median = sample.Quantile(0.5);
  return kOfMean * SumOver(sample.sorted, [&](double value) { return std::abs(value - median); }) /
         static_cast<double>(sample.Count());
}

Sample AllOf(std::span<const LotWafer> wafers) {
  std::vector<double> values;
  for (const LotWafer& wafer : wafers) {
    for (const Site& site : wafer.sites) values.push_back(DecimalOf(site.z));
  }
  return Sample(std::move(values));
}

/// Takes the marks off again that are no more than the rounding of the sites' 32-bit floats.
void DropRounding(const Sample& all, const std::vector<double>& values, std::vector<bool>& marks) {
  constexpr double kRounding = 1e-7;
  const double least = kRounding * std::max(std::abs(all.Minimum()), std::abs(all.Maximum()));
  const double median = Sample(values).Quantile(0.5);
  for (std::size_t i = 0; i < values.size(); ++i) {
    if (std::abs(values[i] - median) <= least) marks[i] = false;
  }
}

void MarkOutlying(LotSummary& lot) {
  std::vector<double> means;
  std::vector<double> sigmas;
  for (const WaferSummary& wafer : lot.wafers) {
    means.push_back(wafer.sample.mean);
    sigmas.push_back(wafer.sample.sigma.value_or(0));
  }
  std::vector<bool> by_mean = OutlyingOf(means);
  std::vector<bool> by_sigma = OutlyingOf(sigmas);
  DropRounding(lot.all, means, by_mean);
  DropRounding(lot.all, sigmas, by_sigma);
  const double usual = Sample(sigmas).Quantile(0.5);
  for (std::size_t i = 0; i < lot.wafers.size(); ++i) {
    const bool wide = by_sigma[i] && sigmas[i] > usual;
    lot.wafers[i].outlying = by_mean[i] ? (wide ? Outlying::Both : Outlying::Mean)
                                        : (wide ? Outlying::Sigma : Outlying::No);
  }
}

std::optional<std::size_t> WorstOf(std::span<const WaferSummary> wafers) {
  std::optional<std::size_t> worst;
  for (std::size_t i = 0; i < wafers.size(); ++i) {
    if (!wafers[i].sample.sigma) continue;
    if (!worst || *wafers[i].sample.sigma > *wafers[*worst].sample.sigma) worst = i;
  }
  return worst;
}

}  // namespace

std::vector<bool> OutlyingOf(std::span<const double> values) {
  constexpr std::size_t kFewest = 4;
  constexpr double kFarthest = 3.5;
  std::vector<bool> outlying(values.size(), false);
  if (values.size() < kFewest) return outlying;
  const Sample sample(std::vector<double>(values.begin(), values.end()));
  const double median = sample.Quantile(0.5);
  const double limit = kFarthest * SpreadOf(sample);
  for (std::size_t i = 0; i < values.size(); ++i) {
    outlying[i] = std::abs(values[i] - median) > limit;
  }
  return outlying;
}

LotSummary SummaryOf(std::span<const LotWafer> wafers) {
  LotSummary lot{{}, AllOf(wafers), {}, {}, {}};
  std::vector<Sample> samples;
  for (const LotWafer& wafer : wafers) {
    samples.emplace_back(wafer.sites);
    lot.wafers.push_back({wafer.name, samples.back(), Outlying::No});
  }
  lot.scale = FencesOf(lot.all);
  lot.components = VarianceComponentsOf(samples);
  MarkOutlying(lot);
  lot.worst = WorstOf(lot.wafers);
  return lot;
}

}  // namespace discoplan::analysis
