// SPDX-License-Identifier: MIT
#pragma once

/// Rounding, narrowing and run-time errors: the one place for each rule of arithmetic.
///
/// Stored numbers are 32-bit floats; what is computed between two stores is 64-bit. A store goes
/// through `ToFloat`, `ToInt16` or `ToInt32`, which round to nearest with ties to even and raise
/// `RunTimeError` for what is not finite or doesn't fit. Code that must go on without a value that
/// fails asks `Narrow` for it; what may raise otherwise runs through `Attempt`.
///
///     radius = ToFloat(Divide(diameter, 2 * cells));
///     if (!Narrow(diameter / pitch, cells)) Report();   // keeps its value if it overflows

#include <cfloat>
#include <cmath>
#include <cstdint>
#include <limits>
#include <stdexcept>
#include <string>

#include "discoplan/export.h"

// Results are promised to the bit, and rounding leans on each operation being rounded by itself.
#if defined(__FAST_MATH__) || defined(__ASSOCIATIVE_MATH__) || \
    (defined(__FINITE_MATH_ONLY__) && __FINITE_MATH_ONLY__)
#error \
    "Discoplan can't be compiled with -ffast-math, nor with a part of it that reorders sums or " \
       "leaves out infinities: numbers would be rounded wrongly."
#endif
#if defined(_M_FP_FAST)
#error "Discoplan can't be compiled with /fp:fast: numbers would be rounded wrongly."
#endif
#if FLT_EVAL_METHOD != 0
#error \
    "Discoplan needs floats and doubles computed in their own precision: use -msse2 -mfpmath=sse."
#endif

namespace discoplan {

/// What went wrong, with the number by which a host knows it.
enum class Fault : int {
  InvalidCall = 5,
  Overflow = 6,
  Subscript = 9,
  DivisionByZero = 11,
  TypeMismatch = 13,
  FileNotFound = 53,
  InputPastEnd = 62,
  ObjectNotSet = 91,
  MemberNotOffered = 438,
};

/// A failing step. Loads turn it into result code 4, renderers and layouts drop the step.
class DISCOPLAN_EXPORT RunTimeError : public std::runtime_error {
 public:
  explicit RunTimeError(Fault fault);
  RunTimeError(Fault fault, const std::string& what);

  Fault fault() const { return fault_; }

 private:
  Fault fault_;
};

namespace numbers_detail {
[[noreturn]] DISCOPLAN_EXPORT void Raise(Fault fault);
}

/// Nearest whole number, ties to the even one. Exact for magnitudes below 2^51; beyond, the result
/// is off by less than one and of the same magnitude. (Adding 1.5 * 2^52 leaves no room for a
/// fraction, so that the addition itself does the rounding.)
inline double RoundHalfEven(double value) {
  constexpr double kNoFraction = 6755399441055744.0;
  return (value + kNoFraction) - kNoFraction;
}

/// Rounds `value` into `kept`; false if it doesn't fit or isn't finite, and `kept` stays as it was.
template <class Int>
[[nodiscard]] bool Narrow(double value, Int& kept) {
  const double rounded = RoundHalfEven(value);
  if (!(rounded >= std::numeric_limits<Int>::min() && rounded <= std::numeric_limits<Int>::max())) {
    return false;
  }
  kept = static_cast<Int>(rounded);
  return true;
}

[[nodiscard]] inline bool Narrow(double value, float& kept) {
  const float narrowed = static_cast<float>(value);
  if (!std::isfinite(narrowed)) return false;
  kept = narrowed;
  return true;
}

/// `value` as an integer of type `Int`; `Overflow` if it doesn't fit or isn't finite.
template <class Int>
Int RoundTo(double value) {
  Int result{};
  if (!Narrow(value, result)) numbers_detail::Raise(Fault::Overflow);
  return result;
}

inline std::int16_t ToInt16(double value) { return RoundTo<std::int16_t>(value); }
inline std::int32_t ToInt32(double value) { return RoundTo<std::int32_t>(value); }

/// `value` as a 32-bit float; `Overflow` if it isn't finite there.
inline float ToFloat(double value) {
  float result = 0;
  if (!Narrow(value, result)) numbers_detail::Raise(Fault::Overflow);
  return result;
}

/// Quotient; `DivisionByZero` for a divisor of zero.
inline double Divide(double dividend, double divisor) {
  if (divisor == 0) numbers_detail::Raise(Fault::DivisionByZero);
  return dividend / divisor;
}

/// Runs one step and drops its run-time error. True if the step went through.
template <class Step>
bool Attempt(Step&& step) {
  try {
    step();
    return true;
  } catch (const RunTimeError&) {
    return false;
  }
}

}  // namespace discoplan
