// SPDX-License-Identifier: MIT
#include "apps/report/report_page.h"

#include "apps/report/print_plot.h"

namespace discoplan::app {
namespace {

// Twips.
constexpr float kMargin = 1000;
constexpr float kHeadHeight = 900;
constexpr float kBlockWidth = 2775;
constexpr float kBlockGap = 300;
constexpr float kBlocksHeight = 3800;
constexpr float kStatisticsHeight = 2400;

void Write(qt::QtPaper& paper, const std::string& text, float y, float size, bool bold) {
  paper.Font({.name = "Arial", .size = size, .bold = bold});
  paper.ForeColor(kBlack);
  paper.CurrentX(kMargin);
  paper.CurrentY(y);
  paper.Print(text);
}

/// Statistics over size at the left, then one legend of each sort.
void PrintBlocks(const std::vector<PlotControl*>& plots, float top, const std::string& units) {
  PlotControl& first = *plots.front();
  first.PrintWaferStatistic(kMargin, top, units);
  first.PrintWaferSize(kMargin, top + kStatisticsHeight);
  float left = kMargin + kBlockWidth + kBlockGap;
  std::vector<bool> printed = {false, false};
  for (PlotControl* plot : plots) {
    const bool is_sigma = plot->Members().Find("SigmaRange") != nullptr;
    if (printed[is_sigma] || !PrintLegendAt(*plot, left, top)) continue;
    printed[is_sigma] = true;
    left += kBlockWidth + kBlockGap;
  }
}

}  // namespace

void PrintReportPage(const std::shared_ptr<qt::QtPaper>& paper, const PageSize& size,
                     const ReportHead& head, const std::vector<PlotControl*>& plots) {
  paper->ScaleMode(1);
  Write(*paper, head.title, kMargin, 14, true);
  Write(*paper, head.line, kMargin + 400, 9, false);
  const PageArea area = {kMargin, kMargin + kHeadHeight, size.width - 2 * kMargin,
                         size.height - 2 * kMargin - kHeadHeight - kBlocksHeight};
  const Grid grid = Grid::For(plots.size(), area);
  for (std::size_t i = 0; i < plots.size(); ++i) {
    plots[i]->PrinterObj(paper);
    PrintFramed(*plots[i], *paper, grid.Cell(i, area));
  }
  PrintBlocks(plots, size.height - kMargin - kBlocksHeight + kBlockGap / 2, head.units);
  for (PlotControl* plot : plots) plot->PrinterObj(nullptr);
}

}  // namespace discoplan::app
