// SPDX-License-Identifier: MIT
#include "data/text_table.h"

#include <algorithm>
#include <utility>

#include "data/plain_rows.h"
#include "data/repeats.h"
#include "data/table_dialect.h"
#include "data/utf16.h"
#include "data/wafer_groups.h"

namespace discoplan::data {
namespace {

std::vector<std::size_t> GroupColumns(const ReadRequest& request, const TableHead& head) {
  std::vector<std::size_t> columns;
  for (const std::string& entry : request.by) {
    const std::size_t column = FindColumn(entry, head);
    if (std::find(columns.begin(), columns.end(), column) == columns.end()) {
      columns.push_back(column);
    }
  }
  return columns;
}

/// Columns that should tell wafers apart, of rows that are taken for those of one.
class Tellers {
 public:
  Tellers(const TableHead& head, const std::vector<std::size_t>& values) {
    if (!head.header) return;
    for (const std::size_t column : WaferTellers(head.names)) {
      if (std::find(values.begin(), values.end(), column) != values.end()) continue;
      columns_.push_back({column, {}, false});
    }
  }

  std::vector<std::size_t> places() const {
    std::vector<std::size_t> places;
    for (const Column& column : columns_) places.push_back(column.place);
    return places;
  }

  void Take(const std::vector<std::string_view>& fields) {
    for (Column& column : columns_) {
      const std::string_view text = column.place < fields.size() ? fields[column.place] : "";
      if (!any_) column.first = text;
      column.differs = column.differs || text != column.first;
    }
    any_ = true;
  }

  /// "Lot,Slot": those that aren't the same in all rows.
  std::string Entries(const TableHead& head) const {
    std::string entries;
    for (const Column& column : columns_) {
      if (column.differs) entries += (entries.empty() ? "" : ",") + Entry(head, column.place);
    }
    return entries;
  }

 private:
  struct Column {
    std::size_t place;
    std::string first;
    bool differs;
  };
  std::vector<Column> columns_;
  bool any_ = false;
};

void SortByFirst(std::vector<SkippedRows>& skipped) {
  std::sort(skipped.begin(), skipped.end(),
            [](const SkippedRows& a, const SkippedRows& b) { return a.first < b.first; });
}

class TableReader {
 public:
  TableReader(const ReadRequest& request, LineReader& lines)
      : request_(request),
        lines_(lines),
        wish_(request, lines.file()),
        start_(FindStart(request, wish_, lines)),
        by_(GroupColumns(request, start_.Head())),
        choice_(request.wafers, lines.file()),
        groups_(by_, request.path.stem().string(), start_.shape.columns.values.size(), choice_),
        rows_(lines.file(), request, lot_.skipped),
        tellers_(start_.Head(), start_.shape.columns.values),
        plain_(start_.shape, start_.dialect, by_.empty() ? tellers_.places() : by_) {}

  Lot Read();
  const PositionScale& scale() const { return start_.shape.scale; }

 private:
  void ReadRows(const Condition& condition);
  bool AddPlainRow(const TextLine& line);
  bool AddRow(const TextLine& line, const Condition& condition);
  void JudgeComment(const LineReader::Comment& comment);
  void RefuseOneWafer() const;
  void RefuseNumbersOfRows() const;
  void JudgeRepeats();
  void JudgeTellers();
  std::string TellersText() const;

  const ReadRequest& request_;
  LineReader& lines_;
  ColumnWish wish_;
  TableStart start_;
  std::vector<std::size_t> by_;
  Lot lot_;
  WaferChoice choice_;
  WaferGroups groups_;
  SiteRows rows_;
  KeptRows kept_;
  Tellers tellers_;
  PlainRows plain_;
  std::span<Wafer> followed_;  // of the row that plain ones are like
  std::vector<std::string_view> fields_;
};

void TableReader::RefuseOneWafer() const {
  if (request_.wafers.empty() || !by_.empty()) return;
  throw DataError({lines_.file()},
                  "the table is taken for one wafer; name the columns that tell its wafers apart "
                  "with --by, or leave out --wafer");
}

/// Rows without a header may begin with the number of their site, which then stands for X.
void TableReader::RefuseNumbersOfRows() const {
  // By chance, whole numbers count so few sites on 1 of 5! wafers at most.
  constexpr std::size_t kFewest = 5;
  if (start_.header || !request_.columns.empty() || start_.names.size() < 4) return;
  if (lot_.wafers.empty() || lot_.wafers[0].x.size() < kFewest) return;
  const std::vector<float>& x = lot_.wafers[0].x;
  for (std::size_t i = 0; i < x.size(); ++i) {
    if (x[i] != x[0] + static_cast<float>(i) || x[0] > 1 || x[0] < 0) return;
  }
  throw DataError(start_.place,
                  "there is no header line, and the first column only counts the rows; choose X, Y "
                  "and value by number, as in --columns 2,3,4");
}

void TableReader::ReadRows(const Condition& condition) {
  TextLine line;
  const bool keeps = by_.empty() && lot_.parameters.size() == 1;
  try {
    while (lines_.Next(line)) {
      if (line.number <= start_.last_line) continue;
      const bool added = AddPlainRow(line) || AddRow(line, condition);
      if (added && keeps) kept_.Add(line.text);
    }
  } catch (const DataError&) {
    // Too many sites may be those of several wafers.
    lot_.wafers = groups_.Take();
    if (!lot_.wafers.empty() && std::ssize(lot_.wafers[0].x) >= request_.most_sites) JudgeRepeats();
    throw;
  }
}

bool TableReader::AddPlainRow(const TextLine& line) {
  return plain_.Read(line.text, rows_.DecimalMark()) &&
         rows_.AddPlain(plain_.numbers(), line.number, start_.shape, followed_);
}

bool TableReader::AddRow(const TextLine& line, const Condition& condition) {
  SplitOrThrow(line, lines_.file(), start_.dialect, fields_);
  if (FilledWidth(fields_) == 0 || !rows_.HasWidth(fields_, line.number, start_.shape)) {
    return false;
  }
  if (!by_.empty() && !rows_.HasKeys(fields_, line.number, by_, condition)) return false;
  const std::span<Wafer> wafers = groups_.Of(fields_);
  if (wafers.empty()) return false;
  if (!rows_.Add(fields_, line.number, start_.shape, condition, wafers)) return false;
  if (by_.empty()) tellers_.Take(fields_);
  if (!condition.IsGiven()) {
    plain_.Follow(fields_);
    followed_ = wafers;
  }
  return true;
}

/// A row that is taken for a comment since it begins with "#", as the number "#1" of its site does.
void TableReader::JudgeComment(const LineReader::Comment& comment) {
  if (start_.header && comment.number <= start_.place.line) return;
  if (SplitFields(comment.text, start_.dialect, fields_) != 0) return;
  if (!IsSite(fields_, start_.shape)) return;
  CountSkipped(Reason::Commented, comment.number, lot_.skipped);
}

/// "Slot", "Lot,Slot or 5 ('Wafer ID')".
std::string TableReader::TellersText() const {
  std::vector<std::size_t> known = {start_.shape.columns.x, start_.shape.columns.y};
  if (!wish_.all_values) known.push_back(start_.shape.columns.values[0]);
  const TableHead head = start_.Head();
  std::vector<std::string> texts;
  for (const auto& columns : kept_.Tellers(lot_.wafers[0], start_.dialect, known)) {
    std::string entries;
    std::vector<std::string> names;
    bool is_plain = true;
    for (const std::size_t column : columns) {
      const std::string entry = Entry(head, column);
      entries += (entries.empty() ? "" : ",") + entry;
      const std::string_view name = start_.header ? head.names[column] : std::string_view();
      is_plain = is_plain && (name.empty() || entry == name);
      names.push_back(Shown(Utf8(name)));
    }
    texts.push_back(is_plain ? entries : entries + " (" + Listed(names) + ')');
  }
  if (texts.empty()) return {};
  std::string list = texts[0];
  for (std::size_t i = 1; i < texts.size(); ++i) {
    list += (i + 1 == texts.size() ? " or " : ", ") + texts[i];
  }
  return list;
}

/// Rows of several wafers taken for one would give a false map; a few sites measured twice don't.
void TableReader::JudgeRepeats() {
  for (const Wafer& wafer : lot_.wafers) {
    const std::size_t repeats = RepeatedSites(wafer.x, wafer.y);
    if (repeats == 0) continue;
    const std::string tellers = by_.empty() && wafer.parameter == 0 ? TellersText() : std::string();
    const std::string of = by_.empty() ? "" : "of wafer " + Shown(wafer.name);
    const std::string found = RepeatText(repeats, wafer, of);
    if (!tellers.empty()) {
      throw DataError({lines_.file()}, found + "; tell the wafers apart with --by " + tellers);
    }
    if (2 * repeats >= wafer.x.size()) {
      throw DataError({lines_.file()},
                      found +
                          "; name the columns that tell the wafers apart with --by, or split "
                          "the file");
    }
    lot_.warnings.push_back(found + "; each of them is taken for a site of its own");
  }
}

/// Stages don't go to quite the same place on each wafer.
void TableReader::JudgeTellers() {
  const std::string entries = tellers_.Entries(start_.Head());
  if (entries.empty() || lot_.wafers.empty()) return;
  const Wafer& wafer = lot_.wafers[0];
  const std::size_t near = SitesNearOthers(wafer.x, wafer.y);
  if (2 * near >= wafer.x.size()) {
    throw DataError({lines_.file()},
                    std::to_string(near) + " of " + Counted(wafer.x.size(), "site") +
                        " lie within 0.1 mm of another; tell the wafers apart with --by " +
                        entries);
  }
  lot_.warnings.push_back("all rows are taken for one wafer; --by " + entries +
                          " makes one of each text there");
}

Lot TableReader::Read() {
  RefuseOneWafer();
  const TableHead head = start_.Head();
  lot_.warnings = start_.warnings;
  const FieldNames units(start_.units.begin(), start_.units.end());
  lot_.parameters = ParametersOf(head, start_.shape.columns, units);
  for (const std::size_t column : by_) {
    lot_.keys.push_back(start_.header ? Utf8(start_.names[column])
                                      : "column " + std::to_string(column + 1));
  }
  const Condition condition =
      request_.where.empty() ? Condition() : Condition(request_.where, head);
  for (const LineReader::Comment& comment : lines_.Comments()) JudgeComment(comment);
  lines_.TellComments([this](const LineReader::Comment& comment) { JudgeComment(comment); });
  ReadRows(condition);
  lines_.TellComments({});
  SortByFirst(lot_.skipped);
  rows_.Finish();
  choice_.RequireAll();
  lot_.wafers = groups_.Take();
  if (!lot_.wafers.empty() || !condition.IsGiven()) {
    rows_.RequireSites(lot_.wafers, start_.header ? start_.place.line : 0);
  }
  RefuseNumbersOfRows();
  JudgeRepeats();
  JudgeTellers();
  rows_.TellNarrowing(lot_);
  return std::move(lot_);
}

}  // namespace

Lot ReadTextTable(const ReadRequest& request, LineReader& lines, PositionScale& scale) {
  TableReader reader(request, lines);
  scale = reader.scale();
  return reader.Read();
}

}  // namespace discoplan::data
