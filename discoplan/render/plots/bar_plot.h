// SPDX-License-Identifier: MIT
#pragma once

/// The sites of a wafer as bars that stand on it.
///
///     DrawBars(data, picture, {.beam_scale = 2}, {});

#include "discoplan/export.h"
#include "discoplan/render/plot_area.h"

namespace discoplan {

class Surface;
struct WaferData;

/// How bars over the sites are seen. Angles in degrees.
struct BeamView {
  float beam_width = 5;         ///< Half a side of a bar's foot along the grid's first axis, in mm.
  float beam_height = 5;        ///< The same along its second axis.
  float beam_scale = 1;         ///< Millimetres of the wafer for a height of one unit.
  float grid_rotation = 40;     ///< Of the bars, 0 to 360.
  float wafer_rotation = 40;    ///< Of the sites around the wafer's centre.
  float grid_inclination = 35;  ///< 90 is seen from straight above, 0 from the side.
};

/// The bars on the tilted wafer, the hidden ones behind the others. They rise from `scale_floor`;
/// the class colours go by the values, whatever the height. A step that fails is dropped.
DISCOPLAN_EXPORT void DrawBars(const WaferData& data, Surface& surface, const BeamView& view,
                               const PlotArea& area);

}  // namespace discoplan
