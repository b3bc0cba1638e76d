// SPDX-License-Identifier: MIT
#include "tests/render/plot_fixture.h"

namespace discoplan {
namespace {

using nlohmann::json;

constexpr int kWhiteText = 0xFFFFFF;

class D2Number : public PlotFixture {
 protected:
  json Trace(wafer target) {
    const auto picture = NewPicture(206, 206);
    target.D2Number(*picture, {});
    return picture->TakeTrace();
  }
};

TEST_F(D2Number, WithoutSitesDrawsTheCircleAlone) {
  EXPECT_EQ(Trace(LoadedWafer({}, 200, 200)), json::parse(R"([["Cls"], ["Refresh"],
                            ["Circle", 103, 103, 100, null, null, null, null]])"));
}

// Values 10 to 14: classes 0.4 wide. Characters are 6 pixels wide and 13 high.
TEST_F(D2Number, WritesEachSiteInStoreOrderCentredInItsClassColour) {
  EXPECT_EQ(Trace(LoadedWafer({{0, 0, 10}, {50, 0, 12.5F}, {0, -50.5F, 14}})), json::parse(R"([
      ["Cls"], ["Refresh"], ["Circle", 103, 103, 100, null, null, null, null],
      ["ForeColor", 8388736], ["CurrentX", 91], ["CurrentY", 96.5], ["Print", "10.0"], ["Refresh"],
      ["ForeColor", 65280], ["CurrentX", 141], ["CurrentY", 96.5], ["Print", "12.5"], ["Refresh"],
      ["ForeColor", 128], ["CurrentX", 91], ["CurrentY", 147], ["Print", "14.0"], ["Refresh"]])"));
}

TEST_F(D2Number, SplitsTheRangeIntoTenClasses) {
  const std::vector<float> values = {10,   9.5F, 8.5F, 7.5F, 6.5F, 5.5F,
                                     4.5F, 3.5F, 2.5F, 1.5F, 0.5F, 0};
  const std::vector<std::size_t> classes = {0, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 9};
  std::vector<Site> sites;
  for (const float value : values) sites.push_back({0, 0, value});
  const wafer target = LoadedWafer(sites);
  const auto colours = Calls(Trace(target), "ForeColor");
  ASSERT_EQ(colours.size(), values.size());
  for (std::size_t i = 0; i < values.size(); ++i) {
    EXPECT_EQ(colours[i][1], target.IntervalColor[classes[i]]) << values[i];
  }
}

TEST_F(D2Number, OneConstantValueHasTheSixthColour) {
  const auto colours = Calls(Trace(LoadedWafer({{0, 0, -7}, {9, 9, -7}})), "ForeColor");
  EXPECT_EQ(colours, (std::vector<json>(2, {"ForeColor", 0x008000})));
}

// Limits 14 and 22 widen to 13 and 23, and the scale begins a tenth of that below: at 12.
TEST_F(D2Number, WritesAValueAtTheScaleFloorInWhite) {
  wafer target = LoadedWafer({{0, 0, 10}, {9, 0, 12}, {0, 9, 30}});
  target.setMaximalMinial(22, 14);
  const auto colours = Calls(Trace(target), "ForeColor");
  EXPECT_EQ(colours, (std::vector<json>{{"ForeColor", target.IntervalColor[9]},
                                        {"ForeColor", kWhiteText},
                                        {"ForeColor", target.IntervalColor[0]}}));
}

TEST_F(D2Number, PutsTheScaleFloorBack) {
  wafer target = LoadedWafer({{0, 0, 10}, {9, 0, 12}});
  target.setMaximalMinial(22, 14);
  target.D2Number(*NewPicture(206, 206), {});
  EXPECT_EQ(target.ScaleFloor, 14);
  EXPECT_EQ(target.PlotRange, 8);
}

TEST_F(D2Number, WritesSitesOffTheTestCircleAndBelowTheFlat) {
  wafer target = LoadedWafer({{-140, 0, 1}, {0, -99, 2}}, 200, 200);
  target.FlatRatio = wafer::kFlatRatio;
  const json trace = Trace(target);
  EXPECT_EQ(Calls(trace, "CurrentX"), (std::vector<json>{{"CurrentX", -46}, {"CurrentX", 94}}));
  EXPECT_EQ(Calls(trace, "Print"), (std::vector<json>{{"Print", "1.0"}, {"Print", "2.0"}}));
}

TEST_F(D2Number, WritesOverlappingSitesOneOverTheOther) {
  const json trace = Trace(LoadedWafer({{5, 5, 3}, {5, 5, 1}, {5, 5, 2}}));
  EXPECT_EQ(Calls(trace, "Print"),
            (std::vector<json>{{"Print", "3.0"}, {"Print", "1.0"}, {"Print", "2.0"}}));
}

TEST_F(D2Number, WritesTheStoredValue) {
  const json trace = Trace(LoadedWafer({{0, 0, 0}, {0, 0, 1e-16F}, {0, 0, 0.1F}, {0, 0, 250000}}));
  EXPECT_EQ(Calls(trace, "Print"),
            (std::vector<json>{
                {"Print", "0.0"}, {"Print", "0.0"}, {"Print", "0.1"}, {"Print", "2.5E+5"}}));
}

// 1507.5 twips are 100.5 pixels, kept as 100.
TEST_F(D2Number, InAPartOfAPageClearsNothingAndKeepsAWholeHeight) {
  const auto picture = NewPicture(300, 300);
  LoadedWafer({}, 200, 94)
      .D2Number(*picture, {.left = 150, .top = 300, .width = 3000, .height = 1507.5F, .mode = 1});
  EXPECT_EQ(picture->TakeTrace(),
            json::parse(R"([["Circle", 110, 70, 47, null, null, null, null]])"));
}

// Without twips per pixel the rectangle comes at 4.8 of them: 100, 200, 200 by 300 pixels.
TEST_F(D2Number, APrinterWithoutResolutionIsTakenFor300DotsPerInch) {
  const auto paper = NewPaper(0, 0);
  LoadedWafer({{0, 0, 1}}, 200, 194)
      .D2Number(*paper, {.left = 480, .top = 960, .width = 960, .height = 1440, .mode = 1});
  const json trace = paper->TakeTrace();
  EXPECT_EQ(trace[0], json::parse(R"(["Circle", 200, 350, 97, null, null, null, null])"));
  EXPECT_EQ(Calls(trace, "Print").size(), 1U);
  EXPECT_TRUE(Calls(trace, "Refresh").empty());
}

TEST_F(D2Number, GoesOnOnASurfaceThatCannotBeCleared) {
  const auto paper = NewPaper(10, 10);
  LoadedWafer({{0, 0, 1}}, 200, 194).D2Number(*paper, {.width = 2000, .height = 2000});
  EXPECT_EQ(Calls(paper->TakeTrace(), "Circle"),
            (std::vector<json>{{"Circle", 100, 100, 97, nullptr, nullptr, nullptr, nullptr}}));
}

}  // namespace
}  // namespace discoplan
