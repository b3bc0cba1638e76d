// SPDX-License-Identifier: MIT
#include "apps/discoplan/figure_command.h"

#include <algorithm>
#include <cmath>

#include "apps/discoplan/measured_wafer.h"
#include "apps/discoplan/output.h"
#include "discoplan/figures/ticks.h"
#include "hosts/headless/save_figure.h"

namespace discoplan::app {
namespace {

using figures::Figure;
using figures::Style;
using figures::WaferPlot;

void RefuseClassicOptions(const PlotRequest& plot) {
  const char* given = !plot.assignments.empty()      ? "--set"
                      : !plot.settings.empty()       ? "--settings"
                      : !plot.saved_settings.empty() ? "--save-settings"
                                                     : nullptr;
  if (given == nullptr) return;
  throw UsageError(std::string(given) +
                   " belongs to the classic look; give --look classic with it");
}

/// Differences and residuals are about 0.
figures::ColourMap ColoursOf(const PictureRequest& request) {
  const bool is_difference = !request.derive.minus.empty() || request.derive.residual;
  const std::string_view own = is_difference ? "vik" : figures::kDefaultColours;
  const std::string& asked = request.look.colours;
  return *figures::FindColourMap(asked.empty() ? own : std::string_view(asked));
}

Style StyleOf(const PictureRequest& request, const FigureSize& size) {
  const LookRequest& look = request.look;
  Style style{.width = size.width, .height = size.height, .colours = ColoursOf(request)};
  if (!look.font.empty()) style.font = look.font;
  style.bands = look.bands;
  style.interpolation =
      look.interpolation == "idw4" ? figures::Interpolation::Idw4 : figures::Interpolation::Smooth;
  style.dark = look.dark;
  style.transparent = look.transparent;
  style.legend = !request.plot.no_legend;
  style.site_values = look.values;
  style.isolines = !look.no_isolines;
  return style;
}

void RefuseFarSites(const PictureRequest& request, const Wafer& measured, double diameter) {
  constexpr double kTolerance = 1.005;  // of a site on the edge
  double farthest = 0;
  for (std::size_t i = 0; i < measured.x.size(); ++i) {
    farthest = std::max<double>(farthest, std::hypot(measured.x[i], measured.y[i]));
  }
  const std::string source = SourceOf(request.data.path.string(), measured);
  const std::string distance = figures::NumberText(farthest, 6) + " mm from the centre";
  if (farthest > kTolerance * diameter / 2) {
    throw CommandError(source + ": a site is " + distance + ", outside a wafer of " +
                       figures::NumberText(diameter, 6) + " mm across; give a larger --diameter");
  }
  if (farthest > 1000 && !request.data.diameter) {
    throw CommandError(source + ": a site is " + distance +
                       "; positions are millimetres, scale them, or give --diameter if they are");
  }
}

WaferPlot PlotOf(const PictureRequest& request, const Lot& lot, const Wafer& measured) {
  const LookRequest& look = request.look;
  WaferPlot plot;
  plot.sites = {measured.x, measured.y, measured.value};
  plot.diameter = measured.diameter;
  const double test = measured.test_diameter;
  if (test > plot.diameter) {
    throw UsageError("--test-diameter: " + figures::NumberText(test, 6) +
                     " mm is more than the wafer's " + figures::NumberText(plot.diameter, 6) +
                     " mm; give less, or a larger --diameter");
  }
  plot.edge_exclusion = (plot.diameter - test) / 2;
  if (request.plot.style) {
    plot.orientation =
        *request.plot.style == "flat" ? figures::Orientation::Flat : figures::Orientation::Notch;
  }
  const auto& sides = NotchSides();
  const auto side = std::find(sides.begin(), sides.end(), look.notch);
  plot.notch = static_cast<figures::Side>(side - sides.begin());
  const data::Parameter& parameter = lot.parameters[measured.parameter];
  plot.title = request.plot.caption.value_or(measured.name);
  plot.quantity = look.quantity.empty() ? parameter.name : look.quantity;
  plot.unit = look.units.empty() ? parameter.unit : look.units;
  if (!measured.left_out.empty()) plot.left_out = measured.SitesText();
  const std::string source = SourceOf(request.data.path.string(), measured);
  if (const auto limits = LimitsFor(request.plot, source, measured)) {
    plot.low = limits->first;
    plot.high = limits->second;
  }
  RefuseFarSites(request, measured, plot.diameter);
  return plot;
}

/// Both lists have the nine kinds in one order.
figures::PlotKind FigureKindOf(const ControlClass* kind) {
  const auto kinds = ControlClasses();
  return static_cast<figures::PlotKind>(std::find(kinds.begin(), kinds.end(), kind) -
                                        kinds.begin());
}

FigureSize SizeOf(const PictureRequest& request) {
  const PixelSize& size = request.size;
  if (size.width_mm > 0) {
    return FigureSize::Millimetres(size.width_mm, size.height_mm, request.dpi.value_or(300));
  }
  if (!request.dpi) return FigureSize::Pixels(size.width, size.height);
  return FigureSize::Millimetres(size.width * 25.4 / *request.dpi,
                                 size.height * 25.4 / *request.dpi, *request.dpi);
}

Figure SheetOf(std::vector<Figure> figures, const FigureSize& size) {
  if (figures.size() == 1) return std::move(figures.front());
  const SheetGrid grid = SheetGrid::For(figures.size());
  Figure sheet = {.width = grid.columns * size.width,
                  .height = grid.rows * size.height,
                  .background = figures.front().background,
                  .font = figures.front().font,
                  .title = figures.front().title,
                  .shapes = {}};
  for (std::size_t i = 0; i < figures.size(); ++i) {
    Place(std::move(figures[i]), {grid.ColumnOf(i) * size.width, grid.RowOf(i) * size.height},
          sheet);
  }
  return sheet;
}

FigureFormat FigureFormatOf(const std::string& path) {
  switch (FormatOf(path)) {
    case FileFormat::Pdf:
      return FigureFormat::Pdf;
    case FileFormat::Svg:
      return FigureFormat::Svg;
    case FileFormat::Png:
      break;
  }
  return FigureFormat::Png;
}

}  // namespace

void PlotFigures(const PictureRequest& request) {
  const FigureFormat format = FigureFormatOf(request.output);
  RefuseClassicOptions(request.plot);
  const PlotKinds kinds = KindsOf(request.plot);
  RefuseOverwriting(request.plot, request.output,
                    {request.data.path.string(), request.derive.File()});
  const Lot lot = ReadDerived(request.data, request.derive);
  const Wafer& measured = OnlyWafer(lot, request.data);
  const WaferPlot plot = PlotOf(request, lot, measured);
  const FigureSize size = SizeOf(request);
  const Style style = StyleOf(request, size);
  const FigureText text(style.font);
  std::vector<Figure> figures;
  for (const ControlClass* kind : kinds) {
    figures.push_back(MakeFigure(FigureKindOf(kind), plot, style, text));
  }
  const Figure sheet = SheetOf(std::move(figures), size);
  WriteOutput(request.output, EncodeFigure(sheet, format, size.pixels_per_point, text));
}

}  // namespace discoplan::app
