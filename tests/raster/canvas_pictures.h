// SPDX-License-Identifier: MIT
#pragma once

/// Canvases as rows of characters, for the raster's tests.

#include <cstdint>
#include <cstdlib>
#include <limits>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "discoplan/base/wide_int.h"
#include "discoplan/raster/canvas.h"

namespace discoplan {

inline constexpr std::int32_t kMin = std::numeric_limits<std::int32_t>::min();
inline constexpr std::int32_t kMax = std::numeric_limits<std::int32_t>::max();
inline constexpr Pixel kWhitePixel = 0xFFFFFFFF;
inline constexpr Pixel kBlackPixel = 0xFF000000;
inline constexpr Pixel kRedPixel = 0xFFFF0000;
inline constexpr Pen kPen;
inline constexpr Pen kWidePen = {.width = 2};
inline constexpr Pen kNoPen = {.visible = false};
inline constexpr Brush kBrush = {.pixel = kRedPixel};
inline constexpr Brush kNoBrush = {.visible = false};

using Rows = std::vector<std::string>;

/// '.' white, '#' black, 'r' red, a row a string.
inline Rows Show(const Canvas& canvas) {
  Rows rows;
  for (int y = 0; y < canvas.Height(); ++y) {
    std::string& row = rows.emplace_back();
    for (int x = 0; x < canvas.Width(); ++x) {
      const Pixel pixel = canvas.Pixels()[static_cast<std::size_t>(y * canvas.Width() + x)];
      row += pixel == kWhitePixel   ? '.'
             : pixel == kBlackPixel ? '#'
             : pixel == kRedPixel   ? 'r'
                                    : '?';
    }
  }
  return rows;
}

/// What `draw` gives on a white canvas.
template <class Draw>
Rows Drawn(int width, int height, Draw draw) {
  Canvas canvas(width, height, kWhitePixel);
  draw(canvas);
  return Show(canvas);
}

inline Rows Filled(int width, int height, char mark) {
  return Rows(static_cast<std::size_t>(height), std::string(static_cast<std::size_t>(width), mark));
}

inline const Rows kBlank = Filled(7, 5, '.');

inline void Set(Rows& rows, std::int64_t x, std::int64_t y, char mark) {
  if (y < 0 || y >= static_cast<std::int64_t>(rows.size())) return;
  std::string& row = rows[static_cast<std::size_t>(y)];
  if (x >= 0 && x < static_cast<std::int64_t>(row.size())) row[static_cast<std::size_t>(x)] = mark;
}

/// Whether the line's rule paints the pixel: on a line that is rather horizontal, y - 1/2 < the
/// exact y <= y + 1/2.
inline bool RuleDraws(PixelPoint from, PixelPoint to, std::int64_t x, std::int64_t y) {
  Int128 dx = std::int64_t{to.x} - from.x, dy = std::int64_t{to.y} - from.y;
  Int128 i = x - from.x, j = y - from.y;
  if (std::abs(std::int64_t{to.y} - from.y) > std::abs(std::int64_t{to.x} - from.x)) {
    std::swap(dx, dy);
    std::swap(i, j);
  }
  const Int128 length = dx < 0 ? -dx : dx;
  const Int128 along = dx < 0 ? -i : i;
  const Int128 off = 2 * (dy * along - j * length);
  return along >= 0 && along < length && -length < off && off <= length;
}

inline std::int32_t Random(std::mt19937& engine, std::int32_t low, std::int32_t high) {
  return std::uniform_int_distribution<std::int32_t>(low, high)(engine);
}

}  // namespace discoplan
