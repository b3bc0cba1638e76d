// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cstdlib>

#include "discoplan/raster/canvas.h"
#include "discoplan/raster/canvas_rows.h"
#include "discoplan/raster/ellipse_walk.h"
#include "discoplan/raster/integer_math.h"

namespace discoplan {

namespace {

/// In half pixels from the centre, X to the right and Y upward.
struct Offset {
  std::int64_t x, y;
};

Int128 Cross(Offset u, Offset v) {
  return static_cast<Int128>(u.x) * v.y - static_cast<Int128>(u.y) * v.x;
}

Int128 Dot(Offset u, Offset v) {
  return static_cast<Int128>(u.x) * v.x + static_cast<Int128>(u.y) * v.y;
}

bool SameDirection(Offset u, Offset v) { return Cross(u, v) == 0 && Dot(u, v) > 0; }

/// Whether a ray that turns counter-clockwise from `from` meets `ray` before `to`; at once where
/// it starts there, while to `to` it turns at least a little and at most all the way round.
bool MeetsBefore(Offset from, Offset ray, Offset to) {
  if (SameDirection(from, ray) || SameDirection(from, to)) return true;
  const bool ray_in_upper_half = Cross(from, ray) > 0;
  const bool to_in_upper_half = Cross(from, to) > 0;
  return ray_in_upper_half == to_in_upper_half ? Cross(ray, to) > 0 : ray_in_upper_half;
}

/// The outline's next pixel counter-clockwise; `run` is the quadrant's row of `pixel`.
Offset NextPixel(Offset pixel, const EllipseRun& run, std::int64_t b) {
  // A pixel on an axis belongs to the quadrant that it leads into.
  int sign_x = pixel.x > 0 || (pixel.x == 0 && pixel.y < 0) ? 1 : -1;
  int sign_y = pixel.y > 0 || (pixel.y == 0 && pixel.x > 0) ? 1 : -1;
  std::int64_t x = std::abs(pixel.x);
  std::int64_t y = run.y;
  if (sign_x == sign_y) {
    if (x > run.inner) {
      x -= 2;
    } else if (y < b) {
      x = run.next_outer;
      y += 2;
    } else {
      sign_x = -sign_x;
    }
  } else {
    if (x < run.outer) {
      x += 2;
    } else if (y > b % 2) {
      x = run.previous_inner;
      y -= 2;
    } else {
      sign_y = -sign_y;
    }
  }
  return {sign_x * x, sign_y * y};
}

/// Both ends belong to it.
struct Range {
  std::int64_t first, last;
};

/// The visible pixels among `edges`, on the centre's higher side (`sign` 1) or lower side (-1), as
/// half pixels from the centre. A middle pixel is on both.
Range VisibleOffsets(Range edges, Range visible, int sign) {
  const std::int64_t twice_centre = edges.first + edges.last;
  const std::int64_t diameter = edges.last - edges.first;
  const std::int64_t low = 2 * visible.first - twice_centre;
  const std::int64_t high = 2 * visible.last - twice_centre;
  return {std::max(sign > 0 ? low : -high, diameter % 2),
          std::min(sign > 0 ? high : -low, diameter)};
}

}  // namespace

void Canvas::Ellipse(const PixelBox& box, const Pen& pen, const Brush& brush) {
  const Box64 sorted = Sorted(box);
  if (brush.visible) FillEllipse(sorted, brush.pixel);
  if (!pen.visible) return;
  if (pen.width > 1) {
    StrokeEllipse(sorted, pen, [](Offset, Offset) { return true; });
  } else {
    ThinEllipse(sorted, pen.pixel);
  }
}

void Canvas::Arc(const PixelBox& box, PixelPoint start, PixelPoint end, const Pen& pen) {
  if (!pen.visible) return;
  const Box64 sorted = Sorted(box);
  const auto ray = [&](const PixelPoint& point) {
    return Offset{2 * std::int64_t{point.x} - sorted.left - sorted.right,
                  sorted.top + sorted.bottom - 2 * std::int64_t{point.y}};
  };
  const Offset first = ray(start);
  const Offset last = ray(end);
  StrokeEllipse(sorted, pen, [&](Offset pixel, Offset next) {
    return MeetsBefore(first, pixel, last) && MeetsBefore(pixel, next, last);
  });
}

template <class Visit>
void Canvas::VisitEllipseRows(const Box64& box, std::int64_t margin, Visit visit) const {
  const std::int64_t a = box.right - box.left;
  const std::int64_t b = box.bottom - box.top;
  const Range visible = {-margin, height_ - 1 + margin};
  for (const int sign : {1, -1}) {
    const Range rows = VisibleOffsets({box.top, box.bottom}, visible, sign);
    if (rows.first > rows.last) continue;
    EllipseWalk walk(a, b, rows.first);
    for (; walk.Run().y < rows.last; walk.Advance()) visit(walk.Run(), sign);
    visit(walk.Run(), sign);
  }
}

void Canvas::FillEllipse(const Box64& box, Pixel pixel) {
  const std::int64_t x = box.left + box.right;
  const std::int64_t y = box.top + box.bottom;
  VisitEllipseRows(box, 0, [&](const EllipseRun& run, int sign) {
    FillRow(Row((y + sign * run.y) / 2), (x - run.outer) / 2, (x + run.outer) / 2 + 1, pixel);
  });
}

void Canvas::ThinEllipse(const Box64& box, Pixel pixel) {
  const std::int64_t x = box.left + box.right;
  const std::int64_t y = box.top + box.bottom;
  VisitEllipseRows(box, 0, [&](const EllipseRun& run, int sign) {
    Pixel* const row = Row((y + sign * run.y) / 2);
    FillRow(row, (x - run.outer) / 2, (x - run.inner) / 2 + 1, pixel);
    FillRow(row, (x + run.inner) / 2, (x + run.outer) / 2 + 1, pixel);
  });
}

/// A wide pen's disc around the pixel certainly takes in all corners, and so what is between them.
bool Canvas::IsCoveredFrom(PixelPoint pixel, int pen_width) const {
  constexpr std::int64_t kRounded = 2;
  const std::int64_t reach = pen_width / 2 - kRounded;
  const auto farthest = [](std::int64_t at, std::int64_t size) {
    return std::max(std::abs(at), std::abs(size - 1 - at));
  };
  const std::int64_t x = farthest(pixel.x, width_);
  const std::int64_t y = farthest(pixel.y, height_);
  return x <= reach && y <= reach && x * x + y * y <= reach * reach;
}

template <class Wanted>
void Canvas::StrokeEllipse(const Box64& box, const Pen& pen, Wanted wanted) {
  const std::int64_t b = box.bottom - box.top;
  const std::int64_t x = box.left + box.right;
  const std::int64_t y = box.top + box.bottom;
  const std::int64_t margin = std::max(pen.width, 1);
  const Range visible = {-margin, width_ - 1 + margin};
  const auto on_canvas = [&](Offset offset) {
    return PixelPoint{static_cast<std::int32_t>((x + offset.x) / 2),
                      static_cast<std::int32_t>((y - offset.y) / 2)};
  };
  bool covered = false;  // what follows would paint the same pixels again
  VisitEllipseRows(box, margin, [&](const EllipseRun& run, int sign) {
    for (const int side : {1, -1}) {
      if (covered) return;
      const Range columns = VisibleOffsets({box.left, box.right}, visible, side);
      const std::int64_t last = std::min(columns.last, run.outer);
      for (std::int64_t i = std::max(columns.first, run.inner); i <= last; i += 2) {
        const Offset pixel = {side * i, -sign * run.y};
        const Offset next = NextPixel(pixel, run, b);
        if (!wanted(pixel, next)) continue;
        Line(on_canvas(pixel), on_canvas(next), pen);
        covered = IsCoveredFrom(on_canvas(pixel), pen.width);
        if (covered) break;
      }
    }
  });
}

}  // namespace discoplan
