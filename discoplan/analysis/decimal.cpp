// SPDX-License-Identifier: MIT
#include "discoplan/analysis/decimal.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <iterator>

#include "discoplan/base/bits.h"
#include "discoplan/base/numbers.h"

namespace discoplan::analysis {
namespace {

constexpr double kSmallest = 1e-3;
constexpr double kLargest = 1e7;
constexpr double kPowers[] = {1, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9};
/// From here on so many decimal places tell all floats apart: their distance, 2^-23 of the power of
/// two below them, is no less than the last place.
constexpr float kEnough[] = {8388608, 1048576, 131072, 16384, 1024, 128, 16, 1, 0.125F, 0};

bool IsDecimal(double exact) { return std::abs(exact) >= kSmallest && std::abs(exact) <= kLargest; }

constexpr std::size_t kBlock = 64;  // in the fastest memory

/// Instead of dividing for each number of places, this asks whether a number of so many places lies
/// within half of the distance of floats: if so, one of more places does. It begins with as many as
/// the first value has, goes up until each value has such a number and down until none has.
/// Quotients at the end tell whether these narrow to the values.
class Block {
 public:
  explicit Block(std::span<const float> values) : values_(values) {
    constexpr double kHalf = (1 + 1e-6) / (1 << 24);
    for (std::size_t i = 0; i < values.size(); ++i) {
      const auto bits = BitCast<std::int32_t>(values[i]);
      least_ = std::min(least_, bits & 0x7FFFFFFF);
      exact_[i] = values[i];
      reach_[i] = kHalf * static_cast<double>(BitCast<float>(bits & 0x7F800000));
      power_[i] = kNone;
    }
  }

  void Give(double* decimals) {
    const std::size_t enough = Enough();
    const std::size_t first = std::min(PlacesOfFirst(), enough);
    Near near = Note(kPowers[first]);
    for (std::size_t places = first; !near.all && places < enough;) near = Note(kPowers[++places]);
    for (std::size_t places = first; places-- > 0 && Note(kPowers[places]).any;) {
    }
    if (Divide()) {
      std::copy_n(exact_, values_.size(), decimals);
    } else {
      std::transform(values_.begin(), values_.end(), decimals, DecimalOf);
    }
  }

 private:
  static constexpr double kNone = 1e300;

  struct Near {
    bool any;  // to a number of the places asked for
    bool all;  // to one of any places so far
  };

  std::size_t Enough() const {
    const auto* const found = std::find_if(std::begin(kEnough), std::end(kEnough), [&](float from) {
      return BitCast<float>(least_) >= from;
    });
    return static_cast<std::size_t>(found - kEnough);
  }

  std::size_t PlacesOfFirst() const {
    const auto* const found =
        std::find_if(std::begin(kPowers), std::end(kPowers),
                     [&](double power) { return IsNear(exact_[0], reach_[0], power); });
    return static_cast<std::size_t>(found - kPowers);
  }

  static bool IsNear(double exact, double reach, double power) {
    const double scaled = exact * power;
    return std::abs(scaled - RoundHalfEven(scaled)) <= reach * power;
  }

  Near Note(double power) {
    for (std::size_t i = 0; i < values_.size(); ++i) {
      const double noted = std::min(power, power_[i]);
      power_[i] = IsNear(exact_[i], reach_[i], power) ? noted : power_[i];
    }
    // Borrows into the highest bit: of 0 less 1, and of the largest power less none.
    std::uint64_t any = 0;
    std::uint64_t none = 0;
    for (std::size_t i = 0; i < values_.size(); ++i) {
      const auto noted = BitCast<std::uint64_t>(power_[i]);
      any |= (noted ^ BitCast<std::uint64_t>(power)) - 1;
      none |= BitCast<std::uint64_t>(kPowers[9]) - noted;
    }
    return {any >> 63 != 0, none >> 63 == 0};
  }

  /// Whether all that were near to a decimal narrow to their values again.
  bool Divide() {
    for (std::size_t i = 0; i < values_.size(); ++i) {
      const double exact = exact_[i];
      double decimal = RoundHalfEven(exact * power_[i]) / power_[i];
      decimal = power_[i] < kNone ? decimal : exact;
      decimal = std::abs(exact) >= kSmallest ? decimal : exact;
      decimal = std::abs(exact) <= kLargest ? decimal : exact;
      power_[i] = static_cast<double>(static_cast<float>(decimal)) - exact;
      exact_[i] = decimal;
    }
    std::uint64_t off = 0;
    for (std::size_t i = 0; i < values_.size(); ++i) {
      off |= BitCast<std::uint64_t>(power_[i]) << 1;
    }
    return off == 0;
  }

  std::span<const float> values_;
  std::int32_t least_ = BitCast<std::int32_t>(static_cast<float>(kLargest));
  double exact_[kBlock];
  double reach_[kBlock];
  double power_[kBlock];  // of the fewest places so far
};

}  // namespace

double DecimalOf(float value) {
  const double exact = value;
  if (!IsDecimal(exact)) return exact;
  for (const double power : kPowers) {
    const double decimal = RoundHalfEven(exact * power) / power;
    if (static_cast<float>(decimal) == value) return decimal;
  }
  return exact;
}

void DecimalsOf(std::span<const float> values, std::span<double> decimals) {
  assert(decimals.size() == values.size());
  for (std::size_t i = 0; i < values.size(); i += kBlock) {
    Block(values.subspan(i, std::min(kBlock, values.size() - i))).Give(&decimals[i]);
  }
}

}  // namespace discoplan::analysis
