// SPDX-License-Identifier: MIT
#pragma once

/// What a wafer's figures of merit are computed from.
///
///     const Sample sample(sites);
///     if (sample.sigma) Show(sample.mean, *sample.sigma, sample.Quantile(0.5));
///
/// For wafers one after the other, in the same memory:
///
///     Sample sample;
///     for (const std::vector<Site>& sites : wafers) {
///       sample.Take(sites);
///       Show(sample.mean);
///     }
///
/// Sums are compensated and 64-bit. A value is taken as the decimal number that its 32-bit float
/// stands for (`DecimalOf`), so that 10.446 - 9.4911 is 0.9549 and not 0.95489979.

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

#include "discoplan/analysis/decimal.h"
#include "discoplan/analysis/sorting.h"
#include "discoplan/analysis/surface_fit.h"
#include "discoplan/core/wafer.h"
#include "discoplan/export.h"

namespace discoplan::analysis {

/// Sigma of normally distributed values in parts of the median of their distances from the median:
/// 1 / 0.67449, the normal distribution's upper quartile (P. Rousseeuw and C. Croux, "Alternatives
/// to the Median Absolute Deviation", J. Am. Stat. Assoc. 88, 1993).
inline constexpr double kSigmaOfMedianDeviation = 1.482602218505602;

/// Those of the values, in the order of the sites.
DISCOPLAN_EXPORT std::vector<double> DecimalsOf(std::span<const Site> sites);

struct DISCOPLAN_EXPORT Sample {
  /// Of nothing: it has no numbers before it takes some.
  Sample() = default;
  /// The sites outlive the sample; at least one, of finite values. All else depends on that.
  explicit Sample(std::span<const Site> sites);
  /// Values alone, for what has no positions; at least one.
  explicit Sample(std::vector<double> values);

  /// What the constructor does with sites.
  void Take(std::span<const Site> sites);

  std::size_t Count() const { return sorted.size(); }
  double Minimum() const { return sorted.front(); }
  double Maximum() const { return sorted.back(); }
  double Range() const { return Maximum() - Minimum(); }
  /// Linear interpolation between the order statistics, at 1 + (n - 1) p: definition 7 of
  /// R. Hyndman and Y. Fan, "Sample Quantiles in Statistical Packages", The American Statistician
  /// 50 (1996). `p` from 0 to 1.
  double Quantile(double p) const;
  // Found when they are first asked for: a sample is one thread's.

  /// Median of the distances from the median, not scaled (`kSigmaOfMedianDeviation`).
  double MedianDeviation() const;
  /// Of the sites.
  const PlaneFit& Plane() const;

  std::span<const Site> sites;
  std::vector<double> sorted;
  double mean = 0;
  double squares = 0;           ///< Sum of the squared distances from the mean.
  std::optional<double> sigma;  ///< sqrt(squares / (n - 1)); not for a single value.

 private:
  void SumUp();

  std::vector<float> values_;  // in the order of the sites, as are the next
  std::vector<double> decimals_;
  DecimalSorter sorter_;
  mutable PlaneFitter fitter_;
  mutable std::optional<PlaneFit> plane_;
  mutable std::optional<double> median_deviation_;
};

/// Between 1.5 interquartile ranges below the lower quartile and above the upper one, but no wider
/// than the values: J. Tukey, "Exploratory Data Analysis" (1977).
struct RobustRange {
  double low = 0;
  double high = 0;
};
DISCOPLAN_EXPORT RobustRange FencesOf(const Sample& sample);

}  // namespace discoplan::analysis
