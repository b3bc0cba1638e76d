// SPDX-License-Identifier: MIT
#pragma once

/// What was wrong with a data file, where, and what to do, as one line for people:
///
///     examples/a.csv:12:3: 'abc' is no number; mend the value or use --skip-invalid

#include <cstdint>
#include <stdexcept>
#include <string>

#include "data/plain_text.h"

namespace discoplan::data {

/// A place in a data file. `line` counts from 1. `column` is the number of the field in its row,
/// from 1, not a position in the line. 0 stands for none; a column is given only together with a
/// line.
struct Place {
  std::string file;
  std::int64_t line = 0;
  std::int64_t column = 0;
};

class DataError : public std::runtime_error {
 public:
  /// `sentence` must be one printable line; foreign text goes into it through `Shown`.
  DataError(const Place& place, const std::string& sentence)
      : std::runtime_error(Text(place) + ": " + sentence), place_(place), sentence_(sentence) {}

  const std::string& file() const { return place_.file; }
  std::int64_t line() const { return place_.line; }
  std::int64_t column() const { return place_.column; }
  const std::string& sentence() const { return sentence_; }

 private:
  static std::string Text(const Place& place) {
    std::string text = Printable(place.file);
    if (place.line != 0) text += ':' + std::to_string(place.line);
    if (place.column != 0) text += ':' + std::to_string(place.column);
    return text;
  }

  Place place_;
  std::string sentence_;
};

}  // namespace discoplan::data
