// SPDX-License-Identifier: MIT
#include "data/plain_rows.h"

#include <algorithm>
#include <bit>
#include <utility>

#include "data/decimal_words.h"

namespace discoplan::data {
namespace {

constexpr std::size_t kWord = 8;

/// A line of eight characters at least, in words and fields from any place.
class Words {
 public:
  Words(std::string_view line, char separator) : line_(line), separator_(separator) {}

  /// The characters from `place` on, the first one lowest, and 0 beyond the line's end.
  std::uint64_t From(std::size_t place) const {
    const std::size_t last = line_.size() - kWord;
    if (place <= last) return EightBytes(line_.data() + place);
    const std::size_t half = 4 * (place - last);  // of as many bits as there may be
    return EightBytes(line_.data() + last) >> half >> half;
  }

  /// The end of the field at `place`, from which `word` is.
  std::size_t FieldEnd(std::size_t place, std::uint64_t word) const {
    while (true) {
      const std::uint64_t ends = FirstPlaceOf(separator_, word);
      if (ends != 0) return place + static_cast<std::size_t>(std::countr_zero(ends)) / 8;
      place += kWord;
      if (place >= line_.size()) return line_.size();
      word = From(place);
    }
  }

  /// Reads the field at `place` and moves that to its end; false if it is no plain number.
  bool ReadNumber(std::size_t& place, char mark, double& number) const {
    // 1 for a minus sign, without a branch: nothing foretells the sign of a position.
    const unsigned minus = place < line_.size() && line_[place] == '-' ? 1 : 0;
    const std::size_t begin = place + minus;
    const std::uint64_t word = From(begin);
    const std::size_t end = FieldEnd(begin, word);
    const std::size_t start = std::exchange(place, end);
    const std::size_t size = end - begin;
    if (size == 0) return false;
    if (size > kWord) {
      ParsedNumber parsed;
      const auto text = line_.substr(start, end - start);
      const bool is_plain = number_text_detail::ReadPlainly(text, mark, parsed);
      number = parsed.value;
      return is_plain;
    }
    const auto room = static_cast<unsigned>(64 - 8 * size);
    std::uint64_t digits = 0;
    unsigned decimals = 0;
    if (!ReadDecimal(word << room, room, mark, digits, decimals)) return false;
    number = NearestDouble(digits, decimals, minus);
    return true;
  }

 private:
  std::string_view line_;
  char separator_;
};

}  // namespace

PlainRows::PlainRows(const RowShape& shape, Dialect dialect, const std::vector<std::size_t>& same)
    : separator_(dialect.separator), fewest_(shape.fewest), columns_(shape.most) {
  bool is_plain = separator_ != ' ';  // of which several are one
  const auto give = [&](std::size_t place, const Column& column) {
    is_plain = is_plain && columns_[place].role == Role::Any;  // for one purpose alone
    columns_[place] = column;
  };
  std::vector<std::size_t> used = {shape.columns.x, shape.columns.y};
  used.insert(used.end(), shape.columns.values.begin(), shape.columns.values.end());
  for (const std::size_t place : used) {
    give(place, {Role::Number, numbers_.size()});
    numbers_.push_back(0);
  }
  for (const std::size_t place : shape.counts) give(place, {Role::Count});
  for (const std::size_t place : same) give(place, {Role::Same});
  if (!is_plain) columns_.clear();
}

/// Whether a field that is no number may stand there; one in quotes may hold separators.
bool PlainRows::Takes(const Column& column, std::string_view field) const {
  switch (column.role) {
    case Role::Same:
      return field == column.text;
    case Role::Count:
      return !field.empty() && field.front() >= '0' && field.front() <= '9';
    default:
      return field.empty() || static_cast<unsigned char>(field.front()) > '"';
  }
}

bool PlainRows::Read(std::string_view line, char decimal_mark) {
  if (!follows_ || line.size() < kWord) return false;
  const Words words(line, separator_);
  const char mark = decimal_mark != 0 ? decimal_mark : separator_;  // which no field holds
  const std::size_t width = columns_.size();
  std::size_t place = 0;
  for (std::size_t i = 0; i < width; ++i, ++place) {
    const Column& column = columns_[i];
    if (column.role == Role::Number) {
      if (!words.ReadNumber(place, mark, numbers_[column.number])) return false;
    } else {
      const std::size_t begin = place;
      place = words.FieldEnd(begin, words.From(begin));
      if (!Takes(column, line.substr(begin, place - begin))) return false;
    }
    if (place == line.size()) return i + 1 >= fewest_;
  }
  return false;
}

void PlainRows::Follow(const std::vector<std::string_view>& fields) {
  for (std::size_t i = 0; i < columns_.size(); ++i) {
    Column& column = columns_[i];
    if (column.role == Role::Same) column.text = i < fields.size() ? fields[i] : "";
  }
  follows_ = true;
}

}  // namespace discoplan::data
