// SPDX-License-Identifier: MIT
#include "discoplan/analysis/sample.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <numeric>
#include <utility>

#include "discoplan/analysis/compensated_sum.h"

namespace discoplan::analysis {
namespace {

/// A float's bits in an order that is that of the numbers.
std::uint32_t RankOf(float value) {
  std::uint32_t bits = 0;
  std::memcpy(&bits, &value, sizeof bits);
  return (bits >> 31) != 0 ? ~bits : bits | 0x80000000u;
}

/// By the lowest 11 bits first, then by those above.
void SortByDigits(std::vector<float>& values) {
  constexpr unsigned kBits = 11;
  constexpr std::uint32_t kDigits = 1u << kBits;
  std::vector<float> other(values.size());
  for (unsigned shift = 0; shift < 32; shift += kBits) {
    std::array<std::uint32_t, kDigits> next{};
    const auto digit = [&](float value) { return RankOf(value) >> shift & (kDigits - 1); };
    for (const float value : values) ++next[digit(value)];
    std::exclusive_scan(next.begin(), next.end(), next.begin(), 0u);
    for (const float value : values) other[next[digit(value)]++] = value;
    values.swap(other);
  }
}

/// The decimals in ascending order, which is that of the floats since each narrows to its own.
std::vector<double> SortedDecimals(std::span<const Site> sites) {
  constexpr std::size_t kFew = 400;  // that are sorted sooner by comparing them
  std::vector<float> values;
  values.reserve(sites.size());
  for (const Site& site : sites) values.push_back(site.z);
  sites.size() < kFew ? std::sort(values.begin(), values.end()) : SortByDigits(values);
  std::vector<double> decimals(values.size());
  std::transform(values.begin(), values.end(), decimals.begin(), DecimalOf);
  return decimals;
}

double QuantileOf(const std::vector<double>& sorted, double p) {
  const double place = static_cast<double>(sorted.size() - 1) * p;
  const auto below = static_cast<std::size_t>(place);
  const std::size_t above = std::min(below + 1, sorted.size() - 1);
  const double part = place - static_cast<double>(below);
  return sorted[below] + part * (sorted[above] - sorted[below]);
}

}  // namespace

double DecimalOf(float value) {
  constexpr double kSmallest = 1e-3;
  constexpr double kLargest = 1e7;
  constexpr double kPowers[] = {1, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9};
  const double exact = value;
  if (!(std::abs(exact) >= kSmallest && std::abs(exact) <= kLargest)) return exact;
  for (const double power : kPowers) {
    const double decimal = std::nearbyint(exact * power) / power;
    if (static_cast<float>(decimal) == value) return decimal;
  }
  return exact;
}

Sample::Sample(std::span<const Site> all) : sites(all), sorted(SortedDecimals(all)) { SumUp(); }

Sample::Sample(std::vector<double> values) : sorted(std::move(values)) {
  std::sort(sorted.begin(), sorted.end());
  SumUp();
}

// In the order of the numbers, so that the order of the sites makes no difference.
void Sample::SumUp() {
  const auto count = static_cast<double>(sorted.size());
  mean = SumOver(sorted, [](double value) { return value; }) / count;
  // What the rounding of the mean adds to the squares is taken off again: T. Chan, G. Golub and
  // R. LeVeque, "Algorithms for Computing the Sample Variance", The American Statistician 37
  // (1983).
  const double off = SumOver(sorted, [&](double value) { return value - mean; });
  const double all = SumOver(sorted, [&](double value) { return (value - mean) * (value - mean); });
  squares = std::max(0.0, all - off * off / count);
  if (sorted.size() > 1) sigma = std::sqrt(squares / (count - 1));
}

double Sample::Quantile(double p) const { return QuantileOf(sorted, p); }

double Sample::MedianDeviation() const {
  const double median = Quantile(0.5);
  const auto distance = [median](double value) { return std::abs(value - median); };
  // They grow from the median on to both sides.
  const auto right = std::lower_bound(sorted.begin(), sorted.end(), median);
  std::vector<double> distances(sorted.size());
  std::merge(std::make_reverse_iterator(right), sorted.rend(), right, sorted.end(),
             distances.begin(), [&](double a, double b) { return distance(a) < distance(b); });
  std::transform(distances.begin(), distances.end(), distances.begin(), distance);
  return QuantileOf(distances, 0.5);
}

const PlaneFit& Sample::Plane() const {
  if (!plane_) plane_ = FitPlane(sites);
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
