// SPDX-License-Identifier: MIT
#include "apps/discoplan/number_text.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "discoplan/core/numbers.h"

namespace discoplan::app {
namespace {

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

// The place of a comma that is the number's decimal mark.
std::optional<std::size_t> DecimalComma(std::string_view text) {
  const std::size_t comma = text.find(',');
  if (comma == std::string_view::npos || comma == 0 || comma + 1 == text.size()) return {};
  if (text.find_first_of(",.", comma + 1) != std::string_view::npos) return {};
  if (!IsDigit(text[comma - 1]) || !IsDigit(text[comma + 1])) return {};
  return comma;
}

bool MayGroup(std::string_view text, std::size_t comma) {
  std::string_view whole = text.substr(0, comma);
  if (whole.starts_with('-')) whole.remove_prefix(1);
  const std::string_view rest = text.substr(comma + 1);
  return whole.size() <= 3 && whole.front() != '0' && rest.size() == 3 &&
         std::ranges::all_of(rest, IsDigit);
}

}  // namespace

ParsedNumber ParseNumber(std::string_view text) {
  ParsedNumber number;
  const auto failed = [&](NumberFault fault) {
    number.fault = fault;
    return number;
  };
  text = Trimmed(text);
  if (text.empty()) return failed(NumberFault::Empty);
  if (text.front() == '+') {
    text.remove_prefix(1);
    if (text.starts_with('-')) return failed(NumberFault::Text);
  }
  std::string pointed;
  if (const auto comma = DecimalComma(text)) {
    number.decimal_mark = ',';
    number.may_group = MayGroup(text, *comma);
    pointed = text;
    pointed[*comma] = '.';
    text = pointed;
  } else if (text.find('.') != std::string_view::npos) {
    number.decimal_mark = '.';
  }
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number.value);
  if (error == std::errc::invalid_argument || end != text.data() + text.size()) {
    return failed(NumberFault::Text);
  }
  if (error == std::errc::result_out_of_range) return failed(NumberFault::OutOfRange);
  if (!std::isfinite(number.value)) return failed(NumberFault::NotFinite);
  if (!Attempt([&] { number.narrowed = ToFloat(number.value); })) {
    return failed(NumberFault::OutOfRange);
  }
  return number;
}

void DecimalMarks::Note(const ParsedNumber& number, std::string_view text, const Place& place) {
  if (number.decimal_mark == 0) return;
  if (mark_ == 0) mark_ = number.decimal_mark;
  if (number.decimal_mark != mark_) {
    throw DataError(place, Shown(text) + " has another decimal mark than the numbers before it; " +
                               "write all of them with a point");
  }
  if (number.may_group && !doubt_) doubt_ = Doubt{place, std::string(text)};
  proven_ |= !number.may_group;
}

void DecimalMarks::Finish() const {
  if (!doubt_ || proven_) return;
  throw DataError(doubt_->place, Shown(doubt_->text) +
                                     " may have a decimal comma or a thousands separator; "
                                     "write decimals with a point and thousands without a mark");
}

}  // namespace discoplan::app
