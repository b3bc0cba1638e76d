// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "discoplan/render/surface.h"

namespace discoplan::app {

enum class Align { Left, Middle, Right };

/// A text on a page; `x` is where it begins, its middle or its end. Twips and points.
struct PageText {
  float x = 0;
  float y = 0;
  float size = 8;
  bool bold = false;
  Colour colour = kBlack;
  Align align = Align::Left;
  float most_width = 1e9F;  ///< A longer one ends in "..."
};

struct PageLine {
  SurfacePoint from;
  SurfacePoint to;
  Colour colour = kBlack;
  float width = 0;  ///< twips; a pixel at least
};

/// Texts, lines and boxes in twips on any surface, whatever state others left it in.
class PagePen {
 public:
  explicit PagePen(Surface& surface) : surface_(surface) {}

  void Write(const std::string& text, const PageText& place);
  float WidthOf(const std::string& text, float size, bool bold = false);
  void Line(const PageLine& line);
  void Fill(const SurfacePoint& from, const SurfacePoint& to, Colour colour);
  void Box(const SurfacePoint& from, const SurfacePoint& to, Colour colour, float width = 0);
  void Dot(const SurfacePoint& centre, float radius, Colour colour);

 private:
  void Prepare(float width);

  Surface& surface_;
};

}  // namespace discoplan::app
