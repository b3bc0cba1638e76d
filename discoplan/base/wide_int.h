// SPDX-License-Identifier: MIT
#pragma once

/// Whole numbers of 128 bits, exact: the compiler's own where it has them, else `WideInt`.
///
///     const UInt128 square = static_cast<UInt128>(side) * static_cast<UInt128>(side);
///
/// Both wrap around at 2^128 and divide towards zero; a division by zero is the caller's mistake.

#include <compare>
#include <concepts>
#include <cstdint>

namespace discoplan {

/// A number in two halves, for compilers that have none so wide.
template <bool kSigned>
class WideInt {
 public:
  constexpr WideInt() = default;
  // Not explicit: it takes part in expressions as any other whole number does.
  template <std::integral Int>
  constexpr WideInt(Int value)
      : low_(static_cast<std::uint64_t>(value)), high_(value < Int{0} ? ~std::uint64_t{0} : 0) {}
  template <bool kOther>
  constexpr explicit WideInt(const WideInt<kOther>& other)
      : low_(other.Low()), high_(other.High()) {}

  /// The lowest bits, as other conversions of whole numbers keep them.
  template <std::integral Int>
  constexpr explicit operator Int() const {
    return static_cast<Int>(low_);
  }

  constexpr std::uint64_t Low() const { return low_; }
  constexpr std::uint64_t High() const { return high_; }

  constexpr WideInt operator-() const { return Of(~high_, ~low_) + 1; }

  friend constexpr WideInt operator+(const WideInt& a, const WideInt& b) {
    const std::uint64_t low = a.low_ + b.low_;
    return Of(a.high_ + b.high_ + (low < a.low_ ? 1 : 0), low);
  }
  friend constexpr WideInt operator-(const WideInt& a, const WideInt& b) {
    return Of(a.high_ - b.high_ - (a.low_ < b.low_ ? 1 : 0), a.low_ - b.low_);
  }
  friend constexpr WideInt operator*(const WideInt& a, const WideInt& b) {
    WideInt product = Product(a.low_, b.low_);
    product.high_ += a.high_ * b.low_ + a.low_ * b.high_;
    return product;
  }
  friend constexpr WideInt operator/(const WideInt& a, const WideInt& b) {
    const WideInt quotient = Divide(Magnitude(a), Magnitude(b)).quotient;
    return a.IsNegative() == b.IsNegative() ? quotient : -quotient;
  }
  friend constexpr WideInt operator%(const WideInt& a, const WideInt& b) {
    const WideInt rest = Divide(Magnitude(a), Magnitude(b)).rest;
    return a.IsNegative() ? -rest : rest;
  }
  constexpr WideInt& operator++() { return *this = *this + 1; }
  constexpr WideInt& operator--() { return *this = *this - 1; }

  friend constexpr bool operator==(const WideInt&, const WideInt&) = default;
  friend constexpr std::strong_ordering operator<=>(const WideInt& a, const WideInt& b) {
    if (a.IsNegative() != b.IsNegative()) {
      return a.IsNegative() ? std::strong_ordering::less : std::strong_ordering::greater;
    }
    return a.high_ != b.high_ ? a.high_ <=> b.high_ : a.low_ <=> b.low_;
  }

 private:
  struct Division;

  static constexpr WideInt Of(std::uint64_t high, std::uint64_t low) {
    WideInt value;
    value.low_ = low;
    value.high_ = high;
    return value;
  }

  constexpr bool IsNegative() const { return kSigned && high_ >> 63 != 0; }
  static constexpr WideInt Magnitude(const WideInt& a) { return a.IsNegative() ? -a : a; }

  /// All 128 bits, from products of halves.
  static constexpr WideInt Product(std::uint64_t a, std::uint64_t b) {
    constexpr std::uint64_t kHalf = 0xFFFFFFFF;
    const std::uint64_t low = (a & kHalf) * (b & kHalf);
    const std::uint64_t inner = (a >> 32) * (b & kHalf) + (low >> 32);
    const std::uint64_t outer = (a & kHalf) * (b >> 32) + (inner & kHalf);
    return Of((a >> 32) * (b >> 32) + (inner >> 32) + (outer >> 32), outer << 32 | (low & kHalf));
  }

  /// Magnitudes, without regard to signs, bit by bit where 64 bits don't hold them.
  static constexpr Division Divide(const WideInt& a, const WideInt& b) {
    if (a.high_ == 0 && b.high_ == 0) return {a.low_ / b.low_, a.low_ % b.low_};
    Division done;
    for (int bit = 127; bit >= 0; --bit) {
      const bool carry = done.rest.high_ >> 63 != 0;
      const std::uint64_t next = (bit >= 64 ? a.high_ >> (bit - 64) : a.low_ >> bit) & 1;
      done.rest = Of(done.rest.high_ << 1 | done.rest.low_ >> 63, done.rest.low_ << 1 | next);
      const bool fits = carry || done.rest.high_ > b.high_ ||
                        (done.rest.high_ == b.high_ && done.rest.low_ >= b.low_);
      if (fits) done.rest = done.rest - b;
      done.quotient = Of(done.quotient.high_ << 1 | done.quotient.low_ >> 63,
                         done.quotient.low_ << 1 | (fits ? 1 : 0));
    }
    return done;
  }

  std::uint64_t low_ = 0;
  std::uint64_t high_ = 0;
};

template <bool kSigned>
struct WideInt<kSigned>::Division {
  WideInt quotient;
  WideInt rest;
};

#if defined(__SIZEOF_INT128__)
__extension__ typedef __int128 Int128;
__extension__ typedef unsigned __int128 UInt128;
#else
using Int128 = WideInt<true>;
using UInt128 = WideInt<false>;
#endif

}  // namespace discoplan
