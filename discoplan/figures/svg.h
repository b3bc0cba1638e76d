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

/// Makes a PNG file of pixels 0xAARRGGBB in rows of `width`.
using PngMaker =
    std::function<std::vector<std::uint8_t>(std::span<const std::uint32_t> pixels, int width)>;

/// One user unit is a point. Images have `pixels_per_point`. Each text is held to the width that it
/// was measured with, whichever font a viewer has.
DISCOPLAN_EXPORT std::string ToSvg(const Figure& figure, double pixels_per_point,
                                   const PngMaker& png);

}  // namespace discoplan::figures
