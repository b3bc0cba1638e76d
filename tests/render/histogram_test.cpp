// SPDX-License-Identifier: MIT
#include <cmath>
#include <limits>

#include "tests/render/histogram_fixture.h"

namespace discoplan {
namespace {

TEST_F(Histogram, BarsStandOnTheValueAxis) {
  const struct {
    std::int16_t type;
    std::vector<json> boxes;
  } kCases[] = {
      {kBottom, {{0, 160, 150, 240}, {150, 0, 300, 240}}},
      {kTop, {{0, 80, 150, 0}, {150, 240, 300, 0}}},
      {kLeft, {{100, 240, 0, 120}, {300, 120, 0, 0}}},
      {kRight, {{200, 240, 300, 120}, {0, 120, 300, 0}}},
      {7, {{0, 160, 150, 240}, {150, 0, 300, 240}}},
  };
  for (const auto& [type, boxes] : kCases) {
    wafer source = FourSites();
    const json trace = Draw(source, type).bars;
    EXPECT_EQ(source.HistoPeakCount, 3);
    EXPECT_EQ(Lines(trace, "filled", kBeam), boxes) << type;
    EXPECT_EQ(Lines(trace, "box", 0), boxes) << type;
    const std::vector<json> widths = Calls(trace, "DrawWidth");
    EXPECT_EQ(widths, (std::vector<json>{{"DrawWidth", 1}, {"DrawWidth", 2}, {"DrawWidth", 1}}));
  }
}

TEST_F(Histogram, OneTickPerCountAndPerBinEnd) {
  const std::vector<json> bottom_values = {{60, 64, 60, 260},   {210, 266, 210, 260},
                                           {210, 64, 210, 260}, {360, 266, 360, 260},
                                           {360, 64, 360, 260}, {360, 266, 360, 260}};
  const std::vector<json> left_values = {{64, 260, 60, 260}, {54, 140, 60, 140}, {64, 140, 60, 140},
                                         {54, 20, 60, 20},   {64, 20, 60, 20},   {54, 20, 60, 20}};
  const std::vector<json> bottom_counts = {{6, 180, 56, 180}, {6, 100, 56, 100}, {6, 20, 56, 20}};
  const struct {
    std::int16_t type;
    std::vector<json> counts, values;
  } kCases[] = {
      {kBottom, bottom_counts, bottom_values},
      {kTop, bottom_counts, bottom_values},
      {kLeft, {{160, 264, 160, 274}, {260, 264, 260, 274}, {360, 264, 360, 274}}, left_values},
      {kRight, {{260, 264, 260, 274}, {160, 264, 160, 274}, {60, 264, 60, 274}}, left_values},
  };
  for (const auto& [type, counts, values] : kCases) {
    wafer source = FourSites();
    std::vector<json> expected = counts;
    expected.insert(expected.end(), values.begin(), values.end());
    EXPECT_EQ(Lines(Draw(source, type).axes, "line", kDarkBlue), expected) << type;
  }
}

TEST_F(Histogram, Labels) {
  const double sigma = std::sqrt(50.0 / 3);
  const double across = 30 * sigma;
  const double down = 24 * sigma;
  const struct {
    std::int16_t type;
    std::vector<Text> texts;
  } kCases[] = {
      {kBottom,
       {{"-1s", 210 - across - 9, 271},
        {"Mean", 198, 271},
        {"1s", 210 + across - 6, 271},
        {"3", 48, 20},
        {"0", 48, 261},
        {"0.0", 51, 271},
        {"10.0", 348, 271}}},
      {kTop,
       {{"-1s", 210 - across - 9, 271},
        {"Mean", 198, 271},
        {"1s", 210 + across - 6, 271},
        {"3", 48, 261},
        {"0", 48, 20},
        {"0.0", 51, 271},
        {"10.0", 348, 271}}},
      {kLeft,
       {{"-1s", 34, 140 + down - 6.5},
        {"Mean", 28, 133.5},
        {"1s", 40, 140 - down - 6.5},
        {"3", 357, 276},
        {"0", 57, 276},
        {"0.0", 34, 260},
        {"10.0", 28, 7}}},
      {kRight,
       {{"-1s", 34, 140 + down - 6.5},
        {"Mean", 28, 133.5},
        {"1s", 40, 140 - down - 6.5},
        {"3", 57, 276},
        {"0", 357, 276},
        {"0.0", 34, 260},
        {"10.0", 28, 7}}},
  };
  for (const auto& [type, texts] : kCases) {
    SCOPED_TRACE(type);
    wafer source = FourSites();
    const json trace = Draw(source, type).axes;
    ExpectTexts(trace, texts);
    EXPECT_EQ(Calls(trace, "ForeColor"),
              (std::vector<json>{{"ForeColor", 255}, {"ForeColor", kCurve}}));
  }
}

TEST_F(Histogram, ValueLabelOfALyingChartIsCentredByItsShorterText) {
  wafer source = WaferOf({9.5002F, 10, 10.6835F});
  const std::vector<Text> texts = TextsOf(Draw(source, kBottom).axes);
  const Text& lower = texts[texts.size() - 2];
  EXPECT_EQ(lower.text, "9.5002");
  EXPECT_EQ(lower.x, 60 - 9);
}

TEST_F(Histogram, UprightSigmaLabelsKeepClearOfTheValues) {
  // The mean is 3 pixels above the lower end.
  wafer source = WaferOf({9, 9, 9, 9, 9, 9, 9, 9, 10});
  source.setMaximalMinial(10, 9.1F);
  const std::vector<Text> texts = TextsOf(Draw(source, kLeft).axes);
  ASSERT_EQ(texts.front().text, "Mean");
  EXPECT_NEAR(texts.front().y, 260 - 13, 1e-3);
}

TEST_F(Histogram, GaussCurveIsScaledToTheSitesOfTheMiddleBin) {
  wafer source = FourSites();
  Draw(source, kBottom);
  EXPECT_NEAR(source.GaussPeak, BellPeak(5 / std::sqrt(50.0 / 3), 4), 1e-5);
}

TEST_F(Histogram, CountAxisReachesTheTopOfTheCurve) {
  // Ten bins of two sites each; the bell has more in the middle.
  wafer source = WaferOf({0,    0,    1.7F, 1.7F, 2.7F, 2.7F, 3.7F, 3.7F, 4.7F, 4.7F,
                          5.7F, 5.7F, 6.7F, 6.7F, 7.7F, 7.7F, 8.7F, 8.7F, 10,   10});
  HistogramChart chart = kScreen;
  chart.bins = 10;
  Draw(source, kBottom, chart);
  const double peak = BellPeak(1 / source.StdDev, 20) * 0.4;
  ASSERT_GT(peak, 2.5);
  EXPECT_EQ(source.HistoPeakCount, std::lround(peak));
}

TEST_F(Histogram, CurveFollowsTheBellPixelByPixel) {
  wafer source = FourSites();
  const struct {
    std::int16_t type;
    int length, depth;
    std::size_t along, across;  // which coordinates
  } kCases[] = {{kBottom, 300, 240, 0, 1},
                {kTop, 300, 240, 0, 1},
                {kLeft, 240, 300, 1, 0},
                {kRight, 240, 300, 1, 0}};
  for (const auto& c : kCases) {
    std::vector<json> lines = Lines(Draw(source, c.type).bars, "line", kCurve);
    ASSERT_EQ(lines.size(), static_cast<std::size_t>(c.length + 3));
    lines.erase(lines.begin(), lines.begin() + 3);  // the marks of sigma
    const auto expected_across = [&](int i) {
      const double share =
          source.GaussPeak / 3 * Bell((i * 10.0 / c.length - source.mean) / source.StdDev);
      return c.type == kTop || c.type == kLeft ? share * c.depth : c.depth - share * c.depth;
    };
    for (int i = 1; i <= c.length; ++i) {
      const json& line = lines[static_cast<std::size_t>(i) - 1];
      EXPECT_EQ(line[c.along], c.type <= kTop ? i - 1 : c.length - i + 1);
      EXPECT_EQ(line[c.along + 2], c.type <= kTop ? i : c.length - i);
      EXPECT_NEAR(line[c.across], expected_across(i - 1), 1e-3);
      EXPECT_NEAR(line[c.across + 2], expected_across(i), 1e-3);
    }
  }
}

TEST_F(Histogram, CurveAboveTheChartIsLeftOut) {
  // One site in each of ten bins; the bell has 1.2 in the middle, which rounds to 1.
  wafer source = WaferOf({0, 1.7F, 2.7F, 3.7F, 4.7F, 5.7F, 6.7F, 7.7F, 8.7F, 10});
  HistogramChart chart = kScreen;
  chart.bins = 10;
  const std::vector<json> lines = Lines(Draw(source, kBottom, chart).bars, "line", kCurve);
  ASSERT_EQ(source.HistoPeakCount, 1);
  std::size_t inside = 3;  // the marks of the mean and of one sigma to each side
  for (int i = 1; i <= 300; ++i) {
    if (source.GaussPeak * Bell((i / 30.0 - source.mean) / source.StdDev) <= 1) ++inside;
  }
  ASSERT_LT(inside, 250U);
  EXPECT_EQ(lines.size(), inside);
}

TEST_F(Histogram, SigmaMarksRunFromTheCurveToBeyondTheAxis) {
  const struct {
    std::int16_t type;
    double share_start, share_sign, x, y, to_x, to_y;
    std::size_t moving;
  } kCases[] = {
      {kBottom, 240, -240, 150, 0, 150, 250, 1},
      {kTop, 0, 240, 150, 0, 150, 0, 1},
      {kLeft, 0, 300, 0, 120, -10, 120, 0},
      {kRight, 300, -300, 0, 120, 310, 120, 0},
  };
  for (const auto& c : kCases) {
    wafer source = FourSites();
    const json mark = Lines(Draw(source, c.type).bars, "line", kCurve)[1];
    const double share = source.GaussPeak / 3 * Bell(0);
    const double from[] = {c.moving == 0 ? c.share_start + c.share_sign * share : c.x,
                           c.moving == 1 ? c.share_start + c.share_sign * share : c.y};
    EXPECT_NEAR(mark[0], from[0], 1e-3) << c.type;
    EXPECT_NEAR(mark[1], from[1], 1e-3) << c.type;
    EXPECT_NEAR(mark[2], c.to_x, 1e-3) << c.type;
    EXPECT_NEAR(mark[3], c.to_y, 1e-3) << c.type;
  }
}

TEST_F(Histogram, EqualValuesHaveNoCurveAndNoMarks) {
  wafer source = WaferOf({10, 10, 10});
  HistogramChart chart = kScreen;
  chart.bins = 10;
  const auto [bars, axes] = Draw(source, kBottom, chart);
  EXPECT_EQ(Lines(bars, "filled", kBeam), (std::vector<json>{{270, 0, 300, 240}}));
  EXPECT_TRUE(Lines(bars, "line", kCurve).empty());
  EXPECT_TRUE(Calls(axes, "ForeColor").empty());
  ExpectTexts(axes, {{"3", 48, 20}, {"0", 48, 261}, {"8.999", 51, 271}, {"10.0", 348, 271}});
  EXPECT_EQ(source.GaussPeak, 1);
}

TEST_F(Histogram, TwoSitesHaveNoBarsButMarksAndLabels) {
  wafer source = WaferOf({4, 6});
  source.HistoPeakCount = 5;
  const auto [bars, axes] = Draw(source, kBottom);
  EXPECT_TRUE(Lines(bars, "filled", kBeam).empty());
  EXPECT_EQ(Lines(axes, "line", kDarkBlue).size(), 5U);
  EXPECT_EQ(source.HistoPeakCount, 5);
  EXPECT_NEAR(source.GaussPeak, BellPeak(1 / std::sqrt(2.0), 2), 1e-6);
  EXPECT_EQ(Lines(bars, "line", kCurve).size(), 301U);
  ExpectTexts(
      axes,
      {{"Mean", 198, 271}, {"5", 48, 20}, {"0", 48, 261}, {"4.0", 51, 271}, {"6.0", 351, 271}});
}

TEST_F(Histogram, MarksOutsideThePlotLimitsAreLeftOut) {
  wafer source = WaferOf({0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10});
  source.setMaximalMinial(8, 2);
  HistogramChart chart = kScreen;
  chart.bins = 6;
  const auto [bars, axes] = Draw(source, kBottom, chart);
  EXPECT_EQ(Lines(bars, "filled", kBeam),
            (std::vector<json>{
                {0, 120, 50, 240}, {50, 0, 100, 240}, {150, 0, 200, 240}, {250, 0, 300, 240}}));
  ExpectTexts(
      axes,
      {{"Mean", 198, 271}, {"2", 48, 20}, {"0", 48, 261}, {"2.0", 51, 271}, {"8.0", 351, 271}});
}

TEST_F(Histogram, NothingInsideThePlotLimitsLeavesTheLabels) {
  for (const std::int16_t type : kAllTypes) {
    wafer source = WaferOf({0, 5, 10});
    source.setMaximalMinial(30, 20);
    HistogramChart chart = kScreen;
    chart.bins = 10;
    const auto [bars, axes] = Draw(source, type, chart);
    EXPECT_EQ(source.HistoPeakCount, 0);
    EXPECT_TRUE(Calls(bars, "Line").empty()) << type;
    EXPECT_TRUE(Calls(axes, "Line").empty()) << type;
    EXPECT_EQ(TextsOf(axes).size(), 4U) << type;
  }
}

TEST_F(Histogram, ControlLimitsShowInUprightChartsOnly) {
  ThreadControlLimits() = {.shown = true, .lower = 2.5F, .upper = 20};
  for (const std::int16_t type : kAllTypes) {
    SCOPED_TRACE(type);
    const bool upright = type == kLeft || type == kRight;
    wafer source = FourSites();
    const auto [bars, axes] = Draw(source, type);
    EXPECT_EQ(Lines(bars, "line", kDarkBlue),
              upright ? (std::vector<json>{{300, 180, 0, 180}, {300, -240, 0, -240}})
                      : std::vector<json>{});
    const std::vector<Text> texts = TextsOf(axes);
    ASSERT_EQ(texts.size(), upright ? 9U : 7U);
    if (!upright) continue;
    EXPECT_EQ(Calls(axes, "ForeColor")[0], (json{"ForeColor", 0xFF0000}));
    EXPECT_EQ(texts[0].text, "LCL");
    EXPECT_EQ(texts[0].x, 2);
    EXPECT_EQ(texts[0].y, 193.5);
    EXPECT_EQ(texts[1].text, "UCL");
    EXPECT_EQ(texts[1].y, -226.5);
  }
  ThreadControlLimits().shown = false;
  wafer source = FourSites();
  EXPECT_TRUE(Lines(Draw(source, kLeft).bars, "line", kDarkBlue).empty());
}

TEST_F(Histogram, RefreshesBothSurfacesThenTheCurve) {
  wafer source = FourSites();
  const auto [bars, axes] = Draw(source, kBottom);
  EXPECT_EQ(Calls(bars, "Refresh").size(), 2U);
  EXPECT_EQ(Calls(axes, "Refresh").size(), 1U);
}

TEST_F(Histogram, MeanIsPrintedInAFontOfItsOwn) {
  const auto paper = NewPaper(10, 20);
  const Font kept = {.name = "Arial", .size = 12, .bold = true, .underline = true};
  paper->Font(kept);
  wafer source = FourSites();
  source.Statistic(kBottom, *paper, *paper, {.width = 3000, .height = 4800, .mode = 1});
  EXPECT_EQ(paper->Font(), kept);
  std::map<std::string, std::string> fonts;
  std::string current;
  for (const auto& call : paper->TakeTrace()) {
    if (call[0] == "Font") current = call[1]["Name"];
    if (call[0] == "Print") fonts[call[1]] = current;
  }
  EXPECT_EQ(fonts["Mean"], "MS Sans Serif");
  EXPECT_EQ(fonts["1s"], "Arial");
  EXPECT_EQ(fonts["-1s"], "Arial");
}

TEST_F(Histogram, FailingMarkIsLeftOutAlone) {
  wafer source = FourSites();
  source.AuxColor[1] = std::numeric_limits<float>::quiet_NaN();
  const json trace = Draw(source, kBottom).bars;
  EXPECT_TRUE(Lines(trace, "filled", kBeam).empty());
  EXPECT_EQ(Lines(trace, "box", 0).size(), 2U);
  EXPECT_EQ(Lines(trace, "line", kCurve).size(), 303U);
}

TEST_F(Histogram, ImpossibleNumberOfBinsDrawsNoBars) {
  constexpr float kInfinity = std::numeric_limits<float>::infinity();
  for (const std::int16_t type : kAllTypes) {
    for (const float number :
         {0.0F, 0.3F, -5.0F, 32768.0F, 1e9F, kInfinity, std::numeric_limits<float>::quiet_NaN()}) {
      wafer source = FourSites();
      HistogramChart chart = kScreen;
      chart.bins = number;
      const auto [bars, axes] = Draw(source, type, chart);
      EXPECT_TRUE(Lines(bars, "filled", kBeam).empty()) << number;
      EXPECT_EQ(TextsOf(axes).size(), 7U) << number;
    }
  }
}

}  // namespace
}  // namespace discoplan
