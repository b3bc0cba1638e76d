// SPDX-License-Identifier: MIT
#include "discoplan/core/number_checks.h"

#include <charconv>
#include <cmath>

#include "discoplan/base/charconv.h"

namespace discoplan {
namespace {

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

class NumberParser {
 public:
  explicit NumberParser(std::string_view text) : rest_(text) {}

  std::optional<double> Parse() {
    TakeAround(true);
    const std::optional<double> magnitude = Peek() == '&' ? Prefixed() : Decimal();
    if (!magnitude) return {};
    TakeAround(false);
    if (!rest_.empty() || open_) return {};
    return negative_ ? -*magnitude : *magnitude;
  }

 private:
  char Peek() const { return rest_.empty() ? '\0' : rest_.front(); }

  bool Take(std::string_view token) {
    if (!rest_.starts_with(token)) return false;
    rest_.remove_prefix(token.size());
    return true;
  }

  bool TakeBlank() { return Take(" ") || Take("\t") || Take("\u00A0"); }

  /// Blanks, sign, currency and parentheses, each of the last three once.
  void TakeAround(bool before) {
    for (;;) {
      if (TakeBlank()) continue;
      if (!signed_ && (Peek() == '-' || Peek() == '+')) {
        negative_ = negative_ || Peek() == '-';
        signed_ = true;
        rest_.remove_prefix(1);
      } else if (!currency_ && Take("$")) {
        currency_ = true;
      } else if (before && !open_ && !signed_ && Take("(")) {
        open_ = negative_ = signed_ = true;
      } else if (!before && open_ && Take(")")) {
        open_ = false;
      } else {
        return;
      }
    }
  }

  std::optional<double> Prefixed() {
    const bool hexadecimal = Take("&H") || Take("&h");
    if (!hexadecimal && !Take("&O") && !Take("&o")) return {};
    std::uint64_t number = 0;
    const auto [end, fault] =
        std::from_chars(rest_.data(), rest_.data() + rest_.size(), number, hexadecimal ? 16 : 8);
    if (fault != std::errc()) return {};
    rest_.remove_prefix(static_cast<std::size_t>(end - rest_.data()));
    return static_cast<double>(number);
  }

  std::optional<double> Decimal() {
    std::string plain;
    bool point = false;
    bool digits = false;
    for (; !rest_.empty(); rest_.remove_prefix(1)) {
      const char c = rest_.front();
      if (IsDigit(c)) {
        digits = true;
      } else if (c == '.' && !point) {
        point = true;
      } else if (c == ',' && digits) {
        continue;
      } else {
        break;
      }
      plain += c;
    }
    if (!digits || !TakeExponent(plain)) return {};
    return Value(plain);
  }

  bool TakeExponent(std::string& plain) {
    if (std::string_view("eEdD").find(Peek()) == std::string_view::npos || rest_.empty())
      return true;
    rest_.remove_prefix(1);
    plain += 'e';
    if (Peek() == '-' || Peek() == '+') {
      if (Peek() == '-') plain += '-';
      rest_.remove_prefix(1);
    }
    if (!IsDigit(Peek())) return false;
    for (; IsDigit(Peek()); rest_.remove_prefix(1)) plain += Peek();
    return true;
  }

  static std::optional<double> Value(const std::string& plain) {
    double number = 0;
    const auto fault = FromChars(plain.data(), plain.data() + plain.size(), number).ec;
    if (fault == std::errc()) return number;
    // What is too small to be told from zero is zero; what is too large is no number.
    return Magnitude(plain) < 0 ? std::optional(0.0) : std::nullopt;
  }

  /// The power of ten of the first digit that isn't 0.
  static double Magnitude(const std::string& plain) {
    const std::size_t digits = std::min(plain.find('e'), plain.size());
    const std::size_t point = std::min(plain.find('.'), digits);
    const std::size_t first = plain.find_first_of("123456789");
    const double power = static_cast<double>(point) - static_cast<double>(first);
    return power + (digits == plain.size() ? 0.0 : Exponent(plain.substr(digits + 1)));
  }

  /// One that is too long for any number still has its sign.
  static double Exponent(const std::string& text) {
    int exponent = 0;
    const auto fault = std::from_chars(text.data(), text.data() + text.size(), exponent).ec;
    if (fault == std::errc()) return exponent;
    return text.starts_with('-') ? -HUGE_VAL : HUGE_VAL;
  }

  std::string_view rest_;
  bool negative_ = false;
  bool signed_ = false;
  bool currency_ = false;
  bool open_ = false;
};

}  // namespace

std::optional<double> ParseNumber(std::string_view text) { return NumberParser(text).Parse(); }

bool CheckRangeOk(std::string_view text, double lower, double upper, std::string& error,
                  std::string_view field) {
  const std::optional<double> number = ParseNumber(text);
  const char* fault = text.empty()                           ? "can not be empty"
                      : !number                              ? "must be numeric"
                      : *number >= upper || *number <= lower ? "not valid"
                                                             : nullptr;
  if (fault == nullptr) return true;
  error.append(field).append(fault) += '\n';
  return false;
}

bool CheckRangeTyping(std::string_view text, double lower, double upper) {
  const std::optional<double> number = ParseNumber(text);
  return !number || (lower < *number && *number < upper);
}

bool CheckIntegerText(std::string_view text) {
  if (text.empty()) return true;
  return ParseNumber(text) && text.find_first_of("eE,.dD") == std::string_view::npos;
}

bool CheckDecimalText(std::string_view text, bool reject_minus) {
  if (text.empty() || (!reject_minus && text == "-")) return true;
  return ParseNumber(text) && text.find_first_of("eEdD") == std::string_view::npos;
}

}  // namespace discoplan
