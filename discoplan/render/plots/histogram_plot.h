// SPDX-License-Identifier: MIT
#pragma once

/// The distribution of a wafer's values.
///
///     const HistogramPeaks peaks = DrawHistogram(data, {}, bars, axes, {.width = 200, ...});

#include <cstdint>

#include "discoplan/export.h"

namespace discoplan {

class Surface;
struct WaferData;

/// How a histogram lies on its two surfaces, in pixels, or in twips in mode 1, which is print.
struct HistogramChart {
  float left = 0;  ///< Of the bars' surface on the surface around it, as is `top`.
  float top = 0;
  float width = 0;  ///< Of the chart, as is `height`.
  float height = 0;
  float bins = 10;
  std::int16_t gap = 4;  ///< Between chart and ticks.
  float plot_left = 0;   ///< Of the chart on the bars' surface, as is `plot_top`.
  float plot_top = 0;
  std::int16_t mode = 0;
};

/// What a histogram has found out; the counts of one may stand in for those of a wafer that has too
/// few sites for its own.
struct HistogramPeaks {
  std::int16_t count = 0;  ///< Highest count of a bin, and no less than the curve's.
  float gauss = 0;         ///< Height in counts of a curve whose own height were 1.
};

/// Where the value axis lies.
enum class HistogramSide : std::int16_t { Bottom = 1, Top = 2, Left = 3, Right = 4 };

/// Bars of the values between the plot limits and a Gauss curve onto the surface `bars`, ticks and
/// labels onto the surface `axes` around it; upright axes show the thread's control limits. A mark
/// that fails is left out. `peaks` are those of the histogram before.
DISCOPLAN_EXPORT HistogramPeaks DrawHistogram(const WaferData& data, HistogramSide side,
                                              Surface& bars, Surface& axes,
                                              const HistogramChart& chart,
                                              const HistogramPeaks& peaks = {});

}  // namespace discoplan
