// SPDX-License-Identifier: MIT
#include "discoplan/render/cell_regions.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <tuple>

#include "discoplan/base/algorithms.h"

namespace discoplan {
namespace {

/// More than a map of any resolution has. Cells in such disorder stay as they are.
constexpr std::size_t kMostFields = 4'000'000;
constexpr std::int32_t kNothing = -1;

std::vector<std::int32_t> SortedEdges(std::span<const ColourCell> cells,
                                      std::int32_t PixelPoint::*axis) {
  std::vector<std::int32_t> edges;
  edges.reserve(2 * cells.size());
  for (const ColourCell& cell : cells) {
    edges.push_back(cell.corner.*axis);
    edges.push_back(cell.opposite.*axis);
  }
  std::sort(edges.begin(), edges.end());
  edges.erase(std::unique(edges.begin(), edges.end()), edges.end());
  return edges;
}

std::size_t IndexOf(const std::vector<std::int32_t>& edges, std::int32_t edge) {
  return static_cast<std::size_t>(std::lower_bound(edges.begin(), edges.end(), edge) -
                                  edges.begin());
}

/// The fields between the edges of all cells, each with the number of its colour.
class FieldGrid {
 public:
  FieldGrid(std::vector<std::int32_t> xs, std::vector<std::int32_t> ys)
      : xs_(std::move(xs)),
        ys_(std::move(ys)),
        width_(xs_.size() - 1),
        height_(ys_.size() - 1),
        colours_(width_ * height_, kNothing) {}

  void Paint(const ColourCell& cell, std::int32_t colour) {
    const std::size_t end_x = IndexOf(xs_, cell.opposite.x);
    const std::size_t end_y = IndexOf(ys_, cell.opposite.y);
    for (std::size_t y = IndexOf(ys_, cell.corner.y); y < end_y; ++y) {
      for (std::size_t x = IndexOf(xs_, cell.corner.x); x < end_x; ++x) {
        colours_[y * width_ + x] = colour;
      }
    }
  }

  /// Around the fields of that colour and of all with higher numbers.
  std::vector<std::vector<PixelPoint>> OutlinesFrom(std::int32_t colour) const {
    std::vector<std::uint8_t> walked((width_ + 1) * (height_ + 1), 0);
    std::vector<std::vector<PixelPoint>> outlines;
    for (std::size_t y = 0; y <= height_; ++y) {
      for (std::size_t x = 0; x <= width_; ++x) {
        if (HasEdge(x, y, kRight, colour) && !(walked[At(x, y)] & 1 << kRight)) {
          outlines.push_back(Walk(x, y, colour, walked));
        }
      }
    }
    return outlines;
  }

 private:
  /// An edge runs with the inside on its right hand.
  enum Direction { kRight, kDown, kLeft, kUp };

  std::size_t At(std::size_t x, std::size_t y) const { return y * (width_ + 1) + x; }

  /// Of the field to the lower right of a crossing, moved by 0 or -1.
  bool Inside(std::size_t x, std::size_t y, std::size_t left, std::size_t up,
              std::int32_t colour) const {
    if (x < left || y < up || x - left >= width_ || y - up >= height_) return false;
    return colours_[(y - up) * width_ + x - left] >= colour;
  }

  bool HasEdge(std::size_t x, std::size_t y, Direction direction, std::int32_t colour) const {
    struct Sides {
      std::array<std::size_t, 2> inside, outside;  // fields to the left and up
    };
    static constexpr std::array<Sides, 4> kSides = {{
        {{0, 0}, {0, 1}},
        {{1, 0}, {0, 0}},
        {{1, 1}, {1, 0}},
        {{0, 1}, {1, 1}},
    }};
    const Sides& sides = kSides[direction];
    return Inside(x, y, sides.inside[0], sides.inside[1], colour) &&
           !Inside(x, y, sides.outside[0], sides.outside[1], colour);
  }

  std::vector<PixelPoint> Walk(std::size_t x, std::size_t y, std::int32_t colour,
                               std::vector<std::uint8_t>& walked) const {
    std::vector<PixelPoint> outline;
    Direction direction = kRight;
    Direction before = kUp;
    while (!(walked[At(x, y)] & 1 << direction)) {
      if (direction != before) outline.push_back({xs_[x], ys_[y]});
      walked[At(x, y)] = static_cast<std::uint8_t>(walked[At(x, y)] | 1 << direction);
      if (direction == kRight) ++x;
      if (direction == kLeft) --x;
      if (direction == kDown) ++y;
      if (direction == kUp) --y;
      before = direction;
      direction = Next(x, y, before, colour);
    }
    return outline;
  }

  /// Turns right where two fields meet at a corner alone.
  Direction Next(std::size_t x, std::size_t y, Direction before, std::int32_t colour) const {
    for (const int turn : {1, 0, 3}) {
      const auto direction = static_cast<Direction>((before + turn) % 4);
      if (HasEdge(x, y, direction, colour)) return direction;
    }
    return before;
  }

  const std::vector<std::int32_t> xs_;
  const std::vector<std::int32_t> ys_;
  const std::size_t width_;
  const std::size_t height_;
  std::vector<std::int32_t> colours_;
};

std::vector<PixelPoint> OutlineOf(const ColourCell& cell) {
  return {cell.corner,
          {cell.opposite.x, cell.corner.y},
          cell.opposite,
          {cell.corner.x, cell.opposite.y}};
}

}  // namespace

std::optional<ColourCell> CellOf(std::span<const PixelPoint> corners, const Surface& surface) {
  constexpr std::int16_t kNoOutline = 5;
  const bool is_plain = surface.DrawStyle() == kNoOutline && surface.FillStyle() == 0;
  if (!is_plain || corners.size() != 4) return {};
  const auto& [a, b, c, d] = std::tie(corners[0], corners[1], corners[2], corners[3]);
  const bool upright = a.x == b.x && b.y == c.y && c.x == d.x && d.y == a.y;
  const bool level = a.y == b.y && b.x == c.x && c.y == d.y && d.x == a.x;
  if (!upright && !level) return {};
  return ColourCell{{std::min(a.x, c.x), std::min(a.y, c.y)},
                    {std::max(a.x, c.x), std::max(a.y, c.y)},
                    surface.FillColor()};
}

std::vector<ColourRegion> MergeCells(std::span<const ColourCell> cells) {
  std::vector<ColourRegion> regions;
  std::vector<std::int32_t> xs = SortedEdges(cells, &PixelPoint::x);
  std::vector<std::int32_t> ys = SortedEdges(cells, &PixelPoint::y);
  if (xs.size() < 2 || ys.size() < 2) return regions;
  if (xs.size() * ys.size() > kMostFields) {
    for (const ColourCell& cell : cells) regions.push_back({cell.colour, {OutlineOf(cell)}});
    return regions;
  }
  FieldGrid grid(std::move(xs), std::move(ys));
  for (const ColourCell& cell : cells) {
    auto region = FindIn(regions, cell.colour, &ColourRegion::colour);
    if (region == regions.end()) {
      regions.push_back({cell.colour, {}});
      region = regions.end() - 1;
    }
    grid.Paint(cell, static_cast<std::int32_t>(region - regions.begin()));
  }
  for (std::size_t i = 0; i < regions.size(); ++i) {
    regions[i].outlines = grid.OutlinesFrom(static_cast<std::int32_t>(i));
  }
  return regions;
}

}  // namespace discoplan
