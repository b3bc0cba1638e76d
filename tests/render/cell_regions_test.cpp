// SPDX-License-Identifier: MIT
#include "discoplan/render/cell_regions.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "discoplan/raster/canvas.h"

namespace discoplan {
namespace {

constexpr int kSide = 60;

ColourCell Cell(int left, int top, int right, int bottom, Colour colour) {
  return {{left, top}, {right, bottom}, colour};
}

std::vector<Pixel> Painted(std::span<const ColourCell> cells) {
  Canvas canvas(kSide, kSide, 0);
  for (const ColourCell& cell : cells) {
    canvas.FillBox({cell.corner.x, cell.corner.y, cell.opposite.x - 1, cell.opposite.y - 1},
                   cell.colour);
  }
  return {canvas.Pixels().begin(), canvas.Pixels().end()};
}

/// By the even-odd rule: what a ray to the left crosses.
std::vector<Pixel> Painted(std::span<const ColourRegion> regions) {
  std::vector<Pixel> pixels(kSide * kSide, 0);
  for (const ColourRegion& region : regions) {
    for (int y = 0; y < kSide; ++y) {
      for (int x = 0; x < kSide; ++x) {
        int crossings = 0;
        for (const auto& outline : region.outlines) {
          for (std::size_t i = 0; i < outline.size(); ++i) {
            const PixelPoint& a = outline[i];
            const PixelPoint& b = outline[(i + 1) % outline.size()];
            if (a.x == b.x && a.x <= x && std::min(a.y, b.y) <= y && y < std::max(a.y, b.y)) {
              ++crossings;
            }
          }
        }
        if (crossings % 2 == 1) pixels[static_cast<std::size_t>(y * kSide + x)] = region.colour;
      }
    }
  }
  return pixels;
}

TEST(CellRegions, OneCellIsItsOwnOutline) {
  const ColourCell cells[] = {Cell(2, 3, 5, 9, 7)};
  const auto regions = MergeCells(cells);
  ASSERT_EQ(regions.size(), 1U);
  EXPECT_EQ(regions[0].colour, 7U);
  ASSERT_EQ(regions[0].outlines.size(), 1U);
  ASSERT_EQ(regions[0].outlines[0].size(), 4U);
  EXPECT_EQ(regions[0].outlines[0][2].x, 5);
  EXPECT_EQ(regions[0].outlines[0][2].y, 9);
}

TEST(CellRegions, NeighboursOfOneColourBecomeOneShape) {
  std::vector<ColourCell> cells;
  for (int y = 0; y < 5; ++y) {
    for (int x = 0; x < 5; ++x) cells.push_back(Cell(10 * x, 10 * y, 10 * x + 10, 10 * y + 10, 1));
  }
  const auto regions = MergeCells(cells);
  ASSERT_EQ(regions.size(), 1U);
  ASSERT_EQ(regions[0].outlines.size(), 1U);
  EXPECT_EQ(regions[0].outlines[0].size(), 4U);
}

TEST(CellRegions, AShapeReachesUnderThoseThatFollow) {
  const ColourCell cells[] = {Cell(0, 0, 10, 10, 1), Cell(10, 0, 20, 10, 2),
                              Cell(20, 0, 30, 10, 3)};
  const auto regions = MergeCells(cells);
  ASSERT_EQ(regions.size(), 3U);
  for (std::size_t i = 0; i < 3; ++i) {
    const auto& outline = regions[i].outlines[0];
    EXPECT_EQ(std::ranges::min(outline, {}, &PixelPoint::x).x, static_cast<int>(10 * i));
    EXPECT_EQ(std::ranges::max(outline, {}, &PixelPoint::x).x, 30);
  }
}

TEST(CellRegions, HolesAndCornersThatTouchStay) {
  const ColourCell cells[] = {Cell(0, 0, 30, 30, 1), Cell(10, 10, 20, 20, 2),
                              Cell(30, 30, 40, 40, 1), Cell(20, 40, 30, 50, 2)};
  EXPECT_EQ(Painted(MergeCells(cells)), Painted(cells));
}

TEST(CellRegions, NothingMakesNothing) { EXPECT_TRUE(MergeCells({}).empty()); }

TEST(CellRegions, ShowWhatTheCellsShowWhateverLiesOverWhat) {
  std::mt19937 random(11);
  const auto below = [&](int end) {
    return static_cast<int>(random() % static_cast<unsigned>(end));
  };
  for (int round = 0; round < 300; ++round) {
    std::vector<ColourCell> cells;
    for (int i = below(40); i >= 0; --i) {
      const int x = below(kSide - 1), y = below(kSide - 1);
      cells.push_back(Cell(x, y, x + 1 + below(kSide - x - 1), y + 1 + below(kSide - y - 1),
                           static_cast<Colour>(1 + below(5))));
    }
    ASSERT_EQ(Painted(MergeCells(cells)), Painted(cells)) << round;
  }
}

}  // namespace
}  // namespace discoplan
