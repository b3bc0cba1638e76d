// SPDX-License-Identifier: MIT
#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

#include "discoplan/raster/canvas.h"
#include "discoplan/raster/canvas_rows.h"
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
template <class Steps>
struct Side {
  std::int64_t top;
  std::int64_t bottom;
  std::int64_t x;
  Steps steps;

  /// Of the next row, from `top` on.
  std::int64_t NextCrossing() {
    const std::int64_t crossing = x + steps.Value();
    steps.Advance();
    return crossing;
  }
};

void Sort(std::int64_t* values, std::size_t count) {
  if (count > kFewCorners) return std::sort(values, values + count);
  for (std::size_t i = 1; i < count; ++i) {
    for (std::size_t j = i; j > 0 && values[j] < values[j - 1]; --j) {
      std::swap(values[j], values[j - 1]);
    }
  }
}

bool IsBox(std::span<const PixelPoint> p) {
  return p.size() == 4 &&
         ((p[0].y == p[1].y && p[1].x == p[2].x && p[2].y == p[3].y && p[3].x == p[0].x) ||
          (p[0].x == p[1].x && p[1].y == p[2].y && p[2].x == p[3].x && p[3].y == p[0].y));
}

}  // namespace

void Canvas::Polygon(std::span<const PixelPoint> points, const Pen& pen, const Brush& brush) {
  if (points.empty()) return;
  if (brush.visible) {
    if (IsBox(points)) {
      FillInside(Sorted({points[0].x, points[0].y, points[2].x, points[2].y}), brush.pixel);
    } else {
      FillPolygon(points, brush.pixel);
    }
  }
  if (pen.visible) StrokePolygon(points, pen);
}

void Canvas::StrokePolygon(std::span<const PixelPoint> points, const Pen& pen) {
  for (std::size_t i = 0; i + 1 < points.size(); ++i) Line(points[i], points[i + 1], pen);
  Line(points.back(), points.front(), pen);
}

void Canvas::FillPolygon(std::span<const PixelPoint> points, Pixel pixel) {
  Scratch<Point64> corners(points.size());
  std::transform(points.begin(), points.end(), corners.Data(), [](const PixelPoint& point) {
    return Point64{point.x, point.y};
  });
  FillCorners({corners.Data(), points.size()}, pixel);
}

void Canvas::FillCorners(std::span<const Point64> corners, Pixel pixel) {
  const bool near = std::all_of(corners.begin(), corners.end(), [](const Point64& corner) {
    return IsNear(corner.x) && IsNear(corner.y);
  });
  near ? FillSides<NearCeilSteps>(corners, pixel) : FillSides<CeilSteps>(corners, pixel);
}

template <class Steps>
void Canvas::FillSides(std::span<const Point64> corners, Pixel pixel) {
  Scratch<Side<Steps>> side_store(corners.size());
  Side<Steps>* const sides = side_store.Data();
  Side<Steps>* sides_end = sides;
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
                    Steps(0, lower.x - upper.x, lower.y - upper.y, top - upper.y)};
  }

  Scratch<Side<Steps>*> crossed_store(corners.size());
  Scratch<std::int64_t> crossing_store(corners.size());
  Side<Steps>** const crossed = crossed_store.Data();
  std::int64_t* const crossings = crossing_store.Data();
  for (std::int64_t y = first, next; y < end; y = next) {
    // Down to `next`, the same sides are crossed.
    next = end;
    std::size_t count = 0;
    for (Side<Steps>* side = sides; side != sides_end; ++side) {
      if (side->bottom <= y) continue;
      next = std::min(next, side->top > y ? side->top : side->bottom);
      if (side->top <= y) crossed[count++] = side;
    }
    if (count == 2) {
      for (std::int64_t row = y; row < next; ++row) {
        const auto [left, right] =
            std::minmax({crossed[0]->NextCrossing(), crossed[1]->NextCrossing()});
        FillRow(row, left, right, pixel);
      }
      continue;
    }
    for (std::int64_t row = y; row < next; ++row) {
      for (std::size_t i = 0; i < count; ++i) crossings[i] = crossed[i]->NextCrossing();
      Sort(crossings, count);
      for (std::size_t i = 0; i + 1 < count; i += 2) {
        FillRow(row, crossings[i], crossings[i + 1], pixel);
      }
    }
  }
}

}  // namespace discoplan
