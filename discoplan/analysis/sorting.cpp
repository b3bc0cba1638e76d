// SPDX-License-Identifier: MIT
#include "discoplan/analysis/sorting.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <limits>
#include <utility>

#include "discoplan/base/bits.h"

namespace discoplan::analysis {
namespace {

/// A float's bits in an order that is that of the numbers.
std::uint32_t RankOf(float value) {
  const auto bits = BitCast<std::uint32_t>(value);
  return (bits >> 31) != 0 ? ~bits : bits | 0x80000000u;
}

constexpr std::size_t kFew = 96;  // that are sorted sooner by comparing each with each

/// Puts each decimal where it belongs by the number of lesser ones: equal ones come to the same
/// place, and fill those behind it.
void SortFew(std::span<const float> values, std::span<const double> decimals,
             std::span<double> sorted) {
  constexpr std::size_t kAtOnce = 4;  // that a processor counts for, with each key that it loads
  std::int32_t keys[kFew];
  std::int32_t places[kFew];
  for (std::size_t i = 0; i < values.size(); ++i) {
    keys[i] = static_cast<std::int32_t>(RankOf(values[i]) ^ 0x80000000u);
  }
  const std::size_t filled = (values.size() + kAtOnce - 1) / kAtOnce * kAtOnce;
  std::fill(keys + values.size(), keys + filled, std::numeric_limits<std::int32_t>::max());
  for (std::size_t i = 0; i < filled; i += kAtOnce) {
    const std::int32_t sought[kAtOnce] = {keys[i], keys[i + 1], keys[i + 2], keys[i + 3]};
    std::int32_t lesser[kAtOnce] = {};
    for (std::size_t j = 0; j < filled; ++j) {
      for (std::size_t k = 0; k < kAtOnce; ++k) lesser[k] += keys[j] < sought[k] ? 1 : 0;
    }
    std::copy_n(lesser, kAtOnce, places + i);
  }
  constexpr double kEmpty = std::numeric_limits<double>::infinity();
  std::fill(sorted.begin(), sorted.end(), kEmpty);
  for (std::size_t i = 0; i < values.size(); ++i) {
    sorted[static_cast<std::size_t>(places[i])] = decimals[i];
  }
  double last = kEmpty;
  for (double& decimal : sorted) decimal = last = decimal == kEmpty ? last : decimal;
}

}  // namespace

void DecimalSorter::Sort(std::span<const float> values, std::span<const double> decimals,
                         std::span<double> sorted) {
  if (values.size() <= kFew) {
    SortFew(values, decimals, sorted);
    return;
  }
  SortByDigits(values);
  std::transform(keys_.begin(), keys_.end(), sorted.begin(), [&](std::uint64_t key) {
    return decimals[static_cast<std::size_t>(key & 0xFFFFFFFF)];
  });
}

/// The lowest digits first, of as many bits as differ.
void DecimalSorter::SortByDigits(std::span<const float> values) {
  constexpr std::size_t kMany = 1000;  // for which larger tables are worth their cost
  constexpr int kMostBits = 11;
  keys_.resize(values.size());
  other_.resize(values.size());
  std::uint32_t differing = 0;
  const std::uint32_t first = RankOf(values.front());
  for (std::size_t i = 0; i < values.size(); ++i) {
    const std::uint32_t rank = RankOf(values[i]);
    differing |= rank ^ first;
    keys_[i] = std::uint64_t{rank} << 32 | i;
  }
  int bits = 0;
  while (bits < 32 && differing >> bits != 0) ++bits;
  const int most = values.size() < kMany ? kMostBits - 3 : kMostBits;
  const int digits = (bits + most - 1) / most;
  for (int digit = 0; digit < digits; ++digit) {
    const int from = bits * digit / digits;
    const int width = bits * (digit + 1) / digits - from;
    const std::size_t mask = (std::size_t{1} << width) - 1;
    std::array<std::uint32_t, std::size_t{1} << kMostBits> next;
    std::fill_n(next.begin(), mask + 1, 0u);
    const auto number = [&](std::uint64_t key) {
      return static_cast<std::size_t>(key >> (32 + from)) & mask;
    };
    for (const std::uint64_t key : keys_) ++next[number(key)];
    std::uint32_t place = 0;
    for (std::size_t i = 0; i <= mask; ++i) place += std::exchange(next[i], place);
    for (const std::uint64_t key : keys_) other_[next[number(key)]++] = key;
    keys_.swap(other_);
  }
}

}  // namespace discoplan::analysis
