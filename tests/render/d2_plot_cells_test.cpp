// SPDX-License-Identifier: MIT
#include <algorithm>
#include <memory>

#include "discoplan/core/worker_pool.h"
#include "tests/render/plain_map.h"

namespace discoplan {
namespace {

using nlohmann::json;

class D2PlotCells : public PlotFixture {};

/// A site on each corner of the lattice of 25 mm that lies on the wafer, so that a map of that
/// pitch asks for site values only.
std::vector<Site> LatticeSites(float value) {
  std::vector<Site> sites;
  for (int k = -4; k <= 4; ++k) {
    for (int l = -4; l <= 4; ++l) {
      if (k * k + l * l > 16) continue;
      sites.push_back({25.0F * static_cast<float>(k), 25.0F * static_cast<float>(l), value});
    }
  }
  return sites;
}

enum class Target { Picture, PartOfPicture, Paper, PartOfPaper };

TEST_F(D2PlotCells, MakesItsCallsInOrder) {
  const PlotArea twips{.left = 150, .top = 300, .width = 3090, .height = 3090, .mode = 1};
  for (const Target where :
       {Target::Picture, Target::PartOfPicture, Target::Paper, Target::PartOfPaper}) {
    wafer target = LoadedWafer(FiveSites());  // 10 to 18, mean 14
    const bool picture = where == Target::Picture || where == Target::PartOfPicture;
    const bool part = where == Target::PartOfPicture || where == Target::PartOfPaper;
    PlotArea area = twips;
    area.mode = part ? 1 : 0;

    json trace;
    if (picture) {
      const auto surface = NewPicture(206, 206);
      target.D2Plot(*surface, 25, kIntervals, 0, true, area);
      trace = surface->TakeTrace();
    } else {
      const auto surface = NewPaper(15, 15);
      target.D2Plot(*surface, 25, kIntervals, 0, true, area);
      trace = surface->TakeTrace();
    }

    // 206 pixels across: one pixel is a millimetre. The picture itself begins at 0, 0, the
    // rectangle of twips at 10, 20.
    const double left = where == Target::Picture ? 0 : 10;
    const double top = where == Target::Picture ? 0 : 20;
    PlainMap plain{target};
    plain.n = 4;
    plain.cell = 25;
    plain.scale = 1;
    plain.centre_x = left + 103;
    plain.centre_y = top + 103;
    plain.high = 18;
    plain.low = 10;
    plain.floor = MapFloor(18, 10);
    plain.flat_y = -100;
    plain.kind = kIntervals;

    json due = json::array();
    if (!part) due.push_back(json::array({"Cls"}));  // paper has none: dropped
    if (!part && picture) due.push_back(json::array({"Refresh"}));
    for (const json& call : plain.Trace(picture)) due.push_back(call);
    const double arm = 6, breadth = 2, stroke = 3;  // also 90 / 15, 30 / 15 and 45 / 15
    for (const Site& site : FiveSites()) {
      const double x = plain.centre_x + site.x;
      const double y = plain.centre_y - site.y;
      const auto bar = [&](double across, double down, int colour) {
        due.push_back({"Line", x - across, y - down, x + across, y + down, colour, "filled"});
      };
      const bool above = site.z > 14;
      bar(arm, breadth, 0xFFFFFF);
      if (above) bar(breadth, arm, 0xFFFFFF);
      bar(stroke, 0, 0);
      if (above) bar(0, stroke, 0);
      if (picture) due.push_back(json::array({"Refresh"}));
    }
    ASSERT_EQ(trace.size(), due.size()) << static_cast<int>(where);
    for (std::size_t i = 0; i < due.size(); ++i) {
      ASSERT_EQ(trace[i], due[i]) << static_cast<int>(where) << " call " << i;
    }
  }
}

struct TieCase {
  float diameter;
  std::size_t columns;
};

TEST_F(D2PlotCells, RoundsTheNumberOfCellsHalfToEven) {
  for (const TieCase& row : {
           TieCase{40, 8},      // 2.5 cells: 2, too few
           TieCase{56, 8},      // 3.5: 4
           TieCase{72, 8},      // 4.5: 4
           TieCase{88, 12},     // 5.5: 6
           TieCase{1608, 200},  // 100.5: 100
           TieCase{1624, 200},  // 101.5: 102, too many
       }) {
    wafer target = LoadedWafer(FiveSites(), row.diameter, row.diameter);
    const auto picture = NewPicture(206, 206);
    target.D2Plot(*picture, 8, kIntervals, 0, false, {});
    EXPECT_EQ(Calls(picture->TakeTrace(), "DrawStyle").size(), row.columns * row.columns)
        << row.diameter;
  }
}

struct DiameterCase {
  double resolution;
  std::int16_t kind;
  float sigma_range;
  std::size_t columns;
  double disc;  // radius in pixels of the test circle of 50 mm
};

TEST_F(D2PlotCells, CoversTheWholeWaferForIntervalsWithASigmaRange) {
  for (const DiameterCase& row : {
           DiameterCase{10, kIntervals, 0, 10, 100},
           DiameterCase{10, kIntervals, 1, 20, 50},
           DiameterCase{10, kSigma, 1, 10, 100},
           DiameterCase{50, kIntervals, 1, 8, 100},    // too few: an eighth of the test diameter
           DiameterCase{0.5, kIntervals, 1, 200, 50},  // too many: 200 / 200 mm
           DiameterCase{0.25, kIntervals, 0, 200, 100},
       }) {
    wafer target = LoadedWafer(FiveSites(), 200, 100);
    const auto picture = NewPicture(206, 206);
    target.D2Plot(*picture, row.resolution, row.kind, row.sigma_range, false, {});
    const json trace = picture->TakeTrace();
    EXPECT_EQ(Calls(trace, "DrawStyle").size(), row.columns * row.columns) << row.resolution;
    EXPECT_FLOAT_EQ(Calls(trace, "Circle")[0][3], static_cast<float>(row.disc)) << row.resolution;
  }
}

TEST_F(D2PlotCells, LeavesCellsWithThreeCornersOffUnpainted) {
  wafer target = LoadedWafer(FiveSites());
  const auto picture = NewPicture(206, 206);
  target.D2Plot(*picture, 25, kIntervals, 0, false, {});
  // By hand, with corners at multiples of 25 mm and a circle of four of them.
  const std::vector<std::string> due = {
      "..####..", ".######.", "########", "########",
      "########", "########", ".######.", "..####..",
  };
  std::vector<std::string> painted(8, "........");
  for (const json& call : Calls(picture->TakeTrace(), "Polygon")) {
    const int right = call[1][0][0];
    const int upper = call[1][0][1];
    painted[static_cast<std::size_t>(upper - 3) / 25]
           [static_cast<std::size_t>(178 - (right - 25)) / 25] = '#';
  }
  EXPECT_EQ(painted, due);
}

TEST_F(D2PlotCells, TakesAHeightOfZeroForNoData) {
  // Limits 0 and 8 widen to -1 and 9, and the heights begin at -2.
  std::vector<Site> sites = LatticeSites(-2);
  const auto painted = [&] {
    wafer target = LoadedWafer(sites);
    target.setMaximalMinial(8, 0);
    const auto picture = NewPicture(206, 206);
    target.D2Plot(*picture, 25, kIntervals, 0, false, {});
    return PaintedCells(picture->TakeTrace());
  };
  EXPECT_TRUE(painted().empty());
  const auto at = [&](float x, float y) -> Site& {
    return *std::ranges::find_if(sites, [&](const Site& s) { return s.x == x && s.y == y; });
  };
  at(0, 0).z = 5;
  EXPECT_TRUE(painted().empty());  // three corners of each cell around it count as off
  at(25, 0).z = 5;
  // The mean of 0, 0 and twice 7/11 is 3.5 steps of 1/11: the eighth class.
  const json above = json::parse("[[128, 78], [103, 78], [103, 103], [128, 103]]");
  const json below = json::parse("[[128, 103], [103, 103], [103, 128], [128, 128]]");
  EXPECT_EQ(painted(),
            (std::vector<std::pair<double, json>>{{0xFF0000, above}, {0xFF0000, below}}));
}

struct ClassCase {
  float value;
  std::size_t interval;
};

TEST_F(D2PlotCells, HasNoBoundsOnTheFirstAndTheLastClass) {
  // Limits 0 and 8 widen to -1 and 9: ten classes of 1.
  for (const ClassCase& row :
       {ClassCase{1e6F, 0}, ClassCase{8.5F, 0}, ClassCase{7.5F, 1}, ClassCase{4.5F, 4},
        ClassCase{0.5F, 8}, ClassCase{-0.5F, 9}, ClassCase{-1.5F, 9}, ClassCase{-1e6F, 9}}) {
    wafer target = LoadedWafer(LatticeSites(row.value));
    target.setMaximalMinial(8, 0);
    const auto picture = NewPicture(206, 206);
    target.D2Plot(*picture, 25, kIntervals, 0, false, {});
    const auto painted = PaintedCells(picture->TakeTrace());
    EXPECT_EQ(painted.size(), 52U) << row.value;
    for (const auto& cell : painted) {
      ASSERT_EQ(cell.first, target.IntervalColor[row.interval]) << row.value;
    }
  }
}

struct BandCase {
  float value;        // of half of the wafer
  float sigma_range;  // around the mean of 10, with a deviation of 4
  std::size_t colour;
};

TEST_F(D2PlotCells, TellsWhatLiesBeyondTheSigmaRange) {
  for (const BandCase& row :
       {BandCase{6, 0.5F, 2}, BandCase{6, 2, 1}, BandCase{14, 0.5F, 0}, BandCase{14, 2, 1},
        BandCase{10.5F, 0.5F, 1}, BandCase{10.5F, 0, 0}}) {
    wafer target = LoadedWafer(LatticeSites(row.value));
    target.Maximum = target.PlotMaximum = 20;
    target.Minimum = target.PlotMinimum = 0;
    target.mean = 10;
    target.StdDev = 4;
    const auto picture = NewPicture(206, 206);
    target.D2Plot(*picture, 25, kSigma, row.sigma_range, false, {});
    for (const auto& cell : PaintedCells(picture->TakeTrace())) {
      ASSERT_EQ(cell.first, target.AuxColor[row.colour]) << row.value << ' ' << row.sigma_range;
    }
  }
}

TEST_F(D2PlotCells, OfAConstantHasOneColour) {
  for (const float value : {-7.0F, 0.0F, 7.0F}) {
    for (const std::int16_t kind : {kIntervals, kSigma}) {
      wafer target = LoadedWafer(LatticeSites(value));
      const auto picture = NewPicture(206, 206);
      target.D2Plot(*picture, 25, kind, 0, false, {});
      const auto painted = PaintedCells(picture->TakeTrace());
      EXPECT_EQ(painted.size(), 52U) << value;
      for (const auto& cell : painted) {
        ASSERT_EQ(cell.first, kind == kSigma ? target.AuxColor[1] : target.IntervalColor[5]);
      }
    }
  }
  wafer unpainted = LoadedWafer(LatticeSites(7));
  unpainted.IntervalColor[5] = unpainted.AuxColor[1] = 15;
  for (const std::int16_t kind : {kIntervals, kSigma}) {
    const auto picture = NewPicture(206, 206);
    unpainted.D2Plot(*picture, 25, kind, 0, false, {});
    EXPECT_TRUE(PaintedCells(picture->TakeTrace()).empty());
  }
}

TEST_F(D2PlotCells, MeasuresTheFlatOnTheWafer) {
  // The test circle of 194 mm ends at -97 mm, the flat at -96 mm cuts the line of -96 mm off.
  wafer target = LoadedWafer(FiveSites(), 200, 194);
  target.FlatRatio = 0.98F;
  const auto count = [&](float flat_ratio) {
    target.FlatRatio = flat_ratio;
    const auto picture = NewPicture(198, 198);
    target.D2Plot(*picture, 8, kIntervals, 0, false, {});  // 12 cells: the last line at -96 mm
    std::size_t lowest = 0;
    for (const json& call : Calls(picture->TakeTrace(), "Polygon")) {
      lowest += call[1][2][1] == 195;
    }
    return lowest;
  };
  // Of the line at -96 mm only x of 8, 0 and -8 lie in the circle, of that at -88 mm up to 40 mm.
  EXPECT_EQ(count(1), 10U);
  EXPECT_EQ(count(0.98F), 10U);  // both lower corners off instead of one: repaired all the same
  target.WaferDiameter = 180;    // the flat at -86.4 mm leaves out the line at -88 mm as well
  EXPECT_EQ(count(0.98F), 0U);
}

TEST_F(D2PlotCells, LeavesTheStateOfTheLastCellBehind) {
  wafer target = LoadedWafer(FiveSites());
  const auto picture = NewPicture(206, 206);
  target.D2Plot(*picture, 25, kIntervals, 0, true, {});
  EXPECT_EQ(picture->FillStyle(), 0);
  EXPECT_EQ(picture->DrawStyle(), 5);
  EXPECT_EQ(picture->DrawWidth(), 1);
  picture->TakeTrace();
  target.D2Plot(*picture, 25, kIntervals, 0, true, {});
  EXPECT_EQ(picture->TakeTrace()[3][0], "Circle");  // nothing set it back before
}

TEST_F(D2PlotCells, FillsTheScaleOfThePicture) {
  wafer target = LoadedWafer({{0, 0, 1}});
  const auto picture = NewPicture(500, 500);
  picture->ScaleLeft(-20);
  picture->ScaleTop(40);
  picture->ScaleWidth(300);
  picture->ScaleHeight(206);
  picture->TakeTrace();
  target.D2Plot(*picture, 25, kIntervals, 0, true, {9, 9, 9, 9, 2});
  EXPECT_EQ(picture->TakeTrace()[2],
            json::parse(R"(["Line", 124, 141, 136, 145, 16777215, "filled"])"));
}

TEST_F(D2PlotCells, ComparesMarksWithTheMeanInThirtyTwoBits) {
  wafer target = LoadedWafer({{0, 0, 2}, {50, 0, 2}});
  const auto lines = [&] {
    const auto picture = NewPicture(206, 206);
    target.D2Plot(*picture, 25, kIntervals, 0, true, {});
    return Calls(picture->TakeTrace(), "Line").size();
  };
  target.mean = 2 - 1e-12;  // 2 as a 32-bit float
  EXPECT_EQ(lines(), 4U);
  target.mean = 2 - 1e-6;
  EXPECT_EQ(lines(), 8U);
  target.mean = 2 + 1e-6;
  EXPECT_EQ(lines(), 4U);
}

TEST_F(D2PlotCells, GoesOnFromTheFallBackAfterAFailingCell) {
  wafer target = LoadedWafer(LatticeSites(7));
  target.IntervalColor[5] = 3e9F;  // no colour has 32 bits and a positive sign
  const auto picture = NewPicture(206, 206);
  target.D2Plot(*picture, 25, kIntervals, 0, false, {480, 960, 960, 480, 0});
  const json trace = picture->TakeTrace();
  EXPECT_EQ(Calls(trace, "FillColor").size(), 1U);  // that of the disc
  const json polygons = Calls(trace, "Polygon");
  ASSERT_EQ(polygons.size(), 52U);
  // The corners of the first cell were placed around 103, 103; then the rectangle is that of 100,
  // 200 and 200 by 100, with the scale as it was.
  EXPECT_EQ(polygons[0][1], json::parse("[[153, 3], [128, 3], [128, 28], [153, 28]]"));
  EXPECT_EQ(polygons[1][1], json::parse("[[225, 150], [200, 150], [200, 175], [225, 175]]"));
}

TEST_F(D2PlotCells, FallsBackOnAScreenWithoutResolution) {
  host_.SetScreen({0, 0});
  wafer target = LoadedWafer({{0, 0, 1}});
  const auto picture = NewPicture(0, 0);
  target.D2Plot(*picture, 25, kIntervals, 0, true, {480, 960, 988.8F, 988.8F, 1});
  const json line = Calls(picture->TakeTrace(), "Line")[1];
  EXPECT_FLOAT_EQ(line[1], 100 + 103 - 3);
  EXPECT_FLOAT_EQ(line[2], 200 + 103);
}

TEST_F(D2PlotCells, WithoutRoomTurnsTheScaleRound) {
  wafer target = LoadedWafer(FiveSites());
  const auto picture = NewPicture(2, 206);
  target.D2Plot(*picture, 25, kIntervals, 0, false, {});
  const json trace = picture->TakeTrace();
  EXPECT_EQ(Calls(trace, "Circle")[0],
            json::parse(R"(["Circle", 1, 103, -2, 16777215, null, null, null])"));
}

TEST_F(D2PlotCells, DependsNotOnWorkers) {
  wafer target = LoadedWafer(RandomSites(3, 300), 200, 194);
  const auto trace = [&] {
    const auto picture = NewPicture(400, 400);
    target.D2Plot(*picture, 1.3, kIntervals, 0, true, {});
    return picture->TakeTrace();
  };
  const json alone = trace();
  target.UseWorkers(std::make_shared<WorkerPool>(2));
  EXPECT_TRUE(trace() == alone);
}

}  // namespace
}  // namespace discoplan
