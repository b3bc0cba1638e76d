// SPDX-License-Identifier: MIT
#pragma once

/// The rows of an image for a device, made some at a time: less memory, which costs as much as the
/// work done in it.

#include <algorithm>
#include <cmath>
#include <span>
#include <utility>
#include <vector>

#include "discoplan/figures/shapes.h"

namespace discoplan::figures {

class ImageRows {
 public:
  /// In memory that was used before, if there is some.
  ImageRows(const ImageSource& source, const PixelGrid& grid, std::vector<Rgba> memory = {})
      : source_(source), grid_(grid), pixels_(std::move(memory)) {}

  /// The memory, for other rows.
  std::vector<Rgba> Take() { return std::move(pixels_); }

  const PixelGrid& Grid() const { return grid_; }

  /// Quick if rows are asked for in their order. Good until the next call.
  std::span<const Rgba> At(int row) {
    // With a row beyond on both sides, for those who look at neighbours.
    constexpr int kStrip = 64;
    const auto columns = static_cast<std::size_t>(grid_.columns);
    const int first = row / kStrip * kStrip - 1;
    if (first != first_) {
      PixelGrid strip = grid_;
      strip.top += first * grid_.pitch;
      strip.rows = std::min(kStrip + 2, grid_.rows + 1 - first);
      pixels_.resize(columns * (kStrip + 2));
      source_.Render(strip,
                     std::span(pixels_).first(columns * static_cast<std::size_t>(strip.rows)));
      first_ = first;
    }
    return std::span(pixels_).subspan(static_cast<std::size_t>(row - first) * columns, columns);
  }

 private:
  const ImageSource& source_;
  PixelGrid grid_;
  int first_ = -2;  // row of those that are there
  std::vector<Rgba> pixels_;
};

/// Pixels over an image's area.
inline PixelGrid GridOver(const ImageShape& shape, double pixels_per_point) {
  const auto count = [&](double length) {
    return std::max(1, static_cast<int>(std::ceil(length * pixels_per_point)));
  };
  return {shape.area.left, shape.area.top, 1 / pixels_per_point, count(shape.area.Width()),
          count(shape.area.Height())};
}

}  // namespace discoplan::figures
