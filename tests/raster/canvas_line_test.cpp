// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <random>
#include <utility>
#include <vector>

#include "discoplan/raster/canvas.h"
#include "tests/raster/canvas_pictures.h"

namespace discoplan {
namespace {

struct LineCase {
  const char* name;
  PixelPoint from;
  PixelPoint to;
  Pen pen;
  Rows expected;
};

class CanvasLineTest : public testing::TestWithParam<LineCase> {};

TEST_P(CanvasLineTest, GivesThePixels) {
  const LineCase& test = GetParam();
  EXPECT_EQ(Drawn(7, 5, [&](Canvas& c) { c.Line(test.from, test.to, test.pen); }), test.expected);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, CanvasLineTest,
    testing::Values(
        LineCase{"WithoutItsEnd",
                 {1, 2},
                 {5, 2},
                 kPen,
                 {".......", ".......", ".####..", ".......", "......."}},
        LineCase{"BackwardWithoutItsEnd",
                 {5, 2},
                 {1, 2},
                 kPen,
                 {".......", ".......", "..####.", ".......", "......."}},
        // y = 1/2, 3/2 at x = 1, 3 are ties.
        LineCase{"TieGoesUp",
                 {0, 0},
                 {6, 3},
                 kPen,
                 {"##.....", "..##...", "....##.", ".......", "......."}},
        LineCase{"TieGoesUpBackward",
                 {6, 3},
                 {0, 0},
                 kPen,
                 {".#.....", "..##...", "....##.", "......#", "......."}},
        LineCase{"TieGoesLeft",
                 {2, 0},
                 {0, 4},
                 kPen,
                 {"..#....", ".#.....", ".#.....", "#......", "......."}},
        LineCase{"PointIsNothing", {3, 2}, {3, 2}, kPen, kBlank},
        LineCase{"NoPen", {0, 0}, {6, 4}, kNoPen, kBlank},
        LineCase{"NoWidthIsWidthOne",
                 {1, 2},
                 {5, 2},
                 {.width = 0},
                 {".......", ".......", ".####..", ".......", "......."}},
        LineCase{"FarDiagonal",
                 {kMin, kMin},
                 {kMax, kMax},
                 kPen,
                 {"#......", ".#.....", "..#....", "...#...", "....#.."}},
        LineCase{"FarLevel",
                 {kMax, 3},
                 {kMin, 3},
                 kPen,
                 {".......", ".......", ".......", "#######", "......."}},
        LineCase{"FarUpright",
                 {2, kMin},
                 {2, kMax},
                 kPen,
                 {"..#....", "..#....", "..#....", "..#....", "..#...."}},
        LineCase{"FarAway", {kMax, kMin}, {kMax, kMax}, kPen, kBlank},
        LineCase{"PassesBy", {kMin, 0}, {kMax, kMax}, kPen, kBlank},
        LineCase{"WideLevel",
                 {2, 3},
                 {5, 3},
                 kWidePen,
                 {".......", ".......", ".#####.", ".#####.", "......."}},
        LineCase{"WideUpright",
                 {3, 1},
                 {3, 3},
                 kWidePen,
                 {"..##...", "..##...", "..##...", "..##...", "......."}},
        LineCase{"WidePointIsNothing", {3, 2}, {3, 2}, kWidePen, kBlank},
        LineCase{"WideFarLevel",
                 {kMin, 3},
                 {kMax, 3},
                 kWidePen,
                 {".......", ".......", "#######", "#######", "......."}},
        // A band from (-1, 1) to (1, -1) off the diagonal: columns y - 2 to y + 1 of row y.
        LineCase{"WideFarDiagonal",
                 {kMin, kMin},
                 {kMax, kMax},
                 kWidePen,
                 {"##.....", "###....", "####...", ".####..", "..####."}}),
    [](const auto& test) { return test.param.name; });

TEST(CanvasTest, LineFollowsTheRuleAtEveryMagnitude) {
  std::mt19937 engine(3);
  for (int round = 0; round < 4000; ++round) {
    const std::int32_t reach = kMax >> Random(engine, 0, 27);
    const auto coordinate = [&] { return Random(engine, -reach - 1, reach); };
    const PixelPoint a = {coordinate(), coordinate()};
    // Half of the lines end on the canvas.
    const PixelPoint b = round % 2 == 0 ? PixelPoint{coordinate(), coordinate()}
                                        : PixelPoint{Random(engine, 0, 22), Random(engine, 0, 16)};
    Rows expected = Filled(23, 17, '.');
    for (int y = 0; y < 17; ++y) {
      for (int x = 0; x < 23; ++x) {
        if (RuleDraws(a, b, x, y)) Set(expected, x, y, '#');
      }
    }
    ASSERT_EQ(Drawn(23, 17, [&](Canvas& c) { c.Line(a, b, kPen); }), expected) << "round " << round;
  }
}

TEST(CanvasTest, LineIsTheSameInBothDirectionsButForTheEnd) {
  std::mt19937 engine(4);
  for (int round = 0; round < 500; ++round) {
    const PixelPoint a = {Random(engine, -9, 40), Random(engine, -9, 40)};
    const PixelPoint b = {Random(engine, -9, 40), Random(engine, -9, 40)};
    Rows there = Drawn(32, 32, [&](Canvas& c) { c.Line(a, b, kPen); });
    Rows back = Drawn(32, 32, [&](Canvas& c) { c.Line(b, a, kPen); });
    Set(there, b.x, b.y, '#');
    Set(back, a.x, a.y, '#');
    EXPECT_EQ(there, back);
    EXPECT_EQ(Drawn(32, 32, [&](Canvas& c) { c.Line(a, b, kWidePen); }),
              Drawn(32, 32, [&](Canvas& c) { c.Line(b, a, kWidePen); }));
  }
}

}  // namespace
}  // namespace discoplan
