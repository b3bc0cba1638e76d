// SPDX-License-Identifier: MIT
#pragma once

/// Canvases as rows of characters, for the raster's tests.

#include <cstdint>
#include <limits>
#include <random>
#include <string>
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

inline void Set(Rows& rows, std::int64_t x, std::int64_t y, char mark) {
  if (y < 0 || y >= static_cast<std::int64_t>(rows.size())) return;
  std::string& row = rows[static_cast<std::size_t>(y)];
  if (x >= 0 && x < static_cast<std::int64_t>(row.size())) row[static_cast<std::size_t>(x)] = mark;
}

inline std::int32_t Random(std::mt19937& engine, std::int32_t low, std::int32_t high) {
  return std::uniform_int_distribution<std::int32_t>(low, high)(engine);
}

}  // namespace discoplan
