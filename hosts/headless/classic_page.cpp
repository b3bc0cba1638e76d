// SPDX-License-Identifier: MIT
#include "hosts/headless/classic_page.h"

#include <algorithm>
#include <array>
#include <utility>

#include "discoplan/figures/figure_paper.h"

namespace discoplan {
namespace {

// Twips.
constexpr float kCaptionHeight = 200;  // above a frame
constexpr float kLine = 60;
constexpr float kLegendWidth = 2775 + 120;
constexpr float kLegendHeight = 3100;
/// In less, the positions of a line scan run into each other and the ticks of a histogram out of
/// their frame.
constexpr float kLeastWidth = 6000;
/// In less, what stands over the wafer's mark leaves the frame.
constexpr float kLeastHeight = 2400;
/// Texts have 16-bit positions.
constexpr float kMostSide = 24000;
/// A line scan sets its values in by a part of their distance from the top of the page. Here they
/// stand clear of the frame and of the curve.
constexpr float kFromTop = 3000;

PrintResult PrintFramed(PlotControl& control, VectorPaper& paper, const PageArea& area) {
  PageArea plot = {area.left, area.top, area.width, area.height - kCaptionHeight};
  paper.ClipTo({.left = area.left - kLine,
                .top = area.top,
                .width = area.width + 2 * kLine,
                .height = area.height + kLine});
  const PrintResult result = control.PrintPlot(plot.left, plot.top, plot.width, plot.height);
  paper.Unclip();
  return result;
}

/// A control that prints there and nowhere else.
class AtPrinter {
 public:
  AtPrinter(PlotControl& control, ObjectRef printer)
      : control_(control), before_(control.PrinterObj()) {
    control_.PrinterObj(std::move(printer));
  }
  ~AtPrinter() { control_.PrinterObj(before_); }
  AtPrinter(const AtPrinter&) = delete;
  AtPrinter& operator=(const AtPrinter&) = delete;

 private:
  PlotControl& control_;
  const ObjectRef before_;
};

bool HasLegend(const PlotControl& control) {
  return !control.HideLegend() && control.Members().Find("PrintLegend") != nullptr;
}

float ScaleOf(const PlotControl& control, float width, float height) {
  const bool legend = HasLegend(control);
  const float fitting = std::min(width / (kLeastWidth + (legend ? kLegendWidth : 0)),
                                 height / (legend ? kLegendHeight : kLeastHeight));
  return std::min(fitting, std::max(1.0F, std::max(width, height) / kMostSide));
}

}  // namespace

float PrintScale(float width, float height) {
  return std::min({1.0F, width / kLeastWidth, height / kLeastHeight});
}

void PrintFitted(PlotControl& control, VectorPaper& paper, const PageArea& area) {
  const float scale = PrintScale(area.width, area.height);
  paper.Origin({area.left, area.top - scale * kFromTop}, scale);
  PrintFramed(control, paper, {0, kFromTop, area.width / scale, area.height / scale});
  paper.Origin({});
}

bool PrintLegendAt(PlotControl& control, float left, float top) {
  const Member* legend = control.Members().Find("PrintLegend");
  if (legend == nullptr) return false;
  std::array<Variant, 2> place = {Variant(left), Variant(top)};
  legend->Call(control, place);
  return true;
}

PrintResult PrintWithLegend(PlotControl& control, const std::shared_ptr<VectorPaper>& paper,
                            const PageArea& area) {
  const AtPrinter printing(control, paper);
  PageArea cell = area;
  const bool has_room = cell.width > 2 * kLegendWidth;
  if (has_room && HasLegend(control)) {
    PrintLegendAt(control, cell.left + cell.width - kLegendWidth + 60, cell.top);
    cell.width -= kLegendWidth;
  }
  return PrintFramed(control, *paper,
                     {cell.left + 20, cell.top, cell.width - 40, cell.height - 20});
}

PrintResult PrintPage(PlotControl& control, const PageSetting& setting, figures::Figure& page) {
  const auto width = static_cast<float>(setting.width * kTwipsPerPoint);
  const auto height = static_cast<float>(setting.height * kTwipsPerPoint);
  const Screen screen;
  const auto paper =
      std::make_shared<figures::FigurePaper>(figures::FigurePaper::Setting{.width = width,
                                                                           .height = height,
                                                                           .screen = screen,
                                                                           .text = setting.text,
                                                                           .font = setting.font});
  const float scale = ScaleOf(control, width, height);
  paper->Origin({0, -scale * kFromTop}, scale);
  const PrintResult result = PrintWithLegend(
      control, paper,
      {0, kFromTop, std::min(width / scale, kMostSide), std::min(height / scale, kMostSide)});
  page = paper->Take();
  return result;
}

}  // namespace discoplan
