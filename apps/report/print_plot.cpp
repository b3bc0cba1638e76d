// SPDX-License-Identifier: MIT
#include "apps/report/print_plot.h"

#include <algorithm>
#include <array>

namespace discoplan::app {
namespace {

// Twips.
constexpr float kGap = 120;
constexpr float kStrip = 1250;         // beside a map, for the wafer's mark
constexpr float kCaptionHeight = 200;  // above a frame
constexpr float kLine = 60;
constexpr float kLegendWidth = 2775 + 120;
/// In less a line scan has no room for its positions.
constexpr float kChartWidth = 4400;

}  // namespace

Grid Grid::For(std::size_t count, const PageArea& area) {
  const int plots = static_cast<int>(count);
  Grid best;
  float largest = 0;
  for (int columns = 1; columns <= plots; ++columns) {
    const Grid grid{columns, (plots + columns - 1) / columns};
    const PageArea cell = grid.Cell(0, area);
    const float map = std::min(cell.width - kStrip, cell.height - kCaptionHeight);
    if (columns > 1 && (map < largest || cell.width < kChartWidth)) continue;
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

void PrintFramed(PlotControl& control, qt::QtPaper& paper, const PageArea& area) {
  PageArea plot = {area.left, area.top, area.width, area.height - kCaptionHeight};
  paper.ClipTo({area.left - kLine, area.top, area.width + 2 * kLine, area.height + kLine});
  control.PrintPlot(plot.left, plot.top, plot.width, plot.height);
  paper.Unclip();
}

bool PrintLegendAt(PlotControl& control, float left, float top) {
  const Member* legend = control.Members().Find("PrintLegend");
  if (legend == nullptr) return false;
  std::array<Variant, 2> place = {Variant(left), Variant(top)};
  legend->Call(control, place);
  return true;
}

void PrintWithLegend(PlotControl& control, const std::shared_ptr<qt::QtPaper>& paper,
                     const PageArea& area) {
  control.PrinterObj(paper);
  PageArea cell = area;
  const bool has_room = cell.width > 2 * kLegendWidth;
  if (has_room && !control.HideLegend() &&
      PrintLegendAt(control, cell.left + cell.width - kLegendWidth + 60, cell.top)) {
    cell.width -= kLegendWidth;
  }
  PrintFramed(control, *paper, {cell.left + 20, cell.top, cell.width - 40, cell.height - 20});
  control.PrinterObj(nullptr);
}

}  // namespace discoplan::app
