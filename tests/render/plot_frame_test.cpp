// SPDX-License-Identifier: MIT
#include "discoplan/render/plots/plot_frame.h"

#include <cmath>
#include <limits>

#include "tests/render/plot_fixture.h"

namespace discoplan {
namespace {

using nlohmann::json;
using Rounding = PlotFrame::Rounding;

class Frame : public PlotFixture {
 protected:
  static constexpr PlotArea Page(std::int16_t mode) {
    return {.left = 96, .top = 192, .width = 480, .height = 960, .mode = mode};
  }
};

std::vector<float> Sides(const PlotFrame& frame) {
  return {frame.left, frame.top, frame.width, frame.height};
}

[[noreturn]] void Fail() { numbers_detail::Raise(Fault::Overflow); }

TEST_F(Frame, ClearsASurfaceOfItsOwn) {
  struct Row {
    std::int16_t mode;
    const char* due;
  };
  for (const Row& row :
       {Row{0, R"([["Cls"], ["Refresh"]])"}, Row{1, "[]"}, Row{2, R"([["Cls"], ["Refresh"]])"},
        Row{-1, R"([["Cls"], ["Refresh"]])"}, Row{257, R"([["Cls"], ["Refresh"]])"}}) {
    const auto picture = NewPicture(100, 50);
    PlotFrame(*picture, Page(row.mode)).Open();
    EXPECT_EQ(picture->TakeTrace(), json::parse(row.due)) << row.mode;
  }
}

TEST_F(Frame, MeasuresByTheKindOfSurfaceAndTheMode) {
  const auto picture = NewPicture(100, 50);
  picture->ScaleLeft(-4);
  picture->ScaleTop(7);
  for (const std::int16_t mode : std::initializer_list<std::int16_t>{0, 2}) {
    PlotFrame whole(*picture, Page(mode));
    whole.MeasureRectangle();
    EXPECT_EQ(Sides(whole), (std::vector<float>{-4, 7, 100, 50})) << mode;
  }
  PlotFrame part(*picture, Page(1));  // 15 twips per pixel of the screen
  part.MeasureRectangle();
  EXPECT_EQ(Sides(part), (std::vector<float>{6.4F, 12.8F, 32, 64}));
  for (const std::int16_t mode : std::initializer_list<std::int16_t>{0, 1}) {
    const auto paper = NewPaper(2, 4);
    PlotFrame printed(*paper, Page(mode));
    printed.MeasureRectangle();
    EXPECT_EQ(Sides(printed), (std::vector<float>{48, 48, 240, 240})) << mode;
  }
}

struct RoundingCase {
  Rounding rounding;
  std::vector<float> page;      // in twips, at 2 and 4 twips per pixel
  std::vector<float> fallback;  // at 4.8 of them
};

TEST_F(Frame, KeepsSidesAsWholeNumbersWhereAPlotDoes) {
  const PlotArea area{.left = 5, .top = 6, .width = 7, .height = 14, .mode = 1};
  for (const RoundingCase& row : {
           RoundingCase{Rounding::None,
                        {2.5F, 1.5F, 3.5F, 3.5F},
                        {1.0416666F, 1.25F, 1.4583334F, 2.9166667F}},
           RoundingCase{
               Rounding::Height, {2.5F, 1.5F, 3.5F, 4}, {1.0416666F, 1.25F, 1.4583334F, 3}},
           RoundingCase{Rounding::All, {2, 2, 4, 4}, {1, 1, 1, 3}},
       }) {
    const auto paper = NewPaper(2, 4);
    PlotFrame frame(*paper, area, row.rounding);
    frame.MeasureRectangle();
    EXPECT_EQ(Sides(frame), row.page);
    frame([] { Fail(); });
    EXPECT_EQ(Sides(frame), row.fallback);
  }
}

TEST_F(Frame, FallsBackSideBySide) {
  // Down is 0 twips per pixel: left and width are measured, then top fails and takes all four with
  // it, then height fails too.
  const auto no_y = NewPaper(2, 0);
  PlotFrame first(*no_y, Page(1));
  first.MeasureRectangle();
  EXPECT_EQ(Sides(first), (std::vector<float>{20, 40, 100, 200}));
  // Across fails first: top and height are measured afterwards.
  const auto no_x = NewPaper(0, 4);
  PlotFrame second(*no_x, Page(1));
  second.MeasureRectangle();
  EXPECT_EQ(Sides(second), (std::vector<float>{20, 48, 100, 240}));
}

TEST_F(Frame, KeepsASideThatOverflowsInTheFallBackToo) {
  const auto paper = NewPaper(2, 4);
  PlotFrame frame(*paper, {.left = 8, .top = 8, .width = 1e6F, .height = 8, .mode = 1},
                  Rounding::All);
  frame.MeasureRectangle();
  // 500000 pixels overflow 16 bits, and so do 208333: the width stays 0. The left side fell back to
  // 1.67, the other two are measured later.
  EXPECT_EQ(Sides(frame), (std::vector<float>{2, 2, 0, 2}));
}

TEST_F(Frame, DropsAFailingStepAndGoesOn) {
  const auto picture = NewPicture(100, 50);
  PlotFrame frame(*picture, Page(0));
  int steps = 0;
  frame([&] { ++steps; });
  EXPECT_EQ(Sides(frame), (std::vector<float>{0, 0, 0, 0}));  // all went well
  frame([&] {
    ++steps;
    Fail();
  });
  frame([&] { ++steps; });
  EXPECT_EQ(steps, 3);
  EXPECT_EQ(Sides(frame), (std::vector<float>{20, 40, 100, 200}));
  EXPECT_EQ(frame.CentreX(), 70);
  EXPECT_EQ(frame.CentreY(), 140);
}

TEST_F(Frame, SurvivesAFallBackThatFails) {
  const float nan = std::nanf("");
  const float infinite = std::numeric_limits<float>::infinity();
  const auto picture = NewPicture(100, 50);
  PlotFrame frame(*picture, {nan, infinite, -infinite, 48, 0});
  frame([] { Fail(); });
  EXPECT_EQ(Sides(frame), (std::vector<float>{0, 0, 0, 10}));
}

TEST_F(Frame, PassesOtherErrorsOn) {
  const auto picture = NewPicture(100, 50);
  PlotFrame frame(*picture, Page(0));
  EXPECT_THROW(frame([] { throw std::bad_alloc(); }), std::bad_alloc);
}

TEST_F(Frame, RefreshesPicturesOnly) {
  const auto picture = NewPicture(10, 10);
  PlotFrame(*picture, {}).Refresh();
  EXPECT_EQ(picture->TakeTrace(), json::parse(R"([["Refresh"]])"));
  const auto paper = NewPaper(2, 2);
  PlotFrame(*paper, {}).Refresh();
  EXPECT_EQ(paper->TakeTrace(), json::array());
}

}  // namespace
}  // namespace discoplan
