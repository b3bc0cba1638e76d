// SPDX-License-Identifier: MIT
#include "discoplan/render/number_text.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "discoplan/base/numbers.h"

namespace discoplan {
namespace {

constexpr int kSignificantDigits = 7;
/// Of the smallest numbers that are written without an exponent.
constexpr int kLeastPlainPower = -4;

/// 0.d1 d2 d3... times 10 to the exponent; no digits for zero.
struct Decimal {
  bool negative = false;
  std::string digits;
  int exponent = 0;

  /// Keeps so many digits, rounding half away from zero; none or fewer than none leaves zero or,
  /// from the first digit alone, one.
  void RoundTo(int count) {
    if (count >= static_cast<int>(digits.size())) return;
    const bool up = count >= 0 && digits[static_cast<std::size_t>(count)] >= '5';
    digits.resize(static_cast<std::size_t>(std::max(count, 0)));
    if (up) Increment();
  }

  char DigitAt(int power) const {  // the digit worth 10^power
    const int index = exponent - 1 - power;
    return index < 0 || index >= static_cast<int>(digits.size())
               ? '0'
               : digits[static_cast<std::size_t>(index)];
  }

 private:
  void Increment() {
    for (auto digit = digits.rbegin(); digit != digits.rend(); ++digit) {
      if (*digit != '9') {
        ++*digit;
        return;
      }
      *digit = '0';
    }
    digits.insert(digits.begin(), '1');
    ++exponent;
  }
};

/// The exact binary value, which has at most 112 significant digits, to 7 digits.
Decimal ToDecimal(float value) {
  Decimal decimal{.negative = std::signbit(value), .digits = {}, .exponent = 0};
  if (value == 0) return decimal;
  char text[160];
  std::snprintf(text, sizeof text, "%.115e", std::abs(static_cast<double>(value)));
  // Between the digits stands whatever the locale takes for a point, of any length.
  const char* at = text;
  for (; *at != 'e'; ++at) {
    if (*at >= '0' && *at <= '9') decimal.digits += *at;
  }
  decimal.exponent = std::atoi(at + 1) + 1;
  decimal.RoundTo(kSignificantDigits);
  return decimal;
}

/// How many digits a picture asks for around its point.
struct Picture {
  int leading;   // at least so many before the point
  int required;  // always so many behind it
  int decimals;  // at most so many behind it
  bool has_point;

  static Picture Of(std::string_view text) {
    const std::size_t point = std::min(text.find('.'), text.size());
    const std::string_view fraction = text.substr(std::min(point + 1, text.size()));
    return {.leading = static_cast<int>(point),
            .required = static_cast<int>(std::min(fraction.find('#'), fraction.size())),
            .decimals = static_cast<int>(fraction.size()),
            .has_point = point < text.size()};
  }
};

std::string Fixed(Decimal decimal, const Picture& picture) {
  decimal.RoundTo(decimal.exponent + picture.decimals);
  std::string text = decimal.negative ? "-" : "";
  for (int power = std::max(decimal.exponent, picture.leading) - 1; power >= 0; --power) {
    text += decimal.DigitAt(power);
  }
  if (!picture.has_point) return text;
  text += '.';
  const std::size_t shortest = text.size() + static_cast<std::size_t>(picture.required);
  for (int power = -1; power >= -picture.decimals; --power) text += decimal.DigitAt(power);
  while (text.size() > shortest && text.back() == '0') text.pop_back();
  return text;
}

std::string Scientific(Decimal decimal, const Picture& picture) {
  decimal.RoundTo(1 + picture.decimals);
  const int exponent = decimal.digits.empty() ? 0 : decimal.exponent - 1;
  decimal.exponent -= exponent;
  return Fixed(decimal, picture) + (exponent < 0 ? "E-" : "E+") +
         std::to_string(std::abs(exponent));
}

bool ReadsAsZero(const std::string& text) {
  return text.find_first_of("123456789") == std::string::npos;
}

}  // namespace

std::string FormatPicture(float value, std::string_view picture) {
  if (std::isnan(value)) return "NaN";
  if (std::isinf(value)) return value < 0 ? "-Infinity" : "Infinity";
  const std::size_t mark = picture.find('E');
  if (mark == std::string_view::npos) return Fixed(ToDecimal(value), Picture::Of(picture));
  return Scientific(ToDecimal(value), Picture::Of(picture.substr(0, mark)));
}

std::string FormatTrimmed(float value, std::string picture) {
  if (value == 0) return picture;
  std::string text = FormatPicture(value, picture);
  const bool more_decimals_help = picture.find('.') != std::string::npos && std::isfinite(value);
  while (more_decimals_help && ReadsAsZero(text)) {
    picture += '0';
    text = FormatPicture(value, picture);
  }
  return text;
}

std::string FormatToDigits(float value, std::string picture) {
  if (value == 0) return picture;
  // The upper bound is on the value, not on its magnitude: a large negative one passes.
  if (std::abs(value) >= 0.00001 && value <= 99999.99) return FormatTrimmed(value, picture);
  return FormatPicture(value, "0.00E+0");
}

std::string PlainNumber(float value) {
  if (!std::isfinite(value)) return FormatPicture(value, "0");
  Decimal decimal = ToDecimal(value);
  decimal.digits.resize(decimal.digits.find_last_not_of('0') + 1);
  const int digits = static_cast<int>(decimal.digits.size());
  const int power = digits == 0 ? 0 : decimal.exponent - 1;
  const bool is_fixed = power >= kLeastPlainPower && power < kSignificantDigits;
  if (!is_fixed) decimal.exponent = 1;
  const int decimals = std::max(digits - decimal.exponent, 0);
  const std::string text = Fixed(
      decimal, {.leading = 1, .required = 0, .decimals = decimals, .has_point = decimals > 0});
  if (is_fixed) return text;
  const std::string exponent = std::to_string(std::abs(power));
  return text + (power < 0 ? "E-" : "E+") + (exponent.size() < 2 ? "0" : "") + exponent;
}

std::string FormatLegendValue(float value) {
  const float magnitude = std::abs(value);
  if (magnitude == 0) return "0.0";
  if (!(magnitude <= 100000 && magnitude >= 0.0000001F)) {
    return FormatPicture(value, "0.###E+#0");
  }
  return FormatPicture(value, magnitude < 1 ? "0.0######" : magnitude <= 10000 ? "0.0###" : "0.0#");
}

}  // namespace discoplan
