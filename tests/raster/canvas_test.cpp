// SPDX-License-Identifier: MIT
#include "discoplan/raster/canvas.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <random>
#include <thread>
#include <utility>
#include <vector>

#include "tests/raster/canvas_pictures.h"

namespace discoplan {
namespace {

TEST(CanvasTest, StartsFilledAndClears) {
  Canvas canvas(3, 2, kRedPixel);
  EXPECT_EQ(Show(canvas), (Rows{"rrr", "rrr"}));
  canvas.Clear(kBlackPixel);
  EXPECT_EQ(Show(canvas), (Rows{"###", "###"}));
}

TEST(CanvasTest, ResizeKeepsTheUpperLeft) {
  Canvas canvas(3, 3, kWhitePixel);
  canvas.Line({0, 0}, {3, 3}, kPen);
  canvas.Resize(5, 2, kRedPixel);
  EXPECT_EQ(Show(canvas), (Rows{"#..rr", ".#.rr"}));
  canvas.Resize(2, 3, kBlackPixel);
  EXPECT_EQ(Show(canvas), (Rows{"#.", ".#", "##"}));
  canvas.Resize(-1, 4, kBlackPixel);
  EXPECT_EQ(canvas.Width(), 0);
  EXPECT_EQ(canvas.Height(), 4);
  canvas.Resize(2, 1, kRedPixel);
  EXPECT_EQ(Show(canvas), (Rows{"rr"}));
}

TEST(CanvasTest, WhatIsDrawnOnACopyOrItsOriginalStaysThere) {
  using Draw = void (*)(Canvas&);
  constexpr Draw kDraws[] = {
      [](Canvas& c) { c.Clear(kRedPixel); },
      [](Canvas& c) { c.Pixels()[3] = kRedPixel; },
      [](Canvas& c) {
        c.Line({0, 0}, {2, 2}, kPen);
      },
      [](Canvas& c) {
        c.Line({0, 0}, {2, 2}, kWidePen);
      },
      [](Canvas& c) {
        c.FillBox({0, 0, 1, 1}, kRedPixel);
      },
      [](Canvas& c) {
        c.Rectangle({0, 0, 2, 2}, kNoPen, kBrush);
      },
      [](Canvas& c) {
        c.Polygon(std::array<PixelPoint, 3>{{{0, 0}, {2, 0}, {0, 2}}}, kNoPen, kBrush);
      },
      [](Canvas& c) {
        c.Ellipse({0, 0, 2, 2}, kPen, kBrush);
      },
      [](Canvas& c) {
        c.FloodFill({0, 0}, kBlackPixel, kBrush);
      },
      [](Canvas& c) { c.Resize(2, 2, kRedPixel); },
  };
  const Rows blank = Filled(3, 3, '.');
  for (const Draw draw : kDraws) {
    const auto number = std::find(std::begin(kDraws), std::end(kDraws), draw) - std::begin(kDraws);
    Canvas original(3, 3, kWhitePixel);
    Canvas copy = original;
    draw(copy);
    EXPECT_EQ(Show(original), blank) << number;
    EXPECT_NE(Show(copy), blank) << number;
    const Rows drawn = Show(copy);
    original = copy;
    original.FillBox({0, 0, 2, 2}, kBlackPixel);
    EXPECT_EQ(Show(copy), drawn) << number;
  }
}

TEST(CanvasTest, TakesTheMemoryOfOneThatIsGone) {
  constexpr int kWidth = 101;  // as no other canvas here
  const Pixel* gone = nullptr;
  {
    Canvas canvas(kWidth, 7, 0xFF123456);
    gone = canvas.Pixels().data();
  }
  Canvas next(kWidth, 7, 0xFFABCDEF);
  EXPECT_EQ(std::as_const(next).Pixels().data(), gone);
  for (const Pixel pixel : next.Pixels()) EXPECT_EQ(pixel, 0xFFABCDEF);
  const Canvas copy = next;
  Canvas other(kWidth, 7, 0xFF000000);
  EXPECT_NE(std::as_const(other).Pixels().data(), gone) << "which isn't free";
  next.Clear(0xFF000001);
  EXPECT_EQ(copy.Pixels().front(), 0xFFABCDEF);
}

// Its thread may be gone too, or not have had a canvas yet.
TEST(CanvasTest, MayGoAwayInAnotherThread) {
  auto canvas = std::make_unique<Canvas>(103, 5, 0xFF00FF00);
  std::thread([&] { canvas.reset(); }).join();
  std::thread([&] { canvas = std::make_unique<Canvas>(103, 5, 0xFF0000FF); }).join();
  EXPECT_EQ(canvas->Pixels().front(), 0xFF0000FF);
  // Kept by the thread, and gone after what it keeps for others.
  std::thread([] {
    thread_local std::unique_ptr<Canvas> last;
    last = std::make_unique<Canvas>(103, 5, 0xFF0000FF);
  }).join();
}

TEST(CanvasTest, ZeroSizeTakesEveryCall) {
  for (const auto& [width, height] :
       std::vector<std::pair<int, int>>{{0, 0}, {0, 5}, {5, 0}, {-3, 2}}) {
    Canvas canvas(width, height, kWhitePixel);
    EXPECT_TRUE(canvas.Pixels().empty());
    for (const Pen& pen : {kPen, kWidePen}) {
      canvas.Polygon(std::array<PixelPoint, 3>{{{-5, -5}, {9, 0}, {0, 9}}}, pen, kBrush);
      canvas.Line({-4, 2}, {4, 3}, pen);
      canvas.Rectangle({0, 0, 4, 4}, pen, kBrush);
      canvas.Ellipse({-3, -3, 3, 3}, pen, kBrush);
      canvas.Arc({-3, -3, 3, 3}, {3, 0}, {0, -3}, pen);
    }
    canvas.FillBox({0, 0, 4, 4}, kRedPixel);
    canvas.FloodFill({0, 0}, kBlackPixel, kBrush);
    canvas.Clear(kRedPixel);
    EXPECT_TRUE(canvas.Pixels().empty());
  }
}

struct PolygonCase {
  const char* name;
  std::vector<PixelPoint> points;
  Pen pen;
  Brush brush;
  Rows expected;
};

class CanvasPolygonTest : public testing::TestWithParam<PolygonCase> {};

TEST_P(CanvasPolygonTest, GivesThePixels) {
  const PolygonCase& test = GetParam();
  EXPECT_EQ(Drawn(7, 5, [&](Canvas& c) { c.Polygon(test.points, test.pen, test.brush); }),
            test.expected);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, CanvasPolygonTest,
    testing::Values(
        PolygonCase{"LeavesOutRightAndBottom",
                    {{1, 1}, {5, 1}, {5, 4}, {1, 4}},
                    kNoPen,
                    kBrush,
                    {".......", ".rrrr..", ".rrrr..", ".rrrr..", "......."}},
        PolygonCase{"OutlineHasAllEdges",
                    {{1, 1}, {5, 1}, {5, 4}, {1, 4}},
                    kPen,
                    kBrush,
                    {".......", ".#####.", ".#rrr#.", ".#rrr#.", ".#####."}},
        PolygonCase{"OutlineAlone",
                    {{1, 1}, {5, 1}, {5, 4}, {1, 4}},
                    kPen,
                    kNoBrush,
                    {".......", ".#####.", ".#...#.", ".#...#.", ".#####."}},
        // Crossings of the slanted side x = 6 - 3 y / 2 are 6, 4.5, 3, 1.5: columns 0 to 5, 4,
        // 2, 1.
        PolygonCase{"RoundsCrossingsUp",
                    {{0, 0}, {6, 0}, {0, 4}},
                    kNoPen,
                    kBrush,
                    {"rrrrrr.", "rrrrr..", "rrr....", "rr.....", "......."}},
        // The two squares overlap in columns 2 and 3 of rows 1 to 2.
        PolygonCase{"EvenOdd",
                    {{0, 0}, {4, 0}, {4, 3}, {2, 3}, {2, 1}, {6, 1}, {6, 4}, {0, 4}},
                    kNoPen,
                    kBrush,
                    {"rrrr...", "rr..rr.", "rr..rr.", "rrrrrr.", "......."}},
        PolygonCase{"AllPointsEqual", {{3, 2}, {3, 2}, {3, 2}}, kPen, kBrush, kBlank},
        PolygonCase{"AllPointsEqualWide", {{3, 2}, {3, 2}, {3, 2}}, kWidePen, kBrush, kBlank},
        PolygonCase{"NoPoint", {}, kPen, kBrush, kBlank},
        PolygonCase{"OnePoint", {{3, 2}}, kPen, kBrush, kBlank},
        PolygonCase{"TwoPointsAreALine",
                    {{1, 2}, {5, 2}},
                    kPen,
                    kBrush,
                    {".......", ".......", ".#####.", ".......", "......."}},
        PolygonCase{"FlatIsALine",
                    {{1, 2}, {5, 2}, {5, 2}, {1, 2}},
                    kPen,
                    kBrush,
                    {".......", ".......", ".#####.", ".......", "......."}},
        PolygonCase{"UprightIsALine",
                    {{3, 1}, {3, 3}, {3, 3}, {3, 1}},
                    kPen,
                    kBrush,
                    {".......", "...#...", "...#...", "...#...", "......."}},
        PolygonCase{"FlatFillsNothing", {{1, 2}, {5, 2}, {5, 2}, {1, 2}}, kNoPen, kBrush, kBlank},
        PolygonCase{"UprightFillsNothing", {{3, 0}, {3, 4}, {3, 4}}, kNoPen, kBrush, kBlank},
        PolygonCase{"AroundEverything",
                    {{kMin, kMin}, {kMax, kMin}, {kMax, kMax}, {kMin, kMax}},
                    kPen,
                    kBrush,
                    Filled(7, 5, 'r')},
        PolygonCase{
            "FarAway", {{kMax - 9, 0}, {kMax, 0}, {kMax, 4}, {kMax - 9, 4}}, kPen, kBrush, kBlank},
        PolygonCase{"FarAbove", {{0, kMin}, {6, kMin}, {6, kMin + 5}}, kWidePen, kBrush, kBlank},
        // Below the diagonal x = y, which the outline covers.
        PolygonCase{"HalfPlane",
                    {{kMin, kMin}, {kMax, kMax}, {kMin, kMax}},
                    kPen,
                    kBrush,
                    {"#......", "r#.....", "rr#....", "rrr#...", "rrrr#.."}}),
    [](const auto& test) { return test.param.name; });

/// One canvas pixel of the fill rule: the sides that cross its row at or left of it are odd.
bool RuleFills(const std::vector<PixelPoint>& points, std::int64_t x, std::int64_t y) {
  bool inside = false;
  for (std::size_t i = 0; i < points.size(); ++i) {
    PixelPoint a = points[i];
    PixelPoint b = points[(i + 1) % points.size()];
    if (a.y > b.y) std::swap(a, b);
    if (y < a.y || y >= b.y) continue;
    const Int128 dx = std::int64_t{b.x} - a.x;
    const Int128 dy = std::int64_t{b.y} - a.y;
    if (dx * (y - a.y) <= dy * (x - a.x)) inside = !inside;
  }
  return inside;
}

TEST(CanvasTest, PolygonFillFollowsTheRuleAtEveryMagnitude) {
  std::mt19937 engine(1);
  for (int round = 0; round < 2000; ++round) {
    const std::int32_t reach = kMax >> Random(engine, 0, 27);
    // Beyond 16 corners the scratch memory is another.
    const int corners = Random(engine, 3, round % 10 == 0 ? 60 : 8);
    std::vector<PixelPoint> points;
    for (int i = 0; i < corners; ++i) {
      points.push_back({Random(engine, -reach - 1, reach), Random(engine, -reach - 1, reach)});
    }
    Rows expected = Filled(23, 17, '.');
    for (int y = 0; y < 17; ++y) {
      for (int x = 0; x < 23; ++x) {
        if (RuleFills(points, x, y)) Set(expected, x, y, 'r');
      }
    }
    ASSERT_EQ(Drawn(23, 17, [&](Canvas& c) { c.Polygon(points, kNoPen, kBrush); }), expected)
        << "round " << round;
  }
}

TEST(CanvasTest, CellsTileWithNeitherGapNorOverlap) {
  constexpr int kCells = 8;
  constexpr int kPitch = 9;
  constexpr int kSize = kCells * kPitch;
  std::mt19937 engine(2);
  for (int round = 0; round < 20; ++round) {
    // Nodes stay on the frame, and inside within a third of the pitch of their place.
    PixelPoint nodes[kCells + 1][kCells + 1];
    for (int i = 0; i <= kCells; ++i) {
      for (int j = 0; j <= kCells; ++j) {
        const auto shifted = [&](int k) {
          return k * kPitch + (k % kCells == 0 ? 0 : Random(engine, -3, 3));
        };
        nodes[i][j] = {shifted(i), shifted(j)};
      }
    }
    std::vector<int> times(kSize * kSize);
    for (int i = 0; i < kCells; ++i) {
      for (int j = 0; j < kCells; ++j) {
        const std::array<PixelPoint, 4> cell = {nodes[i][j], nodes[i + 1][j], nodes[i + 1][j + 1],
                                                nodes[i][j + 1]};
        Canvas canvas(kSize, kSize, kWhitePixel);
        canvas.Polygon(cell, kNoPen, kBrush);
        for (std::size_t k = 0; k < times.size(); ++k) times[k] += canvas.Pixels()[k] == kRedPixel;
      }
    }
    EXPECT_EQ(times, std::vector<int>(kSize * kSize, 1)) << "round " << round;
  }
}

/// What cells of maps and faces of surfaces look like, near every edge of the canvas.
TEST(CanvasTest, SmallQuadranglesFollowTheRulesAcrossEveryEdge) {
  std::mt19937 engine(5);
  for (int round = 0; round < 6000; ++round) {
    const std::int32_t left = Random(engine, -15, 25), top = Random(engine, -15, 19);
    const std::int32_t right = left + Random(engine, -3, 14), bottom = top + Random(engine, -3, 12);
    const std::int32_t off = round % 3;  // boxes, boxes with a corner moved, any quadrangles
    const auto moved = [&](std::int32_t x, std::int32_t y) {
      return PixelPoint{x + Random(engine, -off, off), y + Random(engine, -off, off)};
    };
    std::vector<PixelPoint> points = {moved(left, top), moved(right, top), moved(right, bottom),
                                      moved(left, bottom)};
    if (round % 2 == 0) std::swap(points[1], points[3]);
    const bool outlined = round / 6 % 2 == 0;
    Rows expected = Filled(23, 17, '.');
    for (int y = 0; y < 17; ++y) {
      for (int x = 0; x < 23; ++x) {
        if (RuleFills(points, x, y)) Set(expected, x, y, 'r');
        for (std::size_t i = 0; outlined && i < points.size(); ++i) {
          if (RuleDraws(points[i], points[(i + 1) % points.size()], x, y)) Set(expected, x, y, '#');
        }
      }
    }
    const Pen& pen = outlined ? kPen : kNoPen;
    ASSERT_EQ(Drawn(23, 17, [&](Canvas& c) { c.Polygon(points, pen, kBrush); }), expected)
        << "round " << round;
  }
}

TEST(CanvasTest, FilledBoxHasBothCorners) {
  const Rows expected = {".......", "..rrr..", "..rrr..", "..rrr..", "......."};
  EXPECT_EQ(Drawn(7, 5, [](Canvas& c) { c.FillBox({2, 1, 4, 3}, kRedPixel); }), expected);
  EXPECT_EQ(Drawn(7, 5, [](Canvas& c) { c.FillBox({4, 3, 2, 1}, kRedPixel); }), expected);
}

TEST(CanvasTest, FilledBoxWithEqualSidesIsALine) {
  EXPECT_EQ(Drawn(5, 3,
                  [](Canvas& c) {
                    c.FillBox({1, 1, 3, 1}, kRedPixel);
                  }),
            (Rows{".....", ".rrr.", "....."}));
  EXPECT_EQ(Drawn(5, 3,
                  [](Canvas& c) {
                    c.FillBox({3, 0, 3, 2}, kRedPixel);
                  }),
            (Rows{"...r.", "...r.", "...r."}));
  EXPECT_EQ(Drawn(5, 3,
                  [](Canvas& c) {
                    c.FillBox({3, 1, 3, 1}, kRedPixel);
                  }),
            (Rows{".....", "...r.", "....."}));
}

TEST(CanvasTest, FilledBoxIsClipped) {
  EXPECT_EQ(Drawn(5, 3,
                  [](Canvas& c) {
                    c.FillBox({kMin, kMin, kMax, kMax}, kRedPixel);
                  }),
            Filled(5, 3, 'r'));
  EXPECT_EQ(Drawn(5, 3,
                  [](Canvas& c) {
                    c.FillBox({kMin, 1, 1, kMax}, kRedPixel);
                  }),
            (Rows{".....", "rr...", "rr..."}));
  EXPECT_EQ(Drawn(5, 3,
                  [](Canvas& c) {
                    c.FillBox({5, 0, kMax, 2}, kRedPixel);
                  }),
            Filled(5, 3, '.'));
}

TEST(CanvasTest, RectangleHasBothCorners) {
  EXPECT_EQ(Drawn(5, 4,
                  [](Canvas& c) {
                    c.Rectangle({1, 0, 4, 3}, kPen, kBrush);
                  }),
            (Rows{".####", ".#rr#", ".#rr#", ".####"}));
  EXPECT_EQ(Drawn(5, 4,
                  [](Canvas& c) {
                    c.Rectangle({4, 3, 1, 0}, kPen, kNoBrush);
                  }),
            (Rows{".####", ".#..#", ".#..#", ".####"}));
}

}  // namespace
}  // namespace discoplan
