// SPDX-License-Identifier: MIT

// The drawing operations of the interface's wafer: each calls one function and keeps what the
// wafer's fields are to show of it.

#include "discoplan/base/numbers.h"
#include "discoplan/core/wafer.h"
#include "discoplan/core/wafer_data.h"
#include "discoplan/platform/platform.h"
#include "discoplan/render/number_text.h"
#include "discoplan/render/plots/bar_plot.h"
#include "discoplan/render/plots/contour_plot.h"
#include "discoplan/render/plots/histogram_plot.h"
#include "discoplan/render/plots/legend.h"
#include "discoplan/render/plots/map_plot.h"
#include "discoplan/render/plots/orientation_mark.h"
#include "discoplan/render/plots/scan_plot.h"
#include "discoplan/render/plots/surface_plot.h"
#include "discoplan/render/plots/value_plot.h"
#include "discoplan/render/surface.h"

namespace discoplan {

/// A plot leaves the limits as they were, and what follows from them anew.
void wafer::LeavePlot(float scale_floor) {
  ScaleFloor = scale_floor;
  Attempt([&] { setMaximalMinial(PlotMaximum, PlotMinimum); });
}

std::string wafer::FormatLbl(float value) { return FormatLegendValue(value); }

void wafer::scale_colored(LegendLabels chips, LegendLabels rows) const {
  ShowIntervalLegend(Data(), chips, rows);
}

void wafer::scale_sigma(LegendLabels chips, LegendLabels rows, float sigma_range) const {
  ShowSigmaLegend(Data(), chips, rows, sigma_range);
}

void wafer::D2Plot(Surface& surface, double resolution, std::int16_t kind, float sigma_range,
                   bool show_sites, const PlotArea& area) {
  LeavePlot(DrawMap(Data(), surface,
                    {.resolution = resolution,
                     .kind = kind,
                     .sigma_range = sigma_range,
                     .show_sites = show_sites},
                    area));
}

double wafer::D2PlotSide(double resolution) const { return MapSide(TestDiameter, resolution); }

void wafer::D2Number(Surface& surface, const PlotArea& area) {
  LeavePlot(DrawValues(Data(), surface, area));
}

void wafer::D2Contour(Surface& surface, const ContourSettings& settings, const PlotArea& area,
                      const std::function<void(const Message&)>& show) {
  if (DrawContours(Data(), surface, settings, area)) return;
  show({.text = "Difference of Mean, Maximum, and Minimum too small",
        .title = "No Contour Plot possible",
        .system_modal = true});
}

void wafer::D3Plot(Surface& surface, const SurfaceView& view, std::int16_t plot_kind,
                   float sigma_range, bool printed, const PlotArea& area) {
  LeavePlot(DrawSurface(
      Data(), surface,
      {.view = view, .kind = plot_kind, .sigma_range = sigma_range, .printed = printed}, area));
}

void wafer::D2BeamPlot(Surface& surface, const BeamView& view, bool, const PlotArea& area) {
  DrawBars(Data(), surface, view, area);
  LeavePlot(ScaleFloor);
}

CutEnds wafer::EndsOf(const ScanLine& cut) const { return discoplan::EndsOf(cut, TestDiameter); }

void wafer::D1Plot(Surface& surface, std::int16_t steps, const ScanLine& cut, Colour colour,
                   const PlotArea& area) {
  const WaferData data = Data();
  if (data.IsDrawn()) ScaleFloor = ScanFloor(data);
  DrawScan(data, surface, {.cut = cut, .steps = steps, .colour = colour}, area);
}

void wafer::D1Plot_Show_lblXY(std::span<Label* const> x, std::span<Label* const> y,
                              const ScanLine& cut) const {
  LabelScan(Data(), x, y, cut);
}

void wafer::draw_indicator(Surface& picture, Marker& marker, const ScanLine& cut) {
  EndsOf(cut);  // a cut beside the test circle ends here
  if (WaferDiameter == 0) WaferDiameter = 200;
  IndicateCut(WaferDiameter, picture, marker, cut);
}

void wafer::D1Plot_AdjustLines(Surface& surface, float left, float top, float width, float height) {
  DrawScanGrid(surface, left, top, width, height);
}

void wafer::Statistic(std::int16_t plot_type, Surface& bars, Surface& axes,
                      const HistogramChart& chart) {
  const HistogramPeaks peaks =
      DrawHistogram(Data(), static_cast<HistogramSide>(plot_type), bars, axes, chart,
                    {.count = HistoPeakCount, .gauss = GaussPeak});
  HistoPeakCount = peaks.count;
  GaussPeak = peaks.gauss;
}

void wafer::Statistic_Quer(bool right, Surface& bars, Surface& axes, const HistogramChart& chart) {
  Statistic(static_cast<std::int16_t>(right ? HistogramSide::Right : HistogramSide::Left), bars,
            axes, chart);
}

void wafer::FlatNotchShow(Label* label, Surface& surface, float& centre_x, float& centre_y, float,
                          float rotation, float inclination) const {
  const SurfacePoint centre = DrawOrientationMark(
      Data().HasNotch(), label, surface, {.rotation = rotation, .inclination = inclination});
  centre_x = centre.x;
  centre_y = centre.y;
}

void wafer::FlatNotchShow1(Label* label, Surface& surface, float centre_x, float centre_y,
                           float radius, float rotation, float inclination) const {
  DrawOpenOrientationMark(Data().HasNotch(), label, surface, {centre_x, centre_y}, radius,
                          {.rotation = rotation, .inclination = inclination});
}

}  // namespace discoplan
