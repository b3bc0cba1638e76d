// SPDX-License-Identifier: MIT
#include "tests/render/histogram_fixture.h"

namespace discoplan {
namespace {

/// The screen's chart in twips of a printer of 10 by 20 twips per pixel.
constexpr HistogramChart kPrint = {.left = 600,
                                   .top = 400,
                                   .width = 3000,
                                   .height = 4800,
                                   .bins = 2,
                                   .gap = 60,
                                   .plot_left = 600,
                                   .plot_top = 400,
                                   .mode = 1};

TEST_F(Histogram, LyingInPrint) {
  const auto paper = NewPaper(10, 20);
  paper->ScaleMode(3);
  wafer source = FourSites();
  source.Statistic(kBottom, *paper, *paper, kPrint);
  const json trace = paper->TakeTrace();
  EXPECT_EQ(Calls(trace, "FillColor"), (std::vector<json>{{"FillColor", 0x008000}}));
  EXPECT_TRUE(Calls(trace, "Refresh").empty());
  EXPECT_TRUE(Calls(trace, "Font.Name").empty());
  EXPECT_EQ(Lines(trace, "filled", kBeam),
            (std::vector<json>{{60, 180, 210, 260}, {210, 20, 360, 260}}));
  EXPECT_EQ(Lines(trace, "line", kDarkBlue), (std::vector<json>{{6, 180, 54, 180},
                                                                {6, 100, 54, 100},
                                                                {6, 20, 54, 20},
                                                                {60, 266, 60, 260},
                                                                {210, 266, 210, 260},
                                                                {210, 266, 210, 260},
                                                                {360, 266, 360, 260},
                                                                {360, 266, 360, 260},
                                                                {360, 266, 360, 260}}));
  const double across = 30 * std::sqrt(50.0 / 3);
  // The sigma labels stand whole lines below the chart, clear of the values' labels.
  ExpectTexts(trace, {{"-1s", 210 - across - 9, 299},
                      {"Mean", 198, 299},
                      {"1s", 210 + across - 6, 299},
                      {"3", 48, 13.5},
                      {"0", 48, 253.5},
                      {"0.0", 51, 280},
                      {"10.0", 348, 280}});
}

TEST_F(Histogram, UprightInPrint) {
  ThreadControlLimits() = {.shown = true, .lower = 2.5F, .upper = 7.5F};
  const auto paper = NewPaper(10, 20);
  paper->ScaleMode(3);
  wafer source = FourSites();
  source.Statistic(kLeft, *paper, *paper, kPrint);
  const json trace = paper->TakeTrace();
  EXPECT_EQ(Lines(trace, "filled", kBeam),
            (std::vector<json>{{160, 260, 60, 140}, {360, 140, 60, 20}}));
  EXPECT_EQ(Lines(trace, "line", kDarkBlue), (std::vector<json>{{160, 266, 160, 306},
                                                                {260, 266, 260, 306},
                                                                {360, 266, 360, 306},
                                                                {54, 260, 60, 260},
                                                                {54, 140, 60, 140},
                                                                {54, 140, 60, 140},
                                                                {54, 20, 60, 20},
                                                                {54, 20, 60, 20},
                                                                {54, 20, 60, 20},
                                                                {360, 200, 60, 200},
                                                                {360, 80, 60, 80}}));
  EXPECT_EQ(Lines(trace, "line", kCurve)[1][2], 60 - 40);
  const double down = 24 * std::sqrt(50.0 / 3);
  ExpectTexts(trace, {{"LCL", 33, 193.5},
                      {"UCL", 33, 73.5},
                      {"-1s", 11, 140 + down - 6.5},
                      {"Mean", 5, 133.5},
                      {"1s", 17, 140 - down - 6.5},
                      {"3", 357, 308},
                      {"0", 57, 308},
                      {"0.0", 11, 260},
                      {"10.0", 5, 7}});
}

TEST_F(Histogram, PrintOntoAPictureTakesTheScreensTwips) {
  const auto picture = NewPicture(420, 400);
  wafer source = FourSites();
  source.Statistic(kLeft, *picture, *picture,
                   {.left = 900,
                    .top = 300,
                    .width = 4500,
                    .height = 3600,
                    .bins = 2,
                    .gap = 60,
                    .plot_left = 900,
                    .plot_top = 300,
                    .mode = 1});
  const json trace = picture->TakeTrace();
  EXPECT_EQ(Lines(trace, "filled", kBeam),
            (std::vector<json>{{160, 260, 60, 140}, {360, 140, 60, 20}}));
  EXPECT_EQ(Lines(trace, "line", kDarkBlue)[0], (json{160, 264, 160, 274}));
  EXPECT_TRUE(Calls(trace, "Refresh").empty());
}

}  // namespace
}  // namespace discoplan
