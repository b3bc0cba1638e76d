// SPDX-License-Identifier: MIT
#include "data/lot_export.h"

#include <algorithm>
#include <array>
#include <utility>

#include "data/fields.h"
#include "data/site_rows.h"
#include "data/units.h"
#include "data/wafer_choice.h"
#include "discoplan/base/algorithms.h"
#include "discoplan/base/numbers.h"

namespace discoplan::data {
namespace {

constexpr std::string_view kWaferKey = "WAFER ID";
constexpr std::string_view kSlotKey = "SLOT";
constexpr std::string_view kSitesKey = "Site #";

struct StatisticKey {
  std::string_view key;
  double ReportedStatistics::*field;
};
constexpr StatisticKey kStatistics[] = {{"MEAN", &ReportedStatistics::mean},
                                        {"MIN", &ReportedStatistics::min},
                                        {"MAX", &ReportedStatistics::max},
                                        {"STDDEV", &ReportedStatistics::stddev},
                                        {"RANGE", &ReportedStatistics::range}};

struct Block {
  std::int64_t line = 0;  // of its WAFER ID
  Wafer wafer;
  std::array<TextLine, std::size(kStatistics)> statistics;
  std::optional<RowShape> shape;  // once its table has begun
  std::optional<bool> chosen;     // once that is asked
  bool in_table = false;
};

class LotReader {
 public:
  LotReader(const ReadRequest& request, char separator, LineReader& lines)
      : request_(request),
        dialect_{separator, false},
        lines_(lines),
        choice_(request.wafers, lines.file()),
        rows_(lines.file(), request.skip_invalid, result_.skipped) {
    result_.kind = FileKind::LotExport;
    if (!request.columns.empty()) requested_ = RequestedColumns(request.columns, lines.file());
  }

  Lot Read();

 private:
  void ReadBlockLine(const TextLine& line);
  void OpenTable(const TextLine& line);
  void CloseBlock();
  void RefuseSecond() const;
  std::optional<ReportedStatistics> Reported();
  bool IsChosen();
  [[noreturn]] void Refuse(std::int64_t line, const std::string& sentence) const {
    throw DataError({lines_.file(), line}, sentence);
  }

  const ReadRequest& request_;
  Dialect dialect_;
  LineReader& lines_;
  FieldNames requested_;
  WaferChoice choice_;
  Lot result_;
  SiteRows rows_;
  std::optional<Block> block_;
  std::vector<std::string_view> fields_;
};

Lot LotReader::Read() {
  TextLine line;
  while (lines_.Next(line)) {
    SplitOrThrow(line, lines_.file(), dialect_, fields_);
    if (SameName(fields_[0], kWaferKey)) {
      CloseBlock();
      block_.emplace();
      block_->line = line.number;
      if (fields_.size() > 1) block_->wafer.name = fields_[1];
    } else if (block_) {
      ReadBlockLine(line);
    }
  }
  CloseBlock();
  rows_.Finish();
  choice_.RequireAll();
  return std::move(result_);
}

void LotReader::ReadBlockLine(const TextLine& line) {
  if (FilledWidth(fields_) == 0) {
    block_->in_table = false;
  } else if (block_->in_table) {
    if (IsChosen()) rows_.Add(fields_, line.number, *block_->shape, block_->wafer);
  } else if (SameName(fields_[0], kSitesKey)) {
    OpenTable(line);
  } else if (SameName(fields_[0], kSlotKey)) {
    const std::string_view text = fields_.size() > 1 ? fields_[1] : "";
    const auto slot = rows_.Number(text, line.number, 1);
    if (slot && (*slot < 0 || *slot > 9999 || *slot != ToInt32(*slot))) {
      throw DataError({lines_.file(), line.number, 2},
                      Shown(text) + " is no slot; write a whole number");
    }
    if (slot) block_->wafer.slot = ToInt32(*slot);
  } else if (ParseNumber(fields_[0]).fault == NumberFault::None) {
    if (IsChosen()) {
      Refuse(line.number, "a row stands outside the table of sites; mend the lines before it");
    }
  } else {
    const auto key = FindIf(kStatistics, [&](const StatisticKey& statistic) {
      return SameName(fields_[0], statistic.key);
    });
    if (key != std::end(kStatistics)) {
      block_->statistics[static_cast<std::size_t>(key - kStatistics)] = line;
    }
  }
}

void LotReader::OpenTable(const TextLine& line) {
  if (block_->shape && IsChosen()) {
    Refuse(line.number, "wafer " + Shown(block_->wafer.name) +
                            " has a second table of sites; put a WAFER ID line above it");
  }
  block_->in_table = true;
  block_->shape.emplace();
  if (!IsChosen()) return;
  const Place place{lines_.file(), line.number};
  const Columns columns = requested_.empty() ? GuessColumns(fields_, ValueChoice::First, place)
                                             : FindColumns(fields_, true, requested_, place);
  block_->shape = ShapeOf(fields_, columns, line.number);
  if (result_.parameters.empty()) {
    const Heading value = SplitHeading(fields_[columns.value]);
    result_.parameters = {{std::string(value.name), std::string(value.unit)}};
  }
}

void LotReader::CloseBlock() {
  if (!block_) return;
  const std::string name = Shown(block_->wafer.name);
  if (IsChosen()) {
    RefuseSecond();
    if (!block_->shape) {
      Refuse(block_->line, "wafer " + name + " has no table of sites; complete or remove it");
    }
    rows_.RequireSites(block_->wafer, block_->shape->line);
    block_->wafer.reported = Reported();
    result_.wafers.push_back(std::move(block_->wafer));
  }
  block_.reset();
}

std::optional<ReportedStatistics> LotReader::Reported() {
  const std::size_t column = block_->shape->columns.value;
  ReportedStatistics reported;
  bool complete = true;
  for (std::size_t i = 0; i < std::size(kStatistics); ++i) {
    const TextLine& line = block_->statistics[i];
    std::vector<std::string_view> fields;
    SplitFields(line.text, dialect_, fields);
    const auto number =
        column < fields.size() ? rows_.Number(fields[column], line.number, column) : std::nullopt;
    complete = complete && number.has_value();
    reported.*kStatistics[i].field = number.value_or(0);
  }
  return complete ? std::optional(reported) : std::nullopt;
}

/// Its slot stands above its table.
bool LotReader::IsChosen() {
  if (!block_->chosen) block_->chosen = choice_.Takes(block_->wafer.name, block_->wafer.slot);
  return *block_->chosen;
}

void LotReader::RefuseSecond() const {
  const Wafer& wafer = block_->wafer;
  if (choice_.TakesAll() || !wafer.slot) return;
  for (const Wafer& other : result_.wafers) {
    if (other.slot != wafer.slot) continue;
    Refuse(block_->line,
           "slot " + std::to_string(*wafer.slot) + " is here a second time; remove one of the two");
  }
}

}  // namespace

std::optional<char> LotSeparator(LineReader& lines) {
  std::vector<std::string_view> fields;
  for (const char separator : {',', ';', '\t'}) {
    for (const TextLine& line : lines.Ahead()) {
      SplitFields(line.text, {separator, false}, fields);
      // A table may have a column of that name; its header fills more than two.
      if (fields.size() > 1 && FilledWidth(fields) <= 2 && SameName(fields[0], kWaferKey)) {
        return separator;
      }
    }
  }
  return {};
}

Lot ReadLotExport(const ReadRequest& request, char separator, LineReader& lines) {
  return LotReader(request, separator, lines).Read();
}

}  // namespace discoplan::data
