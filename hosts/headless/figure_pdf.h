// SPDX-License-Identifier: MIT
#pragma once

/// Figures as PDF: paths as paths, text as text in an embedded font, written by libharu (zlib
/// licence), which is small and loads nothing but what pictures need already.

#include <cstdint>
#include <span>
#include <vector>

#include "discoplan/figures/shapes.h"
#include "hosts/headless/export.h"
#include "hosts/headless/freetype_text.h"

namespace discoplan {

/// One figure a page; one at least. Images have `pixels_per_point`. Raises `std::runtime_error` if
/// the file can't be made, as for a font that can't be embedded.
DISCOPLAN_HEADLESS_EXPORT std::vector<std::uint8_t> ToPdf(std::span<const figures::Figure> pages,
                                                          double pixels_per_point,
                                                          const FreeTypeText& text);

}  // namespace discoplan
