// SPDX-License-Identifier: MIT
#include <algorithm>
#include <string>

#include "discoplan/base/numbers.h"
#include "discoplan/print/bar_print.h"
#include "discoplan/print/contour_print.h"
#include "discoplan/print/print_wafer.h"
#include "discoplan/print/surface_print.h"
#include "discoplan/render/number_text.h"
#include "discoplan/render/plot_area.h"
#include "discoplan/render/plots/histogram_plot.h"

namespace discoplan {
namespace {

constexpr std::int16_t kPartOfPage = 1;
constexpr std::int16_t kIntervalColours = 5;
constexpr std::int16_t kSigmaColours = 4;

// Twips.
constexpr double kBlockFromRight = 1215;
constexpr double kBlockFromBottom = 1355;
constexpr double kStrip = 1250;
constexpr double kContourStrip = 1215;
/// Of the largest square that is left.
constexpr double kMapShare = 0.9;
/// Of the text line above the block of contours and scans, from the bottom; the block lies lower.
constexpr double kTextLineFromBottom = 1455 + 100;
constexpr double kBlockBelowTextLine = 360;

float Side(double width, double height) { return ToFloat(kMapShare * std::min(width, height)); }

/// A square in the middle of an area.
PageArea Middle(double left, double top, double width, double height) {
  const float side = Side(width, height);
  return {ToFloat(left + (width - side) / 2), ToFloat(top + (height - side) / 2), side, side};
}

PlotArea OnPage(const PageArea& area) {
  return {area.left, area.top, area.width, area.height, kPartOfPage};
}

void DrawFrame(Page& page, const std::string& caption, const PageArea& area) {
  page.DrawTitledFrame(caption, area.left, area.top, area.width, area.height);
}

/// What tells the plots over the whole wafer apart, besides their renderer.
struct MapForm {
  /// Then the width without the strip at the right stays in the caller's area. Or last, over the
  /// plot: then the width gets the strip back.
  bool frame_first;
  bool leaves_position;  ///< The map's place stays in the caller's area.
};

constexpr MapForm kColouredMap{.frame_first = false, .leaves_position = false};
constexpr MapForm kSigmaMap{.frame_first = true, .leaves_position = false};
constexpr MapForm kPerspective{.frame_first = true, .leaves_position = true};

template <class Draw>
void PrintMap(Page page, const MapForm& form, PageArea& area, const std::string& caption,
              const GlyphView& glyph, Draw&& draw) {
  page.ResetPrinterObj();
  if (form.frame_first) DrawFrame(page, caption, area);
  page.DrawStyleBlock(ToFloat(static_cast<double>(area.left) + area.width - kBlockFromRight),
                      ToFloat(static_cast<double>(area.top) + area.height - kBlockFromBottom),
                      glyph);
  const float top = ToFloat(static_cast<double>(area.top) + page.printer().TextHeight("0"));
  area.width = ToFloat(area.width - kStrip);
  const PageArea map = Middle(area.left, top, area.width, area.height);
  if (form.leaves_position) {
    area.left = map.left;
    area.top = map.top;
  }
  page.printer().ScaleMode(Surface::kPixels);
  draw(page.printer(), OnPage(map));
  page.ResetPrinterObj();
  if (form.frame_first) return;
  area.width = ToFloat(area.width + kStrip);
  DrawFrame(page, caption, area);
}

GlyphView FromAbove(const wafer& source) { return {.flat_ratio = source.FlatRatio}; }

GlyphView From(const wafer& source, float rotation, float inclination) {
  return {.flat_ratio = source.FlatRatio, .rotation = rotation, .inclination = inclination};
}

/// Where the text line above the block begins, and the block itself.
struct TextAndBlock {
  float x;
  float y;

  explicit TextAndBlock(const PageArea& area)
      : x(ToFloat(static_cast<double>(area.left) + area.width - kBlockFromRight)),
        y(ToFloat(static_cast<double>(area.top) + area.height - kTextLineFromBottom)) {}

  void DrawBlock(Page& page, const GlyphView& glyph) const {
    page.DrawStyleBlock(x, ToFloat(y + kBlockBelowTextLine), glyph);
  }
};

/// The map of lines in the middle of the area, whose place stays in it.
void DrawContour(Page& page, wafer& source, PageArea& area, double width,
                 const ContourPrint& print) {
  const float top = ToFloat(static_cast<double>(area.top) + page.printer().TextHeight("0"));
  const PageArea map = Middle(area.left, top, width, area.height);
  area.left = map.left;
  area.top = map.top;
  ContourSettings settings = print.settings;
  settings.radius = ToInt16(map.width / 2.0);
  source.D2Contour(page.printer(), settings, OnPage(map), print.show);
  page.ResetPrinterObj();
}

void DrawHistogram(Page page, wafer& source, const PageArea& area, const HistogramPrint& print,
                   double room) {
  constexpr std::int16_t kGap = 60;
  Surface& printer = page.printer();
  std::int16_t margin = 0;
  Attempt([&] { margin = ToInt16(area.width * 0.08); });
  Attempt([&] { page.ResetPrinterObj(); });
  const double left = static_cast<double>(area.left) + margin;
  const double top = area.top + room;
  Attempt([&] {
    printer.Line({.from = SurfacePoint{ToFloat(left), ToFloat(top)},
                  .to = {ToFloat(static_cast<double>(area.left) + area.width - margin),
                         ToFloat(static_cast<double>(area.top) + area.height - 1.2 * room)},
                  .colour = kPalette[1],
                  .shape = LineShape::Box});
  });
  Attempt([&] { printer.ScaleMode(Surface::kPixels); });
  Attempt([&] {
    source.Statistic(print.plot_type, printer, printer,
                     {.left = ToFloat(left),
                      .top = ToFloat(top),
                      .width = ToFloat(area.width - 2.0 * margin),
                      .height = ToFloat(area.height - 2.2 * room),
                      .bins = print.bins,
                      .gap = kGap,
                      .plot_left = ToFloat(left),
                      .plot_top = ToFloat(top),
                      .mode = kPartOfPage});
  });
  Attempt([&] { printer.ScaleMode(Surface::kTwips); });
  Attempt([&] { page.ResetPrinterObj(); });
}

}  // namespace

Page PrintWafer::NewPage() const {
  if (printer_ == nullptr) throw RunTimeError(Fault::ObjectNotSet, "there is no printer");
  return Page(*printer_);
}

void PrintWafer::Print_2DPlot(wafer& source, PageArea& area, const MapPrint& print) {
  PrintMap(NewPage(), kColouredMap, area, print.caption, FromAbove(source),
           [&](Surface& printer, const PlotArea& map) {
             source.D2Plot(printer, print.resolution, kIntervalColours, 0, print.show_sites, map);
           });
}

void PrintWafer::Print_2DNPlot(wafer& source, PageArea& area, const std::string& caption) {
  PrintMap(NewPage(), kColouredMap, area, caption, FromAbove(source),
           [&](Surface& printer, const PlotArea& map) { source.D2Number(printer, map); });
}

void PrintWafer::Print_2DSigmaPlot(wafer& source, PageArea& area, const MapPrint& print) {
  PrintMap(NewPage(), kSigmaMap, area, print.caption, FromAbove(source),
           [&](Surface& printer, const PlotArea& map) {
             source.D2Plot(printer, print.resolution, kSigmaColours, print.sigma_range,
                           print.show_sites, map);
           });
}

void PrintWafer::Print_3DPlot(wafer& source, PageArea& area, const SurfacePrint& print) {
  const GlyphView glyph = From(source, print.view.wafer_rotation, print.view.grid_inclination);
  PrintMap(NewPage(), kPerspective, area, print.caption, glyph,
           [&](Surface& printer, const PlotArea& map) {
             source.D3Plot(printer, print.view, print.plot_type, 0, true, map);
           });
}

void PrintWafer::Print_3DSigmaPlot(wafer& source, PageArea& area, const SurfacePrint& print) {
  const GlyphView glyph = From(source, print.view.wafer_rotation, print.view.grid_inclination);
  PrintMap(NewPage(), kPerspective, area, print.caption, glyph,
           [&](Surface& printer, const PlotArea& map) {
             source.D3Plot(printer, print.view, kSigmaColours, print.sigma_range, true, map);
           });
}

void PrintWafer::Print_2DBPlot(wafer& source, PageArea& area, const BarPrint& print) {
  const GlyphView glyph = From(source, print.view.wafer_rotation, print.view.grid_inclination);
  PrintMap(NewPage(), kPerspective, area, print.caption, glyph,
           [&](Surface& printer, const PlotArea& map) {
             source.D2BeamPlot(printer, print.view, true, map);
           });
}

void PrintWafer::Print_2DPlot_THN(wafer& source, PageArea& area, const MapPrint& print,
                                  std::string& second_caption) {
  Page page = NewPage();
  page.ResetPrinterObj();
  const double line = page.printer().TextHeight("0");
  const float side = Side(area.width, area.height);
  const float left = ToFloat(area.left + (static_cast<double>(area.width) - side) / 2);
  const float top = ToFloat(area.top + line + line / 2);
  page.printer().ScaleMode(Surface::kPixels);
  source.D2Plot(page.printer(), print.resolution, kIntervalColours, 0, false,
                {left, top, side, side, kPartOfPage});
  page.ResetPrinterObj();
  page.PrintClippedText(second_caption,
                        {left, static_cast<double>(top) + side + line / 2, side, 0});
  DrawFrame(page, print.caption, area);
  page.ResetPrinterObj();
}

void PrintWafer::Print_2DSigmaPlot_THN(wafer& source, PageArea& area, const MapPrint& print) {
  Page page = NewPage();
  page.ResetPrinterObj();
  DrawFrame(page, print.caption, area);
  const float top = ToFloat(static_cast<double>(area.top) + page.printer().TextHeight("0"));
  const PageArea map = Middle(area.left, top, area.width, area.height);
  area.left = map.left;
  area.top = map.top;
  page.printer().ScaleMode(Surface::kPixels);
  source.D2Plot(page.printer(), print.resolution, kSigmaColours, print.sigma_range, false,
                OnPage(map));
  page.ResetPrinterObj();
}

void PrintWafer::Print_Contour(wafer& source, PageArea& area, const ContourPrint& print) {
  Page page = NewPage();
  page.ResetPrinterObj();
  DrawFrame(page, print.caption, area);
  const TextAndBlock place(area);
  place.DrawBlock(page, FromAbove(source));
  std::string text = "Interval: ";
  text += PlainNumber(print.settings.interval) + "%";
  page.PrintClippedText(text, {place.x, place.y, 1200, 0});
  DrawContour(page, source, area, ToFloat(area.width - kContourStrip), print);
}

void PrintWafer::Print_Contour_THN(wafer& source, PageArea& area, const ContourPrint& print) {
  Page page = NewPage();
  page.ResetPrinterObj();
  DrawFrame(page, print.caption, area);
  DrawContour(page, source, area, area.width, print);
}

void PrintWafer::Print_Histo(wafer& source, const PageArea& area, const HistogramPrint& print) {
  Page page = NewPage();
  Attempt([&] { DrawFrame(page, print.caption, area); });
  DrawHistogram(page, source, area, print, 600);
}

void PrintWafer::Print_Histo_THN(wafer& source, const PageArea& area, const HistogramPrint& print) {
  DrawHistogram(NewPage(), source, area, print, 0);
}

}  // namespace discoplan
