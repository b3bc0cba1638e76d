// SPDX-License-Identifier: MIT
#include "data/table_dialect.h"

#include <algorithm>
#include <array>
#include <compare>
#include <iterator>
#include <optional>
#include <utility>

#include "data/stated_unit.h"

namespace discoplan::data {
namespace {

struct Separator {
  char mark;
  std::string_view name;
};
constexpr Separator kSeparators[] = {
    {';', "semicolons"}, {'\t', "tabs"}, {',', "commas"}, {' ', "blanks"}};

constexpr std::size_t kFewestColumns = 3;

// How well a separator goes with the first lines, in the order of weight.
struct Fit {
  std::size_t sites = 0;
  std::size_t wide_lines = 0;
  std::size_t fields = 0;

  auto operator<=>(const Fit&) const = default;
};

class StartFinder {
 public:
  StartFinder(const ReadRequest& request, const ColumnWish& wish, LineReader& lines)
      : request_(request),
        wish_(wish),
        file_(lines.file()),
        sample_(lines.Ahead()),
        comments_(lines.Comments()) {}

  TableStart Find() const { return StartOf(FindDialect()); }
  TableStart FindHead() const { return HeadOf(FindDialect()); }

 private:
  using Line = std::deque<TextLine>::const_iterator;

  [[noreturn]] void RefuseNarrow(Dialect dialect) const;
  std::optional<Line> NamingLine(Dialect dialect, FieldNames& fields) const;
  Line WideLine(Dialect dialect, FieldNames& fields) const;
  TableStart HeadOf(Dialect dialect) const;
  void TakeNamesOfComment(std::int64_t above, TableStart& start) const;
  TableStart StartOf(Dialect dialect) const;
  std::vector<StatedUnit> UnitsAbove(std::int64_t line) const;
  std::string UnitAbove(const FieldNames& units, TableStart& start) const;
  bool HoldsNumbers(Line first, Dialect dialect, std::size_t column) const;
  Fit FitOf(Dialect dialect) const;
  Dialect FindDialect() const;

  const ReadRequest& request_;
  const ColumnWish& wish_;
  const std::string& file_;
  const std::deque<TextLine>& sample_;
  const std::deque<LineReader::Comment>& comments_;
};

bool IsNumber(std::string_view field) { return ParseNumber(field).fault == NumberFault::None; }

void StartFinder::RefuseNarrow(Dialect dialect) const {
  FieldNames fields;
  const auto first = std::find_if(sample_.begin(), sample_.end(), [&](const TextLine& line) {
    SplitFields(line.text, dialect, fields);
    return FilledWidth(fields) > 0;
  });
  const bool any = first != sample_.end();
  const bool all_text = sample_.size() == LineReader::kLinesAhead;
  throw DataError({file_, any ? first->number : 0},
                  (any ? Counted(fields.size(), "column") : "no column") +
                      " where at least 3 are due" +
                      (all_text ? ", as in all of the first 100 lines" : "") +
                      "; separate X, Y and value by commas, semicolons, tabs or blanks" +
                      (all_text ? ", and leave out text above them" : ""));
}

/// The line that names positions, unless rows begin before it.
std::optional<StartFinder::Line> StartFinder::NamingLine(Dialect dialect,
                                                         FieldNames& fields) const {
  for (Line line = sample_.begin(); line != sample_.end(); ++line) {
    if (SplitFields(line->text, dialect, fields) != 0 || fields.size() < kFewestColumns) continue;
    if (NamesPositions(fields, wish_)) return line;
    if (std::all_of(fields.begin(), fields.begin() + kFewestColumns, IsNumber)) break;
  }
  return {};
}

// The first line with enough columns; shorter ones before it are rows gone wrong.
StartFinder::Line StartFinder::WideLine(Dialect dialect, FieldNames& fields) const {
  const auto wide = std::find_if(sample_.begin(), sample_.end(), [&](const TextLine& line) {
    SplitOrThrow(line, file_, dialect, fields);
    return fields.size() >= kFewestColumns && FilledWidth(fields) > 0;
  });
  if (wide == sample_.end()) RefuseNarrow(dialect);
  return wide;
}

bool StartFinder::HoldsNumbers(Line first, Dialect dialect, std::size_t column) const {
  FieldNames fields;
  bool any_row = false;
  for (Line line = first; line != sample_.end(); ++line) {
    SplitFields(line->text, dialect, fields);
    if (column >= fields.size()) continue;
    const NumberFault fault = ParseNumber(fields[column]).fault;
    if (fault != NumberFault::Text && fault != NumberFault::Empty) return true;
    any_row = any_row || fault == NumberFault::Text;
  }
  return !any_row;
}

TableStart StartFinder::HeadOf(Dialect dialect) const {
  FieldNames fields;
  const auto naming = NamingLine(dialect, fields);
  const Line first = naming ? *naming : WideLine(dialect, fields);
  TableStart start;
  start.dialect = dialect;
  start.names.assign(fields.begin(), fields.end());
  start.header = naming || std::none_of(fields.begin(), fields.end(), [](std::string_view field) {
                   const NumberFault fault = ParseNumber(field).fault;
                   return fault != NumberFault::Text && fault != NumberFault::Empty;
                 });
  start.place = {file_, first->number};
  start.last_line = start.header ? first->number : first->number - 1;
  if (!start.header) TakeNamesOfComment(first->number, start);
  return start;
}

/// Some programs make a comment of the header.
void StartFinder::TakeNamesOfComment(std::int64_t above, TableStart& start) const {
  const LineReader::Comment* last = nullptr;
  for (const LineReader::Comment& comment : comments_) {
    if (comment.number < above) last = &comment;
  }
  FieldNames names;
  if (last == nullptr || SplitFields(last->text, start.dialect, names) != 0) return;
  if (names.size() != start.names.size() || !NamesPositions(names, wish_)) return;
  start.names.assign(names.begin(), names.end());
  start.header = true;
  start.place.line = last->number;
}

std::vector<StatedUnit> StartFinder::UnitsAbove(std::int64_t line) const {
  std::vector<StatedUnit> stated;
  const auto look_at = [&](const auto& above) {
    if (above.number >= line) return;
    if (auto unit = StatedUnitIn(above.text, above.number)) stated.push_back(std::move(*unit));
  };
  std::for_each(sample_.begin(), sample_.end(), look_at);
  std::for_each(comments_.begin(), comments_.end(), look_at);
  return stated;
}

/// The unit of positions in columns that have none.
std::string StartFinder::UnitAbove(const FieldNames& units, TableStart& start) const {
  const Columns& columns = start.shape.columns;
  const TableHead head = start.Head();
  const auto has_unit = [&](std::size_t column) { return !UnitAt(column, head, units).empty(); };
  if (request_.unit || request_.pitch || has_unit(columns.x)) return {};
  if (!columns.polar && has_unit(columns.y)) return {};
  const auto& values = columns.values;
  const bool values_have_units = std::all_of(values.begin(), values.end(), has_unit);
  PositionUnit above = PositionUnitOf(UnitsAbove(start.place.line), values_have_units, file_);
  if (!above.warning.empty()) start.warnings.push_back(above.warning);
  return above.unit;
}

TableStart StartFinder::StartOf(Dialect dialect) const {
  TableStart start = HeadOf(dialect);
  const TableHead head = start.Head();
  Line below = sample_.begin();
  while (below != sample_.end() && below->number <= start.last_line) ++below;
  while (below != sample_.end() && Trimmed(below->text).empty()) ++below;
  Columns columns = FindColumns(head, wish_, ValueChoice::Only, [&](std::size_t column) {
    return HoldsNumbers(below, dialect, column);
  });
  FieldNames units;
  if (start.header && below != sample_.end()) {
    SplitFields(below->text, dialect, units);
    if (IsUnitRow(units, columns)) {
      start.units.assign(units.begin(), units.end());
      start.last_line = below->number;
    } else {
      units.clear();
    }
  }
  start.shape = ShapeOf(head.names, std::move(columns), start.place.line);
  const std::string above = UnitAbove(units, start);
  if (!above.empty()) {
    units.resize(head.names.size());
    units[start.shape.columns.x] = above;
    if (!start.shape.columns.polar) units[start.shape.columns.y] = above;
  }
  start.shape.scale = ScaleOf(head, start.shape.columns, units, request_);
  // What stands far from its columns isn't so sure that sizes go unchecked.
  start.shape.scale.stated = start.shape.scale.stated && above.empty();
  return start;
}

Fit StartFinder::FitOf(Dialect dialect) const {
  Fit fit;
  std::vector<std::string_view> fields;
  for (const TextLine& line : sample_) {
    SplitFields(line.text, dialect, fields);
    fit.wide_lines += fields.size() >= kFewestColumns;
    fit.fields += fields.size();
    // "1 , 2 , 3" isn't separated by blanks.
    const bool lone_mark = std::any_of(fields.begin(), fields.end(), [](std::string_view field) {
      return field == "," || field == ";";
    });
    if (dialect.separator == ' ' && lone_mark) return {};
  }
  try {
    const TableStart start = StartOf(dialect);
    for (const TextLine& line : sample_) {
      if (line.number <= start.last_line) continue;
      fit.sites += SplitFields(line.text, dialect, fields) == 0 && IsSite(fields, start.shape);
    }
  } catch (const DataError&) {
    fit.sites = 0;
  }
  return fit;
}

Dialect StartFinder::FindDialect() const {
  std::array<Fit, std::size(kSeparators)> fits;
  std::transform(std::begin(kSeparators), std::end(kSeparators), fits.begin(),
                 [&](const Separator& separator) { return FitOf({separator.mark}); });
  const auto best =
      static_cast<std::size_t>(std::max_element(fits.begin(), fits.end()) - fits.begin());
  std::size_t rival = 0;
  while (rival < fits.size() && (rival == best || fits[rival].sites != fits[best].sites)) ++rival;
  if (rival == fits.size() || fits[best].sites == 0) return {kSeparators[best].mark};
  throw DataError({file_}, "the columns may be separated by " +
                               std::string(kSeparators[best].name) + " or by " +
                               std::string(kSeparators[rival].name) +
                               "; put quotes around the fields that hold either");
}

}  // namespace

TableHead TableStart::Head() const {
  TableHead head = {FieldNames(names.begin(), names.end()), header, place};
  if (shape.columns.values.size() > 1)
    head.value.reset();
  else
    head.value = shape.columns.values.front();
  return head;
}

TableStart FindHead(const ReadRequest& request, const ColumnWish& wish, LineReader& lines) {
  return StartFinder(request, wish, lines).FindHead();
}

TableStart FindStart(const ReadRequest& request, const ColumnWish& wish, LineReader& lines) {
  return StartFinder(request, wish, lines).Find();
}

}  // namespace discoplan::data
