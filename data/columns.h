// SPDX-License-Identifier: MIT
#pragma once

/// Which columns of a table hold X, Y and the value.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "data/data_error.h"

namespace discoplan::data {

/// Counted from 0.
struct Columns {
  std::size_t x = 0;
  std::size_t y = 1;
  std::size_t value = 2;
};

using FieldNames = std::vector<std::string_view>;

/// The three entries of a request such as "X,Y,slot1"; throws `DataError` if there aren't three.
FieldNames RequestedColumns(std::string_view request, const std::string& file);

/// All digits: a column's number, not its name.
bool IsColumnNumber(std::string_view entry);

/// True if `names` holds one of the requested names or, without a request, names of X and Y.
bool NamesColumns(const FieldNames& names, const FieldNames& requested);

/// The requested columns. `names` is the header or, if `header` is false, the first row. Throws
/// `DataError` at `place` for a column that isn't there, or a name that several columns have.
Columns FindColumns(const FieldNames& names, bool header, const FieldNames& requested,
                    const Place& place);

enum class ValueChoice {
  Only,   ///< the one column with a usual name or, if none has one, the one beside X, Y and site
  First,  ///< the first of the columns with a usual name, as in a lot export
};

/// X, Y and value by their usual names. Throws `DataError` at `place` if one isn't there or if
/// several columns may be it.
Columns GuessColumns(const FieldNames& names, ValueChoice choice, const Place& place);

}  // namespace discoplan::data
