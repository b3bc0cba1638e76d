// SPDX-License-Identifier: MIT
#pragma once

/// The contour map of a wafer.
///
///     if (!DrawContours(data, picture, {.radius = 200, .interval = 0.5F}, {})) SayTooClose();

#include <cstdint>

#include "discoplan/export.h"
#include "discoplan/render/plot_area.h"

namespace discoplan {

class Surface;
struct WaferData;

struct ContourSettings {
  std::int16_t radius = 0;         ///< Of the wafer's outline, in surface units.
  float interval = 1;              ///< Distance of the levels, in percent of the mean.
  std::int16_t mark_sites = 1;     ///< 1 marks the sites, 2 the points of the mesh, 3 nothing.
  std::int16_t resolution = 0;     ///< 0 for 121 points, 1 for 441, 2 by the number of sites.
  std::int16_t plot_colored = -1;  ///< -1 colours the curves, 0 leaves them black.
};

/// Curves through the mean and at equal distances above and below it; three sites or less have the
/// outline alone. False for levels too close to each other, which leave the outline alone as well.
/// Unlike the other plots this one ends at its first failing step, with `RunTimeError`.
[[nodiscard]] DISCOPLAN_EXPORT bool DrawContours(const WaferData& data, Surface& surface,
                                                 const ContourSettings& settings,
                                                 const PlotArea& area);

}  // namespace discoplan
