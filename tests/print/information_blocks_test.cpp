// SPDX-License-Identifier: MIT
#include "tests/print/page_fixture.h"

#include "discoplan/base/numbers.h"

namespace discoplan {
namespace {

using nlohmann::json;

class InformationBlocks : public PageFixture {
 protected:
  wafer source_ = LoadedWafer(FiveSites(), 200, 194);
};

TEST_F(InformationBlocks, TellTheStatistics) {
  source_.Units = "angstrom of oxide";
  print_.DrawWaferStatistics(source_, 1000, 2000);
  // Mean 14, deviation sqrt(40 / 4); labels first, then values.
  EXPECT_EQ(Texts(Trace()), json::parse(R"([[1150, 2130, "Wafer Statistics "],
      [1120, 2360, "Mean:"], [1120, 2600, "Maximum:"], [1120, 2840, "Minimum:"],
      [1120, 3080, "Std. Dev:"], [1120, 3560, "Range:"], [1120, 3800, "Hi/Lo Var:"],
      [1120, 4040, "Unit:"],
      [2080, 2360, "14.0"], [2080, 2600, "18.0"], [2080, 2840, "10.0"], [2080, 3080, "3.1623"],
      [2080, 3320, "22.59 %"], [2080, 3560, "8.0"], [2080, 3800, "28.57 %"],
      [2080, 4040, "angstrom of oxi"]])"));
}

TEST_F(InformationBlocks, LeaveThePercentOutUnlessTheMeanIsPositive) {
  source_ = LoadedWafer({{0, 0, -3}, {1, 0, 3}});
  print_.DrawWaferStatistics(source_, 0, 0);
  const auto texts = Texts(Trace());
  ASSERT_EQ(texts.size(), 15U);
  EXPECT_EQ(texts[13], json::parse(R"([1080, 1800, "0.00 %"])"));
  for (const json& text : texts) EXPECT_NE(text[1], 1320);
}

TEST_F(InformationBlocks, TellTheSize) {
  source_.TestDiameter = 0;
  print_.DrawWaferSize(source_, 1000, 2000);
  EXPECT_EQ(Texts(Trace()), json::parse(R"([[1150, 2130, "Wafer Size "],
      [1120, 2360, "Wafer Diam:"], [2080, 2360, "200.00 mm"],
      [1120, 2600, "Test Diam:"], [2080, 2600, "00.00 mm"],
      [1120, 2840, "No. Sites:"], [2080, 2840, "5"],
      [1120, 3080, "Style:"], [2080, 3080, "Notch"]])"));
  source_.FlatRatio = 0.98F;
  print_.DrawWaferSize(source_, 0, 0);
  EXPECT_EQ(Texts(Trace()).back()[2], "Flat");
}

TEST_F(InformationBlocks, TellTheRemarks) {
  source_.OperatorId = "Operator with a long name";
  source_.SpecialRemark = "none";
  print_.DrawWaferRemarks(source_, 0, 0);
  const auto texts = Texts(Trace());
  ASSERT_EQ(texts.size(), 15U);
  EXPECT_EQ(texts[2], json::parse(R"([1080, 360, "Operator with a"])"));
  EXPECT_EQ(texts[4][2], "");
  EXPECT_EQ(texts[13], json::parse(R"([120, 1800, "Special:"])"));
  EXPECT_EQ(texts[14], json::parse(R"([1080, 1800, "none"])"));
}

TEST_F(InformationBlocks, FrameAllAlike) {
  const struct {
    void (PrintWafer::*draw)(const wafer&, float, float);
    double height;
  } rows[] = {{&PrintWafer::DrawColoredLegend, 2895},
              {&PrintWafer::DrawWaferRemarks, 1875},
              {&PrintWafer::DrawWaferSize, 1155},
              {&PrintWafer::DrawWaferStatistics, 2115}};
  for (const auto& row : rows) {
    (print_.*row.draw)(source_, 1000, 2000);
    const auto lines = Calls(Trace(), "Line");
    EXPECT_EQ(lines[2], (json{"Line", nullptr, nullptr, 3775, 2260 + row.height, 4210752, "line"}));
  }
}

// In pixels: X (1000 + 210) / 10, Y (2000 + 500) / 20, pitch 24, swatches 255 / 20 wide.
TEST_F(InformationBlocks, ShowTheIntervals) {
  print_.DrawColoredLegend(source_, 1000, 2000);
  const json trace = Trace();
  const auto texts = Texts(trace);
  ASSERT_EQ(texts.size(), 11U);
  EXPECT_EQ(texts[0][2], "Legend ");
  EXPECT_NEAR(texts[1][0].get<double>(), 121 + 45, 1e-3);
  EXPECT_NEAR(texts[1][1].get<double>(), 125 + 4.8, 1e-3);
  EXPECT_EQ(texts[1][2], "17.2 - 18.0");
  EXPECT_EQ(texts[10][2], "10.0 - 10.8");
  EXPECT_NEAR(texts[10][1].get<double>(), 125 + 4.8 + 9 * 24, 1e-3);
  const auto swatches = Calls(trace, "Polygon");
  ASSERT_EQ(swatches.size(), 10U);
  EXPECT_EQ(swatches[0], json::parse(R"(["Polygon", [[121, 125], [134, 125], [134, 149],
                                                     [121, 149]]])"));
  EXPECT_EQ(swatches[9][1][0], json::parse("[121, 341]"));
  const auto colours = Calls(trace, "FillColor");
  EXPECT_EQ(colours[colours.size() - 11][1], source_.IntervalColor[0]);
}

TEST_F(InformationBlocks, OpenTheOuterIntervalsWithALimit) {
  source_.setMaximalMinial(22, 14);  // from 13 to 23
  print_.DrawColoredLegend(source_, 0, 0);
  const auto texts = Texts(Trace());
  EXPECT_EQ(texts[1][2], "22.0 > ");
  EXPECT_EQ(texts[2][2], "21.0 - 22.0");
  EXPECT_EQ(texts[10][2], " < 14.0");
}

TEST_F(InformationBlocks, ShowTheSigmaRange) {
  print_.DrawSigmaLegend(source_, 1000, 2000, 0.5F);
  const json trace = Trace();
  const auto texts = Texts(trace);
  ASSERT_EQ(texts.size(), 7U);
  EXPECT_EQ(texts[1], json::parse(R"([161, 129.8, ">   0.5"])"));
  // Seven characters of 6 pixels and an eighth of the offset of 40 farther; a quarter line higher.
  EXPECT_EQ(texts[2], json::parse(R"([208, 121.75, "s"])"));
  EXPECT_EQ(texts[3][2], "+-  0.5");
  EXPECT_EQ(texts[5], json::parse(R"([161, 225.8, "< - 0.5"])"));
  EXPECT_EQ(Calls(trace, "Polygon")[2][1][0], json::parse("[121, 221]"));
  EXPECT_EQ(Calls(trace, "Polygon")[2][1][2], json::parse("[134, 245]"));
}

TEST_F(InformationBlocks, PutTheSigmaSignBehindWhatIsLeftOfACutText) {
  print_.DrawSigmaLegend(source_, 1000, 2000, 1e-30F);
  const auto texts = Texts(Trace());
  // 33 characters of 6 pixels have room in 200, and their sign stands 5 pixels behind them.
  EXPECT_EQ(texts[1][2].get<std::string>().size(), 33U);
  EXPECT_EQ(texts[2][0], 161 + 33 * 6 + 5);
}

// 450 twips are 30.5 pixels in 32-bit floats, half to even, but a little more in 64-bit ones.
TEST_F(InformationBlocks, RoundTheOffsetOfIntervalsFromA32BitFloat) {
  paper_ = NewPaper(14.754098F, 20);
  print_.PrinterObj(paper_.get());
  print_.DrawColoredLegend(source_, 0, 0);
  EXPECT_NEAR(Texts(Trace())[1][0].get<double>(), 210 / 14.754098 + 30, 1e-3);
}

TEST_F(InformationBlocks, StandOnThePageAsFarAsTheyGo) {
  source_.Minimum = -3e38F;
  source_.Maximum = 3e38F;
  EXPECT_THROW(print_.DrawWaferStatistics(source_, 0, 0), RunTimeError);
  const json trace = Trace();
  EXPECT_EQ(Calls(trace, "Line").size(), 5U) << "the frame";
  const auto texts = Texts(trace);
  EXPECT_EQ(texts[7][2], "Unit:") << "the labels come first";
  EXPECT_EQ(texts.back()[1], 1320) << "the range is more than a number";
}

TEST_F(InformationBlocks, WithoutAFrameLeaveThePlaceInPixels) {
  float left = 1000, top = 2000;
  print_.DrawSigmaLegend_No_Frame(source_, left, top, 1.5F);
  EXPECT_EQ(left, 100);
  EXPECT_EQ(top, 100);
  const json trace = Trace();
  EXPECT_TRUE(Calls(trace, "Line").empty());
  EXPECT_EQ(Texts(trace)[0][2], ">   1.5");
  EXPECT_EQ(Abridged(trace)[0], "reset");
  EXPECT_EQ(Abridged(trace).back(), "reset");
}

TEST_F(InformationBlocks, WithoutAPrinterAreErrors) {
  PrintWafer print;
  try {
    print.DrawWaferSize(source_, 0, 0);
    FAIL() << "no error";
  } catch (const RunTimeError& error) {
    EXPECT_EQ(error.fault(), Fault::ObjectNotSet);
  }
}

}  // namespace
}  // namespace discoplan
