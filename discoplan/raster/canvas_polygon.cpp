// SPDX-License-Identifier: MIT
#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>
#include <vector>

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

void Sort(std::int64_t* values, std::size_t count) {
  if (count > kFewCorners) return std::sort(values, values + count);
  for (std::size_t i = 1; i < count; ++i) {
    for (std::size_t j = i; j > 0 && values[j] < values[j - 1]; --j) {
      std::swap(values[j], values[j - 1]);
    }
  }
}

/// It crosses the rows from `top` up to but without `bottom`.
template <class Steps>
struct Side {
  std::int64_t top;
  std::int64_t bottom;
  Steps x;

  std::int64_t NextCrossing() {
    const std::int64_t crossing = x.Value();
    x.Advance();
    return crossing;
  }
};

/// A polygon's sides as far as they cross the rows of a canvas.
template <class Steps>
class Sides {
 public:
  /// Rows down to `end` that the same sides cross.
  struct Band {
    std::int64_t end;
    std::span<Side<Steps>* const> crossed;
  };

  explicit Sides(std::size_t most) : sides_(most), crossed_(most), end_(sides_.Data()) {}

  void Add(const Side<Steps>& side) { *end_++ = side; }

  Band BandFrom(std::int64_t y, std::int64_t end) {
    Side<Steps>** crossed = crossed_.Data();
    for (Side<Steps>* side = sides_.Data(); side != end_; ++side) {
      if (side->bottom <= y) continue;
      end = std::min(end, side->top > y ? side->top : side->bottom);
      if (side->top <= y) *crossed++ = side;
    }
    return {end, {crossed_.Data(), crossed}};
  }

 private:
  Scratch<Side<Steps>> sides_;
  Scratch<Side<Steps>*> crossed_;
  Side<Steps>* end_;
};

/// Level and upright sides only, which most cells of maps have.
bool IsBox(std::span<const PixelPoint> p) {
  return p.size() == 4 &&
         ((p[0].y == p[1].y && p[1].x == p[2].x && p[2].y == p[3].y && p[3].x == p[0].x) ||
          (p[0].x == p[1].x && p[1].y == p[2].y && p[2].x == p[3].x && p[3].y == p[0].y));
}

}  // namespace

template <class Steps, class Point>
inline void Canvas::FillSides(std::span<const Point> corners, Pixel pixel) {
  Sides<Steps> sides(corners.size());
  std::int64_t first = height_;
  std::int64_t end = 0;
  Point64 previous = {corners.back().x, corners.back().y};
  for (const Point& corner : corners) {
    Point64 upper = previous;
    Point64 lower = {corner.x, corner.y};
    previous = lower;
    if (upper.y > lower.y) std::swap(upper, lower);
    const std::int64_t top = std::max<std::int64_t>(upper.y, 0);
    const std::int64_t bottom = std::min<std::int64_t>(lower.y, height_);
    if (top >= bottom) continue;
    first = std::min(first, top);
    end = std::max(end, bottom);
    Steps x(0, lower.x - upper.x, lower.y - upper.y, top - upper.y);
    sides.Add({top, bottom, x += upper.x});
  }

  Scratch<std::int64_t> crossings(corners.size());
  Pixel* const pixels = OwnPixels();
  for (std::int64_t y = first; y < end;) {
    const auto band = sides.BandFrom(y, end);
    if (band.crossed.size() == 2) {
      Side<Steps>& one = *band.crossed[0];
      Side<Steps>& other = *band.crossed[1];
      for (; y < band.end; ++y) {
        const std::int64_t a = one.NextCrossing();
        const std::int64_t b = other.NextCrossing();
        FillRow(pixels + y * width_, std::min(a, b), std::max(a, b), pixel);
      }
    }
    for (; y < band.end; ++y) {
      std::int64_t* crossing = crossings.Data();
      for (Side<Steps>* side : band.crossed) *crossing++ = side->NextCrossing();
      Sort(crossings.Data(), band.crossed.size());
      for (std::size_t i = 0; i + 1 < band.crossed.size(); i += 2) {
        FillRow(pixels + y * width_, crossings.Data()[i], crossings.Data()[i + 1], pixel);
      }
    }
  }
}

template <class Point>
void Canvas::FillCorners(std::span<const Point> corners, Pixel pixel) {
  const bool near = std::all_of(corners.begin(), corners.end(), [](const Point& corner) {
    return IsNear(corner.x) && IsNear(corner.y);
  });
  near ? FillSides<NearCeilSteps>(corners, pixel) : FillSides<CeilSteps>(corners, pixel);
}

template void Canvas::FillCorners(std::span<const Point64> corners, Pixel pixel);

void Canvas::Polygon(std::span<const PixelPoint> points, const Pen& pen, const Brush& brush) {
  if (points.empty()) return;
  if (brush.visible) {
    if (IsBox(points)) {
      FillInside(Sorted({points[0].x, points[0].y, points[2].x, points[2].y}), brush.pixel);
    } else {
      FillCorners(points, brush.pixel);
    }
  }
  if (pen.visible) StrokePolygon(points, pen);
}

}  // namespace discoplan
