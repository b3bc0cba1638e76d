// SPDX-License-Identifier: MIT
// The forms of the figures that other programs read.

#include <algorithm>
#include <nlohmann/json.hpp>
#include <optional>
#include <utility>
#include <vector>

#include "apps/discoplan/stats_rows.h"
#include "hosts/json/json_text.h"

namespace discoplan::app {
namespace {

constexpr int kFileDigits = 10;

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

void AddFigures(Fields& fields, const FigureList& columns, std::size_t sites,
                const Figures& figures, int digits) {
  fields.emplace_back("sites", sites);
  for (std::size_t i = 0; i < columns.size(); ++i) {
    fields.emplace_back(columns[i]->key, NumberField(figures[i], digits));
  }
}

/// A quadrant has no radii.
void AddZone(Fields& fields, const analysis::Zone& zone, int digits) {
  fields.emplace_back("zone", zone.name);
  if (zone.outer == 0) return;
  fields.emplace_back("inner_radius", Rounded(zone.inner, digits));
  fields.emplace_back("outer_radius", Rounded(zone.outer, digits));
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
  const int digits = FileDigits(options);
  std::vector<Fields> rows;
  for (const StatsGroup& group : GroupsOf(lot)) {
    for (const StatsRow& row : RowsOf(group, options)) {
      if (row.wafer == nullptr) continue;
      Fields& fields = rows.emplace_back();
      fields.emplace_back("wafer", row.name);
      if (row.wafer->slot) fields.emplace_back("slot", *row.wafer->slot);
      AddParameter(fields, *group.parameter);
      if (row.zone) AddZone(fields, *row.zone, digits);
      if (leaves_out) fields.emplace_back("measured", row.wafer->Measured());
      AddFigures(fields, options.figures, row.sites, row.figures, digits);
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
    AddFigures(fields, options.figures, summary.all.Count(),
               FiguresOf(options.figures, summary.all), digits);
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
  std::string text = JsonText(value);
  if (value.is_number_float() && text.ends_with(".0")) text.resize(text.size() - 2);
  return text;
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
