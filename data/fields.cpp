// SPDX-License-Identifier: MIT
#include "data/fields.h"

#include <algorithm>
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

/// The highest bits of eight bytes, the lowest one's first.
std::uint64_t BitsOf(std::uint64_t places) { return (places >> 7) * 0x0102040810204080U >> 56; }

/// Where separators stand in the 64 characters from `block` on, the first one lowest; false if
/// there is a quote. The line has 8 characters at least.
bool FindSeparators(std::string_view line, std::size_t block, char separator,
                    std::uint64_t& separators) {
  const std::size_t last = line.size() - 8;
  separators = 0;
  std::uint64_t quotes = 0;
  const auto bits_at = [&](std::size_t i) {
    const std::uint64_t word = EightBytes(line.data() + i);
    quotes |= PlacesOf('"', word);
    return BitsOf(PlacesOf(separator, word));
  };
  for (std::size_t i = block; i < std::min(last, block + 64); i += 8) {
    separators |= bits_at(i) << (i - block);
  }
  // The last eight characters, whichever of them have been looked at.
  if (last < block) {
    separators |= bits_at(last) >> (block - last);
  } else if (last < block + 64) {
    separators |= bits_at(last) << (last - block);
  }
  return quotes == 0;
}

/// Cuts a line without quotes; false if it meets one. Where fields end is found for many at first:
/// a processor can foresee how many there are, but not where they end.
bool SplitPlain(std::string_view line, char separator, std::vector<std::string_view>& fields) {
  std::size_t start = 0;
  const auto cut_at = [&](std::size_t end) {
    fields.push_back(Bare(line.substr(start, end - start)));
    start = end + 1;
  };
  if (line.size() < 8) {
    for (std::size_t i = 0; i < line.size(); ++i) {
      if (line[i] == '"') return false;
      if (line[i] == separator) cut_at(i);
    }
  } else {
    for (std::size_t block = 0; block < line.size(); block += 64) {
      std::uint64_t separators = 0;
      if (!FindSeparators(line, block, separator, separators)) return false;
      for (; separators != 0; separators &= separators - 1) {
        cut_at(block + static_cast<std::size_t>(std::countr_zero(separators)));
      }
    }
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
