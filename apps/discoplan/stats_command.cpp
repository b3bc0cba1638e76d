// SPDX-License-Identifier: MIT
#include <algorithm>
#include <array>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "apps/discoplan/command.h"
#include "apps/discoplan/measured_wafer.h"
#include "apps/discoplan/output.h"
#include "data/plain_text.h"
#include "discoplan/base/algorithms.h"
#include "discoplan/controls/plot2d.h"
#include "discoplan/render/number_text.h"
#include "hosts/headless/headless_host.h"
#include "hosts/json/json_number.h"
#include "hosts/json/json_text.h"

namespace discoplan::app {
namespace {

struct Column {
  const char* key;
  const char* title;
  float (PlotControl::*value)() const;
};

constexpr std::array<Column, 7> kColumns = {{
    {"mean", "Mean", &PlotControl::mean},
    {"std_dev", "Std. Dev", &PlotControl::StdDev},
    {"std_dev_percent", "Std. Dev %", &PlotControl::StdDevPercent},
    {"minimum", "Minimum", &PlotControl::Minimum},
    {"maximum", "Maximum", &PlotControl::Maximum},
    {"range", "Range", &PlotControl::range},
    {"hi_lo_percent", "Hi/Lo Var %", &PlotControl::HiLo},
}};

struct Row {
  const Wafer& measured;
  std::array<float, kColumns.size()> statistics;
};

/// The statistics of all wafers, before anything is printed.
std::vector<Row> Rows(const ReadRequest& request, const Lot& data) {
  HeadlessHost host;
  Plot2D control(host);
  std::vector<Row> rows;
  for (const Wafer& measured : data.wafers) {
    control.WaferDiameter(measured.diameter);
    LoadSites(control, SourceOf(request.path.string(), measured), measured);
    Row& row = rows.emplace_back(Row{measured, {}});
    Transform(kColumns, row.statistics.begin(),
              [&](const Column& column) { return (control.*column.value)(); });
  }
  return rows;
}

std::string PaddedRight(const std::string& text, std::size_t width) {
  const std::size_t characters = data::CharactersIn(text);
  return characters < width ? text + std::string(width - characters, ' ') : text;
}

std::string PaddedLeft(const std::string& text, std::size_t width) {
  return text.size() < width ? std::string(width - text.size(), ' ') + text : text;
}

std::string Table(const std::vector<Row>& rows) {
  const auto line = [](const std::string& name, const std::string& sites, const auto& cell) {
    std::string text = PaddedRight(name, 16) + ' ' + PaddedLeft(sites, 6);
    for (std::size_t i = 0; i < kColumns.size(); ++i) text += ' ' + PaddedLeft(cell(i), 12);
    return text + '\n';
  };
  std::string table = line("Wafer", "Sites", [](std::size_t i) { return kColumns[i].title; });
  for (const Row& row : rows) {
    table += line(Printable(row.measured.name), std::to_string(row.measured.x.size()),
                  [&](std::size_t i) { return PlainNumber(row.statistics[i]); });
  }
  return table;
}

std::string Json(const std::vector<Row>& rows) {
  nlohmann::json list = nlohmann::json::array();
  for (const Row& row : rows) {
    nlohmann::json object = {{"wafer", row.measured.name}, {"sites", row.measured.x.size()}};
    if (row.measured.slot) object["slot"] = *row.measured.slot;
    for (std::size_t i = 0; i < kColumns.size(); ++i) {
      object[kColumns[i].key] = ToJson(row.statistics[i]);
    }
    list.push_back(std::move(object));
  }
  return JsonText(list, 2) + '\n';
}

struct StatsRequest {
  ReadRequest data;
  bool json = false;
};

}  // namespace

void AddStatsCommand(CLI::App& program) {
  CLI::App* command = program.add_subcommand("stats", "Print the statistics of wafers");
  auto request = std::make_shared<StatsRequest>();
  AddDataOptions(*command, request->data);
  command->add_flag("--json", request->json, "As a JSON list");
  command->footer(
      "Examples:\n"
      "  discoplan stats lot.csv\n"
      "  discoplan stats lot.csv --wafer 7 --json");
  command->callback([request] {
    const Lot data = ReadReporting(request->data);
    const std::vector<Row> rows = Rows(request->data, data);
    WriteStandardOutput(request->json ? Json(rows) : Table(rows));
  });
}

}  // namespace discoplan::app
