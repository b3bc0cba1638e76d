// SPDX-License-Identifier: MIT
#pragma once

/// A line of text cut into the fields of a row.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "data/line_reader.h"

namespace discoplan::data {

/// How rows are written. A blank as separator means any run of blanks.
struct Dialect {
  char separator = ',';
};

/// Cuts `line` into `fields`, without the blanks around them and the double quotes around those
/// that hold a separator. The views point into `line`; a doubled quote inside quotes is kept as it
/// is. The result is the number, from 1, of a field whose quote is never closed, 0 if all is well.
std::size_t SplitFields(std::string_view line, Dialect dialect,
                        std::vector<std::string_view>& fields);

/// The same for a line of `file`; throws `DataError` for a quote that isn't closed.
void SplitOrThrow(const TextLine& line, const std::string& file, Dialect dialect,
                  std::vector<std::string_view>& fields);

/// Number of fields up to the last one that isn't empty.
inline std::size_t FilledWidth(const std::vector<std::string_view>& fields) {
  std::size_t width = fields.size();
  while (width > 0 && fields[width - 1].empty()) --width;
  return width;
}

}  // namespace discoplan::data
