// SPDX-License-Identifier: MIT
#include "data/number_text.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>

#include "data/byte_words.h"
#include "discoplan/base/algorithms.h"
#include "discoplan/base/charconv.h"
#include "discoplan/base/numbers.h"

namespace discoplan::data {
namespace {

constexpr std::size_t kMostDigits = 15;

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

/// And with a minus sign, which gives a zero its sign too.
constexpr double kPowers[][kMostDigits] = {
    {1, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14},
    {-1, -1e1, -1e2, -1e3, -1e4, -1e5, -1e6, -1e7, -1e8, -1e9, -1e10, -1e11, -1e12, -1e13, -1e14}};

/// Digits and power of ten are whole numbers below 2^53, so that one division gives the nearest
/// double, as the general way does.
void Take(std::uint64_t digits, std::size_t decimals, bool negative, bool has_point,
          ParsedNumber& number) {
  const auto whole = static_cast<double>(static_cast<std::int64_t>(digits));
  number.value = whole / kPowers[negative ? 1 : 0][decimals];
  number.narrowed = static_cast<float>(number.value);  // far from the ends of its range
  number.decimal_mark = has_point ? '.' : '\0';
}

/// The bytes of 1 to 8 characters, the first one lowest.
inline std::uint64_t BytesOf(std::string_view text) {
  const std::size_t size = text.size();
  if (size >= 4) {
    return FourBytes(text.data()) | FourBytes(text.data() + size - 4) << (8 * (size - 4));
  }
  const auto at = [text](std::size_t i) {
    return std::uint64_t{static_cast<unsigned char>(text[i])} << (8 * i);
  };
  return at(0) | at(size / 2) | at(size - 1);
}

/// The number that 1 to 8 digits in the lowest bytes write; false if one of them is none.
inline bool ReadDigits(std::uint64_t bytes, std::size_t size, std::uint64_t& number) {
  constexpr std::uint64_t kZeros = InEachByte('0');
  constexpr std::uint64_t kHigh = InEachByte('\xF0');
  // Eight digits, with zeros in front.
  const std::size_t room = 64 - 8 * size;
  bytes = bytes << room | (kZeros & ((std::uint64_t{1} << room) - 1));
  const std::uint64_t above_nine = (bytes + InEachByte(6)) & kHigh;
  if ((bytes & kHigh) != kZeros || above_nine != kZeros) return false;
  bytes -= kZeros;
  // Each step joins neighbours: 2, then 4, then all 8 digits.
  bytes = (bytes * 10 + (bytes >> 8)) & 0x00FF00FF00FF00FFU;
  bytes = (bytes * 100 + (bytes >> 16)) & 0x0000FFFF0000FFFFU;
  number = (bytes * 10000 + (bytes >> 32)) & 0xFFFFFFFFU;
  return true;
}

/// The same of 1 to 15 characters.
bool ReadDigits(std::string_view text, std::uint64_t& number) {
  constexpr std::size_t kWord = 8;
  if (text.size() <= kWord) return ReadDigits(BytesOf(text), text.size(), number);
  const std::size_t first = text.size() - kWord;
  std::uint64_t low = 0;
  if (!ReadDigits(BytesOf(text.substr(0, first)), first, number)) return false;
  if (!ReadDigits(EightBytes(text.data() + first), kWord, low)) return false;
  number = number * 100'000'000 + low;
  return true;
}

/// "12.345" of 1 to 8 characters, without looking at them one by one.
bool ReadShortDecimal(std::string_view text, bool negative, ParsedNumber& number) {
  std::uint64_t bytes = BytesOf(text);
  std::size_t size = text.size();
  std::size_t decimals = 0;
  const std::uint64_t points = PlacesOf('.', bytes);
  if (points != 0) {
    const auto point = static_cast<std::size_t>(std::countr_zero(points)) / 8;
    if (point == 0 || point + 1 == size) return false;
    const std::uint64_t before = (std::uint64_t{1} << (8 * point)) - 1;
    bytes = (bytes & before) | ((bytes >> 8) & ~before);
    --size;
    decimals = size - point;
  }
  std::uint64_t digits = 0;
  if (!ReadDigits(bytes, size, digits)) return false;
  Take(digits, decimals, negative, points != 0, number);
  return true;
}

/// The same of 9 to 16 characters, by their digits before and behind the point.
bool ReadLongDecimal(std::string_view text, bool negative, ParsedNumber& number) {
  const std::size_t point = std::min(text.find('.'), text.size());
  const bool has_point = point < text.size();
  const std::string_view decimals = text.substr(point + (has_point ? 1 : 0));
  if (point == 0 || point > kMostDigits || has_point == decimals.empty()) return false;
  std::uint64_t whole = 0;
  std::uint64_t part = 0;
  if (!ReadDigits(text.substr(0, point), whole)) return false;
  if (has_point && !ReadDigits(decimals, part)) return false;
  const auto power = static_cast<std::uint64_t>(kPowers[0][decimals.size()]);
  Take(whole * power + part, decimals.size(), negative, has_point, number);
  return true;
}

}  // namespace

/// What nearly all numbers look like: "-12.345" of at most 15 digits.
bool number_text_detail::ReadPlainly(std::string_view text, ParsedNumber& number) {
  if (text.empty()) return false;
  // 1 for a minus sign, without a branch: nothing foretells the sign of a position.
  const std::size_t sign =
      (std::size_t{static_cast<unsigned char>(text.front())} ^ std::size_t{'-'}) == 0;
  text = {text.data() + sign, text.size() - sign};
  if (text.size() - 1 < 8) return ReadShortDecimal(text, sign != 0, number);
  if (text.empty() || text.size() > kMostDigits + 1) return false;
  return ReadLongDecimal(text, sign != 0, number);
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
