// SPDX-License-Identifier: MIT
#pragma once

/// The values along a straight cut through a wafer.
///
///     const ScanLine cut{.angle = 90};
///     DrawScan(data, picture, {.cut = cut, .steps = 88}, {});
///     const CutEnds ends = EndsOf(cut, data.test_diameter);

#include <cstdint>
#include <span>

#include "discoplan/base/colour.h"
#include "discoplan/export.h"
#include "discoplan/render/plot_area.h"

namespace discoplan {

class Label;
class Marker;
class Surface;
struct WaferData;

/// A straight cut across the test area: through the first point at an angle, or from the first
/// point to the second. Lengths in mm.
struct ScanLine {
  bool at_angle = true;
  float x1 = 0;
  float y1 = 0;
  float x2 = 0;
  float y2 = 0;
  std::int16_t angle = 0;  ///< In degrees; 0 is parallel to the Y axis.
};

/// Where a cut meets a circle around the wafer's centre, in the direction of the cut. In mm.
struct CutEnds {
  float ax;
  float ay;
  float bx;
  float by;
};

struct ScanCurve {
  ScanLine cut = {};
  std::int16_t steps = 88;  ///< Pieces of the curve, as long as each other.
  Colour colour = kBlack;
};

/// Ends the plot, here and in the next three, with `InvalidCall` for a cut beside the circle.
DISCOPLAN_EXPORT CutEnds EndsOf(const ScanLine& cut, float diameter);

/// Value at the lower edge of the plot.
DISCOPLAN_EXPORT float ScanFloor(const WaferData& data);

/// The curve over the whole surface or, in mode 1, over the rectangle in the surface's units; from
/// `ScanFloor` to `plot_maximum`, and beyond where values are. Nothing for three sites or less. The
/// plot ends at its first failing step, with `RunTimeError`.
DISCOPLAN_EXPORT void DrawScan(const WaferData& data, Surface& surface, const ScanCurve& settings,
                               const PlotArea& area);

/// Five values from `scale_floor` to `plot_maximum` and five positions along the cut.
DISCOPLAN_EXPORT void LabelScan(const WaferData& data, std::span<Label* const> x,
                                std::span<Label* const> y, const ScanLine& cut);

/// Gives the picture of a wafer a scale in mm around the wafer's centre, Y downward, and shows the
/// cut with the marker, from edge to edge and a little beyond.
DISCOPLAN_EXPORT void IndicateCut(float wafer_diameter, Surface& picture, Marker& marker,
                                  const ScanLine& cut);

/// Grid of four by four fields over the rectangle, kept as the background of a picture.
DISCOPLAN_EXPORT void DrawScanGrid(Surface& surface, float left, float top, float width,
                                   float height);

}  // namespace discoplan
