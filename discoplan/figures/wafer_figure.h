// SPDX-License-Identifier: MIT
#pragma once

/// The nine plots of a measured wafer as figures of today.
///
///     const std::vector<float> x = ..., y = ..., thickness = ...;  // mm, mm, nm
///     WaferPlot plot;
///     plot.sites = {x, y, thickness};
///     plot.diameter = 300;
///     const FigureText text("Arial");  // hosts/headless/save_figure.h
///     plot.quantity = "Oxide thickness";
///     plot.unit = "nm";
///     const Figure figure = MakeFigure(PlotKind::Map, plot, {.width = 360, .height = 270}, text);
///     const auto png = EncodeFigure(figure, FigureFormat::Png, 2, text);
///
/// No text of a figure lies on another or is cut: what has no room is shortened, made smaller or
/// left out, and what is left out is counted in words. A page may be as small as 150 x 110 points.

#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "discoplan/export.h"
#include "discoplan/figures/colour_map.h"
#include "discoplan/figures/shapes.h"
#include "discoplan/figures/value_field.h"

namespace discoplan::figures {

enum class PlotKind {
  Map,
  SigmaMap,
  Contours,
  Values,
  Surface,
  SigmaSurface,
  Bars,
  Histogram,
  LineScan
};

enum class Orientation { None, Notch, Flat };
enum class Side { Bottom, Left, Top, Right };

/// A cut in mm from the wafer's centre.
struct Cut {
  Point from;
  Point to;
};

/// What is plotted.
struct WaferPlot {
  SiteView sites;             ///< In mm from the centre, Y up. All values are finite.
  double diameter = 300;      ///< Of the wafer in mm.
  double edge_exclusion = 3;  ///< Width in mm of the ring at the rim that no map covers.
  Orientation orientation = Orientation::Notch;
  Side notch = Side::Bottom;
  std::string title;
  std::string quantity;       ///< "Thickness"
  std::string unit;           ///< "nm"
  std::string flag;           ///< What is outlying about it: "mean"; behind the title.
  std::string left_out;       ///< What of the data isn't there: "3 empty values left out".
  std::optional<double> low;  ///< Limits of the colour scale; the data's otherwise.
  std::optional<double> high;
  double sigma_range = 1;  ///< Of sigma maps: half the band's width in standard deviations.
  std::optional<Cut> cut;  ///< Of a line scan; along X through the centre otherwise.
  std::optional<double> lower_control;  ///< Control limits of a histogram.
  std::optional<double> upper_control;
  int bins = 0;  ///< Of a histogram; 0 is as many as the data call for.
  /// Gives what `MakeField` does for the sites, where somebody has it already.
  std::function<std::shared_ptr<const ValueField>(Interpolation)> field = {};
};

/// How it looks.
struct Style {
  double width = 360;  ///< Of the page, in points.
  double height = 270;
  double letters = 8;  ///< Size of plain text, in points.
  std::string font = "Arial";
  ColourMap colours = *FindColourMap(kDefaultColours);
  /// Values are differences: the middle of diverging colours is 0 even where all lie on one side.
  bool difference = false;
  int bands = 0;  ///< Steps of the colour scale; 0 is continuous.
  Interpolation interpolation = Interpolation::Smooth;
  bool dark = false;
  bool transparent = false;
  bool legend = true;
  bool site_dots = true;
  bool site_values = false;  ///< Beside the dots of a map.
  bool isolines = true;
  /// What the line of figures calls uniformity: the key of a figure of merit in per cent.
  std::string uniformity = "std_dev_percent";
  double rotation = 20;   ///< Of surfaces and bars as they are seen, in degrees,
  double elevation = 34;  ///< and from how high; 10 to 80.
  bool small = false;     ///< One of many: of the words only the title, mean and sigma.
};

DISCOPLAN_EXPORT Figure MakeFigure(PlotKind kind, const WaferPlot& plot, const Style& style,
                                   const TextMeasure& text);

/// Mean, standard deviation and extremes of values, summed with compensation.
struct Summary {
  std::size_t count = 0;
  double mean = 0;
  double sigma = 0;  ///< Sample standard deviation; 0 for a single value.
  double low = 0;
  double high = 0;
};
DISCOPLAN_EXPORT Summary Summarise(std::span<const float> values);

}  // namespace discoplan::figures
