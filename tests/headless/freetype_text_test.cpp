// SPDX-License-Identifier: MIT
#include "hosts/headless/freetype_text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <initializer_list>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "discoplan/raster/canvas.h"
#include "tests/headless/painted_text.h"

namespace discoplan {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kPixelsPerPoint = 96.0 / 72;

TEST(FreeTypeText, InkLiesWithinTheMeasuredBox) {
  const FreeTypeText text;
  for (const char* shown :
       {"0123456789", "7530.693 - 7531.234", "-1.25", "BCDEFGHIJKLMNOPQRSTUZ"}) {
    for (const double pixels_per_point : {kPixelsPerPoint, 2.0, 4.0}) {
      for (const double x : {40.0, 40.25, 40.5, 40.9}) {
        for (const bool bold : {false, true}) {
          SCOPED_TRACE(std::string(shown) + " at " + std::to_string(x) + ", " +
                       std::to_string(pixels_per_point));
          const Font font{.bold = bold};
          Canvas canvas(900, 120, kPaper);
          text.Paint(canvas, font, {x, 30, pixels_per_point}, shown);
          const auto ink = Ink(canvas);
          ASSERT_TRUE(ink);
          EXPECT_GE(ink->left, std::floor(x));
          EXPECT_LE(ink->right + 1, std::ceil(x + text.Width(font, pixels_per_point, shown)));
          EXPECT_GE(ink->top, 30);
          EXPECT_LE(ink->bottom + 1, 30 + text.Height(font, pixels_per_point));
        }
      }
    }
  }
}

TEST(FreeTypeText, WidthIsTheSumOfAdvancesInProportionToSize) {
  if (FileOf("Liberation Sans").empty()) GTEST_SKIP() << "needs Liberation Sans";
  const FreeTypeText text;
  // A figure is 1139 of 2048 units wide, a blank and a point 569, a minus 682.
  const struct {
    const char* text;
    double units;
  } kCases[] = {
      {"", 0}, {"5", 1139}, {"11", 2278}, {"0.25", 3 * 1139 + 569}, {"- 7", 682 + 569 + 1139}};
  for (const auto& row : kCases) {
    EXPECT_NEAR(text.Width({.size = 8}, 2, row.text), row.units * 16 / 2048, 1e-9) << row.text;
    EXPECT_NEAR(text.Width({.size = 8.5F}, 4, row.text), row.units * 34 / 2048, 1e-9) << row.text;
  }
  // 0.905 and 0.212 of 16 pixels upward and downward: 14.48 and 3.39, each rounded up.
  EXPECT_EQ(text.Height({.size = 8}, 2), 15 + 4);
}

TEST(FreeTypeText, LettersAreKernedAndFiguresAreNot) {
  const FreeTypeText text;
  const auto width = [&](const char* shown) { return text.Width({}, 4, shown); };
  EXPECT_LT(width("AV"), width("A") + width("V") - 0.5);
  EXPECT_NEAR(width("1111"), 4 * width("0"), 1e-9);
}

TEST(FreeTypeText, PaintsNothingOutsideTheCanvas) {
  // The canvas's pixels lie in one array, so that what leaves it sideways comes back a row off.
  const FreeTypeText text;
  const Font font{.size = 20, .underline = true};
  const std::string shown = "8888888888";
  Canvas whole(300, 120, kPaper);
  text.Paint(whole, font, {.x = 60, .y = 40}, shown);
  for (const PixelBox window :
       {PixelBox{0, 0, 300, 120}, PixelBox{70, 45, 110, 60}, PixelBox{100, 0, 101, 120},
        PixelBox{0, 50, 300, 51}, PixelBox{250, 70, 290, 110}, PixelBox{0, 0, 62, 44}}) {
    Canvas part(window.right - window.left, window.bottom - window.top, kPaper);
    text.Paint(part, font, {.x = 60.0 - window.left, .y = 40.0 - window.top}, shown);
    for (int y = 0; y < part.Height(); ++y) {
      for (int x = 0; x < part.Width(); ++x) {
        ASSERT_EQ(At(part, x, y), At(whole, window.left + x, window.top + y)) << x << ", " << y;
      }
    }
  }
  for (const auto& [width, height] : {std::pair{0, 0}, {0, 50}, {50, 0}}) {
    Canvas empty(width, height, kPaper);
    text.Paint(empty, font, {.x = -20, .y = -10}, shown);
  }
}

TEST(FreeTypeText, FullCoverageHasTheColourItself) {
  const struct {
    Colour colour;
    Pixel pixel;
  } kCases[] = {{0x000000, 0xFF000000},
                {0x0000FF, 0xFFFF0000},
                {0xFF0000, 0xFF0000FF},
                {0x123456, 0xFF563412},
                {0xFFFFFF, 0xFFFFFFFF}};
  for (const auto& row : kCases) {
    Canvas canvas(100, 100, 0xFF00FF00);
    FreeTypeText().Paint(canvas, {.size = 48}, {.x = 5, .y = 5, .colour = row.colour}, "I");
    EXPECT_TRUE(std::ranges::count(canvas.Pixels(), row.pixel) > 100) << row.colour;
  }
}

TEST(FreeTypeText, EdgesAreSmoothBetweenPaperAndInk) {
  // Red on white: red stays full, green and blue go down together.
  const Canvas canvas = Painted({.size = 12}, "S8", {.x = 5, .y = 5, .colour = 0x0000FF});
  bool smooth = false;
  for (const Pixel pixel : canvas.Pixels()) {
    ASSERT_EQ(pixel >> 16, 0xFFFFu);
    ASSERT_EQ(pixel >> 8 & 0xFF, pixel & 0xFF);
    smooth = smooth || ((pixel & 0xFF) > 0x40 && (pixel & 0xFF) < 0xC0);
  }
  EXPECT_TRUE(smooth);
}

TEST(FreeTypeText, SameTextHasTheSamePixels) {
  const FreeTypeText text;
  Canvas first(200, 60, kPaper), second(200, 60, kPaper), lower(200, 60, kPaper);
  text.Paint(first, {}, {.x = 5.3, .y = 5}, "7530.693");
  text.Paint(second, {}, {.x = 5.3, .y = 5}, "7530.693");
  EXPECT_EQ(Copy(first), Copy(second));
  EXPECT_EQ(Copy(first), Copy(Painted({}, "7530.693", {.x = 5.3, .y = 5})));
  // Downward, a text starts at a whole pixel: 9.4 and 8.6 are row 9.
  text.Paint(lower, {}, {.x = 5.3, .y = 8.6}, "7530.693");
  EXPECT_EQ(Copy(lower), Copy(Painted({}, "7530.693", {.x = 5.3, .y = 9.4})));
  EXPECT_EQ(Ink(lower)->top, Ink(first)->top + 4);
}

TEST(FreeTypeText, ManyGlyphsDontChangeThePixels) {
  // Twice well over what is kept: 95 characters of about 200 x 250 pixels in four phases.
  const FreeTypeText text;
  for (int round = 0; round < 2; ++round) {
    for (int phase = 0; phase < 4; ++phase) {
      for (char letter = ' '; letter <= '~'; ++letter) {
        const TextPlacement placement = {.x = phase / 4.0, .y = -150};
        Canvas canvas(200, 60, kPaper);
        text.Paint(canvas, {.size = 300}, placement, std::string(1, letter));
        if (letter % 16 != 0) continue;
        ASSERT_EQ(Copy(canvas), Copy(Painted({.size = 300}, std::string(1, letter), placement)));
      }
    }
  }
}

TEST(FreeTypeText, BoldIsWiderOrHeavier) {
  const FreeTypeText text;
  EXPECT_GT(Weight(Painted({.bold = true}, "7530")), 1.2 * Weight(Painted({}, "7530")));
  EXPECT_GT(text.Width({.bold = true}, 4, "Mean"), text.Width({}, 4, "Mean"));
}

TEST(FreeTypeText, UnderlineRunsBelowTheBaseLineFromEndToEnd) {
  const FreeTypeText text;
  for (const double pixels_per_point : {kPixelsPerPoint, 2.0, 4.0}) {
    Canvas plain(400, 80, kPaper), lined(400, 80, kPaper);
    text.Paint(plain, {}, {10, 10, pixels_per_point}, "HEHE");
    text.Paint(lined, {.underline = true}, {10, 10, pixels_per_point}, "HEHE");
    const int width =
        static_cast<int>(std::lround(text.Width({.underline = true}, pixels_per_point, "HEHE")));
    // H and E stand on the base line.
    const int base = Ink(plain)->bottom + 1;
    const PixelBox ink = *Ink(lined);
    EXPECT_GT(ink.bottom, base);
    EXPECT_LT(ink.bottom, 10 + text.Height({}, pixels_per_point));
    for (int x = 0; x < 400; ++x) {
      EXPECT_EQ(At(lined, x, ink.bottom), x >= 10 && x < 10 + width ? 0xFF000000 : kPaper) << x;
    }
    // The row below the base line stays free.
    for (int x = 0; x < 400; ++x) EXPECT_EQ(At(lined, x, base), kPaper);
  }
}

TEST(FreeTypeText, SymbolHasGreekForLatinLetters) {
  const struct {
    const char* latin;
    const char* greek;
  } kCases[] = {
      {"s", "\u03C3"},
      {"ABCDEFGHIJKLM",
       "\u0391\u0392\u03A7\u0394\u0395\u03A6\u0393\u0397\u0399\u03D1\u039A\u039B\u039C"},
      {"NOPQRSTUVWXYZ",
       "\u039D\u039F\u03A0\u0398\u03A1\u03A3\u03A4\u03A5\u03C2\u03A9\u039E\u03A8\u0396"},
      {"abcdefghijklm",
       "\u03B1\u03B2\u03C7\u03B4\u03B5\u03C6\u03B3\u03B7\u03B9\u03D5\u03BA\u03BB\u03BC"},
      {"nopqrstuvwxyz",
       "\u03BD\u03BF\u03C0\u03B8\u03C1\u03C3\u03C4\u03C5\u03D6\u03C9\u03BE\u03C8\u03B6"},
      {"1.5 = 3", "1.5 = 3"},
  };
  for (const auto& row : kCases) {
    const auto symbol = Copy(Painted({.name = "Symbol", .size = 12}, row.latin));
    EXPECT_EQ(symbol, Copy(Painted({.name = "Arial", .size = 12}, row.greek))) << row.latin;
    EXPECT_EQ(symbol, Copy(Painted({.name = "Liberation Sans", .size = 12}, row.greek)));
  }
  EXPECT_NE(Copy(Painted({.name = "Symbol"}, "s")), Copy(Painted({.name = "Arial"}, "s")));
}

TEST(FreeTypeText, EmptyTextHasNoWidthAndPaintsNothing) {
  const FreeTypeText text;
  EXPECT_EQ(text.Width({}, kPixelsPerPoint, ""), 0);
  EXPECT_GT(text.Height({}, kPixelsPerPoint), 0);
  EXPECT_FALSE(Ink(Painted({.underline = true}, "")));
}

TEST(FreeTypeText, MalformedUtf8ShowsAsReplacementCharacters) {
  const std::string bad = "\uFFFD";
  const struct {
    std::string_view text;
    std::string shown;
  } kCases[] = {
      {"\x80", bad},  // begins in the middle
      {"\xFF", bad},  // never occurs
      {"\xC3", bad},  // ends too early
      {"\xE2\x82", bad},
      {"\xF0\x9F\x98", bad},
      {"\xC3(", bad + "("},  // broken off by another character
      {"\xE2\x82\x41", bad + "A"},
      {"A\xC3\xC3\xA4", "A" + bad + "\u00E4"},
      {"\xC1\xBF", bad},  // longer than need be
      {"\xE0\x9F\xBF", bad},
      {"\xF0\x8F\xBF\xBF", bad},
      {"\xED\xA0\x80", bad},  // half of a surrogate pair
      {"\xED\xBF\xBF", bad},
      {"\xF4\x90\x80\x80", bad},  // beyond the last character
      {"\xC2\x80", "\u0080"},     // the smallest and the largest of each length
      {"\xDF\xBF\xE0\xA0\x80", "\u07FF\u0800"},
      {"\xED\x9F\xBF\xEE\x80\x80", "\uD7FF\uE000"},
      {"\xEF\xBF\xBF\xF0\x90\x80\x80", "\uFFFF\U00010000"},
      {"\xF4\x8F\xBF\xBF", "\U0010FFFF"},
  };
  for (const auto& row : kCases) {
    EXPECT_EQ(Copy(Painted({}, row.text)), Copy(Painted({}, row.shown)))
        << ::testing::PrintToString(row.text);
  }
  EXPECT_NE(Copy(Painted({}, bad)), Copy(Painted({}, "")));
}

TEST(FreeTypeText, SizesStayBetweenOneAndTwoThousandPixels) {
  const FreeTypeText text;
  const double least = text.Width({.size = 1}, 1, "50"), most = text.Width({.size = 2000}, 1, "50");
  const struct {
    float size;
    double pixels_per_point;
    double width;
  } kCases[] = {
      {0.5F, 1, least},
      {1, 1, least},
      {0, 4, least},
      {-8, 4, least},
      {8, -1, least},
      {8, 0, least},
      {8, kNan, least},
      {0, kInfinity, least},
      {2000, 1, most},
      {2000, 1.1, most},
      {1e30F, 1, most},
      {8, kInfinity, most},
      {8, 1e300, most},
      {8, -kInfinity, least},
      {std::numeric_limits<float>::quiet_NaN(), 1, least},
      {std::numeric_limits<float>::infinity(), 1, most},
  };
  for (const auto& row : kCases) {
    EXPECT_EQ(text.Width({.size = row.size}, row.pixels_per_point, "50"), row.width)
        << row.size << " * " << row.pixels_per_point;
    Canvas canvas(50, 50, kPaper);
    text.Paint(canvas, {.size = row.size, .bold = true, .underline = true},
               {5, 5, row.pixels_per_point}, "50");
  }
  EXPECT_GT(text.Width({.size = 1.5F}, 1, "50"), least);
  EXPECT_LT(text.Width({.size = 1999}, 1, "50"), most);
}

TEST(FreeTypeText, PlacementsFarAwayPaintNothing) {
  const FreeTypeText text;
  for (const double far : {1e30, -1e30, 1.1e6, -1.1e6, kInfinity, -kInfinity, kNan}) {
    for (const TextPlacement& placement :
         {TextPlacement{.x = far, .y = 5}, {.x = 5, .y = far}, {.x = far, .y = far}}) {
      EXPECT_FALSE(Ink(Painted({.underline = true}, "50", placement))) << far;
    }
  }
  // A text that begins just within reach ends where pixels no longer have 32-bit numbers.
  Canvas canvas(50, 50, kPaper);
  text.Paint(canvas, {.size = 2000, .underline = true}, {.x = 999'000, .y = 5},
             std::string(600'000, '8'));
  EXPECT_FALSE(Ink(canvas));
  EXPECT_TRUE(Ink(Painted({}, std::string(3000, '8'), {.x = -2000, .y = 5})));
}

/// All that it is told, as numbers.
class Told final : public OutlineSink {
 public:
  void MoveTo(double x, double y) override { Take({0, x, y}); }
  void LineTo(double x, double y) override { Take({1, x, y}); }
  void CurveTo(double a, double b, double x, double y) override { Take({2, a, b, x, y}); }
  void CubicTo(double a, double b, double c, double d, double x, double y) override {
    Take({3, a, b, c, d, x, y});
  }
  std::vector<double> numbers;

 private:
  void Take(std::initializer_list<double> more) { numbers.insert(numbers.end(), more); }
};

std::vector<double> OutlineOf(const FreeTypeText& text, const Font& font, const char* words) {
  Told told;
  text.Outline(font, words, told);
  return told.numbers;
}

TEST(FreeTypeText, OutlinesStayTheSameHoweverOftenTheyAreAsked) {
  const FreeTypeText used;
  for (const bool bold : {false, true}) {
    const Font font = {.name = "Arial", .size = 1, .bold = bold};
    const std::vector<double> once = OutlineOf(FreeTypeText(), font, "mean 10.03 nm");
    EXPECT_GT(once.size(), 500u);
    for (const char* words : {"0.3 means", "mean 10.03 nm", "Value (nm)", "mean 10.03 nm"}) {
      const std::vector<double> again = OutlineOf(used, font, words);
      if (words == std::string("mean 10.03 nm")) {
        EXPECT_EQ(again, once);
      }
    }
  }
}

}  // namespace
}  // namespace discoplan
