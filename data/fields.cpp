// SPDX-License-Identifier: MIT
#include "data/fields.h"

#include <bit>

#include "data/byte_words.h"
#include "data/data_error.h"

namespace discoplan::data {
namespace {

// Where the quote that opens at `start` is closed.
std::size_t ClosingQuote(std::string_view line, std::size_t start) {
  std::size_t close = line.find('"', start + 1);
  while (close != std::string_view::npos && line.substr(close + 1).starts_with('"')) {
    close = line.find('"', close + 2);
  }
  return close;
}

/// `Trimmed`, which most fields are as they stand.
std::string_view Bare(std::string_view field) {
  const bool is_bare = !field.empty() && field.front() > ' ' && field.back() > ' ';
  return is_bare ? field : Trimmed(field);
}

/// Cuts a line without quotes, in one pass; false if it meets one.
bool SplitPlain(std::string_view line, char separator, std::vector<std::string_view>& fields) {
  constexpr std::size_t kStep = 8;
  std::size_t start = 0;
  const auto cut_at = [&](std::size_t end) {
    fields.push_back(Bare(line.substr(start, end - start)));
    start = end + 1;
  };
  std::size_t i = 0;
  for (; i + kStep <= line.size(); i += kStep) {
    const std::uint64_t word = EightBytes(line.data() + i);
    if (PlacesOf('"', word) != 0) return false;
    for (std::uint64_t ends = PlacesOf(separator, word); ends != 0; ends &= ends - 1) {
      cut_at(i + static_cast<std::size_t>(std::countr_zero(ends)) / kStep);
    }
  }
  for (; i < line.size(); ++i) {
    if (line[i] == '"') return false;
    if (line[i] == separator) cut_at(i);
  }
  cut_at(line.size());
  return true;
}

}  // namespace

std::size_t SplitFields(std::string_view line, Dialect dialect,
                        std::vector<std::string_view>& fields) {
  fields.clear();
  // Runs of blanks count as one separator.
  if (dialect.separator != ' ' && SplitPlain(line, dialect.separator, fields)) return 0;
  fields.clear();
  std::size_t start = 0;
  while (true) {
    while (start < line.size() && (line[start] == ' ' || line[start] == '\t') &&
           (line[start] == ' ' || dialect.separator != '\t')) {
      ++start;
    }
    const bool at_end = start == line.size();
    if (at_end && dialect.separator == ' ') return 0;
    std::size_t end = start;
    std::string_view quoted;
    if (!at_end && line[start] == '"') {
      const std::size_t close = ClosingQuote(line, start);
      if (close == std::string_view::npos) return fields.size() + 1;
      quoted = line.substr(start + 1, close - start - 1);
      end = close + 1;
    }
    const std::size_t after_quote = end;
    while (end < line.size() && line[end] != dialect.separator) ++end;
    const bool only_quoted =
        after_quote > start && Trimmed(line.substr(after_quote, end - after_quote)).empty();
    fields.push_back(only_quoted ? quoted : Trimmed(line.substr(start, end - start)));
    if (end == line.size() || line[end] != dialect.separator) return 0;
    start = end + 1;
  }
}

void SplitOrThrow(const TextLine& line, const std::string& file, Dialect dialect,
                  std::vector<std::string_view>& fields) {
  const std::size_t open = SplitFields(line.text, dialect, fields);
  if (open == 0) return;
  throw DataError({file, line.number, static_cast<std::int64_t>(open)},
                  "a quote is opened and not closed on this line; close it or remove it");
}

}  // namespace discoplan::data
