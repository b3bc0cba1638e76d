// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "discoplan/base/numbers.h"

namespace discoplan {

/// 0x00BBGGRR, or a system colour with the highest bit set.
using Colour = std::uint32_t;

/// The 16-colour table that colours are named by.
inline constexpr Colour kPalette[16] = {
    0x000000, 0x800000, 0x008000, 0x808000, 0x000080, 0x800080, 0x008080, 0xC0C0C0,
    0x808080, 0xFF0000, 0x00FF00, 0xFFFF00, 0x0000FF, 0xFF00FF, 0x00FFFF, 0xFFFFFF,
};
inline constexpr Colour kBlack = kPalette[0];
inline constexpr Colour kLightRed = kPalette[12];
inline constexpr Colour kWhite = kPalette[15];

/// A colour that is held as a 32-bit float: exact up to 24 bits.
inline Colour ToColour(float colour) { return static_cast<Colour>(ToInt32(colour)); }

}  // namespace discoplan
