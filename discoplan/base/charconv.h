// SPDX-License-Identifier: MIT
#pragma once

/// Floats as texts and back, exactly, whatever the locale is: the standard library's own way where
/// it has one, else `plain`'s, which gives the same texts and numbers.

#include <charconv>
#include <version>

#include "discoplan/export.h"

namespace discoplan {
namespace plain {

/// As `std::from_chars`.
DISCOPLAN_EXPORT std::from_chars_result FromChars(const char* first, const char* last,
                                                  double& value);
/// As `std::to_chars` in scientific notation: the fewest digits that read back to the same number,
/// and those nearest to it.
DISCOPLAN_EXPORT std::to_chars_result ToShortest(char* first, char* last, float value);
DISCOPLAN_EXPORT std::to_chars_result ToShortest(char* first, char* last, double value);
/// As `std::to_chars` with a precision, in general, fixed or scientific notation.
DISCOPLAN_EXPORT std::to_chars_result ToChars(char* first, char* last, double value,
                                              std::chars_format format, int precision);

}  // namespace plain

#if defined(__cpp_lib_to_chars)
inline std::from_chars_result FromChars(const char* first, const char* last, double& value) {
  return std::from_chars(first, last, value);
}
template <class Real>
std::to_chars_result ToShortest(char* first, char* last, Real value) {
  return std::to_chars(first, last, value, std::chars_format::scientific);
}
inline std::to_chars_result ToChars(char* first, char* last, double value, std::chars_format format,
                                    int precision) {
  return std::to_chars(first, last, value, format, precision);
}
#else
using plain::FromChars;
using plain::ToChars;
using plain::ToShortest;
#endif

}  // namespace discoplan
