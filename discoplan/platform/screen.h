// SPDX-License-Identifier: MIT
#pragma once

namespace discoplan {

inline constexpr double kTwipsPerInch = 1440;
inline constexpr double kTwipsPerPoint = 20;
/// Of a screen that isn't scaled.
inline constexpr float kTwipsPerPixel = 15;

/// Resolution of a screen or another device.
struct Screen {
  float twips_per_pixel_x = kTwipsPerPixel;
  float twips_per_pixel_y = kTwipsPerPixel;
};

}  // namespace discoplan
