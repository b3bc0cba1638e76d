// SPDX-License-Identifier: MIT
#pragma once

/// Rows of plain numbers, which nearly all rows are, read in one pass over their characters.

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "data/fields.h"
#include "data/site_rows.h"

namespace discoplan::data {

/// Reads rows with the results of `SplitFields` and `ParseNumber`, or leaves them to those.
///
///     if (rows.Read(line, mark)) Add(rows.numbers());
///     else if (AddGenerally(line, fields)) rows.Follow(fields);
class PlainRows {
 public:
  /// `same` are columns that must have the text of the row before, such as those that tell wafers
  /// apart.
  PlainRows(const RowShape& shape, Dialect dialect, const std::vector<std::size_t>& same);

  /// Whether the row is one of the shape's width and its numbers are like "-12.345", with the
  /// decimal mark given or none, and 15 digits at most.
  bool Read(std::string_view line, char decimal_mark);
  /// Of the row that was read: X, Y and the values.
  std::span<const double> numbers() const { return numbers_; }

  /// Rows that are read have `same` texts as these fields from now on; none are read before.
  void Follow(const std::vector<std::string_view>& fields);

 private:
  enum class Role { Any, Same, Count, Number };
  struct Column {
    Role role = Role::Any;
    std::size_t number = 0;  // its place among the numbers
    std::string text = {};   // of the row followed
  };

  bool Takes(const Column& column, std::string_view field) const;

  char separator_;
  std::size_t fewest_;
  std::vector<Column> columns_;
  std::vector<double> numbers_;
  bool follows_ = false;
};

}  // namespace discoplan::data
