// SPDX-License-Identifier: MIT
#include "data/fields.h"

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

/// No quotes, nor runs of blanks to take for one separator.
bool IsPlain(std::string_view line, Dialect dialect) {
  return dialect.separator != ' ' && line.find('"') == std::string_view::npos;
}

void SplitPlain(std::string_view line, char separator, std::vector<std::string_view>& fields) {
  while (true) {
    const std::size_t end = line.find(separator);
    fields.push_back(Trimmed(line.substr(0, end)));
    if (end == std::string_view::npos) return;
    line.remove_prefix(end + 1);
  }
}

}  // namespace

std::size_t SplitFields(std::string_view line, Dialect dialect,
                        std::vector<std::string_view>& fields) {
  fields.clear();
  if (IsPlain(line, dialect)) {
    SplitPlain(line, dialect.separator, fields);
    return 0;
  }
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

std::size_t FilledWidth(const std::vector<std::string_view>& fields) {
  std::size_t width = fields.size();
  while (width > 0 && fields[width - 1].empty()) --width;
  return width;
}

}  // namespace discoplan::data
