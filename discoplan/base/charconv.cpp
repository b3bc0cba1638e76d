// SPDX-License-Identifier: MIT
#include "discoplan/base/charconv.h"

#include <algorithm>
#include <cctype>
#include <clocale>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <string>
#include <string_view>

namespace discoplan::plain {
namespace {

/// What the C library puts between whole and fraction.
std::string DecimalPoint() { return std::localeconv()->decimal_point; }

bool StartsWith(std::string_view text, std::string_view lower_case) {
  return text.size() >= lower_case.size() &&
         std::equal(lower_case.begin(), lower_case.end(), text.begin(), [](char a, char b) {
           return a == std::tolower(static_cast<unsigned char>(b));
         });
}

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

/// Characters of the number that `text` starts with; 0 for none.
std::size_t LengthOfNumber(std::string_view text) {
  std::size_t at = 0;
  const auto digits = [&] {
    const std::size_t start = at;
    while (at < text.size() && IsDigit(text[at])) ++at;
    return at - start;
  };
  std::size_t count = digits();
  if (at < text.size() && text[at] == '.') {
    ++at;
    count += digits();
  }
  if (count == 0) return 0;
  const std::size_t mantissa = at;
  if (at == text.size() || (text[at] != 'e' && text[at] != 'E')) return mantissa;
  ++at;
  if (at < text.size() && (text[at] == '-' || text[at] == '+')) ++at;
  return digits() > 0 ? at : mantissa;
}

/// The same of what is no finite number.
std::size_t LengthOfWord(std::string_view text) {
  if (StartsWith(text, "infinity")) return 8;
  if (StartsWith(text, "inf")) return 3;
  if (!StartsWith(text, "nan")) return 0;
  const auto is_inner = [](char c) {
    return c == '_' || std::isalnum(static_cast<unsigned char>(c));
  };
  const auto end =
      std::find_if_not(text.begin() + std::min<std::size_t>(4, text.size()), text.end(), is_inner);
  const bool closed = text.size() > 4 && text[3] == '(' && end != text.end() && *end == ')';
  return closed ? static_cast<std::size_t>(end - text.begin()) + 1 : 3;
}

/// The number in the C library's own spelling.
std::string Local(std::string text) {
  if (const std::size_t point = text.find('.'); point != std::string::npos) {
    text.replace(point, 1, DecimalPoint());
  }
  return text;
}

bool ReadsBackTo(float value, const std::string& text) {
  return std::strtof(Local(text).c_str(), nullptr) == value;
}
bool ReadsBackTo(double value, const std::string& text) {
  return std::strtod(Local(text).c_str(), nullptr) == value;
}

std::string Print(const char* format, int precision, double value) {
  char buffer[512];
  const int length = std::snprintf(buffer, sizeof buffer, format, precision, value);
  std::string text(buffer, static_cast<std::size_t>(length));
  const std::string local = DecimalPoint();
  if (const std::size_t point = text.find(local); point != std::string::npos) {
    text.replace(point, local.size(), 1, '.');
  }
  return text;
}

std::to_chars_result Put(const std::string& text, char* first, char* last) {
  if (static_cast<std::ptrdiff_t>(text.size()) > last - first) {
    return {last, std::errc::value_too_large};
  }
  return {std::copy(text.begin(), text.end(), first), std::errc()};
}

/// The decimal after the one of `text`, of as many digits, away from zero.
std::string Next(std::string text) {
  const std::size_t e = text.find('e');
  for (std::size_t at = e; at-- > 0 && text[at] != '-';) {
    if (text[at] == '.') continue;
    if (text[at] != '9') {
      ++text[at];
      return text;
    }
    text[at] = '0';
  }
  return text;  // only nines, which no power of two needs
}

template <class Real>
std::string Shortest(Real value) {
  if (!std::isfinite(value)) return Print("%.*e", 0, value);
  for (int digits = 0; digits < std::numeric_limits<Real>::max_digits10; ++digits) {
    const std::string nearest = Print("%.*e", digits, value);
    if (ReadsBackTo(value, nearest)) return nearest;
    // More numbers above a power of two read back to it than below.
    const std::string above = Next(nearest);
    if (ReadsBackTo(value, above)) return above;
  }
  return Print("%.*e", std::numeric_limits<Real>::max_digits10 - 1, value);
}

}  // namespace

std::from_chars_result FromChars(const char* first, const char* last, double& value) {
  const bool negative = first != last && *first == '-';
  const char* const start = first + (negative ? 1 : 0);
  const std::string_view text(start, static_cast<std::size_t>(last - start));
  const std::size_t number = LengthOfNumber(text);
  const std::size_t length = number > 0 ? number : LengthOfWord(text);
  if (length == 0) return {first, std::errc::invalid_argument};
  const char* const end = text.data() + length;
  const std::string_view used = text.substr(0, length);
  const double magnitude = std::strtod(Local(std::string(used)).c_str(), nullptr);
  const bool is_zero =
      used.substr(0, used.find_first_of("eE")).find_first_of("123456789") == std::string_view::npos;
  if (number > 0 && (std::isinf(magnitude) || (magnitude == 0 && !is_zero))) {
    return {end, std::errc::result_out_of_range};
  }
  value = negative ? -magnitude : magnitude;
  return {end, std::errc()};
}

std::to_chars_result ToShortest(char* first, char* last, float value) {
  return Put(Shortest(value), first, last);
}

std::to_chars_result ToShortest(char* first, char* last, double value) {
  return Put(Shortest(value), first, last);
}

std::to_chars_result ToChars(char* first, char* last, double value, std::chars_format format,
                             int precision) {
  const char* const pattern = format == std::chars_format::fixed        ? "%.*f"
                              : format == std::chars_format::scientific ? "%.*e"
                                                                        : "%.*g";
  return Put(Print(pattern, precision, value), first, last);
}

}  // namespace discoplan::plain
