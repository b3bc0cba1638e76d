// SPDX-License-Identifier: MIT
#pragma once

/// Numbers as data files write them, with a decimal point or a decimal comma.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "data/data_error.h"

namespace discoplan::data {

enum class NumberFault { None, Empty, Text, NotFinite, OutOfRange };

struct ParsedNumber {
  NumberFault fault = NumberFault::None;
  double value = 0;
  float narrowed = 0;
  char decimal_mark = 0;   ///< '.' or ',', 0 without one
  bool may_group = false;  ///< its comma may set off thousands, as in "1,234"
};

/// Reads a decimal number, independent of the locale, with blanks around it and a leading '+'
/// allowed. A comma stands for a decimal point if it is the only mark and between digits. "nan" and
/// "inf" are `NotFinite`, what overflows a 32-bit float is `OutOfRange`; hexadecimals are `Text`.
ParsedNumber ParseNumber(std::string_view text);

namespace number_text_detail {
/// Reads most numbers with that decimal mark; false for a text that takes the general way.
bool ReadPlainly(std::string_view text, char mark, ParsedNumber& number);
NumberFault ReadGenerally(std::string_view text, ParsedNumber& number);
}  // namespace number_text_detail

inline ParsedNumber ParseNumber(std::string_view text) {
  ParsedNumber number;
  if (!number_text_detail::ReadPlainly(text, '.', number)) {
    number.fault = number_text_detail::ReadGenerally(text, number);
  }
  return number;
}

/// Sees to it that all numbers of a file have the same decimal mark, and that one that may be read
/// in two ways, 1.234 or 1234, is backed by another that can't.
class DecimalMarks {
 public:
  /// Takes note of a number that was read from `text`. Throws `DataError` at `place` if its mark is
  /// not that of the numbers before.
  void Note(const ParsedNumber& number, std::string_view text, const Place& place);
  /// Whether there is nothing new in a number, so that `Note` may be left out.
  bool Knows(const ParsedNumber& number) const {
    return number.decimal_mark == 0 ||
           (number.decimal_mark == mark_ && proven_ && !number.may_group);
  }
  /// The mark of all numbers, once it is beyond doubt; 0 before.
  char Proven() const { return proven_ ? mark_ : '\0'; }
  /// To be called at the end of the file. Throws `DataError` if the commas may be either.
  void Finish() const;

 private:
  struct Doubt {
    Place place;
    std::string text;
  };

  char mark_ = 0;
  bool proven_ = false;
  std::optional<Doubt> doubt_;
};

}  // namespace discoplan::data
