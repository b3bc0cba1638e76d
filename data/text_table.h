// SPDX-License-Identifier: MIT
#pragma once

/// A table with one site on a line.
///
///     # 200 mm, nitride          a whole line or the end of one
///     X; Y; slot1; slot2
///     0; 0; 571,5; 569,25
///
/// Fields are separated by commas, semicolons, tabs or blanks; the separator is the one with which
/// most of the first 100 lines read as sites, and if two do equally well, the file is refused.
/// A line without any number, or with the names looked for, is a header; there needn't be
/// one. Blank lines and lines of empty fields are left out. All rows have as many columns as the
/// header or the first row; empty ones at the end are no matter.

#include "data/line_reader.h"
#include "data/read.h"

namespace discoplan::data {

/// Reads the one wafer of a table. Throws `DataError` as `Read` does.
Lot ReadTextTable(const ReadRequest& request, LineReader& lines);

}  // namespace discoplan::data
