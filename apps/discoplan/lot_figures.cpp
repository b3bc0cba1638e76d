// SPDX-License-Identifier: MIT
#include "apps/discoplan/lot_figures.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include "apps/discoplan/output.h"
#include "apps/discoplan/progress.h"
#include "apps/discoplan/stats_group.h"
#include "hosts/headless/figure_pdf.h"

namespace discoplan::app {
namespace {

using figures::Figure;
using figures::LotTable;

LotTable TableOf(const LotSheet& sheet) {
  LotTable table{.titles = sheet.table_titles, .rows = {}};
  for (const LotTableRow& row : sheet.table) table.rows.push_back({row.texts, row.outlying});
  table.rows.push_back({.texts = sheet.all_sites.texts, .total = true});
  // Beside their names, under the column of means.
  for (const auto& [name, value] : sheet.lot) {
    table.rows.push_back({.texts = {name, "", "", value}, .total = true});
  }
  return table;
}

/// Whether colours stand for values.
bool HasScale(figures::PlotKind kind) {
  using figures::PlotKind;
  constexpr PlotKind kOthers[] = {PlotKind::SigmaMap, PlotKind::SigmaSurface, PlotKind::Histogram,
                                  PlotKind::LineScan};
  return std::find(std::begin(kOthers), std::end(kOthers), kind) == std::end(kOthers);
}

Figure OneBelowTheOther(std::vector<Figure> pages) {
  Figure all = {.width = pages.front().width,
                .height = 0,
                .background = pages.front().background,
                .font = pages.front().font,
                .title = pages.front().title,
                .shapes = {}};
  for (Figure& page : pages) {
    const double height = page.height;
    Place(std::move(page), {0, all.height}, all);
    all.height += height;
  }
  return all;
}

}  // namespace

std::vector<figures::LotPlot> LotPlotsOf(const Lot& measured, const LotFigureOptions& options) {
  std::vector<figures::LotPlot> lots;
  const std::vector<LotSheet> sheets = SheetsOf(measured, options.sheet);
  const std::vector<StatsGroup> groups = GroupsOf(measured);
  for (std::size_t k = 0; k < sheets.size(); ++k) {
    const LotSheet& sheet = sheets[k];
    figures::LotPlot lot;
    lot.title = sheet.title;
    lot.facts = {sheet.subtitle};
    lot.labels = sheet.trend.labels;
    lot.label_title = sheet.trend.label_title;
    lot.low = sheet.scale.low;
    lot.high = sheet.scale.high;
    if (options.centred && !options.sheet.limits) {
      lot.high = std::max(std::abs(lot.low), std::abs(lot.high));
      lot.low = -lot.high;
    }
    lot.notes = sheet.notes;
    lot.table = TableOf(sheet);
    for (std::size_t i = 0; i < groups[k].wafers.size(); ++i) {
      lot.wafers.push_back(WaferPlotOf({options.data, *groups[k].parameter, *groups[k].wafers[i]},
                                       options.look, options.style));
      lot.wafers.back().flag = sheet.cells[i].flag;
    }
    const auto few = std::count_if(lot.wafers.begin(), lot.wafers.end(),
                                   [](const auto& wafer) { return wafer.sites.Size() < 4; });
    if (few > 0) {
      lot.notes.insert(lot.notes.begin(),
                       Counted(static_cast<std::size_t>(few), "wafer") +
                           " with less than 4 sites: maps show their plane or mean");
    }
    lots.push_back(std::move(lot));
  }
  return lots;
}

void PlotLotFigures(const LotRequest& request) {
  const figures::PlotKind kind = FigureKindOf(PlotKindsOf({request.kind}).front());
  RefuseClassicOptions(request.plot);
  RefuseOverwriting(request);
  const Lot measured = ReadDerived(request.data, request.derive);
  // A page is as wide as A4 lies, but has no letters of less than 8 pixels.
  constexpr double kWidth = 842;
  constexpr double kLeastScale = 1;
  const double pixels = std::max(request.size.width / kWidth, kLeastScale);
  const figures::Style style =
      StyleOf(request.look, request.derive,
              {request.size.width / pixels, request.size.height / pixels, pixels});
  const FigureText text(style.font);
  LotSheetOptions sheet = request.sheet;
  sheet.by_scale = HasScale(kind);
  const std::vector<figures::LotPlot> lots = LotPlotsOf(
      measured, {request.data, request.look, request.plot.style, sheet, IsCentred(style)});
  std::vector<Figure> pages;
  std::size_t count = 0;
  for (const figures::LotPlot& lot : lots)
    count += (lot.wafers.size() - 1) / figures::kWafersOnPage + 1;
  const Progress progress(count);
  for (const figures::LotPlot& lot : lots) {
    for (std::size_t first = 0; first < lot.wafers.size(); first += figures::kWafersOnPage) {
      progress.Show(pages.size(), lot.title);
      pages.push_back(MakeLotSheet(kind, lot, first, style, text));
    }
  }
  const FigureFormat format = FigureFormatOf(request.output);
  if (format == FigureFormat::Pdf) {
    return WriteOutput(request.output, ToPdf(pages, kPagePixels, text.Letters()));
  }
  if (format == FigureFormat::Png &&
      pages.size() * static_cast<std::size_t>(request.size.height) > 60000) {
    throw CommandError("a picture of " + std::to_string(pages.size()) +
                       " pages is too high; write a PDF file");
  }
  WriteOutput(request.output,
              EncodeFigure(OneBelowTheOther(std::move(pages)), format, pixels, text));
}

}  // namespace discoplan::app
