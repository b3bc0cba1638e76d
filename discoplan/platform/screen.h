// SPDX-License-Identifier: MIT
#pragma once

namespace discoplan {

/// Resolution of a screen or another device. 1440 twips are an inch.
struct Screen {
  float twips_per_pixel_x = 15;
  float twips_per_pixel_y = 15;
};

}  // namespace discoplan
