// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace discoplan {

/// Device pixels, X to the right and Y downward.
struct PixelPoint {
  std::int32_t x = 0;
  std::int32_t y = 0;
};

/// The units of a surface, X to the right and Y downward.
struct SurfacePoint {
  float x = 0;
  float y = 0;
};

/// In mm from the wafer's centre, Y up.
struct WaferPoint {
  double x = 0;
  double y = 0;
};

}  // namespace discoplan
