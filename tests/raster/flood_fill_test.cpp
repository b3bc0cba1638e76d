// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>

#include "discoplan/raster/canvas.h"
#include "tests/raster/canvas_pictures.h"

namespace discoplan {
namespace {

TEST(FloodFill, StopsAtTheBoundary) {
  Canvas canvas(6, 5, kWhitePixel);
  canvas.Rectangle({1, 0, 5, 4}, kPen, kNoBrush);
  canvas.FloodFill({3, 2}, kBlackPixel, kBrush);
  const Rows inside = {".#####", ".#rrr#", ".#rrr#", ".#rrr#", ".#####"};
  EXPECT_EQ(Show(canvas), inside);
  canvas.FloodFill({1, 1}, kBlackPixel, kBrush);
  EXPECT_EQ(Show(canvas), inside);
  for (const PixelPoint outside : {PixelPoint{-1, 0}, {6, 0}, {0, -1}, {0, 5}, {kMax, kMin}}) {
    canvas.FloodFill(outside, kBlackPixel, kBrush);
  }
  canvas.FloodFill({0, 0}, kBlackPixel, kNoBrush);
  EXPECT_EQ(Show(canvas), inside);
  canvas.FloodFill({0, 0}, kBlackPixel, kBrush);
  EXPECT_EQ(Show(canvas), (Rows{"r#####", "r#rrr#", "r#rrr#", "r#rrr#", "r#####"}));
}

TEST(FloodFill, PassesNoDiagonal) {
  Canvas canvas(5, 5, kWhitePixel);
  canvas.Line({0, 0}, {5, 5}, kPen);
  canvas.FloodFill({0, 4}, kBlackPixel, kBrush);
  EXPECT_EQ(Show(canvas), (Rows{"#....", "r#...", "rr#..", "rrr#.", "rrrr#"}));
}

TEST(FloodFill, PassesPixelsOfItsOwnColour) {
  Canvas canvas(5, 3, kWhitePixel);
  canvas.FillBox({2, 0, 2, 2}, kRedPixel);
  canvas.FloodFill({0, 1}, kBlackPixel, kBrush);
  EXPECT_EQ(Show(canvas), Filled(5, 3, 'r'));
}

TEST(FloodFill, TakesTheBoundaryColour) {
  Canvas canvas(5, 3, kWhitePixel);
  canvas.FillBox({2, 0, 2, 2}, kRedPixel);
  canvas.FloodFill({0, 1}, kRedPixel, kBrush);
  EXPECT_EQ(Show(canvas), (Rows{"rrr..", "rrr..", "rrr.."}));
}

TEST(FloodFill, GoesRoundALongMaze) {
  // Walls in every second row with a gap at alternating ends: one path through all of it.
  constexpr int kSize = 1001;
  Canvas canvas(kSize, kSize, kWhitePixel);
  Canvas expected(kSize, kSize, kRedPixel);
  for (int y = 1; y < kSize; y += 2) {
    const int gap = y % 4 == 1 ? 1 : 0;
    for (Canvas* c : {&canvas, &expected})
      c->FillBox({1 - gap, y, kSize - 1 - gap, y}, kBlackPixel);
  }
  canvas.FloodFill({500, 0}, kBlackPixel, kBrush);
  EXPECT_TRUE(std::ranges::equal(canvas.Pixels(), expected.Pixels()));
}

}  // namespace
}  // namespace discoplan
