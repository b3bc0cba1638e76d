// SPDX-License-Identifier: MIT
#include <algorithm>
#include <array>
#include <cstdlib>
#include <utility>

#include "discoplan/raster/canvas.h"
#include "discoplan/raster/canvas_rows.h"
#include "discoplan/raster/integer_math.h"

namespace discoplan {

template <class Steps>
inline void Canvas::ThinLine(Point64 a, Point64 b, Pixel pixel) {
  // A rather vertical line is walked as a rather horizontal one with X and Y exchanged.
  const bool steep = std::abs(b.y - a.y) > std::abs(b.x - a.x);
  std::int64_t length = width_, breadth = height_, along = 1, across = width_;
  if (steep) {
    std::swap(a.x, a.y);
    std::swap(b.x, b.y);
    std::swap(length, breadth);
    std::swap(along, across);
  }
  const int reversed = a.x > b.x ? 1 : 0;
  if (reversed) std::swap(a, b);
  const std::int64_t first = std::max<std::int64_t>(a.x + reversed, 0);
  const std::int64_t end = std::min(b.x + reversed, length);
  const std::int64_t run = b.x - a.x;
  // Rounded to nearest, a tie to the smaller coordinate: ceil(t - 1/2).
  Steps j(-run, 2 * (b.y - a.y), 2 * run, first - a.x);
  j += a.y;
  Pixel* const pixels = OwnPixels();
  for (std::int64_t i = first; i < end; ++i, j.Advance()) {
    // A negative one is large, too.
    if (static_cast<std::uint64_t>(j.Value()) < static_cast<std::uint64_t>(breadth)) {
      pixels[i * along + j.Value() * across] = pixel;
    }
  }
}

inline void Canvas::StrokeLine(Point64 a, Point64 b, const Pen& pen) {
  if (a.x == b.x && a.y == b.y) return;
  if (pen.width > 1) {
    WideLine(a, b, pen.width, pen.pixel);
  } else if (IsNear(a.x) && IsNear(a.y) && IsNear(b.x) && IsNear(b.y)) {
    ThinLine<NearCeilSteps>(a, b, pen.pixel);
  } else {
    ThinLine<CeilSteps>(a, b, pen.pixel);
  }
}

void Canvas::Line(PixelPoint a, PixelPoint b, const Pen& pen) {
  if (pen.visible) StrokeLine({a.x, a.y}, {b.x, b.y}, pen);
}

void Canvas::StrokePolygon(std::span<const PixelPoint> points, const Pen& pen) {
  PixelPoint from = points.front();
  for (const PixelPoint& to : points.subspan(1)) {
    StrokeLine({from.x, from.y}, {to.x, to.y}, pen);
    from = to;
  }
  StrokeLine({from.x, from.y}, {points.front().x, points.front().y}, pen);
}

void Canvas::WideLine(Point64 a, Point64 b, int width, Pixel pixel) {
  const std::int64_t dx = b.x - a.x;
  const std::int64_t dy = b.y - a.y;
  const std::int64_t half = width / 2;
  Point64 left, right;
  if (dy == 0) {
    left = {0, -half};
    right = {0, width - half};
  } else if (dx == 0) {
    left = {-half, 0};
    right = {width - half, 0};
  } else {
    // The whole part of the pen's extent across the line in X and Y; half of it goes to the left
    // rounded to nearest, and to the right rounded down plus one.
    const auto extent = [&](std::int64_t other) {
      const auto square = [](std::int64_t v) {
        return static_cast<UInt128>(v) * static_cast<UInt128>(v);
      };
      return FloorSqrt(static_cast<std::uint64_t>(square(width) * square(std::abs(other)) /
                                                  (square(std::abs(dx)) + square(std::abs(dy)))));
    };
    const std::int64_t x = extent(dy);
    const std::int64_t y = extent(dx);
    const int sign = (dx > 0) == (dy > 0) ? -1 : 1;
    left = {-((x + 1) / 2), -sign * ((y + 1) / 2)};
    right = {x / 2 + 1, sign * (y / 2 + 1)};
  }
  const std::array<Point64, 4> corners = {{{a.x + left.x, a.y + left.y},
                                           {a.x + right.x, a.y + right.y},
                                           {b.x + right.x, b.y + right.y},
                                           {b.x + left.x, b.y + left.y}}};
  FillCorners(std::span<const Point64>(corners), pixel);
  for (const Point64& end : {a, b}) {
    const std::int64_t x = end.x - half;
    const std::int64_t y = end.y - half;
    FillEllipse({x, y, x + width - 1, y + width - 1}, pixel);
  }
}

}  // namespace discoplan
