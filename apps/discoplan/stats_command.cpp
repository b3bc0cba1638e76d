// SPDX-License-Identifier: MIT
#include <array>
#include <cstdio>
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>

#include "apps/discoplan/command.h"
#include "discoplan/controls/plot2d.h"
#include "discoplan/render/number_text.h"
#include "hosts/headless/headless_host.h"
#include "hosts/recording/trace.h"

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

/// A control that has loaded the wafer and computed its statistics.
std::unique_ptr<PlotControl> Loaded(Platform& host, const Wafer& measured) {
  auto control = std::make_unique<Plot2D>(host);
  control->WaferDiameter(SizeFor(measured).diameter);
  if (control->SetWaferData(measured.x, measured.y, measured.value) != LoadResult::Loaded) {
    throw CommandError(measured.name + ": the values are too large for a 32-bit sum");
  }
  return control;
}

void PrintTable(Platform& host, const DataResult& data) {
  std::printf("%-16s %6s", "Wafer", "Sites");
  for (const Column& column : kColumns) std::printf(" %12s", column.title);
  std::printf("\n");
  for (const Wafer& measured : data.wafers) {
    const auto control = Loaded(host, measured);
    std::printf("%-16s %6zu", measured.name.c_str(), measured.x.size());
    for (const Column& column : kColumns) {
      std::printf(" %12s", PlainNumber((*control.*column.value)()).c_str());
    }
    std::printf("\n");
  }
}

void PrintJson(Platform& host, const DataResult& data) {
  nlohmann::json list = nlohmann::json::array();
  for (const Wafer& measured : data.wafers) {
    const auto control = Loaded(host, measured);
    nlohmann::json row = {{"wafer", measured.name}, {"sites", measured.x.size()}};
    if (measured.slot) row["slot"] = *measured.slot;
    for (const Column& column : kColumns) row[column.key] = ToJson((*control.*column.value)());
    list.push_back(std::move(row));
  }
  std::cout << list.dump(2, ' ', false, nlohmann::json::error_handler_t::replace) << '\n';
}

struct StatsRequest {
  DataRequest data;
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
    const DataResult data = ReadReporting(request->data);
    HeadlessHost host;
    request->json ? PrintJson(host, data) : PrintTable(host, data);
  });
}

}  // namespace discoplan::app
