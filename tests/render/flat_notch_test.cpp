// SPDX-License-Identifier: MIT
#include "tests/render/plot_fixture.h"

#include "discoplan/forms/node.h"

namespace discoplan {
namespace {

using nlohmann::json;

class FlatNotch : public PlotFixture {
 protected:
  json Show(const wafer& source, Label* label, float rotation, float inclination, float across = 68,
            float down = 68) {
    const auto picture = NewPicture(across, down);
    source.FlatNotchShow(label, *picture, centre_x_, centre_y_, 30, rotation, inclination);
    return picture->TakeTrace();
  }

  float centre_x_ = 1;
  float centre_y_ = 1;
};

TEST_F(FlatNotch, DrawsANotchAtTheBottom) {
  const wafer source = LoadedWafer({});
  Node label(NodeKind::Frame, "FNLabel", {});
  const json trace = Show(source, &label, 0, 90);
  EXPECT_EQ(label.Text(), "Notch");
  EXPECT_EQ(centre_x_, 34);
  EXPECT_EQ(centre_y_, 34);
  // Radius 27: 27 sin 10 = 4.69, 27 cos 10 = 26.59, tip at 21.6, outside at 28.35.
  ASSERT_EQ(trace.size(), 11U);
  EXPECT_EQ(trace[0], json::parse(R"(["ForeColor", 0])"));
  EXPECT_EQ(trace[1], json::parse(R"(["FillColor", 16777215])"));
  EXPECT_EQ(trace[2], json::parse(R"(["Cls"])"));
  EXPECT_EQ(trace[3], json::parse(R"(["Circle", 34, 34, 27, null, null, null, 1])"));
  EXPECT_EQ(trace[4], json::parse(R"(["ForeColor", 16777215])"));
  EXPECT_EQ(trace[5], json::parse(R"(["FillColor", 16777215])"));
  EXPECT_EQ(trace[6], json::parse(R"(["FillStyle", 0])"));
  EXPECT_EQ(trace[7],
            json::parse(R"(["Polygon", [[39, 61], [34, 56], [29, 61], [34, 62], [39, 61]]])"));
  EXPECT_NEAR(trace[8][1].get<double>(), 38.6885, 1e-3);
  EXPECT_NEAR(trace[8][2].get<double>(), 60.5898, 1e-3);
  EXPECT_NEAR(trace[8][3].get<double>(), 34, 1e-3);
  EXPECT_NEAR(trace[8][4].get<double>(), 55.6, 1e-3);
  EXPECT_EQ(trace[8][5], 255);
  EXPECT_TRUE(trace[9][1].is_null());  // goes on from there
  EXPECT_NEAR(trace[9][3].get<double>(), 29.3115, 1e-3);
  EXPECT_EQ(trace[10], json::parse(R"(["Refresh"])"));
}

TEST_F(FlatNotch, DrawsAFlatAndLeavesTheLabelAlone) {
  wafer source = LoadedWafer({});
  source.FlatRatio = 0.98F;
  Node label(NodeKind::Frame, "FNLabel", {});
  label.Text("Flat");
  const json trace = Show(source, &label, 0, 90);
  EXPECT_EQ(label.Text(), "Flat");
  // 27 sin 35 = 15.49, 27 cos 35 = 22.12; at 36: 20.65 and 29.49.
  EXPECT_EQ(Calls(trace, "Polygon")[0],
            json::parse(R"(["Polygon", [[49, 56], [19, 56], [13, 63], [55, 63]]])"));
  EXPECT_EQ(Calls(trace, "Line").size(), 1U);
  EXPECT_EQ(Calls(trace, "Line")[0][5], 255);
}

TEST_F(FlatNotch, TakesAnyRatioButOneForAFlat) {
  wafer source = LoadedWafer({});
  source.FlatRatio = 0;
  EXPECT_EQ(Calls(Show(source, nullptr, 0, 90), "Line").size(), 1U);
  source.FlatRatio = 0.99999994F;
  EXPECT_EQ(Calls(Show(source, nullptr, 0, 90), "Line").size(), 1U);
  source.FlatRatio = 1;
  EXPECT_EQ(Calls(Show(source, nullptr, 0, 90), "Line").size(), 2U);
}

TEST_F(FlatNotch, TurnsAndTilts) {
  const wafer source = LoadedWafer({});
  const json right = Calls(Show(source, nullptr, 90, 90), "Line")[0];
  EXPECT_NEAR(right[3].get<double>(), 34 + 21.6, 1e-3);  // the tip, on the right side
  EXPECT_NEAR(right[4].get<double>(), 34, 1e-3);
  const json once = Show(source, nullptr, 10, 35);
  EXPECT_NEAR(Calls(once, "Circle")[0][7].get<double>(), 0.573576, 1e-5);
  EXPECT_EQ(Calls(once, "Polygon"), Calls(Show(source, nullptr, 370, 35), "Polygon"));
  const json flat = Show(source, nullptr, 0, 0);
  EXPECT_EQ(Calls(flat, "Circle")[0][7], 0);
  const json line = Calls(flat, "Polygon")[0][1];
  for (const json& corner : line) EXPECT_EQ(corner[1], 34);
}

TEST_F(FlatNotch, DrawsEvenWithoutRoom) {
  for (const float pixels : {0.0F, 13.0F, 14.0F}) {
    const json trace = Show(LoadedWafer({}), nullptr, 0, 90, pixels, 200);
    EXPECT_EQ(Calls(trace, "Circle")[0][3], pixels / 2 - 7) << pixels;
    EXPECT_EQ(Calls(trace, "Line").size(), 2U);
  }
}

class OpenOutline : public PlotFixture {
 protected:
  json Show(float flat_ratio, float rotation, Label* label = nullptr) {
    wafer source = LoadedWafer({});
    source.FlatRatio = flat_ratio;
    source.FlatNotchShow1(label, *picture_, 34, 34, 27, rotation, 90);
    return picture_->TakeTrace();
  }

  std::unique_ptr<Recording<Picture>> picture_ = NewPicture(68, 68);
};

TEST_F(OpenOutline, LeavesTheNotchOutAndFillsTheInside) {
  Node label(NodeKind::Frame, "FNLabel", {});
  const json trace = Show(1, 0, &label);
  EXPECT_EQ(label.Text(), "Notch");
  ASSERT_EQ(trace.size(), 10U);
  EXPECT_EQ(trace[0], json::parse(R"(["Cls"])"));
  EXPECT_EQ(trace[1], json::parse(R"(["DrawWidth", 1])"));
  const json circle = trace[2];  // from 280 to 260 degrees
  EXPECT_EQ(json(circle.begin() + 1, circle.begin() + 5), json::parse("[34, 34, 27, 0]"));
  EXPECT_NEAR(circle[5].get<double>(), 4.886922, 1e-5);
  EXPECT_NEAR(circle[6].get<double>(), 4.537856, 1e-5);
  EXPECT_EQ(circle[7], 1);
  EXPECT_EQ(trace[3], json::parse(R"(["DrawWidth", 1])"));
  // At 11 degrees: 27 sin 11 = 5.152, 27 cos 11 = 26.504; the tip lies at 21.6.
  for (const std::size_t first : {4U, 7U}) {
    EXPECT_NEAR(trace[first][1].get<double>(), 39.152, 1e-3);
    EXPECT_NEAR(trace[first][2].get<double>(), 60.504, 1e-3);
    EXPECT_NEAR(trace[first][4].get<double>(), 55.6, 1e-3);
    EXPECT_TRUE(trace[first + 1][1].is_null());
    EXPECT_NEAR(trace[first + 1][3].get<double>(), 28.848, 1e-3);
  }
  EXPECT_TRUE(trace[4][5].is_null());
  EXPECT_EQ(trace[6], json::parse(R"(["FloodFill", 34, 34, 0])"));
  EXPECT_EQ(trace[7][5], 255);
  EXPECT_EQ(trace[9], json::parse(R"(["Refresh"])"));
}

TEST_F(OpenOutline, NamesTheFlat) {
  Node label(NodeKind::Frame, "FNLabel", {});
  const json trace = Show(0.98F, 0, &label);
  EXPECT_EQ(label.Text(), "Flat");
  EXPECT_EQ(Calls(trace, "Line").size(), 2U);
  EXPECT_NEAR(trace[2][5].get<double>(), 304 * 3.14159265 / 180, 1e-5);
  EXPECT_NEAR(trace[2][6].get<double>(), 236 * 3.14159265 / 180, 1e-5);
  EXPECT_NEAR(Calls(trace, "Line")[0][1].get<double>(), 34 + 27 * 0.573576, 1e-3);  // sin 35
}

TEST_F(OpenOutline, TakesAFullTurnOffBeyond360Degrees) {
  const struct {
    float rotation;
    double start, end;
  } rows[] = {{80, 360, 340}, {80.4F, 360, 340.4}, {81, 1, 341}, {100, 20, 360}, {101, 21, 1}};
  for (const auto& row : rows) {
    const json circle = Calls(Show(1, row.rotation), "Circle")[0];
    EXPECT_NEAR(circle[5].get<double>(), row.start * 3.14159265 / 180, 1e-5) << row.rotation;
    EXPECT_NEAR(circle[6].get<double>(), row.end * 3.14159265 / 180, 1e-5) << row.rotation;
  }
}

// A degree of this outline is wide enough that mark and arc overlap.
TEST_F(OpenOutline, LeavesNoTraceOnAColouredBackground) {
  const auto picture = NewPicture(400, 400);
  picture->BackColor(0x00FFFF);
  picture->FillStyle(0);
  picture->FillColor(0x123456);
  for (const float flat_ratio : {1.0F, 0.98F}) {
    wafer source = LoadedWafer({});
    source.FlatRatio = flat_ratio;
    source.FlatNotchShow1(nullptr, *picture, 200, 200, 180, 0, 90);
    EXPECT_EQ(PixelAt(*picture, 1, 1), 0xFFFFFF00) << flat_ratio;
    EXPECT_EQ(PixelAt(*picture, 200, 200), 0xFF563412) << flat_ratio;
    EXPECT_EQ(PixelAt(*picture, 200, 340), 0xFF563412) << flat_ratio;
    EXPECT_EQ(PixelAt(*picture, 200, 375), 0xFFFFFF00) << "in the mark";
  }
}

}  // namespace
}  // namespace discoplan
