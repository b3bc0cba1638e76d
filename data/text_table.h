// SPDX-License-Identifier: MIT
#pragma once

/// A table with one site on a line.
///
///     Recipe 7, 200 mm           anything, up to the line that names X and Y
///     # a comment
///     X; Y; slot1; slot2         or R and theta; "X (cm)" gives a unit
///     mm; mm; nm; nm             units, if they stand here
///     0; 0; 571,5; 569,25
///
/// Fields are separated by commas, semicolons, tabs or blanks; the separator is the one with which
/// most of the first 100 lines read as sites, and if two do equally well, the file is refused.
/// Without names of X and Y, a line without any number or with the names looked for is a header;
/// there needn't be one. Blank lines and lines of empty fields are left out. All rows have as many
/// columns as the header or the first row; empty ones at the end are no matter.

#include "data/line_reader.h"
#include "data/positions.h"

namespace discoplan::data {

/// Reads the wafers of a table, one without `request.by`, and how its positions were written.
/// Throws `DataError` as `Read` does.
Lot ReadTextTable(const ReadRequest& request, LineReader& lines, PositionScale& scale);

}  // namespace discoplan::data
