// SPDX-License-Identifier: MIT
#include "discoplan/analysis/sample.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "discoplan/analysis/compensated_sum.h"

namespace discoplan::analysis {
namespace {

/// Of numbers of which `at` gives those of ascending order.
template <class At>
double QuantileOf(std::size_t count, double p, At at) {
  const double place = static_cast<double>(count - 1) * p;
  const auto below = static_cast<std::size_t>(place);
  const double part = place - static_cast<double>(below);
  const double lower = at(below);
  const double upper = part > 0 ? at(below + 1) : lower;
  return lower + part * (upper - lower);
}

/// The distances of ascending values from one among them, which grow to both sides.
class Distances {
 public:
  Distances(std::span<const double> values, double from)
      : values_(values),
        from_(from),
        left_(static_cast<std::size_t>(std::lower_bound(values.begin(), values.end(), from) -
                                       values.begin())),
        right_(values.size() - left_) {}

  /// In ascending order, by halving how many of the lesser ones are on the left.
  double operator[](std::size_t place) const {
    std::size_t low = place - std::min(place, right_);
    std::size_t high = std::min(place, left_);
    while (low < high) {
      const std::size_t middle = (low + high) / 2;
      if (Left(middle) < Right(place - middle - 1)) {
        low = middle + 1;
      } else {
        high = middle;
      }
    }
    if (low == left_) return Right(place - low);
    if (place - low == right_) return Left(low);
    return std::min(Left(low), Right(place - low));
  }

 private:
  double Left(std::size_t i) const { return from_ - values_[left_ - 1 - i]; }
  double Right(std::size_t i) const { return values_[left_ + i] - from_; }

  std::span<const double> values_;
  double from_;
  std::size_t left_;
  std::size_t right_;
};

}  // namespace

namespace {

void CopyValues(std::span<const Site> sites, std::vector<float>& values) {
  values.resize(sites.size());
  for (std::size_t i = 0; i < sites.size(); ++i) values[i] = sites[i].z;
}

}  // namespace

std::vector<double> DecimalsOf(std::span<const Site> sites) {
  std::vector<float> values;
  CopyValues(sites, values);
  std::vector<double> decimals(sites.size());
  DecimalsOf(values, decimals);
  return decimals;
}

Sample::Sample(std::span<const Site> all) { Take(all); }

void Sample::Take(std::span<const Site> all) {
  sites = all;
  plane_.reset();
  median_deviation_.reset();
  CopyValues(all, values_);
  decimals_.resize(all.size());
  DecimalsOf(values_, decimals_);
  sorted.resize(all.size());
  sorter_.Sort(values_, decimals_, sorted);
  SumUp();
}

Sample::Sample(std::vector<double> values) : sorted(std::move(values)) {
  std::sort(sorted.begin(), sorted.end());
  SumUp();
}

// In the order of the numbers, so that the order of the sites makes no difference.
void Sample::SumUp() {
  const auto count = static_cast<double>(sorted.size());
  mean = SumOfTerms(Count(), [&](std::size_t i) { return sorted[i]; }) / count;
  // What the rounding of the mean adds to the squares is taken off again: T. Chan, G. Golub and
  // R. LeVeque, "Algorithms for Computing the Sample Variance", The American Statistician 37
  // (1983).
  const auto from_mean = [&](std::size_t i) { return sorted[i] - mean; };
  const double off = SumOfTerms(Count(), from_mean);
  const double all =
      SumOfTerms(Count(), [&](std::size_t i) { return from_mean(i) * from_mean(i); });
  squares = std::max(0.0, all - off * off / count);
  sigma.reset();
  if (sorted.size() > 1) sigma = std::sqrt(squares / (count - 1));
}

double Sample::Quantile(double p) const {
  return QuantileOf(Count(), p, [&](std::size_t i) { return sorted[i]; });
}

double Sample::MedianDeviation() const {
  if (!median_deviation_) {
    const Distances distances(sorted, Quantile(0.5));
    median_deviation_ = QuantileOf(Count(), 0.5, [&](std::size_t i) { return distances[i]; });
  }
  return *median_deviation_;
}

const PlaneFit& Sample::Plane() const {
  if (!plane_) plane_ = fitter_.Fit(sites, decimals_);
  return *plane_;
}

RobustRange FencesOf(const Sample& sample) {
  constexpr double kReach = 1.5;
  const double lower = sample.Quantile(0.25);
  const double upper = sample.Quantile(0.75);
  const double reach = kReach * (upper - lower);
  return {std::max(sample.Minimum(), lower - reach), std::min(sample.Maximum(), upper + reach)};
}

}  // namespace discoplan::analysis
