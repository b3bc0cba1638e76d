// SPDX-License-Identifier: MIT
#include "apps/discoplan/stats_table.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <nlohmann/json.hpp>
#include <optional>
#include <utility>
#include <vector>

#include "apps/discoplan/stats_group.h"
#include "hosts/json/json_text.h"

namespace discoplan::app {
namespace {

constexpr int kTableDigits = 5;
constexpr int kFileDigits = 10;

using Figures = std::vector<std::optional<double>>;

Figures FiguresOf(const FigureList& columns, const analysis::Sample& sample) {
  Figures figures;
  for (const auto* column : columns) figures.push_back(FigureOf(*column, sample));
  return figures;
}

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

  void Add(const std::string& name, const analysis::Sample& sample) {
    names_.push_back(Printable(name));
    sites_.push_back(std::to_string(sample.Count()));
    rows_.push_back(FiguresOf(columns_, sample));
  }

  std::string Text() const {
    std::size_t width = 16;
    for (const std::string& name : names_) width = std::max(width, data::CharactersIn(name));
    std::vector<std::string> lines = {PaddedRight("Wafer", width) + ' ' + PaddedLeft("Sites", 6)};
    for (std::size_t row = 0; row < rows_.size(); ++row) {
      lines.push_back(PaddedRight(names_[row], width) + ' ' + PaddedLeft(sites_[row], 6));
    }
    for (std::size_t c = 0; c < columns_.size(); ++c) AddColumn(c, lines);
    std::string text;
    for (const std::string& line : lines) text += line + '\n';
    return text;
  }

 private:
  void AddColumn(std::size_t c, std::vector<std::string>& lines) const {
    Figures column;
    for (const Figures& row : rows_) column.push_back(row[c]);
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
  std::vector<std::string> names_;
  std::vector<std::string> sites_;
  std::vector<Figures> rows_;
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
  TextTable table(options.figures, digits);
  for (const analysis::WaferSummary& wafer : group.summary.wafers) {
    table.Add(wafer.name, wafer.sample);
  }
  if (group.wafers.size() == 1) return table.Text();
  table.Add("All sites", group.summary.all);
  return table.Text() + '\n' + LotLines(group.summary, digits);
}

std::string CsvField(const std::string& text) {
  if (text.find_first_of(",\"\r\n") == std::string::npos) return text;
  std::string quoted = "\"";
  for (const char c : text) quoted += c == '"' ? std::string("\"\"") : std::string(1, c);
  return quoted + '"';
}

/// Keys and values of a row, the same for CSV and JSON.
using Fields = std::vector<std::pair<std::string, nlohmann::json>>;

nlohmann::json NumberField(const std::optional<double>& value, int digits) {
  if (!value) return nullptr;
  return Rounded(*value, digits);
}

void AddFigures(Fields& fields, const analysis::Sample& sample, const FigureList& columns,
                int digits) {
  fields.emplace_back("sites", sample.Count());
  for (const auto* column : columns) {
    fields.emplace_back(column->key, NumberField(FigureOf(*column, sample), digits));
  }
}

void AddParameter(Fields& fields, const data::Parameter& parameter) {
  if (!parameter.name.empty()) fields.emplace_back("parameter", parameter.name);
  if (!parameter.unit.empty()) fields.emplace_back("unit", parameter.unit);
}

int FileDigits(const StatsOptions& options) {
  return options.digits > 0 ? options.digits : kFileDigits;
}

std::vector<Fields> WaferFields(const Lot& lot, const StatsOptions& options) {
  const bool leaves_out = std::any_of(lot.wafers.begin(), lot.wafers.end(),
                                      [](const Wafer& wafer) { return !wafer.left_out.empty(); });
  std::vector<Fields> rows;
  for (const StatsGroup& group : GroupsOf(lot)) {
    for (std::size_t i = 0; i < group.wafers.size(); ++i) {
      Fields& fields = rows.emplace_back();
      fields.emplace_back("wafer", group.wafers[i]->name);
      if (group.wafers[i]->slot) fields.emplace_back("slot", *group.wafers[i]->slot);
      AddParameter(fields, *group.parameter);
      if (leaves_out) fields.emplace_back("measured", group.wafers[i]->Measured());
      AddFigures(fields, group.summary.wafers[i].sample, options.figures, FileDigits(options));
    }
  }
  return rows;
}

std::vector<Fields> LotFields(const Lot& lot, const StatsOptions& options) {
  std::vector<Fields> rows;
  const int digits = FileDigits(options);
  for (const StatsGroup& group : GroupsOf(lot)) {
    const analysis::LotSummary& summary = group.summary;
    Fields& fields = rows.emplace_back();
    fields.emplace_back("wafers", group.wafers.size());
    AddParameter(fields, *group.parameter);
    AddFigures(fields, summary.all, options.figures, digits);
    fields.emplace_back("sigma_within", NumberField(SigmaWithin(summary), digits));
    fields.emplace_back("sigma_between", NumberField(SigmaBetween(summary), digits));
    fields.emplace_back("worst_wafer", summary.worst
                                           ? nlohmann::json(summary.wafers[*summary.worst].name)
                                           : nlohmann::json());
    fields.emplace_back("outlying_wafers", OutlyingOnes(summary));
  }
  return rows;
}

std::string CsvText(const nlohmann::json& value) {
  if (value.is_null()) return {};
  if (value.is_string()) return CsvField(value.get<std::string>());
  if (!value.is_number_float()) return JsonText(value);
  std::array<char, 40> text{};
  return {text.data(),
          std::to_chars(text.data(), text.data() + text.size(), value.get<double>()).ptr};
}

/// All keys that occur, in the order in which they do; a row without one has an empty field there.
std::string Csv(const std::vector<Fields>& rows) {
  std::vector<std::string> keys;
  for (const Fields& row : rows) {
    for (std::size_t i = 0; i < row.size(); ++i) {
      if (std::find(keys.begin(), keys.end(), row[i].first) != keys.end()) continue;
      const auto before =
          i == 0 ? keys.begin() : std::find(keys.begin(), keys.end(), row[i - 1].first) + 1;
      keys.insert(before, row[i].first);
    }
  }
  std::string text;
  for (const std::string& key : keys) text += (text.empty() ? "" : ",") + key;
  text += '\n';
  for (const Fields& row : rows) {
    std::string line;
    for (const std::string& key : keys) {
      const auto field = std::find_if(row.begin(), row.end(),
                                      [&](const auto& entry) { return entry.first == key; });
      if (&key != &keys.front()) line += ',';
      if (field != row.end()) line += CsvText(field->second);
    }
    text += line + '\n';
  }
  return text;
}

nlohmann::ordered_json Object(const Fields& fields) {
  nlohmann::ordered_json object;
  for (const auto& [key, value] : fields) object[key] = value;
  return object;
}

std::string Dumped(const nlohmann::ordered_json& list) { return JsonText(list, 2) + '\n'; }

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

std::string StatsCsv(const Lot& lot, const StatsOptions& options) {
  return Csv(WaferFields(lot, options));
}

std::string StatsJson(const Lot& lot, const StatsOptions& options) {
  nlohmann::ordered_json list = nlohmann::ordered_json::array();
  for (const Fields& fields : WaferFields(lot, options)) list.push_back(Object(fields));
  return Dumped(list);
}

std::string LotCsv(const Lot& lot, const StatsOptions& options) {
  return Csv(LotFields(lot, options));
}

std::string LotJson(const Lot& lot, const StatsOptions& options) {
  nlohmann::ordered_json list = nlohmann::ordered_json::array();
  for (const Fields& fields : LotFields(lot, options)) {
    nlohmann::ordered_json object = Object(fields);
    nlohmann::ordered_json& formulas = object["formulas"];
    for (const auto* column : options.figures) {
      formulas[std::string(column->key)] = column->formula;
    }
    formulas["sigma_within"] = kWithinFormula;
    formulas["sigma_between"] = kBetweenFormula;
    formulas["outlying_wafers"] = analysis::kOutlyingRule;
    list.push_back(std::move(object));
  }
  return Dumped(list);
}

}  // namespace discoplan::app
