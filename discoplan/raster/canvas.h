// SPDX-License-Identifier: MIT
#pragma once

/// Pixels by fixed rules: polygons, lines, boxes, ellipses, arcs and flood fill on a 32-bit buffer.
///
///     Canvas canvas(640, 480, 0xFFFFFFFF);
///     canvas.Polygon(corners, {.pixel = 0xFF000000}, {.pixel = 0xFF00FF00});
///
/// The rules are those of the desktop platform's graphics device interface, so that a picture has
/// the same pixels on every host. Coordinates are whole pixels of any magnitude within 32 bits, X
/// to the right and Y downward; what lies outside is clipped, and costs no more than the canvas's
/// size. The arithmetic is exact. A copy costs nothing until it or its original is drawn on; else
/// nothing here allocates but `Resize` and what a polygon of many corners or a flood fill needs. Of
/// the canvases that are gone a thread keeps the memory of the last three, if they had a million
/// pixels at most, for others of their sizes.
///
/// One thread at a time uses a canvas together with its copies, which share its pixels. A copy that
/// has been written to, if only by asking for `Pixels()`, has pixels of its own and may go
/// elsewhere.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

#include "discoplan/export.h"
#include "discoplan/render/surface.h"

namespace discoplan {

/// 0xFFRRGGBB.
using Pixel = std::uint32_t;

/// Both corners belong to it; any two opposite corners will do.
struct PixelBox {
  std::int32_t left, top, right, bottom;
};

/// Width in pixels; below 1 counts as 1. A line from a point to itself paints nothing.
struct Pen {
  Pixel pixel = 0xFF000000;
  int width = 1;
  bool visible = true;
};

struct Brush {
  Pixel pixel = 0xFFFFFFFF;
  bool visible = true;
};

class DISCOPLAN_EXPORT Canvas {
 public:
  /// A negative size counts as 0.
  Canvas(int width, int height, Pixel fill);

  int Width() const { return width_; }
  int Height() const { return height_; }
  /// Rows from top to bottom, `Width()` pixels each; to be written to before the next copy is made.
  std::span<Pixel> Pixels() { return {OwnPixels(), Size()}; }
  std::span<const Pixel> Pixels() const { return {pixels_.get(), Size()}; }

  void Clear(Pixel fill);
  /// Keeps what fits at the upper left; the rest takes `fill`.
  void Resize(int width, int height, Pixel fill);

  /// Even-odd fill without right and bottom edges, then each side as a line, closing side included.
  void Polygon(std::span<const PixelPoint> points, const Pen& pen, const Brush& brush);
  /// From `a` to `b` without `b`; ties go to the smaller coordinate, so that both directions paint
  /// the same pixels but for the end. A wider pen has round caps and includes `b`.
  void Line(PixelPoint a, PixelPoint b, const Pen& pen);
  /// The polygon of the box's corners: an invisible pen leaves out the right and bottom edges.
  void Rectangle(const PixelBox& box, const Pen& pen, const Brush& brush);
  void FillBox(const PixelBox& box, Pixel pixel);
  /// The ellipse that touches the box's edges; the fill reaches as far as the outline's pixels.
  void Ellipse(const PixelBox& box, const Pen& pen, const Brush& brush);
  /// The part of the ellipse's outline from the ray through `start` counter-clockwise to the ray
  /// through `end` (both from the box's centre), end pixel left out; all of it but the end pixel
  /// where the two rays are one.
  void Arc(const PixelBox& box, PixelPoint start, PixelPoint end, const Pen& pen);
  /// 4-connected, from `start` up to pixels of `boundary`; nothing if `start` is one of them or
  /// lies outside.
  void FloodFill(PixelPoint start, Pixel boundary, const Brush& brush);

 private:
  struct Point64 {
    std::int64_t x, y;
  };
  struct Box64 {
    std::int64_t left, top, right, bottom;
  };

  inline static Box64 Sorted(const PixelBox& box);

  std::size_t Size() const {
    return static_cast<std::size_t>(width_) * static_cast<std::size_t>(height_);
  }
  Pixel* OwnPixels() {
    if (pixels_.use_count() != 1) Unshare();
    return pixels_.get();
  }
  void Unshare();
  Pixel* Row(std::int64_t y) { return OwnPixels() + y * width_; }
  /// Pixels from `left` up to but without `end` of the row that starts at `row`.
  inline void FillRow(Pixel* row, std::int64_t left, std::int64_t end, Pixel pixel);
  /// Without the box's right and bottom edges.
  inline void FillInside(const Box64& box, Pixel pixel);
  void StrokePolygon(std::span<const PixelPoint> points, const Pen& pen);
  template <class Point>
  void FillCorners(std::span<const Point> corners, Pixel pixel);
  template <class Steps, class Point>
  inline void FillSides(std::span<const Point> corners, Pixel pixel);
  inline void StrokeLine(Point64 a, Point64 b, const Pen& pen);
  template <class Steps>
  inline void ThinLine(Point64 a, Point64 b, Pixel pixel);
  void WideLine(Point64 a, Point64 b, int width, Pixel pixel);
  void FillEllipse(const Box64& box, Pixel pixel);
  void ThinEllipse(const Box64& box, Pixel pixel);
  /// Calls `visit(run, sign)` for each row of the box within `margin` of the canvas; `sign` is 1
  /// below the centre and -1 above it.
  template <class Visit>
  void VisitEllipseRows(const Box64& box, std::int64_t margin, Visit visit) const;
  bool IsCoveredFrom(PixelPoint pixel, int pen_width) const;
  /// Strokes from each outline pixel that `wanted(pixel, next)` accepts to its counter-clockwise
  /// neighbour; both are in half pixels from the centre, Y upward.
  template <class Wanted>
  void StrokeEllipse(const Box64& box, const Pen& pen, Wanted wanted);

  int width_;
  int height_;
  // Shared with copies until one of them is drawn on.
  std::shared_ptr<Pixel[]> pixels_;
};

}  // namespace discoplan
