// SPDX-License-Identifier: MIT
#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

#include "discoplan/raster/canvas.h"
#include "discoplan/raster/integer_math.h"

namespace discoplan {

namespace {

constexpr std::size_t kFewCorners = 16;

/// Room for `size` elements, on the stack where they are few.
template <class T>
class Scratch {
 public:
  explicit Scratch(std::size_t size) : many_(size > kFewCorners ? size : 0) {}
  T* Data() { return many_.empty() ? few_.data() : many_.data(); }

 private:
  std::array<T, kFewCorners> few_;
  std::vector<T> many_;
};

/// A side's crossings of the rows from `top` up to but without `bottom`.
struct Side {
  std::int64_t top;
  std::int64_t bottom;
  std::int64_t x;
  CeilSteps steps;
};

void Sort(std::int64_t* values, std::size_t count) {
  if (count > kFewCorners) return std::sort(values, values + count);
  for (std::size_t i = 1; i < count; ++i) {
    for (std::size_t j = i; j > 0 && values[j] < values[j - 1]; --j) {
      std::swap(values[j], values[j - 1]);
    }
  }
}

}  // namespace

void Canvas::Polygon(std::span<const PixelPoint> points, const Pen& pen, const Brush& brush) {
  if (points.empty()) return;
  if (brush.visible) {
    Scratch<Point64> corners(points.size());
    std::transform(points.begin(), points.end(), corners.Data(), [](const PixelPoint& point) {
      return Point64{point.x, point.y};
    });
    FillCorners({corners.Data(), points.size()}, brush.pixel);
  }
  if (!pen.visible) return;
  for (std::size_t i = 0; i + 1 < points.size(); ++i) Line(points[i], points[i + 1], pen);
  Line(points.back(), points.front(), pen);
}

void Canvas::FillCorners(std::span<const Point64> corners, Pixel pixel) {
  Scratch<Side> side_store(corners.size());
  Side* const sides = side_store.Data();
  Side* sides_end = sides;
  std::int64_t first = height_;
  std::int64_t end = 0;
  Point64 previous = corners.back();
  for (const Point64& corner : corners) {
    auto [upper, lower] = std::pair(previous, corner);
    previous = corner;
    if (upper.y > lower.y) std::swap(upper, lower);
    const std::int64_t top = std::max<std::int64_t>(upper.y, 0);
    const std::int64_t bottom = std::min<std::int64_t>(lower.y, height_);
    if (top >= bottom) continue;
    first = std::min(first, top);
    end = std::max(end, bottom);
    *sides_end++ = {top, bottom, upper.x,
                    CeilSteps(0, lower.x - upper.x, lower.y - upper.y, top - upper.y)};
  }

  Scratch<std::int64_t> crossing_store(corners.size());
  std::int64_t* const crossings = crossing_store.Data();
  for (std::int64_t y = first; y < end; ++y) {
    std::size_t count = 0;
    for (Side* side = sides; side != sides_end; ++side) {
      if (y < side->top || y >= side->bottom) continue;
      crossings[count++] = side->x + side->steps.Value();
      side->steps.Advance();
    }
    Sort(crossings, count);
    for (std::size_t i = 0; i + 1 < count; i += 2) {
      FillRow(y, crossings[i], crossings[i + 1], pixel);
    }
  }
}

}  // namespace discoplan
