// SPDX-License-Identifier: MIT
#include <cmath>
#include <map>

#include "discoplan/base/numbers.h"
#include "discoplan/render/plots/contour_plot.h"
#include "tests/render/plot_fixture.h"

namespace discoplan {
namespace {

using nlohmann::json;

constexpr std::int16_t kSites = 1;
constexpr std::int16_t kMeshPoints = 2;
constexpr std::int16_t kNoMarks = 3;
constexpr std::int16_t kLow = 0;
constexpr std::int16_t kHigh = 1;
constexpr std::int16_t kAutomatic = 2;

/// Four sites whose mean is zero, spread over the wafer.
std::vector<Site> AroundZero() { return {{-80, 0, -10}, {80, 0, 10}, {0, -80, -5}, {0, 80, 5}}; }

struct Segment {
  double x1, y1, x2, y2;
};

/// The segments of one level by the words of the rule: a mesh of R rings around the centre, each
/// triangle with its edges 1-2, 1-3 and 2-3.
struct PlainContour {
  const wafer& source;
  int rings = 5;
  double scale = 1, centre_x = 103, centre_y = 103;

  Site Point(int ring, int number) const {
    const double radius = static_cast<double>(source.TestDiameter) * ring / (2 * rings);
    const double angle = ring == 0 ? 0 : number % (8 * ring) * (wafer::kPi / (4.0 * ring));
    Site point{static_cast<float>(radius * std::cos(angle)),
               static_cast<float>(-radius * std::sin(angle)), 0};
    point.z = source.Interpolation(point.x, point.y);
    return point;
  }

  static bool Crossed(const Site& a, const Site& b, double l) {
    return !((a.z < l || b.z > l) && (a.z > l || b.z < l)) && a.z != b.z;
  }

  SurfacePoint Crossing(const Site& a, const Site& b, double l) const {
    const double za = a.z, zb = b.z;
    const double x = b.x - (double{b.x} - a.x) * (zb - l) / (zb - za);
    const double y = b.y - (double{b.y} - a.y) * (zb - l) / (zb - za);
    return {static_cast<float>(x * scale + centre_x), static_cast<float>(centre_y - y * scale)};
  }

  void Add(std::vector<json>& lines, double l, json colour, const Site& p1, const Site& p2,
           const Site& p3) const {
    std::optional<SurfacePoint> start;
    std::optional<SurfacePoint> end;
    if (Crossed(p1, p2, l)) start = Crossing(p1, p2, l);
    if (Crossed(p1, p3, l)) (start ? end : start) = Crossing(p1, p3, l);
    if (Crossed(p2, p3, l)) end = Crossing(p2, p3, l);
    if (!end) return;
    lines.push_back({"Line", ToJson(start->x), ToJson(start->y), ToJson(end->x), ToJson(end->y),
                     colour, "line"});
  }

  /// Sorted, since the order within a level is free.
  std::vector<json> Lines(double level, json colour) const {
    std::vector<json> lines;
    for (int k = 1; k <= rings; ++k) {
      for (int sector = 0; sector < 8; ++sector) {
        for (int m = 0; m < k; ++m) {
          const Site inner = Point(k - 1, sector * (k - 1) + m);
          const Site outer = Point(k, sector * k + m);
          const Site next_outer = Point(k, sector * k + m + 1);
          Add(lines, level, colour, inner, outer, next_outer);
          if (m == k - 1) continue;
          Add(lines, level, colour, inner, next_outer, Point(k - 1, sector * (k - 1) + m + 1));
        }
      }
    }
    std::ranges::sort(lines);
    return lines;
  }
};

class D2Contour : public PlotFixture {
 protected:
  void Plot(wafer& target, Surface& surface, const ContourSettings& settings,
            const PlotArea& area = {}) {
    target.D2Contour(surface, settings, area,
                     [&](const Message& message) { messages_.push_back(message); });
  }

  /// On a picture of 206 by 206 pixels, whose centre is 103, 103.
  json Trace(wafer target, const ContourSettings& settings) {
    const auto picture = NewPicture(206, 206);
    Plot(target, *picture, settings);
    return picture->TakeTrace();
  }

  /// The lines of each level; a level ends with a Refresh.
  static std::vector<std::vector<json>> Levels(const json& trace) {
    std::vector<std::vector<json>> levels;
    std::vector<json> lines;
    bool begun = false;
    for (const json& call : trace) {
      if (call == json{"DrawWidth", 2}) begun = true;
      if (!begun) continue;
      if (call[0] == "Line") lines.push_back(call);
      if (call[0] != "Refresh") continue;
      std::ranges::sort(lines);
      levels.push_back(std::exchange(lines, {}));
    }
    return levels;
  }

  std::vector<Message> messages_;
};

const json kOutlineOnPicture = json::parse(R"([
    ["Cls"], ["Refresh"], ["FillColor", 16777215], ["DrawStyle", 0],
    ["Circle", 103, 103, 100, 0, null, null, null], ["ForeColor", 0], ["Refresh"]])");

TEST_F(D2Contour, ThreeSitesGiveTheOutlineAlone) {
  EXPECT_EQ(Trace(LoadedWafer({{0, 0, 1}, {50, 0, 2}, {0, 50, 3}}), {.radius = 100}),
            kOutlineOnPicture);
  EXPECT_TRUE(messages_.empty());
}

TEST_F(D2Contour, LevelsTooCloseGiveTheOutlineAndABox) {
  // 0.005 percent of a range of 20 is less than a ten-thousandth of it.
  EXPECT_EQ(Trace(LoadedWafer(AroundZero()), {.radius = 100, .interval = 0.005F}),
            kOutlineOnPicture);
  ASSERT_EQ(messages_.size(), 1U);
  EXPECT_EQ(messages_[0].text, "Difference of Mean, Maximum, and Minimum too small");
  EXPECT_EQ(messages_[0].title, "No Contour Plot possible");
  EXPECT_TRUE(messages_[0].system_modal);
  EXPECT_FALSE(messages_[0].critical);
}

struct LevelCase {
  const char* name;
  std::vector<float> values;                      // at five sites
  std::optional<std::pair<float, float>> limits;  // upper, lower
  float interval;
  float spacing;
  int above;
  int below;
};

TEST_F(D2Contour, DrawsTheMeanThenTheLevelsAboveThenThoseBelow) {
  for (const LevelCase& row : {
           // A tenth of 18: 15.8 and 17.6; 12.2 and 10.4.
           LevelCase{"extreme above the mean", {10, 12, 14, 16, 18}, {}, 10, 1.8F, 2, 2},
           // The upper bound is the plot's, the lower one that of the data.
           LevelCase{"limits", {10, 12, 14, 16, 18}, {{15, 13}}, 10, 1.8F, 0, 2},
           LevelCase{"wide limits", {10, 12, 14, 16, 18}, {{20, 0}}, 10, 1.8F, 3, 2},
           // A tenth of 20: -13 and -11; -17 and -19.
           LevelCase{"negative", {-20, -15, -10, -17, -13}, {}, 10, 2, 2, 2},
           // A quarter of the range of 20; the ends themselves are no levels.
           LevelCase{"mean of zero", {-10, -5, 0, 5, 10}, {}, 25, 5, 1, 1},
           LevelCase{"all zero", {0, 0, 0, 0, 0}, {}, 10, 0, 0, 0},
           LevelCase{"all equal", {8, 8, 8, 8, 8}, {}, 10, 0.8F, 0, 0},
       }) {
    std::vector<Site> sites = FiveSites();
    for (std::size_t i = 0; i < sites.size(); ++i) sites[i].z = row.values[i];
    wafer target = LoadedWafer(sites);
    if (row.limits) target.setMaximalMinial(row.limits->first, row.limits->second);
    const json trace =
        Trace(target, {.radius = 100, .interval = row.interval, .mark_sites = kNoMarks});

    const PlainContour plain{target};
    std::vector<std::vector<json>> expected = {plain.Lines(target.mean, 0x008000)};
    for (int k = 1; k <= row.above; ++k) {
      double level = target.mean;
      for (int i = 0; i < k; ++i) level += row.spacing;
      expected.push_back(plain.Lines(level, 0x000080));
    }
    for (int k = 1; k <= row.below; ++k) {
      double level = target.mean;
      for (int i = 0; i < k; ++i) level -= row.spacing;
      expected.push_back(plain.Lines(level, 0x800000));
    }
    EXPECT_EQ(Levels(trace), expected) << row.name;
    EXPECT_TRUE(messages_.empty()) << row.name;
  }
}

TEST_F(D2Contour, DrawsTheSegmentsOfAPlainWalkOverTheTriangles) {
  struct Case {
    std::int16_t resolution;
    std::size_t sites;
    int rings;
  };
  for (const Case& row : {Case{kLow, 40, 5}, Case{kHigh, 60, 10}, Case{kAutomatic, 26, 3}}) {
    const wafer target = LoadedWafer(RandomSites(7, row.sites), 200, 194);
    const json trace = Trace(target, {.radius = 97,
                                      .interval = 3,
                                      .mark_sites = kNoMarks,
                                      .resolution = row.resolution,
                                      .plot_colored = 0});
    const auto levels = Levels(trace);
    const PlainContour plain{.source = target, .rings = row.rings, .scale = 0.97};
    const auto spacing = static_cast<float>(double{target.Maximum} * 3 / 100);
    EXPECT_EQ(levels[0], plain.Lines(target.mean, 0));
    EXPECT_EQ(levels[1], plain.Lines(target.mean + spacing, 0));
    EXPECT_GT(levels.size(), 6U);
    EXPECT_FALSE(levels[0].empty());
  }
}

// Each end of a segment is an end of one more segment, or lies on the border of the mesh.
TEST_F(D2Contour, CurvesEndAtTheTestCircleOnly) {
  for (const unsigned seed : {1U, 2U, 3U}) {
    const json trace =
        Trace(LoadedWafer(RandomSites(seed, 80)),
              {.radius = 100, .interval = 4, .mark_sites = kNoMarks, .resolution = kHigh});
    // A border of 80 chords: their middles lie a little within the circle.
    const double border = 100 * std::cos(wafer::kPi / 80) - 1e-3;
    for (const auto& level : Levels(trace)) {
      std::map<std::pair<double, double>, int> ends;  // in thousandths of a pixel
      for (const json& line : level) {
        for (const std::size_t at : {1U, 3U}) {
          ++ends[{std::round(line[at].get<double>() * 1e3),
                  std::round(line[at + 1].get<double>() * 1e3)}];
        }
      }
      for (const auto& [end, count] : ends) {
        const double off = std::hypot(end.first / 1e3 - 103, end.second / 1e3 - 103);
        EXPECT_TRUE(off >= border || count % 2 == 0) << end.first << ' ' << end.second;
      }
    }
  }
}

// With five sites the inner ring of two has a radius of 50, so that the sites lie on points of the
// mesh. The level is that of the centre and of the points below and above it: the curve runs along
// the two edges between them, once in the triangle on either side. In the other four triangles
// around the centre both crossed edges meet the level there, and the segment has no length.
TEST_F(D2Contour, ALevelAtAPointOfTheMeshJoinsItsSegments) {
  const wafer target =
      LoadedWafer({{0, 0, 10}, {50, 0, 12}, {-50, 0, 8}, {0, 50, 10}, {0, -50, 10}});
  const auto levels = Levels(Trace(
      target, {.radius = 100, .interval = 50, .mark_sites = kNoMarks, .resolution = kAutomatic}));
  std::map<std::pair<long, long>, int> ends;
  for (const json& line : levels[0]) {
    if (line[1] == 103 && line[2] == 103) {
      ++ends[{std::lround(line[3].get<double>()), std::lround(line[4].get<double>())}];
    }
  }
  const std::map<std::pair<long, long>, int> expected = {
      {{103, 153}, 2}, {{103, 53}, 2}, {{103, 103}, 4}};
  EXPECT_EQ(ends, expected);
}

TEST_F(D2Contour, SetsWidthAndColourForEachFamily) {
  json calls = json::array();
  const json trace = Trace(LoadedWafer(AroundZero()), {.radius = 100, .interval = 60});
  for (const json& call : trace) {
    if (call[0] == "ForeColor" || call[0] == "DrawWidth") calls.push_back(call);
  }
  EXPECT_EQ(calls, json::parse(R"([["ForeColor", 0], ["ForeColor", 32768], ["DrawWidth", 2],
                                   ["DrawWidth", 1], ["ForeColor", 128], ["ForeColor", 8388608],
                                   ["ForeColor", 0], ["DrawWidth", 1]])"));
}

TEST_F(D2Contour, WithoutColoursAllIsBlack) {
  const json trace =
      Trace(LoadedWafer(AroundZero()), {.radius = 100, .interval = 20, .plot_colored = 0});
  for (const json& call : Calls(trace, "ForeColor")) EXPECT_EQ(call[1], 0);
  for (const json& call : Calls(trace, "Line")) EXPECT_EQ(call[5], 0);
}

// A pixel per mm. 0.5 and 1.5 mm right of the centre are rounded to the even pixel.
TEST_F(D2Contour, MarksSitesWithAMinusOrAboveTheMeanWithAPlus) {
  const json trace = Trace(LoadedWafer({{0.5F, 0, 0}, {1.5F, 10, 0}, {0, -20, 0}, {-30, 40, 4}}),
                           {.radius = 100, .interval = 200, .mark_sites = kSites});
  const auto lines = Calls(trace, "Line");
  ASSERT_GE(lines.size(), 5U);
  EXPECT_EQ(json(std::vector<json>(lines.end() - 5, lines.end())), json::parse(R"([
      ["Line", 101, 103, 107, 103, 0, "line"], ["Line", 101, 93, 107, 93, 0, "line"],
      ["Line", 100, 123, 106, 123, 0, "line"], ["Line", 70, 63, 76, 63, 0, "line"],
      ["Line", 73, 60, 73, 66, 0, "line"]])"));
}

TEST_F(D2Contour, TakesAMeshByResolutionAndNumberOfSites) {
  struct Case {
    std::int16_t resolution;
    std::size_t sites;
    std::size_t points;
  };
  for (const Case& row : {
           Case{kLow, 4, 121},         Case{kLow, 500, 121},       Case{kHigh, 4, 441},
           Case{kAutomatic, 4, 25},    Case{kAutomatic, 25, 25},   Case{kAutomatic, 26, 49},
           Case{kAutomatic, 49, 49},   Case{kAutomatic, 50, 81},   Case{kAutomatic, 81, 81},
           Case{kAutomatic, 82, 121},  Case{kAutomatic, 121, 121}, Case{kAutomatic, 122, 169},
           Case{kAutomatic, 169, 169}, Case{kAutomatic, 170, 225}, Case{kAutomatic, 226, 289},
           Case{kAutomatic, 290, 361}, Case{kAutomatic, 361, 361}, Case{kAutomatic, 362, 441},
           Case{kAutomatic, 900, 441},
       }) {
    std::vector<Site> sites = RandomSites(3, row.sites);
    for (Site& site : sites) site.z = 0;
    const json trace =
        Trace(LoadedWafer(sites),
              {.radius = 100, .mark_sites = kMeshPoints, .resolution = row.resolution});
    EXPECT_EQ(Calls(trace, "Line").size(), row.points) << row.resolution << ' ' << row.sites;
  }
}

// Two rings: the centre, eight points at 50 mm and sixteen at 100 mm, all from the right on and
// around with the Y axis of the surface. cos 45 = 0.7071, cos 22.5 = 0.9239, sin 22.5 = 0.3827.
TEST_F(D2Contour, NumbersThePointsOfTheMeshRingByRing) {
  std::vector<Site> sites = AroundZero();
  for (Site& site : sites) site.z = 0;
  const auto lines =
      Calls(Trace(LoadedWafer(sites),
                  {.radius = 100, .mark_sites = kMeshPoints, .resolution = kAutomatic}),
            "Line");
  ASSERT_EQ(lines.size(), 25U);
  const std::map<std::size_t, std::pair<int, int>> middles = {
      {0, {103, 103}},  {1, {153, 103}},  {2, {138, 138}}, {3, {103, 153}},
      {5, {53, 103}},   {7, {103, 53}},   {8, {138, 68}},  {9, {203, 103}},
      {10, {195, 141}}, {13, {103, 203}}, {17, {3, 103}},  {24, {195, 65}}};
  for (const auto& [at, middle] : middles) {
    const auto& [x, y] = middle;
    EXPECT_EQ(lines[at], json({"Line", x - 3, y, x + 3, y, 0, "line"})) << at;
  }
}

TEST_F(D2Contour, MarksPointsUnderTheFlatToo) {
  std::vector<Site> sites = AroundZero();
  for (Site& site : sites) site.z = 0;
  wafer target = LoadedWafer(sites);
  target.FlatRatio = wafer::kFlatRatio;
  const auto paper = NewPaper(10, 10);
  Plot(target, *paper, {.radius = 100, .mark_sites = kMeshPoints, .resolution = kAutomatic},
       {.width = 400, .height = 400, .mode = 1});
  const auto lines = Calls(paper->TakeTrace(), "Line");
  ASSERT_EQ(lines.size(), 2U + 25U);
  EXPECT_EQ(lines[2 + 13], json::parse(R"(["Line", 155, 300, 245, 300, 0, "line"])"));
}

// With a ratio of 0.98 the flat lies at 0.96 of the radius, and its half is 0.28 of it.
TEST_F(D2Contour, PaintsOverWhatTheFlatCutsOffExceptOnAPicture) {
  wafer target = LoadedWafer({});
  target.FlatRatio = wafer::kFlatRatio;
  const auto paper = NewPaper(10, 10);
  Plot(target, *paper, {.radius = 1000},
       {.left = 200, .top = 300, .width = 4000, .height = 5000, .mode = 1});
  const json trace = paper->TakeTrace();
  ASSERT_EQ(trace.size(), 6U);
  EXPECT_EQ(trace[2], json::parse(R"(["Circle", 2200, 2800, 1000, 0, null, null, null])"));
  const std::vector<double> box = {1920, 3760, 2480, 5000};
  const std::vector<double> flat = {1920, 3760, 2480, 3760};
  for (std::size_t k = 0; k < 4; ++k) {
    EXPECT_NEAR(trace[4][k + 1].get<double>(), box[k], 1e-3) << k;
    EXPECT_NEAR(trace[5][k + 1].get<double>(), flat[k], 1e-3) << k;
  }
  EXPECT_EQ(trace[4][5], 0xFFFFFF);
  EXPECT_EQ(trace[4][6], "filled");
  EXPECT_EQ(trace[5][5], 0x0000FF);
  EXPECT_EQ(trace[5][6], "line");

  EXPECT_TRUE(Calls(Trace(target, {.radius = 100}), "Line").empty());
}

// In a part of a page the units are those of the arguments, and the centre is whole: 50.5 is 50.
TEST_F(D2Contour, InAPartOfAPageClearsNothing) {
  wafer target = LoadedWafer(AroundZero());
  const auto picture = NewPicture(206, 206);
  Plot(target, *picture, {.radius = 40, .interval = 60, .mark_sites = kSites},
       {.width = 101, .height = 103, .mode = 1});
  const json trace = picture->TakeTrace();
  EXPECT_TRUE(Calls(trace, "Cls").empty());
  EXPECT_EQ(trace[2], json::parse(R"(["Circle", 50, 52, 40, 0, null, null, null])"));
  EXPECT_EQ(Calls(trace, "Line").back(), json::parse(R"(["Line", 50, -25, 50, 65, 0, "line"])"));
}

// Levels at 0, 6 and -6. In a part of a page only the opening, the outline and the lower levels are
// not shown at once.
TEST_F(D2Contour, ShowsThePictureAfterEachLevel) {
  wafer target = LoadedWafer(AroundZero());
  const auto picture = NewPicture(206, 206);
  for (const auto& [mode, shown] : {std::pair<std::int16_t, std::size_t>{0, 5}, {1, 2}}) {
    Plot(target, *picture, {.radius = 40, .interval = 30, .mark_sites = kNoMarks},
         {.width = 100, .height = 100, .mode = mode});
    EXPECT_EQ(Calls(picture->TakeTrace(), "Refresh").size(), shown) << mode;
  }
}

TEST_F(D2Contour, ALoopWhoseLevelDoesNotMoveOnEnds) {
  for (const float interval : {0.0F, -1.0F}) {
    wafer target = LoadedWafer({{-80, 0, 1}, {80, 0, 3}, {0, -80, 1}, {0, 80, 3}});
    target.setMaximalMinial(5, 5);  // no range, and above the mean
    const json trace = Trace(target, {.radius = 100, .interval = interval, .mark_sites = kNoMarks});
    EXPECT_EQ(Levels(trace).size(), 3U) << interval;
  }
}

TEST_F(D2Contour, ALoopWhoseLevelMovesAwayEnds) {
  wafer target = LoadedWafer({{-80, 0, 1}, {80, 0, 3}, {0, -80, 1}, {0, 80, 3}});
  target.setMaximalMinial(10, 1000);  // the wrong way round, so that a negative spacing passes
  const json trace = Trace(target, {.radius = 100, .interval = -1, .mark_sites = kNoMarks});
  EXPECT_EQ(Levels(trace).size(), 3U);
}

TEST_F(D2Contour, LeavesWithTheFirstError) {
  wafer target = LoadedWafer(AroundZero());
  const auto paper = NewPaper(10, 10);
  EXPECT_THROW(Plot(target, *paper, {.radius = 100}), RunTimeError);  // paper can't be cleared
  target.WaferDiameter = 0;
  EXPECT_THROW(Trace(target, {.radius = 100}), RunTimeError);
  target = LoadedWafer({{0, 0, 1}, {0, 50, 2}, {50, 0, 3}, {1e6F, 0, 4}});
  EXPECT_THROW(Trace(target, {.radius = 100}), RunTimeError);  // a mark beyond 16 bits
}

}  // namespace
}  // namespace discoplan
