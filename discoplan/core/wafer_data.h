// SPDX-License-Identifier: MIT
#pragma once

/// What is known of one measured wafer: all that a plot or a figure reads. It draws nothing, and
/// nothing that reads it changes it.
///
///     const WaferData data = lot_wafer.Data();
///     DrawMap(data, picture, {.resolution = 2}, {});
///     float value = SiteInterpolator(data).At(12.5F, -40.0F);
///
/// It is made in no time: the sites and their cells stay with the wafer, which must neither change
/// its sites nor end before it. Whoever wants other limits, colours or diameters for one plot
/// changes them in a copy. Any number of threads may read one.

#include <array>

#include "discoplan/core/interpolation/measured_sites.h"

namespace discoplan {

struct WaferData : MeasuredSites {
  float flat_ratio = 0;  ///< 1 for a notch; else the share of the diameter above the flat.

  // Of the values.
  double mean = 0;
  double deviation = 0;  ///< Sample standard deviation.
  float maximum = 0;
  float minimum = 0;

  // Of the colour scale: the extremes of the values unless a host set others.
  float plot_maximum = 0;
  float plot_minimum = 0;
  float plot_range = 0;
  float scale_floor =
      0;  ///< Lower end of value scales, below `plot_minimum` if the limits coincide.

  // 0x00BBGGRR, held as 32-bit floats: exact up to 24 bits.
  std::array<float, 10> interval_colours{};  ///< From the highest class to the lowest.
  std::array<float, 3> aux_colours{};        ///< Above, within and below the sigma range.

  bool HasNotch() const { return flat_ratio == 1.0F; }
  bool HasPlotLimit() const { return plot_maximum != maximum || plot_minimum != minimum; }
};

/// Where the scale of a wafer of one constant value begins: strictly below the value.
constexpr double FloorUnderConstant(double value, bool negative) {
  return value * (negative ? 1.1 : 0.9) - 0.001;
}

}  // namespace discoplan
