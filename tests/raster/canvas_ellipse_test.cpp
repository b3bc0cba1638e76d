// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <random>
#include <vector>

#include "discoplan/raster/canvas.h"
#include "tests/raster/canvas_pictures.h"

namespace discoplan {
namespace {

struct EllipseBox {
  std::int64_t left, top, right, bottom;
};

/// The outline's columns from the centre outward, row by row from the equator to the pole, in half
/// pixels: the walk, step by step.
std::vector<std::array<std::int64_t, 2>> WalkEllipse(std::int64_t a, std::int64_t b) {
  const std::int64_t pole = b / 2;
  std::vector<std::array<std::int64_t, 2>> runs(static_cast<std::size_t>(pole) + 1, {a % 2, a % 2});
  const auto f = [&](std::int64_t x, std::int64_t y) {
    return Int128{b * b} * (x * x) + Int128{a * a} * (y * y) - Int128{a * a} * (b * b);
  };
  std::int64_t x = a, y = b % 2;
  runs[0] = {a, a};
  for (;;) {
    const bool inward = f(x, y + 2) + f(x - 2, y + 2) >= 0;
    const bool toward_pole = f(x - 2, y + 2) + f(x - 2, y) <= 0;
    if (inward) x -= 2;
    if (toward_pole) y += 2;
    if (x < 0) return runs;
    auto& run = runs[static_cast<std::size_t>(y / 2)];
    run = {x, toward_pole ? x : run[1]};
  }
}

Rows WalkedEllipse(int width, int height, const EllipseBox& box) {
  Rows rows = Filled(width, height, '.');
  const std::int64_t a = box.right - box.left, b = box.bottom - box.top;
  const auto runs = WalkEllipse(a, b);
  for (std::size_t i = 0; i < runs.size(); ++i) {
    const auto [inner, outer] = runs[i];
    const std::int64_t y = 2 * static_cast<std::int64_t>(i) + b % 2;
    for (const std::int64_t row :
         {(box.top + box.bottom - y) / 2, (box.top + box.bottom + y) / 2}) {
      for (std::int64_t x = -outer; x <= outer; x += 2) {
        Set(rows, (box.left + box.right + x) / 2, row, std::abs(x) < inner ? 'r' : '#');
      }
    }
  }
  return rows;
}

PixelBox ToBox(const EllipseBox& box) {
  const auto narrow = [](std::int64_t v) { return static_cast<std::int32_t>(v); };
  return {narrow(box.left), narrow(box.top), narrow(box.right), narrow(box.bottom)};
}

TEST(CanvasEllipseTest, EllipseIsTheMidpointWalk) {
  for (int a = 0; a <= 48; ++a) {
    for (int b = 0; b <= 48; ++b) {
      const EllipseBox box = {1, 1, 1 + a, 1 + b};
      ASSERT_EQ(Drawn(51, 51, [&](Canvas& c) { c.Ellipse(ToBox(box), kPen, kBrush); }),
                WalkedEllipse(51, 51, box))
          << a << " by " << b;
    }
  }
}

TEST(CanvasEllipseTest, EllipseIsTheMidpointWalkThroughAnyWindow) {
  std::mt19937 engine(5);
  for (int round = 0; round < 200; ++round) {
    const std::int32_t a = Random(engine, 0, 20000) >> Random(engine, 0, 15);
    const std::int32_t b = Random(engine, 0, 20000) >> Random(engine, 0, 15);
    // One point of the outline, by its angle, lies on the canvas.
    const double angle = Random(engine, 0, 6283) / 1000.0;
    const auto left = static_cast<std::int64_t>(10 - a * (1 + std::cos(angle)) / 2);
    const auto top = static_cast<std::int64_t>(8 - b * (1 + std::sin(angle)) / 2);
    const EllipseBox box = {left, top, left + a, top + b};
    ASSERT_EQ(Drawn(23, 17, [&](Canvas& c) { c.Ellipse(ToBox(box), kPen, kBrush); }),
              WalkedEllipse(23, 17, box))
        << box.left << " " << box.top << " " << box.right << " " << box.bottom;
  }
}

TEST(CanvasEllipseTest, HugeEllipses) {
  const auto drawn = [](const PixelBox& box, const Pen& pen) {
    return Drawn(7, 5, [&](Canvas& c) { c.Ellipse(box, pen, kBrush); });
  };
  EXPECT_EQ(drawn({kMin, kMin, kMax, kMax}, kPen), Filled(7, 5, 'r'));
  EXPECT_EQ(drawn({kMin, kMin, kMax, kMax}, kWidePen), Filled(7, 5, 'r'));
  EXPECT_EQ(drawn({kMin, kMin, 0, 0}, kPen), Filled(7, 5, '.'));
  // Two pixels from a vertex the outline of radius 2^30 has left its tangent by 2^-29 pixels.
  const Rows left_vertex = Rows(5, "..#rrrr");
  const Rows top_vertex = {".......", ".......", "#######", "rrrrrrr", "rrrrrrr"};
  EXPECT_EQ(drawn({2, -(1 << 30), kMax, 1 << 30}, kPen), left_vertex);
  EXPECT_EQ(drawn({-(1 << 30), 2, 1 << 30, kMax}, kPen), top_vertex);
  EXPECT_EQ(drawn({2, -(1 << 30), kMax, 1 << 30}, kWidePen), Rows(5, ".##rrrr"));
  // Flat to the utmost: the row of the centre and nothing else.
  EXPECT_EQ(drawn({kMin, 3, kMax, 3}, kPen),
            (Rows{".......", ".......", ".......", "#######", "......."}));
  EXPECT_EQ(drawn({4, kMin, 4, kMax}, kPen), Rows(5, "....#.."));
}

TEST(CanvasEllipseTest, EllipseFillCoversTheOutlineThatIsNotDrawn) {
  EXPECT_EQ(Drawn(5, 5,
                  [](Canvas& c) {
                    c.Ellipse({0, 0, 4, 4}, kNoPen, kBrush);
                  }),
            (Rows{".rrr.", "rrrrr", "rrrrr", "rrrrr", ".rrr."}));
  EXPECT_EQ(Drawn(5, 5,
                  [](Canvas& c) {
                    c.Ellipse({4, 4, 0, 0}, kPen, kNoBrush);
                  }),
            (Rows{".###.", "#...#", "#...#", "#...#", ".###."}));
  EXPECT_EQ(Drawn(3, 3,
                  [](Canvas& c) {
                    c.Ellipse({1, 1, 1, 1}, kPen, kBrush);
                  }),
            (Rows{"...", ".#.", "..."}));
}

struct ArcCase {
  const char* name;
  PixelPoint start;
  PixelPoint end;
  Rows expected;
};

class CanvasArcTest : public testing::TestWithParam<ArcCase> {};

TEST_P(CanvasArcTest, GivesThePixels) {
  const ArcCase& test = GetParam();
  EXPECT_EQ(Drawn(5, 5,
                  [&](Canvas& c) {
                    c.Arc({0, 0, 4, 4}, test.start, test.end, kPen);
                  }),
            test.expected);
}

// Of the outline's twelve pixels, those from the start up to the end's are counted, and the last
// of them is left out.
INSTANTIATE_TEST_SUITE_P(
    Cases, CanvasArcTest,
    testing::Values(
        ArcCase{"RightToTop", {9, 2}, {2, -9}, {".....", "....#", "....#", ".....", "....."}},
        ArcCase{"TopToLeft", {2, -9}, {-9, 2}, {".##..", ".....", ".....", ".....", "....."}},
        ArcCase{"LeftToBottom", {-9, 2}, {2, 9}, {".....", ".....", "#....", "#....", "....."}},
        ArcCase{"BottomToRight", {2, 9}, {9, 2}, {".....", ".....", ".....", ".....", "..##."}},
        ArcCase{"ThreeQuarters", {2, -9}, {9, 2}, {".##..", "#....", "#....", "#....", ".###."}},
        ArcCase{
            "AllRoundFromTheRight", {9, 2}, {9, 2}, {".###.", "#...#", "#...#", "#....", ".###."}},
        ArcCase{"FarRays", {kMax, 2}, {2, kMin}, {".....", "....#", "....#", ".....", "....."}},
        ArcCase{"BetweenTwoPixels", {2000, 1}, {2000, 0}, Filled(5, 5, '.')}),
    [](const auto& test) { return test.param.name; });

TEST(CanvasEllipseTest, HugeArcs) {
  // The left vertex lies at x = 2, row 2; the arc ends there on its way down, the end pixel out.
  const auto arc = [](PixelPoint start, PixelPoint end) {
    return Drawn(7, 5, [&](Canvas& c) {
      c.Arc({2, 2 - (1 << 30), kMax - 1, 2 + (1 << 30)}, start, end, kPen);
    });
  };
  const Rows above = {"..#....", ".......", ".......", ".......", "......."};
  const Rows below = {".......", ".......", "..#....", "..#....", "..#...."};
  EXPECT_EQ(arc({1 << 30, kMin}, {kMin, 2}), above);
  EXPECT_EQ(arc({kMin, 2}, {1 << 30, kMax}), below);
}

TEST(CanvasEllipseTest, WideArcHasItsEnd) {
  // From (4, 2) by (4, 1) to (3, 0), which gets its cap. The slanted part is the square round
  // (3, 2), (5, 0), (4, -1), (2, 1): columns 3 to 4 of row 0, 2 to 3 of row 1. The caps are columns
  // 3 to 4 of rows 0 to 2, and 2 to 3 of row 0.
  EXPECT_EQ(Drawn(6, 4,
                  [](Canvas& c) {
                    c.Arc({0, 0, 4, 4}, {9, 2}, {2, -9}, kWidePen);
                  }),
            (Rows{"..###.", "..###.", "...##.", "......"}));
}

TEST(CanvasEllipseTest, ArcOfAnEvenBox) {
  // The pixels right of the centre (3/2, 3/2) lie at 18 degrees above and below its level; the arc
  // starts and ends between them.
  EXPECT_EQ(Drawn(4, 4,
                  [](Canvas& c) {
                    c.Arc({0, 0, 3, 3}, {9, 1}, {9, 1}, kPen);
                  }),
            (Rows{".##.", "#..#", "#...", ".##."}));
}

TEST(CanvasEllipseTest, WideOutlineIsTheSameInAnyWindow) {
  Canvas whole(64, 64, kWhitePixel);
  const PixelBox box = {8, 12, 55, 51};
  whole.Ellipse(box, kWidePen, kBrush);
  const Rows picture = Show(whole);
  for (int shift_x = 0; shift_x <= 56; ++shift_x) {
    for (int shift_y = 0; shift_y <= 56; ++shift_y) {
      Rows expected;
      for (std::size_t y = 0; y < 8; ++y) {
        expected.push_back(picture[y + static_cast<std::size_t>(shift_y)].substr(
            static_cast<std::size_t>(shift_x), 8));
      }
      const PixelBox shifted = {box.left - shift_x, box.top - shift_y, box.right - shift_x,
                                box.bottom - shift_y};
      ASSERT_EQ(Drawn(8, 8, [&](Canvas& c) { c.Ellipse(shifted, kWidePen, kBrush); }), expected)
          << shift_x << " " << shift_y;
    }
  }
}

// A pen that takes in a whole small canvas stops there; on the large one it never does.
TEST(CanvasEllipseTest, APenWiderThanTheCanvasPaintsWhatItPaintsInAWindow) {
  constexpr int kWhole = 160;
  constexpr int kWindow = 12;
  for (int width = 14; width <= 44; ++width) {
    const Pen pen = {.pixel = kPen.pixel, .width = width};
    Canvas whole(kWhole, kWhole, kWhitePixel);
    const PixelBox box = {60, 66, 99, 91};
    whole.Ellipse(box, pen, {.visible = false});
    const Rows picture = Show(whole);
    for (int left = 30; left <= 120; left += 5) {
      for (const int top : {40, 60, 76, 98, 110}) {
        Rows expected;
        for (std::size_t y = 0; y < kWindow; ++y) {
          expected.push_back(picture[y + static_cast<std::size_t>(top)].substr(
              static_cast<std::size_t>(left), kWindow));
        }
        const PixelBox shifted = {box.left - left, box.top - top, box.right - left,
                                  box.bottom - top};
        ASSERT_EQ(Drawn(kWindow, kWindow,
                        [&](Canvas& c) { c.Ellipse(shifted, pen, {.visible = false}); }),
                  expected)
            << width << " at " << left << ", " << top;
      }
    }
  }
}

}  // namespace
}  // namespace discoplan
