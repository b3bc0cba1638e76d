// SPDX-License-Identifier: MIT
#include "discoplan/raster/canvas.h"

#include <algorithm>
#include <array>
#include <utility>

#include "discoplan/raster/canvas_rows.h"

namespace discoplan {
namespace {

/// Not yet filled.
std::shared_ptr<Pixel[]> NewPixels(std::size_t count) {
  return std::shared_ptr<Pixel[]>(new Pixel[count]);
}

}  // namespace

Canvas::Canvas(int width, int height, Pixel fill)
    : width_(std::max(width, 0)), height_(std::max(height, 0)), pixels_(NewPixels(Size())) {
  Clear(fill);
}

void Canvas::Unshare() {
  auto own = NewPixels(Size());
  std::copy_n(pixels_.get(), Size(), own.get());
  pixels_ = std::move(own);
}

void Canvas::Clear(Pixel fill) { std::fill_n(OwnPixels(), Size(), fill); }

void Canvas::Resize(int width, int height, Pixel fill) {
  if (width == width_ && height == height_) return;
  Canvas resized(width, height, fill);
  const int columns = std::min(width_, resized.width_);
  const int rows = std::min(height_, resized.height_);
  for (std::int64_t y = 0; y < rows; ++y) {
    std::copy_n(pixels_.get() + y * width_, columns, resized.Row(y));
  }
  *this = std::move(resized);
}

void Canvas::Rectangle(const PixelBox& box, const Pen& pen, const Brush& brush) {
  const std::array<PixelPoint, 4> corners = {
      {{box.left, box.top}, {box.right, box.top}, {box.right, box.bottom}, {box.left, box.bottom}}};
  Polygon(corners, pen, brush);
}

void Canvas::FillBox(const PixelBox& box, Pixel pixel) {
  const Box64 sorted = Sorted(box);
  FillInside({sorted.left, sorted.top, sorted.right + 1, sorted.bottom + 1}, pixel);
}

}  // namespace discoplan
