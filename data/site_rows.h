// SPDX-License-Identifier: MIT
#pragma once

/// Turns the rows of a table into sites, and sees to what is wrong with them.

#include <limits>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "data/columns.h"
#include "data/condition.h"
#include "data/number_text.h"
#include "data/positions.h"
#include "discoplan/core/interpolation/measured_sites.h"

namespace discoplan::data {

/// What the head of a table says about its rows.
struct RowShape {
  Columns columns;
  PositionScale scale;
  std::size_t fewest = 3;                ///< columns that are due
  std::size_t most = 3;                  ///< columns that may be filled
  std::int64_t line = 0;                 ///< of the header or, without one, of the first row
  std::vector<std::size_t> counts = {};  ///< columns that number the sites
};

/// The shape of rows below `head`, the fields of a header or of the first row.
RowShape ShapeOf(const FieldNames& head, Columns columns, std::int64_t line);

/// True if `fields` are a site: enough columns, not too many, and numbers.
bool IsSite(const std::vector<std::string_view>& fields, const RowShape& shape);

/// Counts a row that is left out; `at` is its line or the number of its site.
void CountSkipped(Reason reason, std::int64_t at, std::vector<SkippedRows>& skipped);

/// Why `text` is no number and what to do about it, as an error's sentence.
std::string FaultSentence(NumberFault fault, std::string_view text, std::string_view remedy);

/// What to do about a wafer with too many sites.
std::string TooManySites(std::int64_t most);

/// How many values are another number than the one before and the same 32-bit float.
class Narrowing {
 public:
  void Take(double value, float narrowed) {
    same_ += static_cast<float>(last_) == narrowed && value != last_;
    last_ = value;
  }
  /// Adds a warning if they are more than a tenth of the values of a parameter.
  void Tell(std::size_t parameter, Lot& lot) const;

 private:
  double last_ = std::numeric_limits<double>::quiet_NaN();
  std::size_t same_ = 0;
};

class SiteRows {
 public:
  /// Counts what it leaves out in `skipped`, if that is asked for.
  SiteRows(std::string file, const ReadRequest& request, std::vector<SkippedRows>& skipped);

  /// True if the row has as many columns as it must have. Throws `DataError` if it hasn't, unless
  /// it is skipped.
  bool HasWidth(const std::vector<std::string_view>& fields, std::int64_t line,
                const RowShape& shape) {
    return (fields.size() >= shape.fewest && fields.size() <= shape.most) ||
           HasFilledWidth(fields, line, shape);
  }
  /// True if none of the fields that tell wafers apart is empty. Throws `DataError` for a row that
  /// is asked for and belongs to no wafer, unless it is skipped.
  bool HasKeys(const std::vector<std::string_view>& fields, std::int64_t line,
               const std::vector<std::size_t>& keys, const Condition& condition);
  /// Adds one row of that width to `wafers`, one for each value column; false if it went into none.
  /// Throws `DataError` for a row that isn't valid, unless it is skipped.
  bool Add(const std::vector<std::string_view>& fields, std::int64_t line, const RowShape& shape,
           const Condition& condition, std::span<Wafer> wafers);
  /// The same of a row whose X, Y and values are `numbers`, written with `DecimalMark` or none.
  /// False for one with a position that doesn't fit, which is left to `Add`.
  bool AddPlain(std::span<const double> numbers, std::int64_t line, const RowShape& shape,
                std::span<Wafer> wafers);
  /// The mark of all decimals of the file, once it is beyond doubt; 0 before.
  char DecimalMark() const { return marks_.Proven(); }
  /// A number that isn't a site's, in column `column` from 0; nothing if the field is empty.
  std::optional<double> Number(std::string_view text, std::int64_t line, std::size_t column);
  /// To be called after the last row; throws `DataError` if no wafer has sites.
  void RequireSites(std::span<const Wafer> wafers, std::int64_t head_line) const;
  /// To be called at the end of the file.
  void Finish() const { marks_.Finish(); }
  /// Warns of values in all wafers of `lot` that 32-bit floats don't tell apart.
  void TellNarrowing(Lot& lot) const;

 private:
  bool HasFilledWidth(const std::vector<std::string_view>& fields, std::int64_t line,
                      const RowShape& shape);
  bool Meets(const Condition& condition, const std::vector<std::string_view>& fields,
             std::int64_t line, std::span<Wafer> wafers);
  /// True for a row that sums up others, by a word where they have their number.
  bool SumsUp(const std::vector<std::string_view>& fields, std::int64_t line, const RowShape& shape,
              std::span<Wafer> wafers);
  /// Says what is wrong with a field, or counts it.
  void Fail(NumberFault fault, std::string_view text, std::int64_t line, std::size_t column,
            std::span<Wafer> wafers);
  /// A value as it is kept.
  float Narrowed(std::size_t parameter, double value);
  void Append(const Site& site, std::int64_t line, Wafer& wafer) const;
  void Note(const ParsedNumber& number, std::string_view text, std::int64_t line,
            std::size_t column) {
    if (marks_.Knows(number)) return;
    marks_.Note(number, text, {file_, line, static_cast<std::int64_t>(column) + 1});
  }

  std::string file_;
  bool skip_invalid_;
  std::optional<std::int64_t> most_;
  std::vector<SkippedRows>& skipped_;
  DecimalMarks marks_;
  std::vector<Narrowing> narrowings_;  // of each parameter
};

}  // namespace discoplan::data
