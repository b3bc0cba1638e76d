// SPDX-License-Identifier: MIT
#include "data/text_table.h"

#include <algorithm>
#include <array>
#include <compare>
#include <utility>

#include "data/fields.h"
#include "data/site_rows.h"
#include "data/units.h"
#include "discoplan/base/algorithms.h"

namespace discoplan::data {
namespace {

struct Separator {
  char mark;
  std::string_view name;
};
constexpr Separator kSeparators[] = {
    {';', "semicolons"}, {'\t', "tabs"}, {',', "commas"}, {' ', "blanks"}};

constexpr std::size_t kFewestColumns = 3;

struct TableHead {
  RowShape shape;
  bool header = false;
  Parameter parameter;
};

class TableReader {
 public:
  TableReader(const ReadRequest& request, LineReader& lines)
      : request_(request), lines_(lines), sample_(lines.Ahead()) {
    if (!request.columns.empty()) requested_ = RequestedColumns(request.columns, lines.file());
  }

  Lot Read();

 private:
  // How well a separator goes with the first lines, in the order of weight.
  struct Fit {
    std::size_t sites = 0;
    std::size_t wide_lines = 0;
    std::size_t fields = 0;

    auto operator<=>(const Fit&) const = default;
  };

  [[noreturn]] void RefuseNarrow(Dialect dialect) const;
  TableHead FindHead(Dialect dialect) const;
  Fit FitOf(Dialect dialect) const;
  Dialect FindDialect() const;

  const ReadRequest& request_;
  LineReader& lines_;
  const std::deque<TextLine>& sample_;
  FieldNames requested_;
};

void TableReader::RefuseNarrow(Dialect dialect) const {
  FieldNames fields;
  const auto first = FindIf(sample_, [&](const TextLine& line) {
    SplitFields(line.text, dialect, fields);
    return FilledWidth(fields) > 0;
  });
  const bool any = first != sample_.end();
  throw DataError({lines_.file(), any ? first->number : 0},
                  (any ? Counted(fields.size(), "column") : "no column") +
                      " where at least 3 are due; separate X, Y and value by commas, semicolons, "
                      "tabs or blanks");
}

// The head is the first line with enough columns; shorter ones before it are rows gone wrong.
TableHead TableReader::FindHead(Dialect dialect) const {
  FieldNames fields;
  const auto wide = FindIf(sample_, [&](const TextLine& line) {
    SplitOrThrow(line, lines_.file(), dialect, fields);
    return fields.size() >= kFewestColumns && FilledWidth(fields) > 0;
  });
  if (wide == sample_.end()) RefuseNarrow(dialect);
  const bool any_number = AnyOf(fields, [](std::string_view field) {
    const NumberFault fault = ParseNumber(field).fault;
    return fault != NumberFault::Text && fault != NumberFault::Empty;
  });
  const bool header = !any_number || NamesColumns(fields, requested_);
  const Place place{lines_.file(), wide->number};
  Columns columns;
  if (!requested_.empty()) {
    columns = FindColumns(fields, header, requested_, place);
  } else if (header) {
    columns = GuessColumns(fields, ValueChoice::Only, place);
  }
  Parameter parameter{"Value", ""};
  if (header) {
    const Heading value = SplitHeading(fields[columns.value]);
    parameter = {std::string(value.name), std::string(value.unit)};
  }
  return {ShapeOf(fields, columns, wide->number), header, parameter};
}

TableReader::Fit TableReader::FitOf(Dialect dialect) const {
  Fit fit;
  std::vector<std::string_view> fields;
  for (const TextLine& line : sample_) {
    SplitFields(line.text, dialect, fields);
    fit.wide_lines += fields.size() >= kFewestColumns;
    fit.fields += fields.size();
    // "1 , 2 , 3" isn't separated by blanks.
    const bool lone_mark =
        AnyOf(fields, [](std::string_view field) { return field == "," || field == ";"; });
    if (dialect.separator == ' ' && lone_mark) return {};
  }
  try {
    const RowShape shape = FindHead(dialect).shape;
    for (const TextLine& line : sample_) {
      fit.sites += SplitFields(line.text, dialect, fields) == 0 && IsSite(fields, shape);
    }
  } catch (const DataError&) {
    fit.sites = 0;
  }
  return fit;
}

Dialect TableReader::FindDialect() const {
  std::array<Fit, std::size(kSeparators)> fits;
  Transform(kSeparators, fits.begin(),
            [&](const Separator& separator) { return FitOf({separator.mark}); });
  const std::size_t best = static_cast<std::size_t>(MaxElement(fits) - fits.begin());
  std::size_t rival = 0;
  while (rival < fits.size() && (rival == best || fits[rival].sites != fits[best].sites)) ++rival;
  if (rival == fits.size() || fits[best].sites == 0) return {kSeparators[best].mark};
  throw DataError({lines_.file()}, "the columns may be separated by " +
                                       std::string(kSeparators[best].name) + " or by " +
                                       std::string(kSeparators[rival].name) +
                                       "; put quotes around the fields that hold either");
}

Lot TableReader::Read() {
  const Dialect dialect = FindDialect();
  const auto [shape, header, parameter] = FindHead(dialect);
  Lot result;
  result.parameters = {parameter};
  Wafer wafer;
  wafer.name = request_.path.stem().string();
  // Memory that nothing is written to costs nothing, and growing costs twice.
  for (std::vector<float>* column : {&wafer.x, &wafer.y, &wafer.value}) column->reserve(kMostSites);
  SiteRows rows(lines_.file(), request_.skip_invalid, result.skipped);
  TextLine line;
  std::vector<std::string_view> fields;
  while (lines_.Next(line)) {
    SplitOrThrow(line, lines_.file(), dialect, fields);
    const bool is_header = header && line.number == shape.line;
    if (is_header || FilledWidth(fields) == 0) continue;
    rows.Add(fields, line.number, shape, wafer);
  }
  rows.Finish();
  rows.RequireSites(wafer, header ? shape.line : 0);
  result.wafers.push_back(std::move(wafer));
  return result;
}

}  // namespace

Lot ReadTextTable(const ReadRequest& request, LineReader& lines) {
  return TableReader(request, lines).Read();
}

}  // namespace discoplan::data
