// SPDX-License-Identifier: MIT
#pragma once

#include "discoplan/raster/text_painter.h"
#include "hosts/activex/com.h"

namespace discoplan::activex {

/// The system's font; the caller deletes it.
HFONT NewFont(const Font& font, double pixels_per_point);

/// Text by the system's own fonts, smooth without colours.
class GdiText final : public TextPainter {
 public:
  double Width(const Font& font, double pixels_per_point, std::string_view text) const override;
  double Height(const Font& font, double pixels_per_point) const override;
  void Paint(Canvas& canvas, const Font& font, const TextPlacement& placement,
             std::string_view text) const override;
};

}  // namespace discoplan::activex
