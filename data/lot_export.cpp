// SPDX-License-Identifier: MIT
#include "data/lot_export.h"

#include <algorithm>
#include <array>
#include <utility>

#include "data/fields.h"
#include "data/site_rows.h"
#include "data/utf16.h"
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

struct StatisticLine {
  std::int64_t number = 0;
  std::string text;
};

struct Block {
  std::int64_t line = 0;      // of its WAFER ID
  Wafer wafer;                // its name and slot
  std::vector<Wafer> wafers;  // one for each parameter, once its table has begun
  Condition condition;
  std::array<StatisticLine, std::size(kStatistics)> statistics;
  std::optional<RowShape> shape;  // once its table has begun
  std::optional<bool> chosen;     // once that is asked
  bool in_table = false;
};

class LotReader {
 public:
  LotReader(const ReadRequest& request, char separator, LineReader& lines)
      : request_(request),
        dialect_{separator},
        lines_(lines),
        wish_(request, lines.file()),
        choice_(request.wafers, lines.file()),
        rows_(lines.file(), request, result_.skipped) {
    result_.kind = FileKind::LotExport;
    if (!request.by.empty()) {
      Refuse(0, "a lot export tells its wafers apart itself; leave out --by");
    }
  }

  Lot Read();
  const PositionScale& scale() const { return scale_; }

 private:
  void ReadBlockLine(const TextLine& line);
  void OpenTable(const TextLine& line);
  void CloseBlock();
  void RefuseSecond() const;
  std::optional<ReportedStatistics> Reported(std::size_t column);
  bool IsChosen();
  [[noreturn]] void Refuse(std::int64_t line, const std::string& sentence) const {
    throw DataError({lines_.file(), line}, sentence);
  }

  const ReadRequest& request_;
  Dialect dialect_;
  LineReader& lines_;
  ColumnWish wish_;
  WaferChoice choice_;
  Lot result_;
  SiteRows rows_;
  PositionScale scale_;
  std::vector<std::vector<Wafer>> wafers_;  // of each parameter
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
      if (fields_.size() > 1) block_->wafer.name = Utf8(fields_[1]);
    } else if (block_) {
      ReadBlockLine(line);
    }
  }
  CloseBlock();
  rows_.Finish();
  choice_.RequireAll();
  for (std::vector<Wafer>& wafers : wafers_) {
    for (Wafer& wafer : wafers) {
      if (!wafer.x.empty()) result_.wafers.push_back(std::move(wafer));
    }
  }
  rows_.TellNarrowing(result_);
  return std::move(result_);
}

void LotReader::ReadBlockLine(const TextLine& line) {
  if (FilledWidth(fields_) == 0) {
    block_->in_table = false;
  } else if (block_->in_table) {
    if (IsChosen() && rows_.HasWidth(fields_, line.number, *block_->shape)) {
      rows_.Add(fields_, line.number, *block_->shape, block_->condition, block_->wafers);
    }
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
      block_->statistics[static_cast<std::size_t>(key - kStatistics)] = {line.number,
                                                                         std::string(line.text)};
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
  const TableHead head = {fields_, true, {lines_.file(), line.number}};
  Columns columns = FindColumns(head, wish_, ValueChoice::First, [](std::size_t) { return true; });
  const PositionScale scale = ScaleOf(head, columns, {}, request_);
  std::vector<Parameter> parameters = ParametersOf(head, columns, {});
  if (wafers_.empty()) {
    wafers_.resize(parameters.size());
    result_.parameters = std::move(parameters);
    scale_ = scale;
  } else if (parameters != result_.parameters) {
    Refuse(line.number, "wafer " + Shown(block_->wafer.name) +
                            " has other values than the wafers before it; read it by itself with "
                            "--wafer");
  }
  if (!request_.where.empty()) block_->condition = Condition(request_.where, head);
  block_->shape = ShapeOf(fields_, std::move(columns), line.number);
  block_->shape->scale = scale;
  block_->wafers.assign(wafers_.size(), block_->wafer);
}

void LotReader::CloseBlock() {
  if (!block_) return;
  if (IsChosen()) {
    RefuseSecond();
    if (!block_->shape) {
      Refuse(block_->line, "wafer " + Shown(block_->wafer.name) +
                               " has no table of sites; complete or remove it");
    }
    const bool by_condition = !request_.where.empty();
    if (!by_condition) rows_.RequireSites(block_->wafers, block_->shape->line);
    for (std::size_t i = 0; i < wafers_.size(); ++i) {
      Wafer& wafer = block_->wafers[i];
      wafer.parameter = i;
      wafer.reported = Reported(block_->shape->columns.values[i]);
      wafers_[i].push_back(std::move(wafer));
    }
  }
  block_.reset();
}

std::optional<ReportedStatistics> LotReader::Reported(std::size_t column) {
  ReportedStatistics reported;
  bool complete = true;
  for (std::size_t i = 0; i < std::size(kStatistics); ++i) {
    const StatisticLine& line = block_->statistics[i];
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
  if (wafers_.empty()) return;
  for (const Wafer& other : wafers_.front()) {
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
      SplitFields(line.text, {separator}, fields);
      // A table may have a column of that name; its header fills more than two.
      if (fields.size() > 1 && FilledWidth(fields) <= 2 && SameName(fields[0], kWaferKey)) {
        return separator;
      }
    }
  }
  return {};
}

Lot ReadLotExport(const ReadRequest& request, char separator, LineReader& lines,
                  PositionScale& scale) {
  LotReader reader(request, separator, lines);
  Lot lot = reader.Read();
  scale = reader.scale();
  return lot;
}

}  // namespace discoplan::data
