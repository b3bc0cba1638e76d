// SPDX-License-Identifier: MIT
#pragma once

/// How a table is written: its separator and its head, from its first lines.

#include <string>
#include <vector>

#include "data/columns.h"
#include "data/fields.h"
#include "data/line_reader.h"
#include "data/site_rows.h"

namespace discoplan::data {

/// What stands above the rows. Owns its texts.
struct TableStart {
  Dialect dialect;
  std::vector<std::string> names;  ///< fields of the header or, without one, of the first row
  std::vector<std::string> units;  ///< of a row below the header, or none
  bool header = false;
  Place place;                 ///< of the header or the first row
  std::int64_t last_line = 0;  ///< the rows begin below it
  RowShape shape;
  std::vector<std::string> warnings;

  TableHead Head() const;
};

/// The same without what the columns hold: `units` and `shape` stay empty.
TableStart FindHead(const ReadRequest& request, const ColumnWish& wish, LineReader& lines);

/// From the first lines, which stay to be read. Throws `DataError` if they don't tell.
TableStart FindStart(const ReadRequest& request, const ColumnWish& wish, LineReader& lines);

}  // namespace discoplan::data
