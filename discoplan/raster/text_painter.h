// SPDX-License-Identifier: MIT
#pragma once

/// Text on pictures: the one thing that each host draws with its own fonts.

#include <string_view>

#include "discoplan/base/variant.h"
#include "discoplan/render/surface.h"

namespace discoplan {

class Canvas;

/// Where and how a text stands on a canvas.
struct TextPlacement {
  double x = 0;  ///< Upper left corner, in pixels.
  double y = 0;
  double pixels_per_point = 96.0 / 72.0;
  Colour colour = 0;
  int canvas_top = 0;  ///< At what `y` the canvas begins, for one that is a strip of a picture.
};

class DISCOPLAN_EXPORT TextPainter {
 public:
  virtual ~TextPainter() = default;

  /// Advance width and line height in pixels, for the UTF-8 text in the font.
  virtual double Width(const Font& font, double pixels_per_point, std::string_view text) const = 0;
  virtual double Height(const Font& font, double pixels_per_point) const = 0;
  /// Paints smooth text without a background. What lies outside the canvas is clipped.
  virtual void Paint(Canvas& canvas, const Font& font, const TextPlacement& placement,
                     std::string_view text) const = 0;
};

}  // namespace discoplan
