// SPDX-License-Identifier: MIT
#include <cmath>

#include "discoplan/base/bits.h"
#include "discoplan/core/interpolation/lattice/kernel.h"

namespace discoplan::lattice {
namespace {

/// Numbers in a row, for the compiler to map to what registers there are.
template <class Number, std::int32_t n>
struct Lanes {
  Number lane[n];

  template <class Operation>
  static Lanes Each(Operation&& operation) {
    Lanes result;
    for (std::int32_t i = 0; i < n; ++i) result.lane[i] = operation(i);
    return result;
  }
  friend Lanes operator+(const Lanes& a, const Lanes& b) {
    return Each([&](std::int32_t i) { return a.lane[i] + b.lane[i]; });
  }
  friend Lanes operator-(const Lanes& a, const Lanes& b) {
    return Each([&](std::int32_t i) { return a.lane[i] - b.lane[i]; });
  }
  friend Lanes operator*(const Lanes& a, const Lanes& b) {
    return Each([&](std::int32_t i) { return a.lane[i] * b.lane[i]; });
  }
  friend Lanes operator/(const Lanes& a, const Lanes& b) {
    return Each([&](std::int32_t i) { return a.lane[i] / b.lane[i]; });
  }
};

/// What any processor can do.
struct Portable {
  static constexpr std::int32_t kLanes = 4;
  using Float = Lanes<float, 4>;
  using Double = Lanes<double, 2>;

  static Float Load(const float* from) {
    return Float::Each([&](std::int32_t i) { return from[i]; });
  }
  static void Store(float* to, const Float& a) {
    for (std::int32_t i = 0; i < kLanes; ++i) to[i] = a.lane[i];
  }
  static Float Spread(float a) {
    return Float::Each([&](std::int32_t) { return a; });
  }
  static Double Spread(double a) { return {a, a}; }
  static Float Min(const Float& a, const Float& b) {
    return Float::Each(
        [&](std::int32_t i) { return a.lane[i] < b.lane[i] ? a.lane[i] : b.lane[i]; });
  }
  static Float Max(const Float& a, const Float& b) {
    return Float::Each(
        [&](std::int32_t i) { return a.lane[i] > b.lane[i] ? a.lane[i] : b.lane[i]; });
  }
  static Double Sqrt(const Double& a) { return {std::sqrt(a.lane[0]), std::sqrt(a.lane[1])}; }
  static std::int32_t Number(const Float& squares, const Float& limits, std::int32_t first,
                             std::uint32_t* numbers) {
    return NumberOneByOne<Portable>(squares, limits, first, numbers);
  }
  static Float Tag(const Float& a, std::uint32_t number) {
    return Float::Each([&](std::int32_t i) {
      const auto bits = BitCast<std::uint32_t>(a.lane[i]);
      return BitCast<float>((bits & ~kNumberMask) | number);
    });
  }
  static Float Gather(const float* table, const Float& tagged) {
    return Float::Each([&](std::int32_t i) {
      return table[BitCast<std::uint32_t>(tagged.lane[i]) & kNumberMask];
    });
  }
  static Double Low(const Float& a) { return {a.lane[0], a.lane[1]}; }
  static Double High(const Float& a) { return {a.lane[2], a.lane[3]}; }
  static Float Narrow(const Double& low, const Double& high) {
    return {static_cast<float>(low.lane[0]), static_cast<float>(low.lane[1]),
            static_cast<float>(high.lane[0]), static_cast<float>(high.lane[1])};
  }
  static Double RoundToFloat(const Double& a) { return Low(Narrow(a, a)); }
  template <class Number, std::int32_t n>
  static std::uint32_t Below(const Lanes<Number, n>& a, const Lanes<Number, n>& b) {
    std::uint32_t mask = 0;
    for (std::int32_t i = 0; i < n; ++i) {
      mask |= static_cast<std::uint32_t>(a.lane[i] < b.lane[i]) << i;
    }
    return mask;
  }
};

}  // namespace

std::uint32_t InterpolatePortable(const Surroundings& around, const SureDistances& sure,
                                  Tile& tile) {
  return TileInterpolation<Portable>(sure, tile).Interpolate(around);
}

}  // namespace discoplan::lattice
