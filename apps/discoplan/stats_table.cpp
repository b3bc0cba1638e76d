// SPDX-License-Identifier: MIT
#include "apps/discoplan/stats_table.h"

#include <algorithm>
#include <optional>
#include <vector>

#include "apps/discoplan/stats_rows.h"

namespace discoplan::app {
namespace {

constexpr int kTableDigits = 5;

std::string PaddedRight(const std::string& text, std::size_t width) {
  const std::size_t characters = data::CharactersIn(text);
  return characters < width ? text + std::string(width - characters, ' ') : text;
}

std::string PaddedLeft(std::string_view text, std::size_t width) {
  return std::string(text.size() < width ? width - text.size() : 0, ' ') + std::string(text);
}

/// Rows of figures under their titles, aligned at their points.
class TextTable {
 public:
  TextTable(const FigureList& columns, int digits) : columns_(columns), digits_(digits) {}

  std::string Of(const std::vector<StatsRow>& rows) const {
    std::vector<std::string> lines(rows.size() + 1);
    const auto text_of = [](const StatsRow& row) { return Printable(row.name); };
    const auto zone_of = [](const StatsRow& row) { return row.zone ? row.zone->name : ""; };
    AddTexts("Wafer", 16, rows, text_of, lines);
    if (!rows.empty() && rows.front().zone) AddTexts(" Zone", 12, rows, zone_of, lines);
    lines.front() += ' ' + PaddedLeft("Sites", 6);
    for (std::size_t i = 0; i < rows.size(); ++i) {
      lines[i + 1] += ' ' + PaddedLeft(std::to_string(rows[i].sites), 6);
    }
    for (std::size_t c = 0; c < columns_.size(); ++c) AddColumn(c, rows, lines);
    std::string text;
    for (const std::string& line : lines) text += line + '\n';
    return text;
  }

 private:
  template <typename TextOf>
  static void AddTexts(const std::string& title, std::size_t width,
                       const std::vector<StatsRow>& rows, const TextOf& text_of,
                       std::vector<std::string>& lines) {
    const std::string before = title.starts_with(' ') ? " " : "";
    for (const StatsRow& row : rows) width = std::max(width, data::CharactersIn(text_of(row)));
    lines.front() += PaddedRight(title, width + before.size());
    for (std::size_t i = 0; i < rows.size(); ++i) {
      lines[i + 1] += before + PaddedRight(text_of(rows[i]), width);
    }
  }

  void AddColumn(std::size_t c, const std::vector<StatsRow>& rows,
                 std::vector<std::string>& lines) const {
    Figures column;
    for (const StatsRow& row : rows) column.push_back(row.figures[c]);
    const std::vector<std::string> texts = ColumnTexts(column, digits_);
    const std::string_view title = columns_[c]->title;
    std::size_t width = std::max<std::size_t>(12, title.size());
    for (const std::string& text : texts) width = std::max(width, text.size());
    lines.front() += ' ' + PaddedLeft(title, width);
    for (std::size_t row = 0; row < texts.size(); ++row) {
      lines[row + 1] += ' ' + PaddedLeft(texts[row], width);
    }
  }

  const FigureList& columns_;
  const int digits_;
};

std::string LotLine(const std::string& title, const std::string& value, std::string_view meaning) {
  return PaddedRight(title, 22) + ' ' + PaddedRight(value, 12) + "  " + std::string(meaning) + '\n';
}

std::string LotLines(const analysis::LotSummary& summary, int digits) {
  std::string text;
  if (summary.components) {
    const bool is_chance = summary.components->estimate < 0;
    text +=
        LotLine("Sigma within wafers", NumberText(*SigmaWithin(summary), digits), kWithinFormula);
    text += LotLine("Sigma between wafers", NumberText(*SigmaBetween(summary), digits),
                    is_chance ? "MSA is below MSE: no more than chance" : kBetweenFormula);
  }
  if (summary.worst) {
    const analysis::WaferSummary& worst = summary.wafers[*summary.worst];
    text += LotLine("Worst wafer", Printable(worst.name),
                    "largest sigma, " + NumberText(*worst.sample.sigma, digits));
  }
  return text +
         LotLine("Outlying wafers", Printable(OutlyingOnes(summary)), analysis::kOutlyingRule);
}

std::string GroupText(const StatsGroup& group, const StatsOptions& options, int digits) {
  const std::string table = TextTable(options.figures, digits).Of(RowsOf(group, options));
  if (group.wafers.size() == 1 || options.zones) return table;
  return table + '\n' + LotLines(group.summary, digits);
}

}  // namespace

std::string StatsTable(const Lot& lot, const StatsOptions& options) {
  const int digits = options.digits > 0 ? options.digits : kTableDigits;
  std::string text;
  for (const StatsGroup& group : GroupsOf(lot)) {
    if (!text.empty()) text += '\n';
    const bool is_told = lot.parameters.size() > 1 || !group.parameter->unit.empty();
    if (is_told) text += Printable(group.parameter->Caption()) + '\n';
    text += GroupText(group, options, digits);
    for (const Wafer* wafer : group.wafers) {
      if (wafer->left_out.empty()) continue;
      text += Printable(wafer->name) + ": " + wafer->SitesText() + '\n';
    }
  }
  return options.formulas ? text + '\n' + FormulasByTitle(options.figures) : text;
}

}  // namespace discoplan::app
