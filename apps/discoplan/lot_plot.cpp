// SPDX-License-Identifier: MIT
#include "apps/discoplan/lot_plot.h"

#include <algorithm>
#include <array>
#include <iterator>

#include "discoplan/base/numbers.h"
#include "discoplan/render/plot_area.h"
#include "discoplan/render/plots/bar_plot.h"
#include "discoplan/render/plots/contour_plot.h"
#include "discoplan/render/plots/scan_plot.h"
#include "discoplan/render/plots/surface_plot.h"

namespace discoplan::app {
namespace {

constexpr std::int16_t kIntervalColours = 5;
constexpr std::int16_t kSigmaColours = 4;
constexpr float kSigmaRange = 0.5F;
constexpr Colour kGrey = 0x808080;

PlotArea OnPage(const SheetBox& box) { return {box.left, box.top, box.width, box.height, 1}; }

/// Cells across a map: as fine as a small one shows.
float CellOf(const wafer& source) { return source.TestDiameter / 80; }

SurfaceView ViewOf(const wafer& source) {
  SurfaceView view;
  view.x_resolution = view.y_resolution = source.TestDiameter / 30;
  view.plot_scale = source.TestDiameter / 5;
  return view;
}

void DrawOutlined(Surface& surface, const SheetBox& box) {
  surface.ScaleMode(Surface::kTwips);
  surface.DrawStyle(0);
  surface.DrawWidth(1);
  surface.Line({.from = SurfacePoint{box.left, box.top},
                .to = {box.Right(), box.Bottom()},
                .colour = kGrey,
                .shape = LineShape::Box});
}

void DrawMap(wafer& source, Surface& surface, const SheetBox& box) {
  source.D2Plot(surface, CellOf(source), kIntervalColours, 0, false, OnPage(box));
}

void DrawSigmaMap(wafer& source, Surface& surface, const SheetBox& box) {
  source.D2Plot(surface, CellOf(source), kSigmaColours, kSigmaRange, false, OnPage(box));
}

void DrawContours(wafer& source, Surface& surface, const SheetBox& box) {
  ContourSettings settings;
  settings.radius = ToInt16(box.width / 2.0);
  settings.mark_sites = 3;
  surface.ScaleMode(Surface::kTwips);
  source.D2Contour(surface, settings, OnPage(box), [](const Message&) {});
}

void DrawNumbers(wafer& source, Surface& surface, const SheetBox& box) {
  surface.Font({.name = "Arial", .size = 4});
  source.D2Number(surface, OnPage(box));
}

void DrawSurface(wafer& source, Surface& surface, const SheetBox& box) {
  source.D3Plot(surface, ViewOf(source), 1, 0, true, OnPage(box));
}

void DrawSigmaSurface(wafer& source, Surface& surface, const SheetBox& box) {
  source.D3Plot(surface, ViewOf(source), kSigmaColours, kSigmaRange, true, OnPage(box));
}

void DrawBars(wafer& source, Surface& surface, const SheetBox& box) {
  BeamView view;
  view.beam_width = view.beam_height = source.WaferDiameter / 60;
  const double range = static_cast<double>(source.PlotMaximum) - source.PlotMinimum;
  if (range > 0) view.beam_scale = static_cast<float>(0.2 * source.WaferDiameter / range);
  source.D2BeamPlot(surface, view, true, OnPage(box));
}

/// Counts in equal bins between the limits; the highest bar fills the box.
void DrawHistogram(wafer& source, Surface& surface, const SheetBox& box) {
  constexpr std::size_t kBins = 15;
  constexpr Colour kBars = 0x008000;
  std::array<int, kBins> counts{};
  const double range = static_cast<double>(source.PlotMaximum) - source.PlotMinimum;
  for (const Site& site : source.Sites()) {
    const double part =
        range > 0 ? (static_cast<double>(site.z) - source.PlotMinimum) / range : 0.5;
    ++counts[std::min(kBins - 1, static_cast<std::size_t>(std::max(0.0, part * kBins)))];
  }
  DrawOutlined(surface, box);
  const auto highest = static_cast<float>(*std::max_element(counts.begin(), counts.end()));
  const float width = box.width / kBins;
  for (std::size_t i = 0; i < kBins; ++i) {
    if (counts[i] == 0) continue;
    const float left = box.left + static_cast<float>(i) * width;
    const float height = 0.95F * box.height * static_cast<float>(counts[i]) / highest;
    surface.Line({.from = SurfacePoint{left + 0.1F * width, box.Bottom() - height},
                  .to = {left + 0.9F * width, box.Bottom()},
                  .colour = kBars,
                  .shape = LineShape::FilledBox});
  }
}

/// From left to right through the centre.
void DrawScan(wafer& source, Surface& surface, const SheetBox& box) {
  constexpr std::int16_t kSteps = 100;
  constexpr Colour kCurve = 0x000080;
  DrawOutlined(surface, box);
  source.D1Plot(surface, kSteps, {.at_angle = true, .angle = 90}, kCurve, OnPage(box));
}

constexpr LotPlot kPlots[] = {
    {"2D", LotColours::Scale, true, true, 4, DrawMap},
    {"2DS", LotColours::Sigma, true, true, 4, DrawSigmaMap},
    {"2DC", LotColours::None, true, true, 4, DrawContours},
    {"2DN", LotColours::Scale, true, true, 1, DrawNumbers},
    {"3D", LotColours::Scale, false, false, 4, DrawSurface},
    {"3DS", LotColours::Sigma, false, false, 4, DrawSigmaSurface},
    {"3DB", LotColours::Scale, false, false, 1, DrawBars},
    {"histo", LotColours::None, false, false, 1, DrawHistogram},
    {"linescan", LotColours::None, false, false, 4, DrawScan},
};

bool TakeCell(wafer& target, const LotCell& cell) {
  target.WaferDiameter = cell.diameter;
  target.TestDiameter = cell.test_diameter;
  target.FlatRatio = 1;
  return Attempt([&] {
    target.reset();
    target.SetNop(static_cast<float>(cell.sites.size()));
    for (const Site& site : cell.sites) target.SetGridValue(site.x, site.y, site.z);
    target.MaxMin();
  });
}

/// A map's colours reach an eighth of the limits' distance beyond each of them.
void TakeLimits(wafer& target, const LotPlot& plot, const LotSheet& sheet) {
  const bool widens = plot.colours == LotColours::Scale;
  const analysis::RobustRange& range = plot.spans_scale ? sheet.scale : sheet.extent;
  const double margin = widens ? (range.high - range.low) / 10 : 0;
  Attempt(
      [&] { target.setMaximalMinial(ToFloat(range.high - margin), ToFloat(range.low + margin)); });
}

/// The wafer's edge with its notch at the bottom.
void DrawEdge(Surface& surface, const SheetBox& box) {
  const float radius = box.width / 2;
  const SurfacePoint centre{box.left + radius, box.top + radius};
  surface.ScaleMode(Surface::kTwips);
  surface.DrawStyle(0);
  surface.DrawWidth(1);
  surface.FillStyle(1);
  surface.Circle({.centre = centre, .radius = radius, .colour = kGrey});
  const float bottom = centre.y + radius;
  const float half = radius / 16;
  for (const float side : {-half, half}) {
    surface.Line({.from = SurfacePoint{centre.x + side, bottom},
                  .to = {centre.x, bottom - 2 * half},
                  .colour = kGrey});
  }
}

SheetBox Shrunk(const SheetBox& box, float share) {
  const float width = box.width * share;
  const float height = box.height * share;
  return {box.left + (box.width - width) / 2, box.top + (box.height - height) / 2, width, height};
}

}  // namespace

const LotPlot* FindLotPlot(std::string_view kind) {
  const auto* found = std::find_if(std::begin(kPlots), std::end(kPlots),
                                   [&](const LotPlot& plot) { return plot.kind == kind; });
  return found != std::end(kPlots) ? found : nullptr;
}

bool DrawLotPlot(Surface& surface, const LotPlot& plot, const LotSheet& sheet, const LotCell& cell,
                 const SheetBox& box) {
  wafer measured;
  if (!TakeCell(measured, cell)) return false;
  TakeLimits(measured, plot, sheet);
  const SheetBox inner = plot.is_disc ? Shrunk(box, cell.test_diameter / cell.diameter) : box;
  surface.ScaleMode(Surface::kPixels);
  surface.DrawStyle(0);
  surface.DrawWidth(1);
  // A plot that a wafer gives nothing for, such as contours without levels, stays empty.
  if (cell.sites.size() >= plot.least_sites) {
    Attempt([&] { plot.draw(measured, surface, inner); });
  }
  if (plot.is_disc) DrawEdge(surface, box);
  return true;
}

}  // namespace discoplan::app
