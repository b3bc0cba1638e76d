// SPDX-License-Identifier: MIT
#pragma once

/// Rows of a canvas, what all its shapes are filled by; for the canvas's own units alone.
///
/// A map's cells and a face's rows are a few pixels wide. So this is written to be compiled into
/// its callers, and rows of up to eight pixels are filled without a loop.

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>

#include "discoplan/raster/canvas.h"

namespace discoplan {

using PixelBlock = std::array<Pixel, 4>;

inline void StoreBlock(Pixel* at, const PixelBlock& block) {
  std::memcpy(at, block.data(), sizeof(block));
}

/// `count` pixels, at least one, in each of `rows` rows that are `pitch` pixels apart.
inline void FillRows(Pixel* pixels, std::int64_t rows, std::int64_t pitch, std::int64_t count,
                     Pixel pixel) {
  constexpr std::int64_t kBlock = PixelBlock{}.size();
  const PixelBlock block = {pixel, pixel, pixel, pixel};
  const std::int64_t end = rows * pitch;
  const std::int64_t last = count - kBlock;  // where the last block starts, maybe over another
  if (last < 0) {
    for (std::int64_t row = 0; row < end; row += pitch) {
      pixels[row] = pixels[row + count / 2] = pixels[row + count - 1] = pixel;
    }
  } else if (last <= kBlock) {
    for (std::int64_t row = 0; row < end; row += pitch) {
      StoreBlock(pixels + row, block);
      StoreBlock(pixels + row + last, block);
    }
  } else {
    for (std::int64_t row = 0; row < end; row += pitch) {
      for (std::int64_t i = 0; i < last; i += kBlock) StoreBlock(pixels + row + i, block);
      StoreBlock(pixels + row + last, block);
    }
  }
}

inline Canvas::Box64 Canvas::Sorted(const PixelBox& box) {
  return {std::min(box.left, box.right), std::min(box.top, box.bottom),
          std::max(box.left, box.right), std::max(box.top, box.bottom)};
}

inline void Canvas::FillInside(const Box64& box, Pixel pixel) {
  const std::int64_t left = std::max<std::int64_t>(box.left, 0);
  const std::int64_t top = std::max<std::int64_t>(box.top, 0);
  const std::int64_t right = std::min<std::int64_t>(box.right, width_);
  const std::int64_t bottom = std::min<std::int64_t>(box.bottom, height_);
  if (left < right && top < bottom) {
    FillRows(Row(top) + left, bottom - top, width_, right - left, pixel);
  }
}

inline void Canvas::FillRow(Pixel* row, std::int64_t left, std::int64_t end, Pixel pixel) {
  left = std::max<std::int64_t>(left, 0);
  end = std::min<std::int64_t>(end, width_);
  if (left < end) FillRows(row + left, 1, width_, end - left, pixel);
}

}  // namespace discoplan
