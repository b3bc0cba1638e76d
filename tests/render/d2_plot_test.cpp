// SPDX-License-Identifier: MIT
#include <cmath>
#include <random>

#include "discoplan/base/numbers.h"
#include "tests/render/plain_map.h"

namespace discoplan {
namespace {

using nlohmann::json;

class D2Plot : public PlotFixture {};

struct MapCase {
  const char* name;
  double resolution;
  std::int16_t kind;
  float sigma_range;
  bool flat;
  bool limited;
  bool constant;
};

TEST_F(D2Plot, PaintsTheCellsOfAPlainWalk) {
  std::mt19937 random(5);
  std::normal_distribution<float> value(50, 7);
  std::uniform_real_distribution<float> along(-95, 95);
  for (const MapCase& row : {
           MapCase{"intervals", 5, kIntervals, 0, false, false, false},
           MapCase{"flat", 5, kIntervals, 0, true, false, false},
           MapCase{"limits", 8, kIntervals, 0, false, true, false},
           MapCase{"sigma", 5, kSigma, 0.5F, true, false, false},
           MapCase{"constant", 10, kIntervals, 0, false, false, true},
           MapCase{"constant sigma", 10, kSigma, 1, false, false, true},
           MapCase{"fine", 1.3, kIntervals, 0, true, false, false},
       }) {
    std::vector<Site> sites;
    while (sites.size() < 60) {
      const Site site{along(random), along(random), row.constant ? 5 : value(random)};
      if (std::hypot(site.x, site.y) < 97) sites.push_back(site);
    }
    wafer target = LoadedWafer(sites, 200, 194);
    if (row.flat) target.FlatRatio = 0.98F;
    if (row.limited) target.setMaximalMinial(55, 45);
    target.IntervalColor[4] = 15;  // this class stays unpainted

    const auto picture = NewPicture(301, 287);
    target.D2Plot(*picture, row.resolution, row.kind, row.sigma_range, false, {});

    PlainMap plain{target};
    plain.n = std::nearbyint(97 / row.resolution);
    plain.cell = row.resolution;
    plain.scale = (287 - 6) / (2 * plain.n * plain.cell);
    plain.centre_x = 301 / 2.0;
    plain.centre_y = 287 / 2.0;
    const double widening = row.limited ? (55.0 - 45.0) / 8 : 0;
    plain.high = double{target.PlotMaximum} + widening;
    plain.low = double{target.PlotMinimum} - widening;
    plain.floor = MapFloor(plain.high, plain.low);
    plain.flat_y = row.flat ? -96.0F : -100.0F;
    plain.kind = row.kind;
    plain.sigma_range = row.sigma_range;
    const auto due = plain.Cells();
    const auto painted = PaintedCells(picture->TakeTrace());
    ASSERT_GT(due.size(), 100U) << row.name;
    EXPECT_EQ(painted, due) << row.name;
  }
}

TEST_F(D2Plot, BeginsWithAWhiteDiscAndEndsARowWithARefresh) {
  wafer target = LoadedWafer(FiveSites());
  const auto picture = NewPicture(206, 206);
  target.D2Plot(*picture, 50, kIntervals, 0, false, {});  // n = 2 is too few: 4, cells of 25 mm
  const json trace = picture->TakeTrace();
  EXPECT_EQ(trace[0], json::parse(R"(["Cls"])"));
  EXPECT_EQ(trace[1], json::parse(R"(["Refresh"])"));
  EXPECT_EQ(trace[2], json::parse(R"(["FillColor", 16777215])"));
  EXPECT_EQ(trace[3], json::parse(R"(["Circle", 103, 103, 100, 16777215, null, null, null])"));
  EXPECT_EQ(Calls(trace, "Refresh").size(), 1U + 8U + 1U);  // opening, a row each, the end
  EXPECT_EQ(Calls(trace, "DrawStyle").size(), 64U);         // every cell, painted or not
  EXPECT_EQ(Calls(trace, "DrawStyle")[0][1], 5);
  EXPECT_EQ(trace.back(), json::parse(R"(["Refresh"])"));
  EXPECT_EQ(target.ScaleFloor, target.PlotMinimum);  // put back
}

TEST_F(D2Plot, LeavesTheMapOutBelowFourSites) {
  for (const std::size_t count : {0U, 1U, 3U, 4U}) {
    std::vector<Site> sites = FiveSites();
    sites.resize(count);
    wafer target = LoadedWafer(sites);
    const auto picture = NewPicture(206, 206);
    target.D2Plot(*picture, 5, kIntervals, 0, true, {});
    const json trace = picture->TakeTrace();
    EXPECT_EQ(Calls(trace, "Circle").size(), count > 3 ? 1U : 0U) << count;
    EXPECT_EQ(Calls(trace, "Polygon").empty(), count <= 3) << count;
    EXPECT_GE(Calls(trace, "Line").size(), 2 * count) << count;
  }
}

struct CellCase {
  double resolution;
  double width;  // of the first cell in mm
  int columns;
};

TEST_F(D2Plot, KeepsTheNumberOfCellsBetween4And100) {
  for (const CellCase& row : {
           CellCase{1e9, 25, 8}, CellCase{28.6, 25, 8},  // n = 3.497 rounds to 3: too few
           CellCase{28.5, 28.5, 8},                      // 3.509 rounds to 4
           CellCase{22.3, 22.3, 8}, CellCase{22.2, 22.2, 10}, CellCase{1, 1, 200},
           CellCase{0.994, 1, 200}, CellCase{0.01, 1, 200},
           CellCase{0.003, 25, 8},  // 33333 cells overflow 16 bits: the count stays 0
           CellCase{0, 25, 8},      // and so does a division by zero
       }) {
    wafer target = LoadedWafer(FiveSites());
    const auto picture = NewPicture(1206, 1206);
    target.D2Plot(*picture, row.resolution, kIntervals, 0, false, {});
    const json trace = picture->TakeTrace();
    EXPECT_EQ(Calls(trace, "DrawStyle").size(),
              static_cast<std::size_t>(row.columns) * static_cast<std::size_t>(row.columns))
        << row.resolution;
    const json cell = Calls(trace, "Polygon").front()[1];
    const double pixels = std::abs(cell[0][0].get<double>() - cell[1][0].get<double>());
    EXPECT_NEAR(pixels, 1200 / (row.width * row.columns) * row.width, 1) << row.resolution;
  }
}

TEST_F(D2Plot, LeavesOffWhatLiesOnTheFlat) {
  // Cells of 4 mm put a lattice line exactly at -96 mm, which is 0.48 diameters.
  wafer target = LoadedWafer(FiveSites());
  const auto lowest = [&] {
    const auto picture = NewPicture(206, 206);
    target.D2Plot(*picture, 4, kIntervals, 0, false, {});
    double y = 0;
    for (const json& call : Calls(picture->TakeTrace(), "Polygon")) {
      for (const json& corner : call[1]) y = std::max(y, corner[1].get<double>());
    }
    return y;
  };
  EXPECT_EQ(lowest(), 203);  // 103 + 100: with a notch the circle isn't cut
  target.FlatRatio = 0.98F;
  EXPECT_EQ(lowest(), 199);  // the cells that straddle -92 mm reach -96 mm
}

TEST_F(D2Plot, MarksSitesByTheirValueAgainstTheMean) {
  wafer target = LoadedWafer({{0, 0, 1}, {50, 0, 3}, {0, -50, 2}});  // mean 2
  const auto picture = NewPicture(206, 206);
  target.D2Plot(*picture, 5, kIntervals, 0, true, {});
  const json lines = Calls(picture->TakeTrace(), "Line");
  EXPECT_EQ(lines, json::parse(R"([
      ["Line", 97, 101, 109, 105, 16777215, "filled"],
      ["Line", 100, 103, 106, 103, 0, "filled"],
      ["Line", 147, 101, 159, 105, 16777215, "filled"],
      ["Line", 151, 97, 155, 109, 16777215, "filled"],
      ["Line", 150, 103, 156, 103, 0, "filled"],
      ["Line", 153, 100, 153, 106, 0, "filled"],
      ["Line", 97, 151, 109, 155, 16777215, "filled"],
      ["Line", 100, 153, 106, 153, 0, "filled"]])"));
}

TEST_F(D2Plot, OnAPrinterCountsInItsTwips) {
  wafer target = LoadedWafer({{0, 0, 1}, {50, 0, 3}, {0, -50, 2}});
  const auto paper = NewPaper(10, 5);
  // L = 60, W = 206, T = 200, H = 206; s = 1 on the 8 cells of 25 mm.
  target.D2Plot(*paper, 50, kIntervals, 0, true,
                {.left = 600, .top = 1000, .width = 2060, .height = 1030, .mode = 1});
  const json trace = paper->TakeTrace();
  EXPECT_TRUE(Calls(trace, "Cls").empty());
  EXPECT_TRUE(Calls(trace, "Refresh").empty());
  // Half sizes: 90 / 10 = 9, 30 / 5 = 6 and 45 / 10 = 4.5, which rounds to the even 4.
  EXPECT_EQ(trace[0], json::parse(R"(["Line", 154, 297, 172, 309, 16777215, "filled"])"));
  EXPECT_EQ(trace[1], json::parse(R"(["Line", 159, 303, 167, 303, 0, "filled"])"));
}

TEST_F(D2Plot, FallsBackTo48TwipsPerPixel) {
  wafer target = LoadedWafer({{0, 0, 1}});
  const PlotArea area{.left = 480, .top = 960, .width = 988.8F, .height = 988.8F, .mode = 1};
  // Without a vertical resolution everything falls back: 100 + 103, 200 + 103.
  const auto no_y = NewPaper(10, 0);
  target.D2Plot(*no_y, 50, kIntervals, 0, true, area);
  const json lines = Calls(no_y->TakeTrace(), "Line");
  EXPECT_FLOAT_EQ(lines[1][1], 203 - 4);
  EXPECT_FLOAT_EQ(lines[1][2], 303);
  // Without a horizontal one the later sides are measured all the same: T = 192, H = 197.76.
  const auto no_x = NewPaper(0, 5);
  target.D2Plot(*no_x, 50, kIntervals, 0, true, area);
  const json others = Calls(no_x->TakeTrace(), "Line");
  EXPECT_FLOAT_EQ(others[1][1], 203);  // the half sizes that need it stay 0
  EXPECT_FLOAT_EQ(others[1][2], 192 + 197.76F / 2);
}

TEST_F(D2Plot, InAPartOfAPageMeasuresByTheScreen) {
  wafer target = LoadedWafer({{0, 0, 1}});
  const auto picture = NewPicture(500, 500);
  target.D2Plot(*picture, 50, kIntervals, 0, true,
                {.left = 150, .top = 300, .width = 3090, .height = 3090, .mode = 1});
  const json trace = picture->TakeTrace();
  EXPECT_TRUE(Calls(trace, "Cls").empty());
  EXPECT_EQ(trace[0], json::parse(R"(["Line", 107, 121, 119, 125, 16777215, "filled"])"));
}

TEST_F(D2Plot, GoesOnOnASurfaceWithoutRoom) {
  for (const float pixels : {0.0F, 3.0F, 6.0F}) {
    wafer target = LoadedWafer(FiveSites());
    const auto picture = NewPicture(pixels, pixels);
    target.D2Plot(*picture, 5, kIntervals, 0, true, {});
    EXPECT_FALSE(Calls(picture->TakeTrace(), "Circle").empty()) << pixels;
  }
}

TEST_F(D2Plot, SurvivesEverything) {
  const float nan = std::nanf("");
  for (const float value : {nan, 0.0F, -5.0F, 1e30F, 3e38F}) {
    wafer target = LoadedWafer(FiveSites());
    target.TestDiameter = value;
    target.WaferDiameter = value;
    const auto picture = NewPicture(100, 100);
    EXPECT_NO_THROW(target.D2Plot(*picture, value, kIntervals, value, true, {}));
    EXPECT_NO_THROW(
        target.D2Plot(*picture, 5, kSigma, value, true, {value, value, value, value, 1}));
  }
}

}  // namespace
}  // namespace discoplan
