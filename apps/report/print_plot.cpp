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
/// In less, the positions of a line scan run into each other and the ticks of a histogram out of
/// their frame.
constexpr float kLeastWidth = 6000;
/// In less, what stands over the wafer's mark leaves the frame.
constexpr float kLeastHeight = 2400;
/// Texts of 8 points have 4 then; smaller ones are hard to read.
constexpr float kLeastScale = 0.5F;
/// A line scan sets its values in by a part of their distance from the top of the page. Here they
/// stand clear of the frame and of the curve.
constexpr float kFromTop = 3000;

float ScaleIn(const PageArea& area) {
  return std::min({1.0F, area.width / kLeastWidth, area.height / kLeastHeight});
}

}  // namespace

Grid Grid::For(std::size_t count, const PageArea& area) {
  const int plots = static_cast<int>(count);
  Grid best;
  float largest = 0;
  for (int columns = 1; columns <= plots; ++columns) {
    const Grid grid{columns, (plots + columns - 1) / columns};
    const PageArea cell = grid.Cell(0, area);
    const float scale = ScaleIn(cell);
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

void PrintFitted(PlotControl& control, qt::QtPaper& paper, const PageArea& area) {
  const float scale = ScaleIn(area);
  paper.Origin({area.left, area.top - scale * kFromTop}, scale);
  PrintFramed(control, paper, {0, kFromTop, area.width / scale, area.height / scale});
  paper.Origin({});
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
