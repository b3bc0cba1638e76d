// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>

#include "discoplan/render/plots/surface_plot.h"

namespace discoplan {

/// A surface over a wafer on paper.
struct SurfacePrint {
  std::int16_t plot_type = 1;
  SurfaceView view;
  float sigma_range = 0.5F;
  std::string caption = {};
};

}  // namespace discoplan
