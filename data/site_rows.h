// SPDX-License-Identifier: MIT
#pragma once

/// Turns the rows of a table into sites, and sees to what is wrong with them.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "data/columns.h"
#include "data/number_text.h"
#include "data/read.h"

namespace discoplan::data {

/// What the head of a table says about its rows.
struct RowShape {
  Columns columns;
  std::size_t fewest = 3;  ///< columns that are due
  std::size_t most = 3;    ///< columns that may be filled
  std::int64_t line = 0;   ///< of the header or, without one, of the first row
};

/// The shape of rows below `head`, the fields of a header or of the first row.
RowShape ShapeOf(const FieldNames& head, Columns columns, std::int64_t line);

/// True if `fields` are a site: enough columns, not too many, and three numbers.
bool IsSite(const std::vector<std::string_view>& fields, const RowShape& shape);

/// Counts a row that is left out; `at` is its line or the number of its site.
void CountSkipped(Reason reason, std::int64_t at, std::vector<SkippedRows>& skipped);

/// Why `text` is no number and what to do about it, as an error's sentence.
std::string FaultSentence(NumberFault fault, std::string_view text, std::string_view remedy);

class SiteRows {
 public:
  /// Counts what it leaves out in `skipped`, if `skip_invalid` is set.
  SiteRows(std::string file, bool skip_invalid, std::vector<SkippedRows>& skipped);

  /// Adds one row to `wafer`. Throws `DataError` for a row that isn't valid, unless it is skipped.
  void Add(const std::vector<std::string_view>& fields, std::int64_t line, const RowShape& shape,
           Wafer& wafer);
  /// A number that isn't a site's, in column `column` from 0; nothing if the field is empty.
  std::optional<double> Number(std::string_view text, std::int64_t line, std::size_t column);
  /// To be called after the last row of `wafer`; throws `DataError` if it has no sites.
  void RequireSites(const Wafer& wafer, std::int64_t head_line) const;
  /// To be called at the end of the file.
  void Finish() const { marks_.Finish(); }

 private:
  std::string file_;
  bool skip_invalid_;
  std::vector<SkippedRows>& skipped_;
  DecimalMarks marks_;
};

}  // namespace discoplan::data
