// SPDX-License-Identifier: MIT
#include "apps/discoplan/lot_plot.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <vector>

#include "discoplan/base/angles.h"
#include "discoplan/base/numbers.h"
#include "discoplan/controls/histo.h"
#include "discoplan/controls/line_scan.h"
#include "discoplan/controls/plot2dc.h"
#include "discoplan/controls/plot2ds.h"
#include "discoplan/controls/plot3d.h"
#include "discoplan/controls/plot3db.h"
#include "discoplan/controls/plot3ds.h"
#include "discoplan/render/plot_area.h"
#include "discoplan/render/plots/bar_plot.h"
#include "discoplan/render/plots/contour_plot.h"
#include "discoplan/render/plots/scan_plot.h"
#include "discoplan/render/plots/surface_plot.h"

namespace discoplan::app {
namespace {

constexpr std::int16_t kIntervalColours = 5;
constexpr std::int16_t kSigmaColours = 4;
constexpr float kMostBins = 200;
constexpr Colour kGrey = 0x808080;

PlotArea OnPage(const SheetBox& box) { return {box.left, box.top, box.width, box.height, 1}; }

template <class Control>
const Control& As(const PlotControl& look) {
  return dynamic_cast<const Control&>(look);
}

SurfaceView ViewOf(const PlotControl& look) {
  const auto& control = As<SurfaceControl>(look);
  return {.x_resolution = control.XResolution(),
          .y_resolution = control.YResolution(),
          .plot_scale = static_cast<float>(control.PlotScale()),
          .grid_rotation = static_cast<float>(control.GridRotation()),
          .wafer_rotation = static_cast<float>(control.WaferRotation()),
          .grid_inclination = static_cast<float>(control.GridInclination())};
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

void DrawMap(wafer& source, Surface& surface, const SheetBox& box, const PlotControl& look) {
  const auto& map = As<LatticeControl>(look);
  source.D2Plot(surface, map.Resolution(), kIntervalColours, 0, map.ShowSites() == Sites::ShowSite,
                OnPage(box));
}

void DrawSigmaMap(wafer& source, Surface& surface, const SheetBox& box, const PlotControl& look) {
  const auto& map = As<LatticeControl>(look);
  source.D2Plot(surface, map.Resolution(), kSigmaColours, SigmaRangeOf(look),
                map.ShowSites() == Sites::ShowSite, OnPage(box));
}

void DrawContours(wafer& source, Surface& surface, const SheetBox& box, const PlotControl& look) {
  const auto& lines = As<Plot2DC>(look);
  surface.ScaleMode(Surface::kTwips);
  source.D2Contour(surface,
                   {.radius = ToInt16(box.width / 2.0),
                    .interval = lines.Interval(),
                    .mark_sites = static_cast<std::int16_t>(lines.markSites()),
                    .resolution = static_cast<std::int16_t>(lines.Resolution()),
                    .plot_colored = static_cast<std::int16_t>(lines.PlotColored())},
                   OnPage(box), [](const Message&) {});
}

void DrawNumbers(wafer& source, Surface& surface, const SheetBox& box, const PlotControl&) {
  surface.Font({.name = "Arial", .size = 4});
  source.D2Number(surface, OnPage(box));
}

void DrawSurface(wafer& source, Surface& surface, const SheetBox& box, const PlotControl& look) {
  const auto type = static_cast<std::int16_t>(As<Plot3D>(look).PlotType());
  source.D3Plot(surface, ViewOf(look), type, 0, true, OnPage(box));
}

void DrawSigmaSurface(wafer& source, Surface& surface, const SheetBox& box,
                      const PlotControl& look) {
  source.D3Plot(surface, ViewOf(look), kSigmaColours, SigmaRangeOf(look), true, OnPage(box));
}

void DrawBars(wafer& source, Surface& surface, const SheetBox& box, const PlotControl& look) {
  const auto& bars = As<Plot3DB>(look);
  source.D2BeamPlot(surface,
                    {.beam_width = bars.BeamWidth(),
                     .beam_height = bars.BeamHeight(),
                     .beam_scale = bars.BeamScale(),
                     .grid_rotation = static_cast<float>(bars.GridRotation()),
                     .wafer_rotation = static_cast<float>(bars.WaferRotation()),
                     .grid_inclination = static_cast<float>(bars.GridInclination())},
                    true, OnPage(box));
}

/// Counts in equal bins between the limits; the highest bar fills the box.
void DrawHistogram(wafer& source, Surface& surface, const SheetBox& box, const PlotControl& look) {
  const auto& histogram = As<Histo>(look);
  const auto bins = static_cast<std::size_t>(std::clamp(histogram.Resolution(), 1.0F, kMostBins));
  std::vector<int> counts(bins);
  const double range = static_cast<double>(source.PlotMaximum) - source.PlotMinimum;
  for (const Site& site : source.Sites()) {
    const double part =
        range > 0 ? (static_cast<double>(site.z) - source.PlotMinimum) / range : 0.5;
    const double bin = std::max(0.0, part * static_cast<double>(bins));
    ++counts[std::min(bins - 1, static_cast<std::size_t>(bin))];
  }
  DrawOutlined(surface, box);
  const auto highest = static_cast<float>(*std::max_element(counts.begin(), counts.end()));
  const float width = box.width / static_cast<float>(bins);
  for (std::size_t i = 0; i < bins; ++i) {
    if (counts[i] == 0) continue;
    const float left = box.left + static_cast<float>(i) * width;
    const float height = 0.95F * box.height * static_cast<float>(counts[i]) / highest;
    surface.Line({.from = SurfacePoint{left + 0.1F * width, box.Bottom() - height},
                  .to = {left + 0.9F * width, box.Bottom()},
                  .colour = histogram.BeamColor(),
                  .shape = LineShape::FilledBox});
  }
}

void DrawScan(wafer& source, Surface& surface, const SheetBox& box, const PlotControl& look) {
  constexpr std::int16_t kSteps = 100;
  constexpr Colour kCurve = 0x000080;
  const auto& scan = As<LineScan>(look);
  const auto mm = [](std::int16_t length) { return static_cast<float>(length); };
  const bool by_line = scan.PlotType() == PlotTypeEnumLineScan::vbline;
  DrawOutlined(surface, box);
  source.D1Plot(surface, kSteps,
                by_line ? ScanLine{.at_angle = false,
                                   .x1 = mm(scan.LineStartPointX()),
                                   .y1 = mm(scan.LineStartPointY()),
                                   .x2 = mm(scan.LineEndPointX()),
                                   .y2 = mm(scan.LineEndPointY())}
                        : ScanLine{.x1 = mm(scan.RotationPointX()),
                                   .y1 = mm(scan.RotationPointY()),
                                   .angle = scan.angle()},
                kCurve, OnPage(box));
}

/// A map's colours reach an eighth of the limits' distance beyond each of them.
analysis::RobustRange LimitsOf(const LotPlot& plot, const LotSheet& sheet) {
  const analysis::RobustRange& range = plot.spans_scale ? sheet.scale : sheet.extent;
  const double margin = plot.colours == LotColours::Scale ? (range.high - range.low) / 10 : 0;
  return {range.low + margin, range.high - margin};
}

/// As fine as a small plot shows, and as high as it has room.
void FitSmall(PlotControl& control, const analysis::RobustRange& limits) {
  const float across = control.TestDiameter();
  control.BackColor(kWhite);
  if (auto* map = dynamic_cast<LatticeControl*>(&control)) map->Resolution(across / 80);
  if (auto* lines = dynamic_cast<Plot2DC*>(&control)) lines->markSites(ExconEnum{3});
  if (auto* surface = dynamic_cast<SurfaceControl*>(&control)) {
    surface->XResolution(across / 30);
    surface->YResolution(across / 30);
    surface->PlotScale(ToInt16(across / 5.0));
  }
  if (auto* bars = dynamic_cast<Plot3DB*>(&control)) {
    const float wafer = control.WaferDiameter();
    bars->BeamWidth(wafer / 60);
    bars->BeamHeight(wafer / 60);
    const double range = limits.high - limits.low;
    if (range > 0) bars->BeamScale(static_cast<float>(0.2 * static_cast<double>(wafer) / range));
  }
  if (auto* histogram = dynamic_cast<Histo*>(&control)) histogram->Resolution(15);
  if (auto* scan = dynamic_cast<LineScan*>(&control)) scan->angle(90);  // along X
}

void RefuseUnseen(const PlotRequest& request, const LotPlot& plot) {
  if (Assigns(request, "PlotCaption")) {
    throw UsageError("--set PlotCaption: the title of a sheet is given by --caption");
  }
  struct Unseen {
    std::string_view kind, member;
  };
  constexpr Unseen kUnseen[] = {{"histo", "PlotType"}, {"histo", "GaussCurveColor"}};
  for (const auto& [kind, member] : kUnseen) {
    if (kind != plot.kind || !Assigns(request, member)) continue;
    throw UsageError("--set " + std::string(member) +
                     ": the small histograms of a sheet stand upright and have no curve");
  }
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

bool TakeCell(wafer& target, const LotCell& cell, const wafer& look) {
  target.WaferDiameter = cell.diameter;
  target.TestDiameter = cell.test_diameter;
  target.FlatRatio = look.FlatRatio;
  target.IntervalColor = look.IntervalColor;
  target.AuxColor = look.AuxColor;
  return Attempt([&] {
    target.reset();
    target.SetNop(static_cast<float>(cell.sites.size()));
    for (const Site& site : cell.sites) target.SetGridValue(site.x, site.y, site.z);
    target.MaxMin();
  });
}

/// The wafer's edge with its notch or flat at the bottom.
void DrawEdge(Surface& surface, const SheetBox& box, float flat_ratio) {
  const float radius = box.width / 2;
  const SurfacePoint centre{box.left + radius, box.top + radius};
  surface.ScaleMode(Surface::kTwips);
  surface.DrawStyle(0);
  surface.DrawWidth(1);
  surface.FillStyle(1);
  const float up = (2 * flat_ratio - 1) * radius;  // of the flat, below the centre
  if (flat_ratio < 1) {
    const float half = std::sqrt(radius * radius - up * up);
    const float corner = std::atan2(up, half);
    surface.Circle({.centre = centre,
                    .radius = radius,
                    .colour = kGrey,
                    .start = 2 * kPi - corner,
                    .end = kPi + corner});
    surface.Line({.from = SurfacePoint{centre.x - half, centre.y + up},
                  .to = {centre.x + half, centre.y + up},
                  .colour = kGrey});
    return;
  }
  surface.Circle({.centre = centre, .radius = radius, .colour = kGrey});
  const float half = radius / 16;
  for (const float side : {-half, half}) {
    surface.Line({.from = SurfacePoint{centre.x + side, centre.y + up},
                  .to = {centre.x, centre.y + up - 2 * half},
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

std::unique_ptr<PlotControl> LotLook(Platform& platform, const PlotRequest& request,
                                     const LotPlot& plot, const LotSheet& sheet,
                                     const LotCell& cell) {
  RefuseUnseen(request, plot);
  auto control = PlotKindsOf({std::string(plot.kind)}).front()->make(platform, nullptr);
  TakeSettings(*control, request, {cell.diameter, cell.test_diameter},
               [&] { FitSmall(*control, LimitsOf(plot, sheet)); });
  return control;
}

float SigmaRangeOf(const PlotControl& look) {
  if (const auto* map = dynamic_cast<const Plot2DS*>(&look)) return map->SigmaRange();
  const auto* surface = dynamic_cast<const Plot3DS*>(&look);
  return surface != nullptr ? surface->SigmaRange() : 0;
}

bool DrawLotPlot(Surface& surface, const LotPlot& plot, const LotSheet& sheet, const LotCell& cell,
                 const SheetBox& box, const PlotControl& look) {
  wafer measured;
  if (!TakeCell(measured, cell, look.Wafer())) return false;
  const analysis::RobustRange limits = LimitsOf(plot, sheet);
  Attempt([&] { measured.setMaximalMinial(ToFloat(limits.high), ToFloat(limits.low)); });
  const SheetBox inner = plot.is_disc ? Shrunk(box, cell.test_diameter / cell.diameter) : box;
  if (look.BackColor() != kWhite) {
    surface.ScaleMode(Surface::kTwips);
    surface.Line({.from = SurfacePoint{box.left, box.top},
                  .to = {box.Right(), box.Bottom()},
                  .colour = look.BackColor(),
                  .shape = LineShape::FilledBox});
  }
  surface.ScaleMode(Surface::kPixels);
  surface.DrawStyle(0);
  surface.DrawWidth(1);
  // A plot that a wafer gives nothing for, such as contours without levels, stays empty.
  if (cell.sites.size() >= plot.least_sites) {
    Attempt([&] { plot.draw(measured, surface, inner, look); });
  }
  if (plot.is_disc) DrawEdge(surface, box, look.Wafer().FlatRatio);
  return true;
}

}  // namespace discoplan::app
