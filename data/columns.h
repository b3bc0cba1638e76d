// SPDX-License-Identifier: MIT
#pragma once

/// Which columns of a table hold positions and values, and in which units.

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "data/data_error.h"
#include "data/read.h"

namespace discoplan::data {

using FieldNames = std::vector<std::string_view>;

/// Counted from 0.
struct Columns {
  std::size_t x = 0;  ///< or the radius
  std::size_t y = 1;  ///< or the angle
  std::vector<std::size_t> values = {2};
  bool polar = false;
};

/// What `ReadRequest` says of columns, cut into entries: names or numbers from 1.
struct ColumnWish {
  std::vector<std::string> positions;  ///< none or two
  std::vector<std::string> values;     ///< none: guessed
  bool all_values = false;
  std::vector<std::string> by;  ///< tell the wafers apart, and so aren't guessed to be values

  /// Throws `DataError` if `columns` doesn't name two or more, or if values are given twice.
  ColumnWish(const ReadRequest& request, const std::string& file);
};

/// The line that says what the columns are or, if `header` is false, the first row.
struct TableHead {
  FieldNames names;
  bool header = true;
  Place place;
  std::optional<std::size_t> value = 2;  ///< the only one that is read, if it is known
};

/// What a column without a name is called: "Value" if it is the only value, or else "Column 4".
std::string GivenName(std::size_t column, const TableHead& head);
/// The column that is called so in a table without a header.
std::optional<std::size_t> FindGiven(std::string_view name, const TableHead& head);

/// True if `names` holds names of positions, usual ones or those that are wished for.
bool NamesPositions(const FieldNames& names, const ColumnWish& wish);

/// The column that an entry names or counts. Throws `DataError` for one that isn't there, or a name
/// that several columns have.
std::size_t FindColumn(std::string_view entry, const TableHead& head);

/// A column as people may ask for it: its name if that is one plain word, or else its number.
std::string Entry(const TableHead& head, std::size_t column);

enum class ValueChoice {
  Only,  ///< the one column with a usual name or, if none has one, the one of numbers beside others
  First,  ///< the first of the columns with a usual name, as in a lot export
};

/// The columns whose names count sites, as "Site #" does.
std::vector<std::size_t> SiteCounts(const FieldNames& names);
/// The columns whose names tell wafers apart, as "Slot" and "Lot ID" do.
std::vector<std::size_t> WaferTellers(const FieldNames& names);

/// Positions and values as wished for or by their usual names; the first three columns without a
/// header. `holds_numbers` tells which columns may be a value. Throws `DataError` if one isn't
/// there or if several columns may be it.
Columns FindColumns(const TableHead& head, const ColumnWish& wish, ValueChoice choice,
                    const std::function<bool(std::size_t)>& holds_numbers);

/// The values of `columns` as parameters. `units` are those of a row below the header, or none.
std::vector<Parameter> ParametersOf(const TableHead& head, const Columns& columns,
                                    const FieldNames& units);

}  // namespace discoplan::data
