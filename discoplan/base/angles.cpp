// SPDX-License-Identifier: MIT
#include "discoplan/base/angles.h"

#include <array>
#include <cmath>

namespace discoplan {
namespace {

/// The sum of two doubles, the second at most half a last bit of the first: some 106 bits. The ways
/// to add and multiply without a loss are Dekker's and Knuth's.
struct Twofold {
  double high = 0;
  double low = 0;
};

/// Of two numbers, the first not below the second in magnitude.
Twofold QuickSum(double a, double b) {
  const double sum = a + b;
  return {sum, b - (sum - a)};
}

Twofold Sum(double a, double b) {
  const double sum = a + b;
  const double b_part = sum - a;
  return {sum, (a - (sum - b_part)) + (b - b_part)};
}

Twofold operator+(Twofold a, Twofold b) {
  const Twofold sum = Sum(a.high, b.high);
  return QuickSum(sum.high, sum.low + (a.low + b.low));
}

Twofold operator-(Twofold a) { return {-a.high, -a.low}; }

/// In halves of at most 26 bits, whose products are exact.
Twofold Halves(double a) {
  const double scaled = 134217729.0 * a;  // 2^27 + 1
  const double high = scaled - (scaled - a);
  return {high, a - high};
}

Twofold Product(double a, double b) {
  const double product = a * b;
  const Twofold x = Halves(a);
  const Twofold y = Halves(b);
  return {product, ((x.high * y.high - product) + x.high * y.low + x.low * y.high) + x.low * y.low};
}

Twofold operator*(Twofold a, Twofold b) {
  const Twofold product = Product(a.high, b.high);
  return QuickSum(product.high, product.low + (a.high * b.low + a.low * b.high));
}

/// Horner's scheme, with the constant first.
template <std::size_t N>
double Polynomial(const std::array<double, N>& factors, double x) {
  double value = 0;
  for (std::size_t i = N; i-- > 0;) value = value * x + factors[i];
  return value;
}

/// Taylor's series for angles up to an eighth of a turn: two terms in full, those that follow are
/// too small for it to matter.
Twofold SineNearZero(Twofold angle) {
  constexpr Twofold kThird = {-0x1.5555555555555p-3, -0x1.5555555555555p-57};  // -1/3!
  constexpr Twofold kFifth = {0x1.1111111111111p-7, 0x1.1111111111111p-63};    // 1/5!
  constexpr std::array<double, 8> kRest = {
      -1 / 5040.0,       1 / 362880.0,       -1 / 39916800.0,        1 / 6227020800.0,
      -1 / 1307674368e3, 1 / 355687428096e3, -1 / 121645100408832e3, 1 / 51090942171709440e3};
  const Twofold square = angle * angle;
  const Twofold rest = {Polynomial(kRest, square.high), 0};
  return angle + angle * square * (kThird + square * (kFifth + square * rest));
}

Twofold CosineNearZero(Twofold angle) {
  constexpr Twofold kFourth = {0x1.5555555555555p-5, 0x1.5555555555555p-59};   // 1/4!
  constexpr Twofold kSixth = {-0x1.6c16c16c16c17p-10, 0x1.f49f49f49f49fp-65};  // -1/6!
  constexpr std::array<double, 8> kRest = {
      1 / 40320.0,       -1 / 3628800.0,       1 / 479001600.0,        -1 / 87178291200.0,
      1 / 20922789888e3, -1 / 6402373705728e3, 1 / 2432902008176640e3, -1 / 1124000727777607680e3};
  const Twofold square = angle * angle;
  const Twofold rest = {Polynomial(kRest, square.high), 0};
  const Twofold tail = square * square * (kFourth + square * (kSixth + square * rest));
  return Twofold{1, 0} + (Twofold{-0.5 * square.high, -0.5 * square.low} + tail);
}

/// The sine of an angle with so many quarters of a turn added.
Twofold SineOf(double radians, int quarters_more) {
  // Half of pi in parts so short that their products with the count are exact.
  constexpr std::array<double, 4> kHalfPi = {0x1.921fb54400000p+0, 0x1.0b4611a600000p-34,
                                             0x1.3198a2e000000p-69, 0x1.b839a252049c1p-104};
  const double quarters = std::floor(radians * 0.63661977236758134 + 0.5);
  Twofold rest = {radians, 0};
  for (const double part : kHalfPi) {
    const double taken = quarters * part;
    rest = rest + Twofold{-taken, 0};
  }
  const int quarter = (static_cast<int>(quarters) + quarters_more) & 3;
  const Twofold value = quarter % 2 == 0 ? SineNearZero(rest) : CosineNearZero(rest);
  return quarter < 2 ? value : -value;
}

constexpr double kMostRadians = 1e6;

bool IsInRange(double radians) { return std::abs(radians) <= kMostRadians; }

}  // namespace

double Sine(double radians) {
  if (!IsInRange(radians) || std::abs(radians) < 1e-20) return std::sin(radians);
  return SineOf(radians, 0).high;
}

double Cosine(double radians) {
  if (!IsInRange(radians)) return std::cos(radians);
  return SineOf(radians, 1).high;
}

double ArcTangent(double slope) {
  const double magnitude = std::abs(slope);
  if (!(magnitude > 1e-20 && magnitude < 1e200)) return std::atan(slope);
  // A near angle, the same by every C library, and the small one that is left to the true one.
  const double near = static_cast<float>(std::atan(slope));
  const Twofold sine = SineOf(near, 0);
  const Twofold cosine = SineOf(near, 1);
  const Twofold above = Twofold{slope, 0} * cosine + -sine;
  const Twofold across = Twofold{slope, 0} * sine + cosine;
  const double left = above.high / across.high;
  return near + (left - left * left * left / 3);
}

}  // namespace discoplan
