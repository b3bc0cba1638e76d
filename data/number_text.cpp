// SPDX-License-Identifier: MIT
#include "data/number_text.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "data/decimal_words.h"
#include "discoplan/base/algorithms.h"
#include "discoplan/base/charconv.h"
#include "discoplan/base/numbers.h"

namespace discoplan::data {
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
  return whole.size() <= 3 && whole.front() != '0' && rest.size() == 3 && AllOf(rest, IsDigit);
}

/// 1 to 8 characters as the highest bytes of a word, above `room` bits of 0.
std::uint64_t WordOf(std::string_view text, unsigned& room) {
  const std::size_t size = text.size();
  room = static_cast<unsigned>(64 - 8 * size);
  if (size >= 4) {
    const std::uint64_t first = FourBytes(text.data());
    return FourBytes(text.data() + size - 4) << 32 | first << room;
  }
  const auto at = [text](std::size_t i) {
    return std::uint64_t{static_cast<unsigned char>(text[i])} << (8 * i);
  };
  return (at(0) | at(size / 2) | at(size - 1)) << room;
}

/// The number that 1 to 15 characters write; false if one of them is no digit.
bool ReadAllDigits(std::string_view text, std::uint64_t& number) {
  const std::size_t first = text.size() - std::min<std::size_t>(text.size(), 8);
  unsigned room = 0;
  const std::uint64_t last = WordOf(text.substr(first), room);
  if (!ReadDigits(last, room, number)) return false;
  if (first == 0) return true;
  std::uint64_t high = 0;
  const std::uint64_t front = WordOf(text.substr(0, first), room);
  if (!ReadDigits(front, room, high)) return false;
  number += high * 100'000'000;
  return true;
}

/// "12.345" of 9 to 16 characters, by its digits before and behind the mark.
bool ReadLongDecimal(std::string_view text, char mark, std::uint64_t& digits, unsigned& decimals) {
  const std::size_t whole = std::min(text.find(mark), text.size());
  const bool has_mark = whole < text.size();
  const std::string_view behind = text.substr(whole + (has_mark ? 1 : 0));
  if (whole == 0 || whole > kMostDigits || has_mark == behind.empty()) return false;
  if (!ReadAllDigits(text.substr(0, whole), digits)) return false;
  decimals = static_cast<unsigned>(behind.size());
  if (!has_mark) return true;
  std::uint64_t part = 0;
  if (!ReadAllDigits(behind, part)) return false;
  digits = digits * static_cast<std::uint64_t>(kPowersOfTen[0][decimals]) + part;
  return true;
}

}  // namespace

/// What nearly all numbers look like: "-12.345" of at most 15 digits.
bool number_text_detail::ReadPlainly(std::string_view text, char mark, ParsedNumber& number) {
  if (text.empty()) return false;
  // 1 for a minus sign, without a branch: nothing foretells the sign of a position.
  const unsigned minus = text.front() == '-' ? 1 : 0;
  text = {text.data() + minus, text.size() - minus};
  if (text.empty() || text.size() > kMostDigits + 1) return false;
  std::uint64_t digits = 0;
  unsigned decimals = 0;
  if (text.size() > 8) {
    if (!ReadLongDecimal(text, mark, digits, decimals)) return false;
  } else {
    unsigned room = 0;
    const std::uint64_t word = WordOf(text, room);
    if (!ReadDecimal(word, room, mark, digits, decimals)) return false;
  }
  number.value = NearestDouble(digits, decimals, minus);
  number.narrowed = static_cast<float>(number.value);  // far from the ends of its range
  number.decimal_mark = decimals > 0 ? mark : '\0';
  return true;
}

NumberFault number_text_detail::ReadGenerally(std::string_view text, ParsedNumber& number) {
  text = Trimmed(text);
  if (text.empty()) return NumberFault::Empty;
  if (text.front() == '+') {
    text.remove_prefix(1);
    if (text.starts_with('-')) return NumberFault::Text;
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
  const auto [end, error] = FromChars(text.data(), text.data() + text.size(), number.value);
  if (error == std::errc::invalid_argument || end != text.data() + text.size()) {
    return NumberFault::Text;
  }
  if (error == std::errc::result_out_of_range) return NumberFault::OutOfRange;
  if (!std::isfinite(number.value)) return NumberFault::NotFinite;
  const bool fits = Attempt([&] { number.narrowed = ToFloat(number.value); });
  return fits ? NumberFault::None : NumberFault::OutOfRange;
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

}  // namespace discoplan::data
