// SPDX-License-Identifier: MIT
#include "hosts/headless/figure_picture.h"

#include <gtest/gtest.h>

#include <cmath>

#include "tests/headless/painted_text.h"

namespace discoplan {
namespace {

using figures::DotsShape;
using figures::Figure;
using figures::Point;
using figures::Rgb;
using figures::Rgba;
using figures::TextShape;

constexpr Rgba kBlack = Rgb(0x000000);

Figure Page(double side) {
  Figure figure;
  figure.width = figure.height = side;
  figure.background = Rgb(0xFFFFFF);
  return figure;
}

/// What of the picture is inked, in pixels.
double InkOf(const FigurePicture& picture) {
  double ink = 0;
  for (const Pixel pixel : picture.pixels) ink += (255 - (pixel >> 8 & 0xFF)) / 255.0;
  return ink;
}

FigurePicture Dots(std::vector<Point> centres, double radius, figures::Stroke rim = {}) {
  Figure figure = Page(40);
  figure.shapes.push_back(DotsShape{std::move(centres), radius, kBlack, rim});
  return PaintFigure(figure, 1, FreeTypeText());
}

// Pi r^2, wherever within a pixel the middle is.
TEST(FigurePicture, InksAsMuchOfADotAsItsDiscHolds) {
  for (const double radius : {0.3, 0.45, 0.6, 1.0, 1.6, 2.5, 7.3, 15.0}) {
    double sum = 0;
    for (int i = 0; i < 64; ++i) {
      sum += InkOf(Dots({{20 + i % 8 / 8.0, 20 + static_cast<int>(i / 8) / 8.0}}, radius)) / 64;
    }
    const double area = 3.14159265 * radius * radius;
    EXPECT_NEAR(sum, area, 0.01 * area + 0.01) << radius;
  }
}

TEST(FigurePicture, FadesADotOverOnePixel) {
  const FigurePicture picture = Dots({{20, 20}}, 8);
  const auto shade = [&](int x, int y) {
    return picture.pixels[static_cast<std::size_t>(y * picture.width + x)] & 0xFF;
  };
  for (int y = 0; y < 40; ++y) {
    for (int x = 0; x < 40; ++x) {
      const double distance = std::hypot(x + 0.5 - 20, y + 0.5 - 20);
      if (distance > 7.45 && distance < 8.55) continue;
      EXPECT_EQ(shade(x, y), distance < 8 ? 0u : 255u) << x << ", " << y;
    }
  }
}

TEST(FigurePicture, CutsDotsAtItsEdges) {
  const double whole = InkOf(Dots({{20, 20}}, 6));
  EXPECT_NEAR(InkOf(Dots({{0, 20}}, 6)), whole / 2, 0.2);
  EXPECT_NEAR(InkOf(Dots({{40, 40}}, 6)), whole / 4, 0.2);
  EXPECT_EQ(InkOf(Dots({{-1e12, 20}, {20, 1e12}, {50, 50}}, 6)), 0);
}

TEST(FigurePicture, DrawsAllRimsBelowAllDots) {
  const FigurePicture picture = Dots({{18, 20}, {22, 20}}, 5, {2, Rgb(0x00FF00)});
  for (const int x : {18, 19, 20, 21}) {
    EXPECT_EQ(picture.pixels[static_cast<std::size_t>(20 * 40 + x)], 0xFF000000) << x;
  }
}

/// One text in black, its base line begun at the start.
FigurePicture Written(Point start, double size, double angle = 0, bool bold = false) {
  Figure figure = Page(60);
  figure.font = "Arial";
  TextShape text{.text = "Wg 7.1", .start = start, .size = size, .bold = bold};
  text.colour = kBlack;
  text.angle = angle;
  text.box = {0, 0, 60, 60};
  figure.shapes.push_back(text);
  return PaintFigure(figure, 1, FreeTypeText());
}

// The letters of the classic look, which stand on whole pixels.
TEST(FigurePicture, WritesLevelTextAsAllTextIsPainted) {
  for (const bool bold : {false, true}) {
    for (const double x : {3.0, 3.3, 5.9}) {
      Canvas canvas(60, 60, kPaper);
      const Font font = {.name = "Arial", .size = 13, .bold = bold};
      const FreeTypeText text;
      text.Paint(canvas, font, {.x = x, .y = 10, .pixels_per_point = 1}, "Wg 7.1");
      // An H stands on the base line.
      Canvas h(60, 60, kPaper);
      text.Paint(h, font, {.x = x, .y = 10, .pixels_per_point = 1}, "H");
      const std::optional<PixelBox> painted = Ink(h);
      ASSERT_TRUE(painted);
      for (const double off : {-0.4, 0.0, 0.4}) {
        const FigurePicture written = Written({x, painted->bottom + 1 + off}, 13, 0, bold);
        EXPECT_EQ(written.pixels, Copy(canvas)) << x << ", " << off << (bold ? ", bold" : "");
      }
    }
  }
}

// Turned letters are filled outlines. Level ones come from FreeType, fitted to whole rows of
// pixels, by which small ones get some ink more.
TEST(FigurePicture, WritesTurnedTextWithTheInkOfLevelText) {
  for (const double size : {12.0, 18.0}) {
    const double level = InkOf(Written({2, 40}, size));
    const double nearly_level = InkOf(Written({2, 40}, size, 1e-6));
    EXPECT_NEAR(nearly_level, level, 0.1 * level) << size;
    EXPECT_NEAR(InkOf(Written({40, 59}, size, 90)), nearly_level, 0.02 * level) << size;
  }
}

TEST(FigurePicture, WritesLargeTextWithTheInkOfSmallText) {
  const auto ink_at = [](double pixels_per_point) {
    Figure figure = Page(200);
    TextShape text{.text = "Wg 7.1", .start = {20, 120}, .size = 60, .colour = kBlack};
    text.box = {0, 0, 200, 200};
    figure.shapes.push_back(text);
    const double side = 200 * pixels_per_point;
    return InkOf(PaintFigure(figure, pixels_per_point, FreeTypeText())) / (side * side);
  };
  for (const double scale : {1.59, 1.61, 5.0, 12.0}) {
    EXPECT_NEAR(ink_at(scale), ink_at(1), 0.02 * ink_at(1)) << scale;
  }
}

// Which `Paint` can't.
TEST(FigurePicture, WritesTextBelowAPixel) {
  const double due = InkOf(Written({2, 40}, 12)) / 144;
  EXPECT_NEAR(InkOf(Written({2, 40.5}, 0.5)), due / 4, 0.3 * due / 4);
}

TEST(FigurePicture, CutsTextAtItsEdges) {
  const double whole = InkOf(Written({2, 40}, 13));
  EXPECT_GT(whole, 40);
  for (const Point start : {Point{-8, 40}, {50, 40}, {2, 4}, {2, 62}}) {
    const double cut = InkOf(Written(start, 13));
    EXPECT_GT(cut, 0.05 * whole) << start.x << ", " << start.y;
    EXPECT_LT(cut, 0.95 * whole) << start.x << ", " << start.y;
  }
  EXPECT_EQ(InkOf(Written({-100, 40}, 13)), 0);
  EXPECT_EQ(InkOf(Written({2, 100}, 13)), 0);
}

}  // namespace
}  // namespace discoplan
