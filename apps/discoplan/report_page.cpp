// SPDX-License-Identifier: MIT
#include "apps/discoplan/report_page.h"

#include <algorithm>
#include <cstddef>

#include "hosts/headless/classic_page.h"

namespace discoplan::app {
namespace {

// Twips.
constexpr float kMargin = 1000;
constexpr float kHeadHeight = 900;
constexpr float kBlockWidth = 2775;
constexpr float kBlockGap = 300;
constexpr float kBlocksHeight = 3800;
constexpr float kStatisticsHeight = 2400;
constexpr float kInformationHeight = 3800;  // statistics and size
constexpr float kLegendHeight = 3060;
constexpr float kGap = 120;
constexpr float kStrip = 1250;         // beside a map, for the wafer's mark
constexpr float kCaptionHeight = 200;  // above a frame
/// Texts of 8 points have 4 then; smaller ones are hard to read.
constexpr float kLeastScale = 0.5F;

/// Columns and rows that give `count` plots the largest maps in an area.
struct Grid {
  int columns = 1;
  int rows = 1;

  static Grid For(std::size_t count, const PageArea& area);
  /// The place of one plot, from the upper left.
  PageArea Cell(std::size_t number, const PageArea& area) const;
};

Grid Grid::For(std::size_t count, const PageArea& area) {
  const int plots = static_cast<int>(count);
  Grid best;
  float largest = 0;
  for (int columns = 1; columns <= plots; ++columns) {
    const Grid grid{columns, (plots + columns - 1) / columns};
    const PageArea cell = grid.Cell(0, area);
    const float scale = PrintScale(cell.width, cell.height);
    const float map = std::min(cell.width - scale * kStrip, cell.height - scale * kCaptionHeight);
    if (columns > 1 && (map < largest || scale < kLeastScale)) continue;
    largest = map;
    best = grid;
  }
  return best;
}

PageArea Grid::Cell(std::size_t number, const PageArea& area) const {
  const float width =
      (area.width - static_cast<float>(columns - 1) * kGap) / static_cast<float>(columns);
  const float height =
      (area.height - static_cast<float>(rows - 1) * kGap) / static_cast<float>(rows);
  const auto column = static_cast<float>(static_cast<int>(number) % columns);
  const auto row = static_cast<float>(static_cast<int>(number) / columns);
  return {area.left + column * (width + kGap), area.top + row * (height + kGap), width, height};
}

void Write(VectorPaper& paper, const std::string& text, float y, float size, bool bold) {
  paper.Font({.name = "Arial", .size = size, .bold = bold});
  paper.ForeColor(kBlack);
  paper.CurrentX(kMargin);
  paper.CurrentY(y);
  paper.Print(text);
}

/// Statistics over size, then one legend of each sort at their right, or below them in a column.
void PrintBlocks(const std::vector<PlotControl*>& plots, float left, float top, bool in_column,
                 const std::string& units) {
  PlotControl& first = *plots.front();
  first.PrintWaferStatistic(left, top, units);
  first.PrintWaferSize(left, top + kStatisticsHeight);
  (in_column ? top : left) += in_column ? kInformationHeight : kBlockWidth + kBlockGap;
  std::vector<bool> printed = {false, false};
  for (PlotControl* plot : plots) {
    const bool is_sigma = plot->Members().Find("SigmaRange") != nullptr;
    if (printed[is_sigma] || !PrintLegendAt(*plot, left, top)) continue;
    printed[is_sigma] = true;
    (in_column ? top : left) += in_column ? kLegendHeight : kBlockWidth + kBlockGap;
  }
}

}  // namespace

void PrintReportPage(const std::shared_ptr<VectorPaper>& paper, const PageSize& size,
                     const ReportHead& head, const std::vector<PlotControl*>& plots) {
  paper->ScaleMode(1);
  Write(*paper, head.title, kMargin, 14, true);
  Write(*paper, head.line, kMargin + 400, 9, false);
  // A wide page has room beside its plots, a high one below them.
  const bool wide = size.width > size.height;
  PageArea area = {kMargin, kMargin + kHeadHeight, size.width - 2 * kMargin,
                   size.height - 2 * kMargin - kHeadHeight};
  (wide ? area.width : area.height) -= wide ? kBlockWidth + kBlockGap : kBlocksHeight;
  const Grid grid = Grid::For(plots.size(), area);
  for (std::size_t i = 0; i < plots.size(); ++i) {
    plots[i]->PrinterObj(paper);
    PrintFitted(*plots[i], *paper, grid.Cell(i, area));
  }
  PrintBlocks(plots, wide ? size.width - kMargin - kBlockWidth : kMargin,
              wide ? kMargin : size.height - kMargin - kBlocksHeight + kBlockGap / 2, wide,
              head.units);
  for (PlotControl* plot : plots) plot->PrinterObj(nullptr);
}

}  // namespace discoplan::app
