// SPDX-License-Identifier: MIT
#include "discoplan/figures/figure_paper.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "discoplan/base/numbers.h"
#include "discoplan/raster/canvas.h"

namespace discoplan::figures {
namespace {

/// Letters as wide as half their size, lines as high as it.
class SquareText final : public TextPainter {
 public:
  double Width(const discoplan::Font& font, double pixels_per_point,
               std::string_view text) const override {
    return static_cast<double>(text.size()) * font.size / 2 * pixels_per_point;
  }
  double Height(const discoplan::Font& font, double pixels_per_point) const override {
    return font.size * pixels_per_point;
  }
  void Paint(Canvas&, const discoplan::Font&, const TextPlacement&,
             std::string_view) const override {}
};

/// A page of 4000 x 2000 twips, 200 x 100 points.
class FigurePaperTest : public testing::Test {
 protected:
  FigurePaperTest() : paper_({.width = 4000, .height = 2000, .screen = screen_, .text = text_}) {}

  void Cell(int left, int right, Colour colour) {
    paper_.ScaleMode(Surface::kPixels);
    paper_.DrawStyle(5);
    paper_.FillStyle(0);
    paper_.FillColor(colour);
    const PixelPoint corners[] = {{left, 100}, {right, 100}, {right, 125}, {left, 125}};
    paper_.Polygon(corners);
  }
  template <class T>
  static const T& As(const Figure& figure, std::size_t number) {
    return std::get<T>(figure.shapes.at(number));
  }

  Screen screen_;
  SquareText text_;
  FigurePaper paper_;
};

TEST_F(FigurePaperTest, CountsInTwipsUntilItsScaleIsInPixels) {
  EXPECT_TRUE(paper_.IsPrinter());
  EXPECT_FLOAT_EQ(paper_.TwipsPerPixelX(), 4.8F);
  EXPECT_EQ(paper_.ScreenTwipsPerPixelY(), 15);
  EXPECT_EQ(paper_.ScaleMode(), Surface::kTwips);
  EXPECT_EQ(paper_.ScaleWidth(), 4000);
  paper_.FontSize(12);
  EXPECT_FLOAT_EQ(paper_.TextHeight("0"), 240);
  EXPECT_FLOAT_EQ(paper_.TextWidth("0000"), 480);
  paper_.ScaleMode(Surface::kPixels);
  EXPECT_FLOAT_EQ(paper_.ScaleWidth(), 4000 / 4.8F);
  EXPECT_FLOAT_EQ(paper_.TextHeight("0"), 50);
}

TEST_F(FigurePaperTest, PlacesInPoints) {
  paper_.DrawWidth(3);
  paper_.Line({.from = SurfacePoint{1000, 500}, .to = {2000, 500}, .colour = 0x0000FF});
  paper_.ScaleMode(Surface::kPixels);
  paper_.Line({.from = SurfacePoint{100, 25}, .to = {200, 25}, .colour = 0x0000FF});
  const Figure page = paper_.Take();
  EXPECT_EQ(page.width, 200);
  EXPECT_EQ(page.background, (Rgba{255, 255, 255}));
  ASSERT_EQ(page.shapes.size(), 1U) << "lines that look alike are one path";
  const auto& lines = As<PathShape>(page, 0);
  EXPECT_EQ(lines.stroke.colour, (Rgba{255, 0, 0}));
  EXPECT_NEAR(lines.stroke.width, 3 * 0.24, 1e-12);
  ASSERT_EQ(lines.path.pieces.size(), 2U);
  EXPECT_NEAR(lines.path.pieces[0].points[1].x, 100, 1e-5);
  EXPECT_NEAR(lines.path.pieces[0].points[1].y, 25, 1e-5);
  EXPECT_NEAR(lines.path.pieces[1].points[1].x, 48, 1e-5);
  EXPECT_NEAR(lines.path.pieces[1].points[1].y, 6, 1e-5);
  EXPECT_TRUE(paper_.Take().shapes.empty());
}

TEST_F(FigurePaperTest, ScalesFromAnOriginTextsToo) {
  paper_.Origin({1000, 500}, 0.5);
  paper_.Font({.name = "Courier", .size = 10, .bold = true});
  paper_.ForeColor(0xFF0000);
  paper_.CurrentX(400);
  paper_.CurrentY(200);
  EXPECT_FLOAT_EQ(paper_.TextWidth("ab"), 200);
  paper_.Print("ab");
  paper_.Line({.from = SurfacePoint{0, 0}, .to = {400, 0}});
  const Figure page = paper_.Take();
  const auto& text = As<TextShape>(page, 0);
  EXPECT_EQ(text.text, "ab");
  EXPECT_EQ(text.size, 5);
  EXPECT_TRUE(text.bold);
  EXPECT_EQ(text.colour, (Rgba{0, 0, 255}));
  EXPECT_NEAR(text.start.x, 60, 1e-5);
  EXPECT_NEAR(text.start.y, 30 + 0.81 * 5, 1e-5);
  EXPECT_NEAR(text.width, 5, 1e-5);
  const auto& line = As<PathShape>(page, 1);
  EXPECT_NEAR(line.path.pieces[0].points[1].x, 60, 1e-5);
  EXPECT_NEAR(line.stroke.width, 0.12, 1e-12);
}

TEST_F(FigurePaperTest, WritesGreekInTheSymbolFontAndRulesUnderTexts) {
  paper_.Font({.name = "Symbol", .size = 14});
  paper_.Print("s=1");
  paper_.Font({.name = "Arial", .size = 10, .underline = true});
  paper_.Print("ab");
  const Figure page = paper_.Take();
  EXPECT_EQ(As<TextShape>(page, 0).text, "\u03C3=1");
  const auto& rule = As<PathShape>(page, 2);
  EXPECT_TRUE(rule.fill.has_value());
  EXPECT_NEAR(rule.path.pieces[0].points[1].x, 10, 1e-5);
  EXPECT_GT(rule.path.pieces[0].points[0].y, As<TextShape>(page, 1).start.y);
}

TEST_F(FigurePaperTest, MergesCellsAndKeepsTheOrder) {
  Cell(0, 25, 0x0000FF);
  Cell(25, 50, 0x0000FF);
  Cell(50, 50, 0x00FF00);  // nothing
  paper_.DrawStyle(0);
  paper_.Line({.from = SurfacePoint{0, 110}, .to = {100, 110}});
  Cell(50, 75, 0x0000FF);
  const Figure page = paper_.Take();
  ASSERT_EQ(page.shapes.size(), 3U);
  const auto& first = As<PathShape>(page, 0);
  EXPECT_EQ(first.fill, (Rgba{255, 0, 0}));
  EXPECT_EQ(first.stroke.width, 0);
  ASSERT_EQ(first.path.pieces.size(), 1U) << "two neighbours of one colour are one shape";
  const std::vector<Point>& corners = first.path.pieces[0].points;
  ASSERT_EQ(corners.size(), 4U);
  EXPECT_NEAR(corners[1].x, 50 * 0.24, 1e-9);
  EXPECT_FALSE(As<PathShape>(page, 1).fill);
  EXPECT_TRUE(As<PathShape>(page, 2).fill);
}

TEST_F(FigurePaperTest, ClipsToTheRectangleOrThePage) {
  paper_.ClipTo({.left = 1000, .top = 500, .width = 1000, .height = 500});  // 50..100, 25..50
  paper_.Line({.from = SurfacePoint{0, 800}, .to = {4000, 800}});
  paper_.Line({.from = SurfacePoint{0, 400}, .to = {4000, 400}});  // above it
  paper_.FillStyle(0);
  paper_.FillColor(0x00FF00);
  paper_.DrawStyle(5);
  paper_.Circle({.centre = {1000, 500}, .radius = 400});
  paper_.CurrentX(900);
  paper_.CurrentY(600);
  paper_.Print("starts outside");
  paper_.CurrentX(1100);
  paper_.Print("reaches out of it and stays whole");
  paper_.Unclip();
  paper_.DrawStyle(0);
  paper_.Line({.from = SurfacePoint{-1e9F, 100}, .to = {1e9F, 100}});
  const Figure page = paper_.Take();
  ASSERT_EQ(page.shapes.size(), 4U);
  const std::vector<Point>& line = As<PathShape>(page, 0).path.pieces.at(0).points;
  EXPECT_NEAR(line[0].x, 50, 1e-9);
  EXPECT_NEAR(line[1].x, 100, 1e-9);
  EXPECT_EQ(As<PathShape>(page, 0).path.pieces.size(), 1U);
  double area = 0;  // of a quarter of the disc
  const std::vector<Point>& disc = As<PathShape>(page, 1).path.pieces.at(0).points;
  for (std::size_t i = 0; i < disc.size(); ++i) {
    const Point a = disc[i], b = disc[(i + 1) % disc.size()];
    area += (a.x * b.y - b.x * a.y) / 2;
  }
  EXPECT_NEAR(std::abs(area), std::acos(-1.0) * 100, 1);
  EXPECT_THAT(As<TextShape>(page, 2).text, testing::StartsWith("reaches"));
  const std::vector<Point>& across = As<PathShape>(page, 3).path.pieces.at(0).points;
  EXPECT_NEAR(across[0].x, 0, 1e-3);
  EXPECT_NEAR(across[1].x, 200, 1e-3);
}

// A cut area has no line along the cut.
TEST_F(FigurePaperTest, OutlinesNoCut) {
  paper_.ClipTo({.left = 1000, .top = 0, .width = 1000, .height = 2000});
  paper_.FillStyle(0);
  paper_.Line({.from = SurfacePoint{500, 500}, .to = {1500, 1000}, .shape = LineShape::Box});
  paper_.ScaleMode(Surface::kPixels);
  const PixelPoint corners[] = {{100, 100}, {300, 100}, {300, 200}};
  paper_.Polygon(corners);
  const Figure page = paper_.Take();
  for (const Shape& shape : page.shapes) {
    const auto& path = std::get<PathShape>(shape);
    if (path.fill) continue;
    for (const Path::Piece& piece : path.path.pieces) {
      for (std::size_t i = 1; i < piece.points.size(); ++i) {
        const bool along = piece.points[i].x == 50 && piece.points[i - 1].x == 50;
        EXPECT_FALSE(along);
      }
    }
  }
  EXPECT_EQ(page.shapes.size(), 3U) << "lines of the box, the triangle's area and its lines";
}

TEST_F(FigurePaperTest, DrawsArcsCounterClockwiseAndDotsOfLinesWithoutLength) {
  paper_.ScaleMode(Surface::kPixels);
  paper_.Circle(
      {.centre = {400, 200}, .radius = 100, .start = 0, .end = 1.5707964F, .aspect = 0.5F});
  paper_.Line({.from = SurfacePoint{10, 10}, .to = {10, 10}});
  paper_.Line({.from = SurfacePoint{20, 20}, .to = {20, 20}, .shape = LineShape::FilledBox});
  const Figure page = paper_.Take();
  const std::vector<Point>& arc = As<PathShape>(page, 0).path.pieces.at(0).points;
  EXPECT_NEAR(arc.front().x, 500 * 0.24, 1e-5);
  EXPECT_NEAR(arc.back().y, 150 * 0.24, 1e-5);
  for (const Point p : arc) EXPECT_TRUE(p.x >= 95.99 && p.y <= 48.01);
  ASSERT_EQ(page.shapes.size(), 2U) << "the dot and the box are in one colour";
  EXPECT_EQ(As<PathShape>(page, 1).path.pieces.size(), 2U);
}

TEST_F(FigurePaperTest, LeavesOutWhatIsNowhere) {
  constexpr float kNowhere = std::numeric_limits<float>::quiet_NaN();
  paper_.Line({.from = SurfacePoint{kNowhere, 0}, .to = {100, 100}});
  paper_.Circle({.centre = {kNowhere, 0}, .radius = 10});
  paper_.Circle({.centre = {100, 100}, .radius = kNowhere});
  paper_.Line({.from = SurfacePoint{0, kNowhere}, .to = {1, 1}, .shape = LineShape::FilledBox});
  paper_.CurrentX(kNowhere);
  paper_.Print("text");
  const PixelPoint none[] = {{1, 1}};
  paper_.Polygon({none, 0});
  EXPECT_TRUE(paper_.Take().shapes.empty());
}

TEST_F(FigurePaperTest, RefusesWhatPaperCannotDo) {
  EXPECT_THROW(paper_.Cls(), RunTimeError);
  EXPECT_THROW(paper_.Refresh(), RunTimeError);
  EXPECT_THROW(paper_.FloodFill({1, 1}, 0), RunTimeError);
}

}  // namespace
}  // namespace discoplan::figures
