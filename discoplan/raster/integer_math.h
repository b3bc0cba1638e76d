// SPDX-License-Identifier: MIT
#pragma once

/// Exact integer arithmetic of the raster: wide products, square roots, stepped quotients.

#include <cmath>
#include <cstdint>

#include "discoplan/base/wide_int.h"

namespace discoplan {

/// The largest integer whose square is at most `value`.
inline std::int64_t FloorSqrt(std::uint64_t value) {
  UInt128 root = static_cast<std::uint64_t>(std::sqrt(static_cast<double>(value)));
  while (root * root > value) --root;
  while ((root + 1) * (root + 1) <= value) ++root;
  return static_cast<std::int64_t>(root);
}

/// ceil((start + i step) / divisor) for i = first, first + 1, ...; the divisor is positive.
class CeilSteps {
 public:
  CeilSteps() = default;
  CeilSteps(std::int64_t start, std::int64_t step, std::int64_t divisor, std::int64_t first)
      : divisor_(divisor),
        whole_(Floor(step, divisor)),
        rest_(step - whole_ * divisor),
        value_(0),
        excess_(0) {
    const Int128 numerator = start + static_cast<Int128>(step) * first;
    if (numerator == 0) return;
    value_ = -static_cast<std::int64_t>(Floor(-numerator, static_cast<Int128>(divisor)));
    excess_ = static_cast<std::int64_t>(static_cast<Int128>(value_) * divisor - numerator);
  }

  CeilSteps& operator+=(std::int64_t offset) {
    value_ += offset;
    return *this;
  }

  std::int64_t Value() const { return value_; }

  void Advance() {
    value_ += whole_;
    excess_ -= rest_;
    if (excess_ < 0) {
      excess_ += divisor_;
      ++value_;
    }
  }

 private:
  template <class Int>
  static Int Floor(Int numerator, Int divisor) {
    const Int quotient = numerator / divisor;
    return numerator % divisor < 0 ? quotient - 1 : quotient;
  }

  std::int64_t divisor_;
  std::int64_t whole_;
  std::int64_t rest_;
  std::int64_t value_;
  std::int64_t excess_;  // value_ * divisor_ less the numerator
};

/// The same for operands of `IsNear` and as many steps, in fixed-point numbers.
class NearCeilSteps {
 public:
  NearCeilSteps() = default;
  NearCeilSteps(std::int64_t start, std::int64_t step, std::int64_t divisor, std::int64_t first) {
    // Quotients are multiples of 1 / divisor, so that what lies half of that below the next whole
    // number has its ceiling as its floor. All steps together are off by less than that half.
    const double unit = kOne / static_cast<double>(divisor);
    step_ = static_cast<std::int64_t>(static_cast<double>(step) * unit);
    value_ = static_cast<std::int64_t>((static_cast<double>(start + step * first + divisor) - 0.5) *
                                       unit);
  }

  NearCeilSteps& operator+=(std::int64_t offset) {
    value_ += offset << kFractionBits;
    return *this;
  }

  std::int64_t Value() const { return value_ >> kFractionBits; }
  void Advance() { value_ += step_; }

 private:
  static constexpr int kFractionBits = 32;
  static constexpr double kOne = 1LL << kFractionBits;

  std::int64_t step_;
  std::int64_t value_;
};

/// Whether a coordinate is small enough for `NearCeilSteps` with twice the differences of such
/// coordinates.
inline bool IsNear(std::int64_t coordinate) {
  constexpr std::int64_t kFarthest = 1 << 13;
  return -kFarthest <= coordinate && coordinate < kFarthest;
}

}  // namespace discoplan
