// SPDX-License-Identifier: MIT
#pragma once

/// The values of a wafer as a surface over it.
///
///     DrawSurface(data, picture, {.view = {.grid_inclination = 50}}, {});

#include <cstdint>

#include "discoplan/export.h"
#include "discoplan/render/plot_area.h"

namespace discoplan {

class Surface;
struct WaferData;

/// How a surface over the wafer is seen. Angles in degrees.
struct SurfaceView {
  float x_resolution = 5;       ///< Cell side along the grid's first axis, in mm.
  float y_resolution = 5;       ///< Cell side along its second axis, in mm.
  float plot_scale = 40;        ///< Height of the largest value, in mm of the wafer.
  float grid_rotation = 40;     ///< Of the grid lines on the surface.
  float wafer_rotation = 40;    ///< Of the wafer, whatever the grid's rotation.
  float grid_inclination = 35;  ///< 90 is seen from straight above, 0 from the side.
};

struct SurfaceSettings {
  // Kinds of faces. The names of the interface for the second and third read the other way round.
  static constexpr std::int16_t kIntervalColours = 1;
  static constexpr std::int16_t kLinesOnly = 2;
  static constexpr std::int16_t kWhiteFaces = 3;
  static constexpr std::int16_t kSigmaColours = 4;

  SurfaceView view = {};
  std::int16_t kind = kIntervalColours;
  float sigma_range = 0;  ///< Half the band of the sigma colours, in standard deviations.
  bool printed = false;   ///< Seen from straight above the plate is grey, unless printed.
};

/// The surface on the plate that carries it, from the back to the front; three sites or less leave
/// nothing but a cleared picture. A step that fails is dropped. The result is the value at which
/// the scale of heights began.
DISCOPLAN_EXPORT float DrawSurface(const WaferData& data, Surface& surface,
                                   const SurfaceSettings& settings, const PlotArea& area);

}  // namespace discoplan
