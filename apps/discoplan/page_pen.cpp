// SPDX-License-Identifier: MIT
#include "apps/discoplan/page_pen.h"

#include <algorithm>
#include <cmath>

namespace discoplan::app {

void PagePen::Prepare(float width) {
  const float pixel =
      surface_.IsPrinter() ? surface_.TwipsPerPixelX() : surface_.ScreenTwipsPerPixelX();
  surface_.ScaleMode(Surface::kTwips);
  surface_.DrawStyle(0);
  surface_.DrawWidth(static_cast<std::int16_t>(std::clamp(std::round(width / pixel), 1.0F, 99.0F)));
}

float PagePen::WidthOf(const std::string& text, float size, bool bold) {
  surface_.ScaleMode(Surface::kTwips);
  surface_.Font({.name = "Arial", .size = size, .bold = bold});
  return surface_.TextWidth(text);
}

void PagePen::Write(const std::string& text, const PageText& place) {
  std::string shown = text;
  float width = WidthOf(shown, place.size, place.bold);
  for (std::string kept = text; width > place.most_width && !kept.empty();) {
    do kept.pop_back();
    while (!kept.empty() && (static_cast<unsigned char>(kept.back()) & 0xC0) == 0x80);
    if (!kept.empty() && (static_cast<unsigned char>(kept.back()) & 0x80) != 0) kept.pop_back();
    shown = kept + "...";
    width = WidthOf(shown, place.size, place.bold);
  }
  const float shift = place.align == Align::Left    ? 0
                      : place.align == Align::Right ? width
                                                    : width / 2;
  surface_.FontTransparent(true);
  surface_.ForeColor(place.colour);
  surface_.CurrentX(place.x - shift);
  surface_.CurrentY(place.y);
  surface_.Print(shown);
}

void PagePen::Line(const PageLine& line) {
  Prepare(line.width);
  surface_.Line({.from = line.from, .to = line.to, .colour = line.colour});
}

void PagePen::Fill(const SurfacePoint& from, const SurfacePoint& to, Colour colour) {
  Prepare(0);
  surface_.Line({.from = from, .to = to, .colour = colour, .shape = LineShape::FilledBox});
}

void PagePen::Box(const SurfacePoint& from, const SurfacePoint& to, Colour colour, float width) {
  Prepare(width);
  surface_.FillStyle(1);
  surface_.Line({.from = from, .to = to, .colour = colour, .shape = LineShape::Box});
}

void PagePen::Dot(const SurfacePoint& centre, float radius, Colour colour) {
  Prepare(0);
  surface_.FillStyle(0);
  surface_.FillColor(colour);
  surface_.Circle({.centre = centre, .radius = radius, .colour = colour});
  surface_.FillStyle(1);
}

}  // namespace discoplan::app
