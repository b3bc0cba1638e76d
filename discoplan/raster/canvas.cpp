// SPDX-License-Identifier: MIT
#include "discoplan/raster/canvas.h"

#include <algorithm>
#include <array>
#include <memory>
#include <utility>

#include "discoplan/raster/canvas_rows.h"

namespace discoplan {
namespace {

#ifdef __MINGW32__

/// Not yet filled. None are kept: MinGW frees what a thread has before it destroys it.
std::shared_ptr<Pixel[]> NewPixels(std::size_t count) {
  return std::shared_ptr<Pixel[]>(new Pixel[count]);
}

#else

/// Pixels of canvases that are gone, for the next ones of the same thread: to have them from the
/// system anew can take as long as to draw on them.
class SparePixels {
 public:
  ~SparePixels() { is_gone = true; }

  /// Not yet filled.
  static std::shared_ptr<Pixel[]> Take(std::size_t count) {
    std::unique_ptr<Pixel[]> pixels = is_gone ? nullptr : of_thread.Find(count);
    if (!pixels) pixels.reset(new Pixel[count]);
    return {pixels.release(), [count](Pixel* own) {
              std::unique_ptr<Pixel[]> spare(own);
              if (!is_gone && count <= kMostPixels) of_thread.Keep(std::move(spare), count);
            }};
  }

 private:
  static constexpr std::size_t kMostPixels = 1 << 20;  // of a block
  struct Block {
    std::unique_ptr<Pixel[]> pixels;
    std::size_t count = 0;
  };

  std::unique_ptr<Pixel[]> Find(std::size_t count) {
    for (Block& block : blocks_) {
      if (block.pixels && block.count == count) return std::move(block.pixels);
    }
    return nullptr;
  }
  /// As many as a plot takes; then in place of the one that has lain there longest.
  void Keep(std::unique_ptr<Pixel[]> pixels, std::size_t count) {
    auto place = std::find_if(blocks_.begin(), blocks_.end(),
                              [](const Block& block) { return !block.pixels; });
    if (place == blocks_.end()) place = blocks_.begin();
    *place = {std::move(pixels), count};
    std::rotate(place, place + 1, blocks_.end());
  }

  std::array<Block, 3> blocks_;
  static thread_local SparePixels of_thread;
  static thread_local bool is_gone;  // at the end of a thread, before the last of its canvases
};
thread_local SparePixels SparePixels::of_thread;
thread_local bool SparePixels::is_gone = false;

std::shared_ptr<Pixel[]> NewPixels(std::size_t count) { return SparePixels::Take(count); }

#endif

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
