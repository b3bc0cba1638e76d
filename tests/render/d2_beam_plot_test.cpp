// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include "discoplan/render/plots/bar_plot.h"
#include "tests/render/plot_fixture.h"

namespace discoplan {
namespace {

using nlohmann::json;

constexpr BeamView kFromAbove = {.beam_width = 10,
                                 .beam_height = 5,
                                 .beam_scale = 1,
                                 .grid_rotation = 0,
                                 .wafer_rotation = 0,
                                 .grid_inclination = 90};

class D2BeamPlot : public PlotFixture {
 protected:
  // 230 by 220 pixels hold a wafer of 200 mm with feet of 20 by 10 mm at one pixel per mm.
  json Trace(wafer target, const BeamView& view, float across = 230, float down = 220) {
    const auto picture = NewPicture(across, down);
    target.D2BeamPlot(*picture, view, false, {});
    return picture->TakeTrace();
  }

  static BeamView FromTheSide(float beam_scale) {
    BeamView view = kFromAbove;
    view.beam_scale = beam_scale;
    view.grid_inclination = 0;
    return view;
  }
};

TEST_F(D2BeamPlot, DrawsFlatSquaresFromAboveTheBackOneFirst) {
  EXPECT_EQ(Trace(LoadedWafer({{0, 0, 10}, {0, 50, 20}}), kFromAbove), json::parse(R"([
      ["Cls"], ["Refresh"], ["ForeColor", 0], ["FillColor", 16777215], ["Cls"],
      ["Circle", 115, 110, 100, null, null, null, 1],
      ["FillColor", 128], ["FillStyle", 0], ["Polygon", [[105, 65], [125, 65], [125, 55], [105, 55]]],
      ["FillColor", 128], ["FillStyle", 0], ["Polygon", [[105, 65], [125, 65], [125, 65], [105, 65]]],
      ["Refresh"],
      ["FillColor", 8388736], ["FillStyle", 0],
      ["Polygon", [[105, 115], [125, 115], [125, 105], [105, 105]]],
      ["FillColor", 8388736], ["FillStyle", 0],
      ["Polygon", [[105, 115], [125, 115], [125, 115], [105, 115]]],
      ["Refresh"]])"));
}

// The bars' heights take 10 x (20 - 10) = 100 pixels of 110.
TEST_F(D2BeamPlot, FromTheSideHasNoTops) {
  const json trace = Trace(LoadedWafer({{0, 0, 10}, {0, 50, 20}}), FromTheSide(10), 230, 110);
  EXPECT_EQ(Calls(trace, "Circle")[0],
            json::parse(R"(["Circle", 115, 105, 100, null, null, null, 0])"));
  EXPECT_EQ(Calls(trace, "Polygon"),
            json::parse(R"([["Polygon", [[105, 105], [125, 105], [125, 5], [105, 5]]],
                            ["Polygon", [[105, 105], [125, 105], [125, 105], [105, 105]]]])"));
}

TEST_F(D2BeamPlot, DrawsTheFacesThatCanBeSeen) {
  const struct {
    float rotation;
    std::size_t sides;
  } rows[] = {{0, 1},   {0.1F, 2}, {45, 2},  {89, 2},  {90, 1},  {91, 2},  {180, 1},
              {181, 2}, {270, 1},  {271, 2}, {359, 2}, {360, 1}, {400, 1}, {-10, 1}};
  for (const auto& row : rows) {
    BeamView view = kFromAbove;
    view.grid_rotation = row.rotation;
    view.grid_inclination = 35;
    EXPECT_EQ(Calls(Trace(LoadedWafer({{0, 0, 10}}), view), "Polygon").size(), 1 + row.sides)
        << row.rotation;
  }
}

// Turned by 90 degrees the first foot vector points to the back and the second one to the left:
// F1 (5, -10), F2 (5, 10), F3 (-5, 10), F4 (-5, -10) around the site.
TEST_F(D2BeamPlot, TurnsTheFeet) {
  BeamView view = kFromAbove;
  view.grid_rotation = 90;
  const json trace = Trace(LoadedWafer({{0, 0, 10}}), view, 220, 230);
  EXPECT_EQ(Calls(trace, "Polygon"), json::parse(R"([
      ["Polygon", [[115, 125], [115, 105], [105, 105], [105, 125]]],
      ["Polygon", [[115, 125], [115, 125], [105, 125], [105, 125]]]])"));
}

// On a tall picture 290 of 300 pixels hold the wafer of 200 mm and half a foot at each side, which
// reaches 10 |cos| + 5 |sin| mm to the side at any turn; on a wide one 10 |sin| + 5 |cos| downward.
TEST_F(D2BeamPlot, FitsTheTurnedFeetOfAnyQuarter) {
  const auto radius = [&](float rotation, float across, float down) {
    BeamView view = kFromAbove;
    view.grid_rotation = rotation;
    const json trace = Trace(LoadedWafer({{0, 0, 10}}), view, across, down);
    return Calls(trace, "Circle")[0][3].get<double>();
  };
  const double cosine = std::sqrt(0.75);
  for (const float rotation : {30.0F, 150.0F, 210.0F, 330.0F}) {
    EXPECT_NEAR(radius(rotation, 300, 1000), 29000 / (200 + 20 * cosine + 5), 0.001) << rotation;
    EXPECT_NEAR(radius(rotation, 1000, 300), 29000 / (200 + 10 + 10 * cosine), 0.001) << rotation;
  }
}

TEST_F(D2BeamPlot, TurnsTheSitesAboutTheCentre) {
  BeamView view = kFromAbove;
  view.wafer_rotation = 90;  // (50, 0) goes to (0, 50)
  const json polygon = Calls(Trace(LoadedWafer({{50, 0, 10}}), view), "Polygon")[0];
  EXPECT_EQ(polygon[1][0], json::parse("[105, 65]"));
}

TEST_F(D2BeamPlot, PaintsFromTheBackToTheFront) {
  const json trace = Trace(LoadedWafer(RandomSites(3, 700)), kFromAbove);
  const auto polygons = Calls(trace, "Polygon");
  ASSERT_EQ(polygons.size(), 1400U);
  for (std::size_t i = 2; i < polygons.size(); i += 2) {
    EXPECT_GE(polygons[i][1][0][1], polygons[i - 2][1][0][1]) << i;
  }
}

TEST_F(D2BeamPlot, SplitsTheRangeIntoTenClasses) {
  const std::vector<float> values = {0, 0.99F, 1, 4.5F, 9, 10};
  const std::vector<std::size_t> classes = {9, 9, 8, 5, 0, 0};
  std::vector<Site> sites;
  for (std::size_t i = 0; i < values.size(); ++i) {
    sites.push_back({0, -10.0F * static_cast<float>(i), values[i]});
  }
  const wafer target = LoadedWafer(sites);
  const auto colours = Calls(Trace(target, kFromAbove), "FillColor");
  ASSERT_EQ(colours.size(), 1 + 2 * values.size());
  for (std::size_t i = 0; i < values.size(); ++i) {
    EXPECT_EQ(colours[1 + 2 * i][1], target.IntervalColor[classes[i]]) << values[i];
  }
}

TEST_F(D2BeamPlot, OneConstantValueHasTheFirstColour) {
  const wafer target = LoadedWafer({{0, 0, 7}, {10, 10, 7}});
  for (const json& call : Calls(Trace(target, kFromAbove), "FillColor")) {
    EXPECT_TRUE(call[1] == 16777215 || call[1] == target.IntervalColor[0]) << call;
  }
}

TEST_F(D2BeamPlot, WidensTheClassesWithAPlotLimit) {
  wafer target = LoadedWafer({{0, 0, 0}, {0, 10, 100}});
  target.setMaximalMinial(8, 0);  // classes from -1 to 9
  const auto colours = Calls(Trace(target, kFromAbove), "FillColor");
  EXPECT_EQ(colours[1][1], target.IntervalColor[0]);
  EXPECT_EQ(colours[3][1], target.IntervalColor[8]);
}

TEST_F(D2BeamPlot, ValuesBelowTheFloorReachDownward) {
  wafer target = LoadedWafer({{0, 0, 10}, {0, 50, 20}});
  target.ScaleFloor = 15;  // 50 pixels above it and 50 below
  const json trace = Trace(target, FromTheSide(10), 230, 110);
  EXPECT_EQ(Calls(trace, "Circle")[0][2], 155);
  EXPECT_EQ(Calls(trace, "Polygon"),
            json::parse(R"([["Polygon", [[105, 155], [125, 155], [125, 105], [105, 105]]],
                            ["Polygon", [[105, 155], [125, 155], [125, 205], [105, 205]]]])"));
}

TEST_F(D2BeamPlot, WithoutSitesDrawsTheDiscAlone) {
  EXPECT_EQ(Trace(LoadedWafer({}), kFromAbove), json::parse(R"([
      ["Cls"], ["Refresh"], ["ForeColor", 0], ["FillColor", 16777215], ["Cls"],
      ["Circle", 115, 110, 100, null, null, null, 1]])"));
}

TEST_F(D2BeamPlot, ASideWithoutExtentLeavesTheScaleToTheOtherOne) {
  wafer target = LoadedWafer({{0, 0, 10}});
  target.ScaleFloor = 10;  // seen from the side there is no height at all
  EXPECT_EQ(Calls(Trace(target, FromTheSide(1)), "Circle")[0][3], 100);
  // Without a diameter and feet there is no width either: the height decides, 100 pixels for 10.
  target = LoadedWafer({{0, 0, 10}, {0, 0, 20}}, 0);
  BeamView view = FromTheSide(1);
  view.beam_width = view.beam_height = 0;
  EXPECT_THAT(Calls(Trace(target, view, 230, 110), "Polygon"),
              testing::Contains(
                  json::parse(R"(["Polygon", [[115, 105], [115, 105], [115, 5], [115, 5]]])")));
}

TEST_F(D2BeamPlot, OnPaperTakesTheRectangleFromTwips) {
  wafer target = LoadedWafer({{0, 0, 10}, {0, 50, 20}});
  const auto paper = NewPaper(2, 4);
  target.D2BeamPlot(*paper, kFromAbove, true, {20, 40, 460, 880, 1});
  const json trace = paper->TakeTrace();
  EXPECT_EQ(Calls(trace, "Cls").size() + Calls(trace, "Refresh").size(), 0U);
  EXPECT_EQ(Calls(trace, "Circle")[0],
            json::parse(R"(["Circle", 125, 120, 100, null, null, null, 1])"));
}

TEST_F(D2BeamPlot, PutsTheScaleOfTheLimitsBack) {
  wafer target = LoadedWafer({{0, 0, 10}, {0, 50, 20}});
  target.ScaleFloor = 0;
  target.D2BeamPlot(*NewPicture(230, 220), kFromAbove, false, {});
  EXPECT_EQ(target.ScaleFloor, 10);
}

TEST_F(D2BeamPlot, AFaceThatCannotBePlacedIsLeftOut) {
  wafer target = LoadedWafer({{0, 0, 0}, {0, 50, 1e10F}});
  target.setMaximalMinial(1, 0);
  EXPECT_EQ(Calls(Trace(target, FromTheSide(1)), "Polygon").size(), 1U);  // the other bar
}

}  // namespace
}  // namespace discoplan
