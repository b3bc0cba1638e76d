// SPDX-License-Identifier: MIT
#pragma once

#include "discoplan/core/wafer_data.h"
#include "discoplan/render/plots/plot_frame.h"

namespace discoplan {

/// A stroke across `centre`, so far to each side.
inline LineCall Stroke(const SurfacePoint& centre, double half_width, double half_height,
                       Colour colour, LineShape shape) {
  return {.from = SurfacePoint{ToFloat(centre.x - half_width), ToFloat(centre.y - half_height)},
          .to = {ToFloat(centre.x + half_width), ToFloat(centre.y + half_height)},
          .colour = colour,
          .shape = shape};
}

/// Marks every site with a minus, or with a plus where its value is above the mean, black on a
/// white ground. `scale` is in pixels per mm, the wafer's centre in the middle of the frame.
void DrawSiteMarks(const WaferData& data, Surface& surface, PlotFrame& frame, double scale);

}  // namespace discoplan
