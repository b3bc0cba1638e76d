// SPDX-License-Identifier: MIT
#include "discoplan/analysis/sample.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <numeric>
#include <utility>

#include "discoplan/analysis/compensated_sum.h"
#include "discoplan/base/numbers.h"

namespace discoplan::analysis {
namespace {

/// A float's bits in an order that is that of the numbers.
std::uint32_t RankOf(float value) {
  std::uint32_t bits = 0;
  std::memcpy(&bits, &value, sizeof bits);
  return (bits >> 31) != 0 ? ~bits : bits | 0x80000000u;
}

/// By the floats that they narrow to: the lowest 11 bits first, then those above.
void SortByDigits(std::vector<double>& values) {
  constexpr unsigned kBits = 11;
  constexpr std::uint32_t kDigits = 1u << kBits;
  std::vector<double> other(values.size());
  for (unsigned shift = 0; shift < 32; shift += kBits) {
    std::array<std::uint32_t, kDigits> next{};
    const auto digit = [&](double value) {
      return RankOf(static_cast<float>(value)) >> shift & (kDigits - 1);
    };
    for (const double value : values) ++next[digit(value)];
    std::exclusive_scan(next.begin(), next.end(), next.begin(), 0u);
    for (const double value : values) other[next[digit(value)]++] = value;
    values.swap(other);
  }
}

/// In ascending order, which is that of the floats since each narrows to its own.
std::vector<double> Sorted(std::vector<double> decimals) {
  constexpr std::size_t kFew = 400;  // that are sorted sooner by comparing them
  decimals.size() < kFew ? std::sort(decimals.begin(), decimals.end()) : SortByDigits(decimals);
  return decimals;
}

/// Of numbers of which `at` gives those of ascending order.
template <class At>
double QuantileOf(std::size_t count, double p, At at) {
  const double place = static_cast<double>(count - 1) * p;
  const auto below = static_cast<std::size_t>(place);
  const double lower = at(below);
  const double upper = at(std::min(below + 1, count - 1));
  return lower + (place - static_cast<double>(below)) * (upper - lower);
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

double DecimalOf(float value) {
  constexpr double kSmallest = 1e-3;
  constexpr double kLargest = 1e7;
  constexpr double kPowers[] = {1, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9};
  const double exact = value;
  if (!(std::abs(exact) >= kSmallest && std::abs(exact) <= kLargest)) return exact;
  for (const double power : kPowers) {
    const double decimal = RoundHalfEven(exact * power) / power;
    if (static_cast<float>(decimal) == value) return decimal;
  }
  return exact;
}

std::vector<double> DecimalsOf(std::span<const Site> sites) {
  std::vector<double> decimals(sites.size());
  std::transform(sites.begin(), sites.end(), decimals.begin(),
                 [](const Site& site) { return DecimalOf(site.z); });
  return decimals;
}

Sample::Sample(std::span<const Site> all) : sites(all), decimals_(DecimalsOf(all)) {
  sorted = Sorted(decimals_);
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
  if (sorted.size() > 1) sigma = std::sqrt(squares / (count - 1));
}

double Sample::Quantile(double p) const {
  return QuantileOf(Count(), p, [&](std::size_t i) { return sorted[i]; });
}

double Sample::MedianDeviation() const {
  const Distances distances(sorted, Quantile(0.5));
  return QuantileOf(Count(), 0.5, [&](std::size_t i) { return distances[i]; });
}

const PlaneFit& Sample::Plane() const {
  if (!plane_) plane_ = FitPlane(sites, decimals_);
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
