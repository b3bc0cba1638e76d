// SPDX-License-Identifier: MIT
#include "apps/discoplan/figure_plots.h"

#include <algorithm>
#include <cmath>

#include "apps/discoplan/measured_wafer.h"
#include "apps/discoplan/output.h"
#include "discoplan/figures/ticks.h"

namespace discoplan::app {

using figures::Style;
using figures::WaferPlot;

namespace {

/// Differences and residuals are about 0.
bool IsDifference(const DeriveRequest& derive) { return !derive.minus.empty() || derive.residual; }

figures::ColourMap ColoursOf(const LookRequest& look, const DeriveRequest& derive) {
  const std::string_view own = IsDifference(derive) ? "vik" : figures::kDefaultColours;
  const std::string& asked = look.colours;
  return *figures::FindColourMap(asked.empty() ? own : std::string_view(asked));
}

}  // namespace

void RefuseClassicOptions(const PlotRequest& plot) {
  const char* given = !plot.assignments.empty()      ? "--set"
                      : !plot.settings.empty()       ? "--settings"
                      : !plot.saved_settings.empty() ? "--save-settings"
                                                     : nullptr;
  if (given == nullptr) return;
  throw UsageError(std::string(given) +
                   " belongs to the classic look; give --look classic with it");
}

Style StyleOf(const LookRequest& look, const DeriveRequest& derive, const FigureSize& size) {
  Style style{.width = size.width, .height = size.height, .colours = ColoursOf(look, derive)};
  style.difference = IsDifference(derive);
  if (!look.font.empty()) style.font = look.font;
  style.bands = look.bands;
  style.interpolation =
      look.interpolation == "idw4" ? figures::Interpolation::Idw4 : figures::Interpolation::Smooth;
  style.dark = look.dark;
  style.transparent = look.transparent;
  style.site_values = look.values;
  style.isolines = !look.no_isolines;
  if (!look.uniformity.empty()) style.uniformity = look.uniformity;
  if (!look.view.empty()) {
    style.rotation = look.view[0];
    style.elevation = look.view[1];
  }
  return style;
}

WaferPlot WaferPlotOf(const WaferSource& source, const LookRequest& look,
                      const std::optional<std::string>& style) {
  const Wafer& measured = source.wafer;
  WaferPlot plot;
  plot.sites = {measured.x, measured.y, measured.value};
  plot.diameter = measured.diameter;
  plot.edge_exclusion = (plot.diameter - measured.test_diameter) / 2;
  if (style) {
    plot.orientation = *style == "flat" ? figures::Orientation::Flat : figures::Orientation::Notch;
  }
  const auto& sides = NotchSides();
  const auto side = std::find(sides.begin(), sides.end(), look.notch);
  plot.notch = static_cast<figures::Side>(side - sides.begin());
  plot.title = measured.name;
  plot.quantity = look.quantity.empty() ? source.parameter.name : look.quantity;
  plot.unit = source.parameter.unit;
  if (!measured.left_out.empty()) plot.left_out = measured.SitesText();
  plot.sigma_range = look.sigma_range;
  plot.bins = look.bins;
  if (!look.control_limits.empty()) {
    plot.lower_control = look.control_limits[0];
    plot.upper_control = look.control_limits[1];
  }
  if (!look.cut.empty()) {
    plot.cut = figures::Cut{{look.cut[0], look.cut[1]}, {look.cut[2], look.cut[3]}};
  }
  const std::string named = SourceOf(source.data.path.string(), measured);
  RefuseFarSites(named, measured, plot.diameter);
  if (!source.data.diameter) RefuseOtherUnits(named, measured);
  return plot;
}

/// Both lists have the nine kinds in one order.
figures::PlotKind FigureKindOf(const ControlClass* kind) {
  const auto kinds = ControlClasses();
  return static_cast<figures::PlotKind>(std::find(kinds.begin(), kinds.end(), kind) -
                                        kinds.begin());
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

}  // namespace discoplan::app
