// SPDX-License-Identifier: MIT
#pragma once

/// The colours that a new wafer and a new control start with.

#include <array>

#include "discoplan/base/colour.h"

namespace discoplan {

/// By interval, from the highest values to the lowest.
inline constexpr std::array<Colour, 10> kIntervalColours = {
    kPalette[4], kPalette[12], kPalette[14], kPalette[10], kPalette[6],
    kPalette[2], kPalette[3],  kPalette[9],  kPalette[1],  kPalette[5],
};
/// Above, within and below a range.
inline constexpr std::array<Colour, 3> kRangeColours = {kPalette[4], kPalette[2], kPalette[1]};

}  // namespace discoplan
