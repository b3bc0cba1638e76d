// SPDX-License-Identifier: MIT
#pragma once

/// Figures as SVG 1.1: small, with text as text.

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <vector>

#include "discoplan/figures/shapes.h"

namespace discoplan::figures {

/// An opaque picture, to be asked for its rows of pixels 0xFFRRGGBB once, from top to bottom.
struct OpaqueRows {
  int width = 0;
  int height = 0;
  std::function<std::span<const std::uint32_t>(int row)> row_at;
};
/// Makes a PNG file of it.
using PngMaker = std::function<std::vector<std::uint8_t>(const OpaqueRows& rows)>;

/// One user unit is a point. Images have `pixels_per_point`. Each text is held to the width that it
/// was measured with, whichever font a viewer has.
DISCOPLAN_EXPORT std::string ToSvg(const Figure& figure, double pixels_per_point,
                                   const PngMaker& png);

}  // namespace discoplan::figures
