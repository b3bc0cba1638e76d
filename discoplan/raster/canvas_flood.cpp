// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cstddef>
#include <vector>

#include "discoplan/raster/canvas.h"
#include "discoplan/raster/canvas_rows.h"

namespace discoplan {

void Canvas::FloodFill(PixelPoint start, Pixel boundary, const Brush& brush) {
  if (!brush.visible || start.x < 0 || start.x >= width_ || start.y < 0 || start.y >= height_) {
    return;
  }
  // The brush may have a colour that the region already holds, so what was reached is kept apart.
  const std::span<const Pixel> pixels = Pixels();
  std::vector<bool> reached(pixels.size());
  const auto open = [&](std::int64_t x, std::int64_t y) {
    const auto index = static_cast<std::size_t>(y * width_ + x);
    return !reached[index] && pixels[index] != boundary;
  };
  std::vector<Point64> seeds = {{start.x, start.y}};
  while (!seeds.empty()) {
    const auto [x, y] = seeds.back();
    seeds.pop_back();
    if (!open(x, y)) continue;
    std::int64_t left = x;
    std::int64_t end = x + 1;
    while (left > 0 && open(left - 1, y)) --left;
    while (end < width_ && open(end, y)) ++end;
    const auto row = reached.begin() + static_cast<std::ptrdiff_t>(y * width_);
    std::fill(row + static_cast<std::ptrdiff_t>(left), row + static_cast<std::ptrdiff_t>(end),
              true);
    FillRow(Row(y), left, end, brush.pixel);
    for (const std::int64_t neighbour : {y - 1, y + 1}) {
      if (neighbour < 0 || neighbour >= height_) continue;
      for (std::int64_t i = left; i < end; ++i) {
        const bool run_starts = i == left || !open(i - 1, neighbour);
        if (run_starts && open(i, neighbour)) seeds.push_back({i, neighbour});
      }
    }
  }
}

}  // namespace discoplan
