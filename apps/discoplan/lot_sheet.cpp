// SPDX-License-Identifier: MIT
#include "apps/discoplan/lot_sheet.h"

#include <algorithm>
#include <cmath>
#include <filesystem>

#include "apps/discoplan/stats_group.h"
#include "data/plain_text.h"

namespace discoplan::app {
namespace {

/// 1, 2 or 5 times a power of ten.
double RoundStep(double step) {
  const double power = std::pow(10, std::floor(std::log10(step)));
  for (const double factor : {1.0, 2.0, 5.0}) {
    if (factor * power >= step * (1 - 1e-9)) return factor * power;
  }
  return 10 * power;
}

std::vector<std::string> TextsOf(const std::vector<double>& values, int digits) {
  const std::vector<std::optional<double>> column(values.begin(), values.end());
  return ColumnTexts(column, digits);
}

LotTrend TrendOf(const StatsGroup& group) {
  LotTrend trend;
  trend.title = "Mean ± sigma";
  double low = group.summary.all.mean;
  double high = low;
  const bool has_slots =
      std::all_of(group.wafers.begin(), group.wafers.end(),
                  [](const data::Wafer* wafer) { return wafer->slot.has_value(); });
  for (std::size_t i = 0; i < group.wafers.size(); ++i) {
    const analysis::WaferSummary& wafer = group.summary.wafers[i];
    const double sigma = wafer.sample.sigma.value_or(0);
    trend.points.push_back({wafer.sample.mean, sigma, wafer.outlying != analysis::Outlying::No});
    trend.labels.push_back(
        std::to_string(has_slots ? *group.wafers[i]->slot : static_cast<int>(i) + 1));
    low = std::min(low, wafer.sample.mean - sigma);
    high = std::max(high, wafer.sample.mean + sigma);
  }
  trend.label_title = has_slots ? "Slot" : "Wafer";
  trend.mean = group.summary.all.mean;
  trend.axis = AxisOver(low, high, 6);
  return trend;
}

void AddCells(const StatsGroup& group, const LotSheetOptions& options, LotSheet& sheet) {
  std::vector<std::optional<double>> means;
  std::vector<std::optional<double>> sigmas;
  for (const analysis::WaferSummary& wafer : group.summary.wafers) {
    means.push_back(FigureOf(*analysis::FindFigure("mean"), wafer.sample));
    sigmas.push_back(wafer.sample.sigma);
  }
  const std::vector<std::string> mean_texts = ColumnTexts(means, options.digits);
  const std::vector<std::string> sigma_texts = ColumnTexts(sigmas, options.digits);
  for (std::size_t i = 0; i < group.wafers.size(); ++i) {
    const data::Wafer& wafer = *group.wafers[i];
    sheet.cells.push_back({.name = wafer.name,
                           .statistics = mean_texts[i] + " ± " + sigma_texts[i],
                           .flag = std::string(WordFor(group.summary.wafers[i].outlying)),
                           .diameter = wafer.diameter,
                           .test_diameter = wafer.test_diameter,
                           .sites = group.sites[i]});
  }
}

void AddTable(const StatsGroup& group, const LotSheetOptions& options, LotSheet& sheet) {
  sheet.table_titles = {"Wafer", "Sites"};
  for (const analysis::WaferSummary& wafer : group.summary.wafers) {
    sheet.table.push_back({{wafer.name, std::to_string(wafer.sample.Count())},
                           wafer.outlying != analysis::Outlying::No});
  }
  sheet.all_sites.texts = {"All sites", std::to_string(group.summary.all.Count())};
  for (const auto* figure : options.figures) {
    sheet.table_titles.emplace_back(figure->title);
    std::vector<std::optional<double>> column;
    for (const analysis::WaferSummary& wafer : group.summary.wafers) {
      column.push_back(FigureOf(*figure, wafer.sample));
    }
    column.push_back(FigureOf(*figure, group.summary.all));
    const std::vector<std::string> texts = ColumnTexts(column, options.digits);
    for (std::size_t i = 0; i < sheet.table.size(); ++i) sheet.table[i].texts.push_back(texts[i]);
    sheet.all_sites.texts.push_back(texts.back());
  }
}

void AddLotFigures(const analysis::LotSummary& summary, int digits, LotSheet& sheet) {
  if (const auto within = SigmaWithin(summary)) {
    sheet.lot.emplace_back("Sigma within wafers", NumberText(*within, digits));
    sheet.lot.emplace_back("Sigma between wafers", NumberText(*SigmaBetween(summary), digits));
  }
  if (summary.worst) {
    sheet.lot.emplace_back("Worst wafer (largest sigma)", summary.wafers[*summary.worst].name);
  }
}

/// "1225 sites", "1224 of 1225 sites".
std::string SitesText(const StatsGroup& group) {
  std::size_t measured = 0;
  for (const data::Wafer* wafer : group.wafers) {
    measured += static_cast<std::size_t>(wafer->Measured());
  }
  const std::size_t here = group.summary.all.Count();
  return (here < measured ? std::to_string(here) + " of " : "") +
         data::Counted(std::max(here, measured), "site");
}

analysis::RobustRange ScaleOf(const std::string& source, const StatsGroup& group,
                              const LotSheetOptions& options) {
  if (!options.limits) return group.summary.scale;
  std::vector<float> values;
  for (const data::Wafer* wafer : group.wafers) {
    values.insert(values.end(), wafer->value.begin(), wafer->value.end());
  }
  const auto [low, high] = EndsOf(*options.limits, source, std::move(values));
  return {analysis::DecimalOf(low), analysis::DecimalOf(high)};
}

std::string ScaleText(const LotSheetOptions& options) {
  if (!options.limits) return "Tukey's fences of all sites";
  if (!options.limits->in_percent) return "as given";
  return NumberText(options.limits->low, 4) + "% to " + NumberText(options.limits->high, 4) +
         "% of all sites";
}

std::string ColourNote(const StatsGroup& group, const LotSheetOptions& options,
                       const LotSheet& sheet) {
  std::size_t beyond = 0;
  for (const double value : group.summary.all.sorted) {
    beyond += value < sheet.scale.low || value > sheet.scale.high;
  }
  std::string note = "Colours: " + ScaleText(options);
  if (beyond > 0) {
    note += "; " + std::to_string(beyond) + " of " +
            data::Counted(group.summary.all.Count(), "value") +
            " beyond take the colours of the ends";
  }
  return note;
}

void AddNotes(const StatsGroup& group, const LotSheetOptions& options, LotSheet& sheet) {
  if (options.by_scale) sheet.notes.push_back(ColourNote(group, options, sheet));
  std::vector<std::string> left_out;
  for (const data::Wafer* wafer : group.wafers) {
    if (!wafer->left_out.empty()) left_out.push_back(wafer->name + " with " + wafer->SitesText());
  }
  if (!left_out.empty()) sheet.notes.push_back("Left out: " + data::Listed(left_out));
  if (group.wafers.size() > 1) {
    sheet.notes.push_back("Outlying: " + OutlyingOnes(group.summary) + "; " +
                          std::string(analysis::kOutlyingRule));
    sheet.notes.push_back("Sigma within: " + std::string(kWithinFormula));
    sheet.notes.push_back("Sigma between: " + std::string(kBetweenFormula));
  }
}

LotSheet SheetOf(const data::Lot& lot, const StatsGroup& group, const LotSheetOptions& options) {
  LotSheet sheet;
  const analysis::Sample& all = group.summary.all;
  sheet.title = options.caption.value_or(std::filesystem::path(lot.source).stem().string());
  const std::string caption = group.parameter->Caption();
  sheet.subtitle = caption.empty() ? "" : caption + ", ";
  sheet.subtitle += data::Counted(group.wafers.size(), "wafer") + ", " + SitesText(group);
  const std::string& derived = group.wafers.front()->derived;
  if (!derived.empty()) sheet.subtitle += ", " + derived;
  sheet.scale = ScaleOf(lot.source, group, options);
  sheet.extent = {all.Minimum(), all.Maximum()};
  std::vector<double> ends;
  for (int k = 0; k <= 10; ++k) {
    ends.push_back(sheet.scale.low + k * (sheet.scale.high - sheet.scale.low) / 10);
  }
  sheet.scale_labels = TextsOf(ends, options.digits);
  AddCells(group, options, sheet);
  sheet.trend = TrendOf(group);
  AddTable(group, options, sheet);
  AddLotFigures(group.summary, options.digits, sheet);
  AddNotes(group, options, sheet);
  return sheet;
}

}  // namespace

Axis AxisOver(double low, double high, int most_ticks) {
  if (!(low < high)) {
    const double room = low == 0 ? 1 : std::abs(low) / 100;
    low -= room;
    high += room;
  }
  const double step = RoundStep((high - low) / most_ticks);
  const double first = std::floor(low / step + 1e-9);
  const double last = std::ceil(high / step - 1e-9);
  Axis axis{first * step, last * step, {}, {}};
  for (double k = first; k <= last; ++k) axis.ticks.push_back(k * step);
  const double size = std::max(std::abs(axis.low), std::abs(axis.high));
  const int digits = static_cast<int>(std::ceil(std::log10(size / step) - 1e-9)) + 1;
  axis.labels = TextsOf(axis.ticks, std::clamp(digits, 1, kMostDigits));
  return axis;
}

std::vector<LotSheet> SheetsOf(const data::Lot& lot, const LotSheetOptions& options) {
  std::vector<LotSheet> sheets;
  for (const StatsGroup& group : GroupsOf(lot)) {
    sheets.push_back(SheetOf(lot, group, options));
  }
  return sheets;
}

}  // namespace discoplan::app
