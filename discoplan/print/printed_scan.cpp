// SPDX-License-Identifier: MIT
#include <array>
#include <string>

#include "discoplan/base/numbers.h"
#include "discoplan/print/print_wafer.h"
#include "discoplan/print/scan_print.h"
#include "discoplan/render/number_text.h"
#include "discoplan/render/plot_area.h"

namespace discoplan {
namespace {

constexpr std::int16_t kSteps = 88;

/// The square of the glyph in its block, in twips.
struct GlyphBox {
  double left;
  double top;
  double side = 700;
};

/// Draws the cut over the wafer's outline.
void DrawCut(Page& page, const wafer& source, const CutEnds& ends, const GlyphBox& box) {
  const double diameter = source.TestDiameter;
  // 25 cells to the radius, whatever the diameter.
  double cell = diameter / 50;
  if (cell == 0) cell = 1;
  const std::int16_t half = ToInt16(diameter / 2 / cell + 2);
  const double scale = Divide(box.side, 2 * half * cell);
  const auto along = [&](double mm) {
    return Divide(scale * mm * 2 * (half - 2) * half / (half + 1) * cell, diameter);
  };
  const auto image = [&](double x, double y) {
    return SurfacePoint{static_cast<float>(ToInt16(box.left + box.side / 2 + along(x))),
                        static_cast<float>(ToInt16(box.top + box.side / 2 - along(y)))};
  };
  page.printer().Line(
      {.from = image(ends.ax, ends.ay), .to = image(ends.bx, ends.by), .colour = kPalette[2]});
}

/// Beside the chart; they slant with their place on the page.
void WriteValues(Page& page, const wafer& source, float left, const PageArea& chart) {
  const double high = source.PlotMaximum;
  const double low = source.ScaleFloor;
  const double middle = (high + low) / 2;
  const std::array<double, 5> values = {high, (middle + high) / 2, middle, (low + middle) / 2, low};
  for (std::size_t i = 0; i < values.size(); ++i) {
    const double y = chart.top - 90.0 + static_cast<double>(i) * chart.height / 4;
    page.PrintClippedText(PrintWafer::FormatLbl(ToFloat(values[i])), {left + y / 60, y, 1000, 1});
  }
}

/// Below the chart.
void WritePositions(Page& page, const CutEnds& ends, const PageArea& chart) {
  const double line = page.printer().TextHeight("0");
  const double first = static_cast<double>(chart.top) + chart.height + 100;
  const double dx = (static_cast<double>(ends.bx) - ends.ax) / 4;
  const double dy = (static_cast<double>(ends.by) - ends.ay) / 4;
  for (int j = 0; j <= 4; ++j) {
    const double centre = chart.left + j * static_cast<double>(chart.width) / 4;
    const auto write = [&](std::string text, double value, double y) {
      text += FormatPicture(ToFloat(value), "0.00");
      page.PrintCenteredText(text, {centre, y, 1000, 1});
    };
    write("X=", ends.ax + j * dx, first);
    write("Y=", ends.ay + j * dy, first + line);
  }
}

void DrawCross(Surface& printer, float x, float top) {
  const auto line = [&](double x1, double y1, double x2, double y2) {
    printer.Line({.from = SurfacePoint{ToFloat(x1), ToFloat(y1)},
                  .to = {ToFloat(x2), ToFloat(y2)},
                  .colour = kPalette[1]});
  };
  line(x - 45.0, top + 355.0, x + 45.0, top + 355.0);
  line(x, top + 310.0, x, top + 400.0);
}

}  // namespace

void PrintWafer::Print_1DPlot(wafer& source, const PageArea& area, const ScanPrint& print) {
  Page page = NewPage();
  Surface& printer = page.printer();
  page.ResetPrinterObj();
  page.DrawTitledFrame(print.caption, area.left, area.top, area.width, area.height);
  const float block = ToFloat(static_cast<double>(area.left) + area.width - 1215);
  const float line = ToFloat(static_cast<double>(area.top) + area.height - 1455 - 100);
  page.DrawStyleBlock(block, ToFloat(line + 360.0), {.flat_ratio = source.FlatRatio});
  const CutEnds ends = source.EndsOf(print.cut);
  DrawCut(page, source, ends, {.left = block + 138.0, .top = line + 360.0 + 450});
  if (print.cut.at_angle) {
    std::string text = "Angle: ";
    text += std::to_string(print.cut.angle) + " °";
    page.PrintClippedText(text, {block, line, 935, 0});
  }
  printer.DrawWidth(page.LineWidth(2, 1));
  const double labels = 1.5 * printer.TextWidth(FormatLbl(source.PlotMaximum));
  const PageArea chart = {ToFloat(area.left + labels), ToFloat(area.top + 500.0),
                          ToFloat(area.width - 1215 - 300 - labels), ToFloat(area.height - 1015.0)};
  WriteValues(page, source, area.left, chart);
  WritePositions(page, ends, chart);
  wafer::D1Plot_AdjustLines(printer, chart.left, chart.top, chart.width, chart.height);
  DrawCross(printer, chart.left, area.top);
  printer.DrawWidth(page.LineWidth(4, 2));
  source.D1Plot(printer, kSteps, print.cut, kPalette[4],
                {chart.left, chart.top, chart.width, chart.height, 1});
  page.ResetPrinterObj();
}

}  // namespace discoplan
