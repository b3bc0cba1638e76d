// SPDX-License-Identifier: MIT
#include <algorithm>
#include <charconv>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "apps/discoplan/command.h"
#include "apps/discoplan/data_options.h"
#include "apps/discoplan/derive.h"
#include "apps/discoplan/measured_wafer.h"
#include "apps/discoplan/output.h"
#include "apps/discoplan/stats_table.h"

namespace discoplan::app {
namespace {

struct StatsRequest {
  ReadRequest data;
  DeriveRequest derive;
  StatsOptions options;
  bool json = false;
  bool csv = false;
  bool lot = false;
};

void Print(const StatsRequest& request) {
  if (request.lot && request.options.zones) {
    throw UsageError("--zones tells of wafers and --lot of none of them; leave out one");
  }
  if (request.lot && !request.json && !request.csv) {
    throw UsageError("--lot goes with --json or --csv; the table says both");
  }
  const Lot lot = ReadDerived(request.data, request.derive);
  for (const Wafer& wafer : lot.wafers) {
    RefuseFarSites(SourceOf(request.data.path.string(), wafer), wafer, wafer.diameter);
  }
  const auto form = request.json  ? (request.lot ? LotJson : StatsJson)
                    : request.csv ? (request.lot ? LotCsv : StatsCsv)
                                  : StatsTable;
  WriteStandardOutput(form(lot, request.options));
}

/// "rings:5", "areas:5", "profile:5" or "quadrants".
ZoneRule ZonesIn(const std::string& text) {
  using analysis::RingRule;
  if (text == "quadrants") return {.quadrants = true, .rings = {}};
  constexpr int kMostRings = 1000;
  constexpr std::pair<std::string_view, RingRule> kRules[] = {{"rings", RingRule::EqualWidth},
                                                              {"areas", RingRule::EqualArea},
                                                              {"profile", RingRule::AroundDisc}};
  const std::size_t colon = std::min(text.find(':'), text.size());
  for (const auto& [name, rule] : kRules) {
    if (text.substr(0, colon) != name) continue;
    int rings = 0;
    if (colon == text.size()) return {.rings = {.rule = rule}};
    const char* const last = text.data() + text.size();
    const auto [end, error] = std::from_chars(text.data() + colon + 1, last, rings);
    if (error == std::errc() && end == last && rings >= 1 && rings <= kMostRings) {
      return {.rings = {.rings = rings, .rule = rule}};
    }
  }
  throw UsageError("--zones takes rings:N, areas:N, profile:N with N from 1 to " +
                   std::to_string(kMostRings) + ", or quadrants, not " + Shown(text));
}

std::string Footer() {
  return "Figures:\n" + FormulasByKey(FiguresNamed("all")) +
         "\nExamples:\n"
         "  discoplan stats lot.csv\n"
         "  discoplan stats lot.csv --wafer 7 --json\n"
         "  discoplan stats lot.csv --figures mean,median,mad --csv\n"
         "  discoplan stats lot.csv --wafer 7 --zones rings:4\n"
         "  discoplan stats lot.csv --minus mean --residual plane";
}

}  // namespace

void SetUpStats(CLI::App& command) {
  auto request = std::make_shared<StatsRequest>();
  AddDataOptions(command, request->data);
  AddDeriveOptions(command, request->derive);
  command
      .add_option_function<std::string>(
          "--figures",
          [request](const std::string& keys) {
            request->options.figures = FiguresNamed(keys);
            request->options.formulas = true;
          },
          "Figures to print, with commas between them, or 'all'")
      ->type_name("NAMES")
      ->default_str(kDefaultFigures);
  command
      .add_option("--digits", request->options.digits,
                  "Significant digits; 5 in a table and 10 otherwise")
      ->check(CLI::Range(1, kMostDigits));
  command
      .add_option_function<std::string>(
          "--zones", [request](const std::string& text) { request->options.zones = ZonesIn(text); },
          "Figures of parts of each wafer: N rings of equal width (rings:N) or area (areas:N), "
          "rings around a disc of half their width (profile:N), or quadrants; without :N as many "
          "as suit the sites")
      ->type_name("ZONES");
  CLI::Option* json = command.add_flag("--json", request->json, "As a JSON list");
  command.add_flag("--csv", request->csv, "As comma separated text")->excludes(json);
  command.add_flag("--lot", request->lot,
                   "With --json or --csv, the lot as a whole in place of its wafers");
  command.footer(Footer());
  command.callback([request] { Print(*request); });
}

}  // namespace discoplan::app
