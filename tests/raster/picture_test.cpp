// SPDX-License-Identifier: MIT
#include "discoplan/raster/picture.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <functional>
#include <limits>
#include <utility>
#include <vector>

#include "discoplan/base/numbers.h"
#include "tests/raster/canvas_pictures.h"

namespace discoplan {
namespace {

/// Keeps where texts went; each character is one pixel wide per point of the font.
class Notes final : public TextPainter {
 public:
  double Width(const Font& font, double pixels_per_point, std::string_view text) const override {
    return static_cast<double>(text.size()) * font.size * pixels_per_point;
  }
  double Height(const Font& font, double pixels_per_point) const override {
    return font.size * pixels_per_point;
  }
  void Paint(Canvas&, const Font&, const TextPlacement& placement,
             std::string_view text) const override {
    placed.push_back(placement);
    texts.emplace_back(text);
  }

  mutable std::vector<TextPlacement> placed;
  mutable std::vector<std::string> texts;
};

class PictureTest : public testing::Test {
 protected:
  /// So many pixels across and down at 10 twips a pixel.
  Picture New(float across, float down) {
    return Picture({.screen = screen_, .resolution = resolution_, .text = notes_}, across * 10,
                   down * 10);
  }
  static Rows Drawn(const Picture& picture) { return Show(picture.canvas()); }

  Screen screen_{15, 12};
  Screen resolution_{10, 10};
  Notes notes_;
};

TEST(PixelOf, TurnsColoursRound) {
  EXPECT_EQ(PixelOf(0x000000), 0xFF000000);
  EXPECT_EQ(PixelOf(0x0000FF), 0xFFFF0000);  // red
  EXPECT_EQ(PixelOf(0x123456), 0xFF563412);
  EXPECT_EQ(PixelOf(0xFFFFFF), 0xFFFFFFFF);
  EXPECT_EQ(PixelOf(0x01000000), 0xFF000000);  // 24 bits count
  EXPECT_EQ(PixelOf(0x8000000F), 0xFFF0F0F0);
  EXPECT_EQ(PixelOf(0x80000005), 0xFFC8C8C8);
  EXPECT_EQ(PixelOf(0xFFFFFFFF), 0xFFC8C8C8);
}

TEST_F(PictureTest, StartsWhiteInPixels) {
  const Picture picture = New(3, 2);
  EXPECT_EQ(Drawn(picture), Filled(3, 2, '.'));
  EXPECT_EQ(picture.ScaleMode(), 3);
  EXPECT_EQ(picture.ScaleWidth(), 3);
  EXPECT_EQ(picture.ScaleHeight(), 2);
  EXPECT_EQ(picture.ScreenTwipsPerPixelX(), 15);
  EXPECT_EQ(picture.ScreenTwipsPerPixelY(), 12);
}

struct SizeCase {
  float twips;
  int pixels;
};

TEST_F(PictureTest, RoundsItsSizeToWholePixels) {
  const float infinity = std::numeric_limits<float>::infinity();
  for (const SizeCase& row :
       {SizeCase{0, 0}, SizeCase{-100, 0}, SizeCase{4, 0}, SizeCase{5, 0}, SizeCase{15, 2},
        SizeCase{25, 2}, SizeCase{26, 3}, SizeCase{327670, 32767}, SizeCase{1e9F, 32767},
        SizeCase{infinity, 32767}, SizeCase{std::nanf(""), 0}}) {
    Picture picture = New(5, 5);
    picture.Width(row.twips);
    EXPECT_EQ(picture.canvas().Width(), row.pixels) << row.twips;
    EXPECT_EQ(picture.canvas().Height(), 5);
    if (!std::isfinite(row.twips)) continue;
    EXPECT_FLOAT_EQ(picture.ScaleWidth(), row.twips / 10);
  }
}

TEST_F(PictureTest, KeepsWhatFitsWhenItChangesItsSize) {
  Picture picture = New(3, 2);
  picture.Line(
      {.from = SurfacePoint{0, 0}, .to = {2, 1}, .colour = 0, .shape = LineShape::FilledBox});
  picture.BackColor(0x0000FF);
  EXPECT_EQ(Drawn(picture), Filled(3, 2, '#'));  // a new colour waits for Cls
  picture.Resize(40, 30);
  EXPECT_EQ(Drawn(picture), (Rows{"###r", "###r", "rrrr"}));
  picture.Resize(20, 10);
  EXPECT_EQ(Drawn(picture), (Rows{"##"}));
  picture.Cls();
  EXPECT_EQ(Drawn(picture), (Rows{"rr"}));
}

TEST_F(PictureTest, ClearingBringsBackTheKeptImage) {
  Picture picture = New(2, 2);
  picture.Line(
      {.from = SurfacePoint{0, 0}, .to = {0, 1}, .colour = 0, .shape = LineShape::FilledBox});
  picture.KeepImageAsPicture();
  picture.Line(
      {.from = SurfacePoint{1, 0}, .to = {1, 1}, .colour = 0, .shape = LineShape::FilledBox});
  EXPECT_EQ(Drawn(picture), (Rows{"##", "##"}));
  picture.BackColor(0x0000FF);
  picture.Resize(30, 30);
  picture.CurrentX(2);
  picture.Cls();
  EXPECT_EQ(Drawn(picture), (Rows{"#.r", "#.r", "rrr"}));
  EXPECT_EQ(picture.CurrentX(), 0);
  picture.DropPicture();
  picture.Cls();
  EXPECT_EQ(Drawn(picture), Filled(3, 3, 'r'));
}

TEST_F(PictureTest, TellsOfItsRefreshes) {
  Picture picture = New(2, 2);
  EXPECT_NO_THROW(picture.Refresh());
  int refreshed = 0;
  picture.Watch([&](PictureNews news) { refreshed += news == PictureNews::Refresh; });
  picture.Cls();
  EXPECT_EQ(refreshed, 0);
  picture.Refresh();
  EXPECT_EQ(refreshed, 1);
}

TEST_F(PictureTest, TellsOnceThatItWasDrawnOnUntilItIsShown) {
  Picture picture = New(6, 6);
  int told = 0;
  picture.Watch([&](PictureNews news) { told += news == PictureNews::Drawn; });
  const std::array<PixelPoint, 3> corners = {{{0, 0}, {3, 0}, {0, 3}}};
  const std::vector<std::function<void()>> drawings = {
      [&] { picture.Cls(); },
      [&] {
        picture.Line({.to = {3, 3}});
      },
      [&] {
        picture.Circle({.centre = {2, 2}, .radius = 1});
      },
      [&] { picture.Print("a"); },
      [&] { picture.Polygon(corners); },
      [&] {
        picture.FloodFill({0, 0}, kBlack);
      },
      [&] { picture.Resize(60, 75); },
      [&] { picture.Width(60); },
      [&] { picture.canvas().Clear(0); },
  };
  for (std::size_t i = 0; i < drawings.size(); ++i) {
    picture.MarkShown();
    told = 0;
    drawings[i]();
    EXPECT_EQ(told, 1) << i;
    drawings[i]();
    EXPECT_EQ(told, 1) << i << " a second time, unseen";
  }
  picture.MarkShown();
  told = 0;
  picture.ForeColor(kWhite);
  static_cast<void>(std::as_const(picture).canvas());
  EXPECT_EQ(told, 0) << "nothing was drawn";
}

TEST_F(PictureTest, DrawsLinesWithoutAndBoxesWithTheirEnd) {
  Picture picture = New(5, 5);
  picture.Line({.from = SurfacePoint{0, 0}, .to = {3, 0}});
  EXPECT_EQ(Drawn(picture)[0], "###..");
  EXPECT_EQ(picture.CurrentX(), 3);
  picture.Line({.to = {3, 3}, .colour = 0x0000FF});  // goes on from there
  EXPECT_EQ(Drawn(picture), (Rows{"###r.", "...r.", "...r.", ".....", "....."}));
  picture.Cls();
  picture.Line({.from = SurfacePoint{3, 3}, .to = {1, 1}, .shape = LineShape::Box});
  EXPECT_EQ(Drawn(picture), (Rows{".....", ".###.", ".#.#.", ".###.", "....."}));
  picture.Line({.from = SurfacePoint{4, 0},
                .to = {4, 4},
                .colour = 0x0000FF,
                .shape = LineShape::FilledBox});
  EXPECT_EQ(Drawn(picture)[4], "....r");
  EXPECT_EQ(Drawn(picture)[0], "....r");
}

TEST_F(PictureTest, WithoutAPenDrawsFilledBoxesOnly) {
  Picture picture = New(5, 5);
  picture.DrawStyle(5);
  picture.Line({.from = SurfacePoint{0, 0}, .to = {4, 4}});
  picture.Line({.from = SurfacePoint{0, 0}, .to = {4, 4}, .shape = LineShape::Box});
  picture.Circle({.centre = {2, 2}, .radius = 2});
  EXPECT_EQ(Drawn(picture), Filled(5, 5, '.'));
  picture.Line({.from = SurfacePoint{1, 2}, .to = {3, 2}, .shape = LineShape::FilledBox});
  EXPECT_EQ(Drawn(picture)[2], ".###.");
}

TEST_F(PictureTest, RoundsCoordinatesHalfToEven) {
  Picture picture = New(6, 3);
  const auto box = [&](float x, float y) {
    picture.Line({.from = SurfacePoint{x, y}, .to = {x, y}, .shape = LineShape::FilledBox});
  };
  box(0.5F, 0.5F);
  box(1.5F, 1.5F);
  box(2.4999F, -0.5F);
  box(3.5001F, 2.5F);
  EXPECT_EQ(Drawn(picture), (Rows{"#.#...", "......", "..#.#."}));
}

TEST_F(PictureTest, FillsPolygonsByTheState) {
  const std::array<PixelPoint, 4> square = {{{1, 1}, {4, 1}, {4, 4}, {1, 4}}};
  Picture picture = New(5, 5);
  picture.FillColor(0x0000FF);
  picture.Polygon(square);  // a new surface fills nothing
  EXPECT_EQ(Drawn(picture)[2], ".#..#");
  picture.FillStyle(0);
  picture.Polygon(square);
  EXPECT_EQ(Drawn(picture), (Rows{".....", ".####", ".#rr#", ".#rr#", ".####"}));
  picture.Cls();
  picture.DrawStyle(5);
  picture.Polygon(square);
  EXPECT_EQ(Drawn(picture), (Rows{".....", ".rrr.", ".rrr.", ".rrr.", "....."}));
  picture.Cls();
  const std::array<PixelPoint, 4> point = {{{2, 2}, {2, 2}, {2, 2}, {2, 2}}};
  picture.DrawStyle(0);
  picture.Polygon(point);
  EXPECT_EQ(Drawn(picture), Filled(5, 5, '.'));
}

TEST_F(PictureTest, PolygonsAndFloodsStayInDevicePixels) {
  const std::array<PixelPoint, 4> square = {{{0, 0}, {2, 0}, {2, 2}, {0, 2}}};
  Picture picture = New(4, 4);
  picture.ScaleMode(1);
  picture.FillStyle(0);
  picture.FillColor(0x0000FF);
  picture.DrawStyle(5);
  picture.Polygon(square);
  EXPECT_EQ(Drawn(picture), (Rows{"rr..", "rr..", "....", "...."}));
  picture.FillColor(0);
  picture.FloodFill({3, 3}, 0x0000FF);
  EXPECT_EQ(Drawn(picture), (Rows{"rr##", "rr##", "####", "####"}));
  picture.FloodFill({9, -1}, 0);
}

TEST_F(PictureTest, DrawsInTheUnitsOfItsScale) {
  Picture picture = New(4, 4);
  picture.ScaleMode(1);
  EXPECT_EQ(picture.ScaleWidth(), 40);
  picture.Line({.from = SurfacePoint{10, 20}, .to = {30, 20}, .shape = LineShape::FilledBox});
  EXPECT_EQ(Drawn(picture)[2], ".###");
  picture.Cls();
  picture.ScaleLeft(-1);
  picture.ScaleTop(100);
  picture.ScaleWidth(2);
  picture.ScaleHeight(-100);  // upward
  picture.Line({.from = SurfacePoint{0, 50}, .to = {0.5F, 25}, .shape = LineShape::FilledBox});
  EXPECT_EQ(Drawn(picture), (Rows{"....", "....", "..##", "..##"}));
  picture.ScaleMode(3);
  EXPECT_EQ(picture.ScaleLeft(), 0);
  EXPECT_EQ(picture.ScaleHeight(), 4);
}

TEST_F(PictureTest, DrawsCirclesWithBothEdges) {
  Picture picture = New(7, 7);
  picture.Circle({.centre = {3, 3}, .radius = 3, .colour = 0x0000FF});
  EXPECT_EQ(Drawn(picture)[3], "r.....r");
  EXPECT_EQ(Drawn(picture)[0], "..rrr..");
  picture.Cls();
  picture.Circle({.centre = {3, 3}, .radius = 3, .aspect = 0.0F});
  EXPECT_EQ(Drawn(picture)[3], "#######");  // seen from the side it is a line
  picture.Cls();
  picture.FillStyle(0);
  picture.FillColor(0x0000FF);
  picture.Circle({.centre = {3, 3}, .radius = 2});
  EXPECT_EQ(Drawn(picture)[3], ".#rrr#.");
  picture.Cls();
  picture.Circle({.centre = {3, 3}, .radius = -1});
  picture.Circle({.centre = {3, 3}, .radius = std::nanf("")});
  EXPECT_EQ(Drawn(picture), Filled(7, 7, '.'));
}

TEST_F(PictureTest, DrawsArcsCounterClockwiseWithoutFill) {
  Picture picture = New(9, 9);
  picture.FillStyle(0);
  const float quarter = 1.5707964F;
  picture.Circle({.centre = {4, 4}, .radius = 4, .start = 0.0F, .end = quarter});
  // From the right end to the top: the last pixel before the ray, at 5, 0, is left out.
  EXPECT_EQ(Drawn(picture), (Rows{".........", "......##.", ".......#.", "........#", "........#",
                                  ".........", ".........", ".........", "........."}));
}

TEST_F(PictureTest, PutsTextAtTheCurrentPosition) {
  Picture picture = New(100, 100);
  picture.CurrentX(12.5F);
  picture.CurrentY(20);
  picture.ForeColor(0x123456);
  picture.Print("Mean");
  ASSERT_EQ(notes_.texts, std::vector<std::string>{"Mean"});
  EXPECT_EQ(notes_.placed[0].x, 12.5);
  EXPECT_EQ(notes_.placed[0].y, 20);
  EXPECT_EQ(notes_.placed[0].colour, 0x123456U);
  EXPECT_EQ(notes_.placed[0].pixels_per_point, 2);  // 20 twips at 10 a pixel
  picture.ScaleMode(1);
  picture.Print("Mean");
  EXPECT_EQ(notes_.placed[1].x, 1.25);
}

TEST_F(PictureTest, MeasuresTextInItsUnits) {
  Picture picture = New(100, 100);
  picture.FontSize(8);
  EXPECT_EQ(picture.TextWidth("Mean"), 64);
  EXPECT_EQ(picture.TextHeight("0"), 16);
  picture.ScaleMode(1);
  EXPECT_EQ(picture.TextWidth("Mean"), 640);
  EXPECT_EQ(picture.TextHeight("0"), 160);
}

TEST_F(PictureTest, TakesTheWorstNumbers) {
  const float infinity = std::numeric_limits<float>::infinity();
  for (const float value :
       {std::nanf(""), infinity, -infinity, 3e38F, -3e38F, 2147483648.0F, 0.0F}) {
    Picture picture = New(8, 8);
    picture.FillStyle(0);
    for (const LineShape shape : {LineShape::Line, LineShape::Box, LineShape::FilledBox}) {
      picture.Line({.from = SurfacePoint{value, 3}, .to = {4, value}, .shape = shape});
    }
    picture.Circle({.centre = {value, 4}, .radius = 3});
    picture.Circle({.centre = {4, 4}, .radius = value});
    picture.Circle({.centre = {4, 4}, .radius = 3, .start = value, .end = value, .aspect = value});
    picture.ScaleWidth(value);
    picture.ScaleTop(value);
    picture.Line({.from = SurfacePoint{1, 3}, .to = {4, 2}});
    picture.Circle({.centre = {4, 4}, .radius = 3});
    (void)picture.TextWidth("x");
    picture.Width(value);
    picture.Resize(value, value);
    picture.Cls();
  }
}

}  // namespace
}  // namespace discoplan
