// SPDX-License-Identifier: MIT
#include <cmath>
#include <limits>
#include <memory>
#include <set>

#include "discoplan/core/worker_pool.h"
#include "discoplan/render/plots/surface_plot.h"
#include "tests/render/plot_fixture.h"

namespace discoplan {
namespace {

using nlohmann::json;

constexpr double kGrey = 0x80000000U;
constexpr double kWhiteFill = 0xFFFFFF;
constexpr std::int16_t kIntervals = 1;
constexpr std::int16_t kLinesOnly = 2;
constexpr std::int16_t kWhiteFaces = 3;
constexpr std::int16_t kSigma = 4;

std::vector<Site> FourSites(float value) {
  return {{-50, 0, value}, {50, 0, value}, {0, -50, value}, {0, 50, value}};
}

/// From straight above, the grid along the surface, and flat.
SurfaceView TopView() {
  return {.x_resolution = 50,
          .y_resolution = 50,
          .plot_scale = 0,
          .grid_rotation = 0,
          .wafer_rotation = 0,
          .grid_inclination = 90};
}

struct Face {
  int draw_style = -1;
  double fill = -1;
  int fill_style = -1;
  json corners;

  bool operator==(const Face&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Face& face) {
  return out << face.draw_style << ' ' << face.fill << ' ' << face.fill_style << ' '
             << face.corners;
}

std::vector<Face> Faces(const json& trace) {
  std::vector<Face> faces;
  Face face;
  for (const json& call : trace) {
    if (call[0] == "DrawStyle") face.draw_style = call[1];
    if (call[0] == "FillColor") face.fill = call[1];
    if (call[0] == "FillStyle") face.fill_style = call[1];
    if (call[0] != "Polygon") continue;
    face.corners = call[1];
    faces.push_back(std::exchange(face, {}));
  }
  return faces;
}

/// The faces by the rules told plainly: each corner of each cell is asked for anew.
struct PlainSurface {
  const wafer& source;
  const SurfaceView& view;
  std::int16_t kind;
  float sigma_range;
  double left, top, width, height;  // whole pixels

  double alpha = view.grid_rotation * static_cast<double>(wafer::kPi) / 180;
  double delta = view.wafer_rotation * static_cast<double>(wafer::kPi) / 180 - alpha;
  double theta = view.grid_inclination * static_cast<double>(wafer::kPi) / 180;
  int nx = Count(view.x_resolution), ny = Count(view.y_resolution);
  double dx = Side(view.x_resolution), dy = Side(view.y_resolution);
  double s = 0, z_full = 0, floor = 0, z_high = 0, z_low = 0;

  int Count(double resolution) const {
    return std::max(6, static_cast<int>(std::nearbyint(source.TestDiameter / 2 / resolution + 2)));
  }
  double Side(double resolution) const {
    const bool coarse = std::nearbyint(source.TestDiameter / 2 / resolution + 2) < 6;
    return coarse ? source.TestDiameter / 8 : resolution;
  }

  double Z(double value) const { return (value - floor) * z_full / (source.Maximum - floor); }

  void Prepare() {
    const double p1 = dx * std::cos(alpha), p2 = dy * std::cos(alpha);
    const double p3 = dx * std::sin(alpha), p4 = dy * std::sin(alpha);
    const double by_width = (width - 6) / 2 / (std::abs(p1) * nx + std::abs(p4) * ny);
    const double by_height =
        (height - 6) / (2 * std::sin(theta) * (std::abs(p3) * nx + std::abs(p2) * ny) +
                        view.plot_scale * std::cos(theta));
    s = std::min(by_width, by_height);
    z_full = s * view.plot_scale;
    const double highest = source.Maximum, lowest = source.Minimum;
    floor = static_cast<float>(highest != lowest ? lowest - 0.1 * (highest - lowest)
                                                 : lowest * (lowest < 0 ? 1.1 : 0.9) - 0.001);
    double high = source.PlotMaximum, low = source.PlotMinimum;
    if (high != highest || low != lowest) {
      const double widening = (high - low) / 8;
      high += widening;
      low -= widening;
    }
    z_high = Z(high);
    z_low = Z(low);
  }

  float CornerHeight(int i, int j) const {
    const double a = nx - i, b = ny - j;
    const double x = a * dx * std::cos(delta) + b * dy * std::sin(delta);
    const double y = b * dy * std::cos(delta) - a * dx * std::sin(delta);
    const double radius = source.TestDiameter / 2.0;
    const auto flat_y =
        static_cast<float>(-(double{source.FlatRatio} - 0.5) * source.WaferDiameter);
    if (x * x + y * y >= radius * radius || y <= flat_y) return 0;
    return static_cast<float>(
        Z(source.Interpolation(static_cast<float>(x), static_cast<float>(y))));
  }

  json Corner(int i, int j) const {
    const double z = CornerHeight(i, j);
    const double x =
        left + width / 2 + s * ((nx - i) * dx * std::cos(alpha) - (ny - j) * dy * std::sin(alpha));
    const double y =
        top + height -
        s * ((2 * nx - i) * dx * std::sin(alpha) + (2 * ny - j) * dy * std::cos(alpha)) *
            std::sin(theta) -
        z * std::cos(theta);
    return {std::nearbyint(x), std::nearbyint(y)};
  }

  double Fill(const float (&z)[4]) const {
    if (kind == kLinesOnly || kind == kWhiteFaces) return kWhiteFill;
    if (z[0] == 0 || z[1] == 0 || z[2] == 0 || z[3] == 0) return kWhiteFill;
    const auto mean = static_cast<float>((double{z[0]} + z[1] + z[2] + z[3]) / 4);
    if (kind == kSigma) {
      if (z_high == z_low) return source.AuxColor[1];
      if (mean < static_cast<float>(Z(source.mean - sigma_range * source.StdDev))) {
        return source.AuxColor[2];
      }
      return source
          .AuxColor[mean > static_cast<float>(Z(source.mean + sigma_range * source.StdDev)) ? 0
                                                                                            : 1];
    }
    if (z_high == z_low) return source.IntervalColor[5];
    const double step = (z_high - z_low) / 10;
    for (std::size_t k = 1; k <= 9; ++k) {
      if (mean >= static_cast<float>(z_high - static_cast<double>(k) * step)) {
        return source.IntervalColor[k - 1];
      }
    }
    return source.IntervalColor[9];
  }

  std::vector<Face> Faces() {
    Prepare();
    std::vector<Face> faces;
    for (int j = 0; j < 2 * ny; ++j) {
      for (int i = 0; i < 2 * nx; ++i) {
        const float z[4] = {CornerHeight(i, j), CornerHeight(i + 1, j), CornerHeight(i, j + 1),
                            CornerHeight(i + 1, j + 1)};
        faces.push_back(
            {.draw_style = 0,
             .fill = Fill(z),
             .fill_style = kind == kLinesOnly ? 1 : 0,
             .corners = {Corner(i, j), Corner(i + 1, j), Corner(i + 1, j + 1), Corner(i, j + 1)}});
      }
    }
    return faces;
  }
};

class D3Plot : public PlotFixture {
 protected:
  json Trace(wafer target, const SurfaceView& view, std::int16_t kind, bool printed = false,
             float sigma_range = 0) {
    const auto picture = NewPicture(306, 306);
    target.D3Plot(*picture, view, kind, sigma_range, printed, {});
    return picture->TakeTrace();
  }

  static std::multiset<double> Fills(const json& trace) {
    std::multiset<double> fills;
    for (const Face& face : Faces(trace)) fills.insert(face.fill);
    return fills;
  }
};

struct SurfaceCase {
  const char* name;
  SurfaceView view;
  std::int16_t kind;
  float sigma_range = 0;
  bool flat = false;
  bool limited = false;
  bool constant = false;
};

TEST_F(D3Plot, DrawsTheFacesOfAPlainWalk) {
  const SurfaceView steep = {.x_resolution = 7,
                             .y_resolution = 11,
                             .plot_scale = 60,
                             .grid_rotation = 17,
                             .wafer_rotation = 71,
                             .grid_inclination = 62};
  const SurfaceView coarse = {.x_resolution = 40,
                              .y_resolution = 20,
                              .plot_scale = 25,
                              .grid_rotation = 0,
                              .wafer_rotation = 30,
                              .grid_inclination = 10};
  for (const SurfaceCase& row : {
           SurfaceCase{.name = "usual view", .view = {}, .kind = kIntervals},
           SurfaceCase{.name = "oblong cells", .view = steep, .kind = kIntervals},
           SurfaceCase{.name = "coarse", .view = coarse, .kind = kIntervals},
           SurfaceCase{.name = "lines", .view = steep, .kind = kLinesOnly},
           SurfaceCase{.name = "white", .view = steep, .kind = kWhiteFaces},
           SurfaceCase{.name = "sigma", .view = steep, .kind = kSigma, .sigma_range = 0.5F},
           SurfaceCase{.name = "kind 5", .view = steep, .kind = 5},
           SurfaceCase{.name = "flat", .view = steep, .kind = kIntervals, .flat = true},
           SurfaceCase{.name = "limits", .view = steep, .kind = kIntervals, .limited = true},
           SurfaceCase{.name = "constant", .view = steep, .kind = kIntervals, .constant = true},
           SurfaceCase{.name = "constant sigma", .view = steep, .kind = kSigma, .constant = true},
       }) {
    std::vector<Site> sites = RandomSites(5, 60);
    for (Site& site : sites) site.z = row.constant ? 5 : site.z;
    wafer target = LoadedWafer(sites, 200, 194);
    if (row.flat) target.FlatRatio = wafer::kFlatRatio;
    if (row.limited) target.setMaximalMinial(55, 45);

    const auto picture = NewPicture(401, 387);
    target.D3Plot(*picture, row.view, row.kind, row.sigma_range, false, {});
    PlainSurface plain{target, row.view, row.kind, row.sigma_range, 0, 0, 401, 387};
    const auto faces = Faces(picture->TakeTrace());
    const auto expected = plain.Faces();
    ASSERT_EQ(faces.size(), expected.size()) << row.name;
    for (std::size_t i = 0; i < faces.size(); ++i) {
      ASSERT_EQ(faces[i], expected[i]) << row.name << ", face " << i;
    }
  }
}

TEST_F(D3Plot, DependsNotOnWorkers) {
  wafer target = LoadedWafer(RandomSites(3, 300), 200, 194);
  const SurfaceView view = {.x_resolution = 2, .y_resolution = 1.5F};
  const json alone = Trace(target, view, kIntervals);
  target.UseWorkers(std::make_shared<WorkerPool>(2));
  EXPECT_TRUE(Trace(target, view, kIntervals) == alone);
}

TEST_F(D3Plot, CornersBeyond32BitsStayWhereTheLastCellHadThem) {
  wafer target = LoadedWafer(FiveSites());
  target.Maximum = std::nextafter(target.Minimum, 11.0F);  // heights of thousands of millions
  const SurfaceView view = {.x_resolution = 30, .y_resolution = 30, .plot_scale = 4000};
  const auto picture = NewPicture(900, 900);
  target.D3Plot(*picture, view, kWhiteFaces, 0, false,
                {.left = 0, .top = 0, .width = 4320, .height = 4320, .mode = 0});
  PlainSurface plain{target, view, kWhiteFaces, 0, 0, 0, 900, 900};
  auto expected = plain.Faces();
  json last = json::parse("[[0, 0], [0, 0], [0, 0], [0, 0]]");
  int stayed = 0;
  for (Face& face : expected) {
    for (std::size_t k = 0; k < last.size(); ++k) {
      last[k][0] = face.corners[k][0];
      if (face.corners[k][1] >= std::numeric_limits<std::int32_t>::min()) {
        last[k][1] = face.corners[k][1];
      } else {
        ++stayed;
      }
    }
    face.corners = last;
  }
  EXPECT_GT(stayed, 20);
  EXPECT_EQ(Faces(picture->TakeTrace()), expected);
}

// Six cells of 25 mm to each side, at a pixel per mm: the cell at the back right comes first.
TEST_F(D3Plot, SeenFromAboveTheGridIsFlatAndThePlateGreyUnlessPrinted) {
  const wafer target = LoadedWafer(FourSites(5));
  for (const bool printed : {false, true}) {
    const json trace = Trace(target, TopView(), kIntervals, printed);
    const auto faces = Faces(trace);
    ASSERT_EQ(faces.size(), 144U);
    EXPECT_EQ(faces[0].corners, json::parse("[[303, 6], [278, 6], [278, 31], [303, 31]]"));
    EXPECT_EQ(faces[143].corners, json::parse("[[28, 281], [3, 281], [3, 306], [28, 306]]"));
    EXPECT_EQ(faces[0].fill, printed ? kWhiteFill : kGrey);
  }
  EXPECT_EQ(Trace(target, TopView(), kIntervals)[3], json({"FillColor", 2147483648U}));
}

// The view of the grey plate, but for one angle.
TEST_F(D3Plot, ThePlateIsGreyFromStraightAboveOnly) {
  const wafer target = LoadedWafer(FourSites(5));
  SurfaceView turned = TopView();
  turned.grid_rotation = 1;
  SurfaceView wafer_turned = TopView();
  wafer_turned.wafer_rotation = 1;
  SurfaceView tilted = TopView();
  tilted.grid_inclination = std::nextafter(90.0F, 0.0F);
  for (const SurfaceView& view : {turned, wafer_turned, tilted}) {
    EXPECT_EQ(Fills(Trace(target, view, kIntervals)).count(kGrey), 0U);
  }
}

// Without heights no cell can be told from the plate.
TEST_F(D3Plot, AScaleOfZeroDrawsThePlateAlone) {
  const wafer target = LoadedWafer(RandomSites(1, 20));
  SurfaceView tilted = TopView();
  tilted.grid_inclination = 35;
  for (const std::int16_t kind : {kIntervals, kSigma}) {
    EXPECT_EQ(Fills(Trace(target, tilted, kind)).count(kWhiteFill), 144U);
    EXPECT_EQ(Fills(Trace(target, TopView(), kind)).count(kGrey), 144U);
  }
}

// 150 pixels to each side at a pixel per mm, whatever the height of the rectangle.
TEST_F(D3Plot, SeenFromTheSideWithoutHeightsAllCornersLieOnOneLine) {
  SurfaceView view = TopView();
  view.grid_inclination = 0;
  wafer target = LoadedWafer(FourSites(5));
  const auto picture = NewPicture(306, 20);
  target.D3Plot(*picture, view, kIntervals, 0, false, {});
  const auto faces = Faces(picture->TakeTrace());
  ASSERT_EQ(faces.size(), 144U);
  EXPECT_EQ(faces[0].corners, json::parse("[[303, 20], [278, 20], [278, 20], [303, 20]]"));
  EXPECT_EQ(faces[143].corners, json::parse("[[28, 20], [3, 20], [3, 20], [28, 20]]"));
}

// With a pixel per mm and a scale of 20, a constant value stands 20 pixels high. On the axis, the
// cells up to 100 mm count; the last of them touches the circle with its outer corners.
TEST_F(D3Plot, StandsCellsWithACornerOffTheWaferOnTheirRealHeights) {
  SurfaceView view = TopView();
  view.grid_inclination = 0;
  view.plot_scale = 20;
  wafer target = LoadedWafer(FourSites(5));
  const auto picture = NewPicture(306, 306);
  target.D3Plot(*picture, view, kIntervals, 0, false, {});
  const auto faces = Faces(picture->TakeTrace());
  ASSERT_EQ(faces.size(), 144U);
  // Row 6 begins at the centre line; corners at 100, 75 mm and, a row below, at the same x.
  const Face& edge = faces[6 * 12 + 2];
  EXPECT_EQ(edge.corners, json::parse("[[253, 306], [228, 286], [228, 286], [253, 306]]"));
  EXPECT_EQ(edge.fill, kWhiteFill);
  const Face& inner = faces[6 * 12 + 3];
  EXPECT_EQ(inner.corners, json::parse("[[228, 286], [203, 286], [203, 286], [228, 286]]"));
  EXPECT_EQ(inner.fill, target.IntervalColor[5]);
}

TEST_F(D3Plot, ThreeSitesLeaveTheSurfaceEmpty) {
  wafer target = LoadedWafer({{0, 0, 1}, {50, 0, 2}, {0, 50, 3}});
  target.setMaximalMinial(9, 4);
  const auto picture = NewPicture(306, 306);
  target.D3Plot(*picture, {}, kIntervals, 0, false, {});
  EXPECT_EQ(picture->TakeTrace(), json::parse(R"([["Cls"], ["Refresh"]])"));
  EXPECT_EQ(target.ScaleFloor, 4);  // and not that of the plot, 0.8
}

TEST_F(D3Plot, AConstantValueHasOneColour) {
  for (const float value : {5.0F, 0.0F, -5.0F}) {
    const wafer target = LoadedWafer(FourSites(value));
    for (const auto& [kind, colour] :
         {std::pair{kIntervals, target.IntervalColor[5]}, {kSigma, target.AuxColor[1]}}) {
      const std::multiset<double> fills = Fills(Trace(target, {}, kind, false, 0.5F));
      EXPECT_GT(fills.count(colour), 100U) << value;
      EXPECT_EQ(fills.count(colour) + fills.count(kWhiteFill), fills.size()) << value;
    }
  }
}

TEST_F(D3Plot, AFaceInTheNumberOfNoColourIsPlate) {
  wafer target = LoadedWafer(FourSites(5));
  target.IntervalColor[5] = 15;
  SurfaceView view = TopView();
  view.plot_scale = 20;
  EXPECT_EQ(Fills(Trace(target, view, kIntervals)).count(kGrey), 144U);
}

// Only a count that doesn't fit 16 bits is refused; it counts as too few.
TEST_F(D3Plot, AnImpossibleResolutionTakesTheFewestCells) {
  const float nan = std::numeric_limits<float>::quiet_NaN();
  const float infinity = std::numeric_limits<float>::infinity();
  for (const float resolution : {1e-6F, 0.0F, -5.0F, 1e30F, 28.6F, nan, infinity}) {
    SurfaceView view = TopView();
    view.x_resolution = resolution;
    EXPECT_EQ(Faces(Trace(LoadedWafer(FourSites(5)), view, kIntervals)).size(), 144U) << resolution;
  }
}

// 100 / 25 + 2 = 6 and 100 / 20 + 2 = 7 to each side; 100 / 8 + 2 = 14.5 is rounded to the even 14.
TEST_F(D3Plot, CountsTheCellsOfEachAxis) {
  struct Case {
    float x, y;
    std::size_t faces;
  };
  for (const Case& row : {Case{25, 25, 12 * 12}, Case{20, 25, 14 * 12}, Case{25, 20, 12 * 14},
                          Case{5, 100, 44 * 12}, Case{8, 25, 28 * 12}}) {
    SurfaceView view = TopView();
    view.x_resolution = row.x;
    view.y_resolution = row.y;
    EXPECT_EQ(Faces(Trace(LoadedWafer(FourSites(5)), view, kIntervals)).size(), row.faces)
        << row.x << ' ' << row.y;
  }
}

// Turned by 90 degrees the square grid covers itself, and the map stays where it was.
TEST_F(D3Plot, TurningTheGridAloneKeepsTheMap) {
  const wafer target = LoadedWafer(RandomSites(2, 40));
  std::set<std::pair<json, double>> maps[2];
  for (const std::size_t turned : {0U, 1U}) {
    SurfaceView view = TopView();
    view.plot_scale = 20;
    view.grid_rotation = turned == 1 ? 90 : 0;
    view.wafer_rotation = 25;
    for (const Face& face : Faces(Trace(target, view, kIntervals, true))) {
      std::vector<json> corners = face.corners;
      // Each face begins at another of its corners.
      std::ranges::sort(corners);
      maps[turned].emplace(corners, face.fill);
    }
  }
  EXPECT_EQ(maps[0], maps[1]);
}

TEST_F(D3Plot, ShowsAPictureAfterEachRow) {
  const json trace = Trace(LoadedWafer(FourSites(5)), TopView(), kIntervals);
  EXPECT_EQ(Calls(trace, "Refresh").size(), 1U + 12U);
  EXPECT_EQ(trace.back(), json({"Refresh"}));

  wafer target = LoadedWafer(FourSites(5));
  const auto paper = NewPaper(10, 10);
  target.D3Plot(*paper, TopView(), kIntervals, 0, true, {.width = 3060, .height = 3060, .mode = 1});
  const json printed = paper->TakeTrace();
  EXPECT_TRUE(Calls(printed, "Refresh").empty());
  EXPECT_EQ(Faces(printed)[0].corners, json::parse("[[303, 6], [278, 6], [278, 31], [303, 31]]"));
}

// 15 twips per pixel: 0.5, 1.5, 306.5 and 305.5 pixels, each rounded to the even one.
TEST_F(D3Plot, KeepsAWholeRectangle) {
  wafer target = LoadedWafer(FourSites(5));
  const auto picture = NewPicture(400, 400);
  target.D3Plot(*picture, TopView(), kIntervals, 0, false,
                {.left = 7.5F, .top = 22.5F, .width = 4597.5F, .height = 4582.5F, .mode = 1});
  const json trace = picture->TakeTrace();
  EXPECT_TRUE(Calls(trace, "Cls").empty());
  EXPECT_EQ(Faces(trace)[0].corners, json::parse("[[303, 8], [278, 8], [278, 33], [303, 33]]"));
}

// At 4.8 twips per pixel: 0.5, 1.5, 306.5 and 305.5 pixels again.
TEST_F(D3Plot, APrinterWithoutResolutionIsTakenFor300DotsPerInch) {
  wafer target = LoadedWafer(FourSites(5));
  const auto paper = NewPaper(0, 0);
  target.D3Plot(*paper, TopView(), kIntervals, 0, true,
                {.left = 2.4F, .top = 7.2F, .width = 1471.2F, .height = 1466.4F, .mode = 1});
  EXPECT_EQ(Faces(paper->TakeTrace())[0].corners,
            json::parse("[[303, 8], [278, 8], [278, 33], [303, 33]]"));
}

}  // namespace
}  // namespace discoplan
