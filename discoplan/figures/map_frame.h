// SPDX-License-Identifier: MIT
#pragma once

/// A wafer seen from above on a page: where it lies, its rim, its edge, its sites, and the image of
/// the values between them.

#include <memory>
#include <vector>

#include "discoplan/figures/coverage.h"
#include "discoplan/figures/page.h"
#include "discoplan/figures/value_field.h"

namespace discoplan::figures {

/// From millimetres to points.
struct MapFrame {
  Point centre;            ///< In points.
  double scale = 1;        ///< Points for a millimetre.
  double radius = 0;       ///< Of the wafer, in mm.
  double test_radius = 0;  ///< Of what a map covers.

  Point At(double x, double y) const { return {centre.x + x * scale, centre.y - y * scale}; }
  double Length(double mm) const { return mm * scale; }
};

/// As large as fits into `area`.
MapFrame FrameIn(const Box& area, const WaferPlot& plot);

/// Corners in mm of the rim with its mark, and of the area that a map covers, for a wafer that is
/// drawn with a radius of so many points.
std::vector<Point> RimPoints(const WaferPlot& plot, double drawn_radius);
std::vector<Point> TestAreaPoints(const WaferPlot& plot, double drawn_radius);

/// Over the dots, one of which may lie on its notch.
void DrawRim(Page& page, const MapFrame& frame, const WaferPlot& plot);
/// A dashed ring where the edge exclusion begins.
void DrawEdge(Page& page, const MapFrame& frame, const WaferPlot& plot);
void DrawDots(Page& page, const MapFrame& frame, const WaferPlot& plot, double part = 1);

/// The values between the sites in the colours of a scale; what is far from every site is hatched.
void AddValueImage(Page& page, const MapFrame& frame, const WaferPlot& plot, const Scale& scale,
                   std::shared_ptr<const ValueField> field,
                   std::shared_ptr<const Coverage> coverage);

}  // namespace discoplan::figures
