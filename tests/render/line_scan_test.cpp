// SPDX-License-Identifier: MIT
#include "discoplan/base/numbers.h"
#include "discoplan/forms/node.h"
#include "discoplan/render/plots/scan_plot.h"
#include "tests/render/plot_fixture.h"

namespace discoplan {
namespace {

using nlohmann::json;

ScanLine AtAngle(std::int16_t angle, float x = 0, float y = 0) {
  return {.at_angle = true, .x1 = x, .y1 = y, .angle = angle};
}

ScanLine Through(float x1, float y1, float x2, float y2) {
  return {.at_angle = false, .x1 = x1, .y1 = y1, .x2 = x2, .y2 = y2};
}

class LineCut : public PlotFixture {
 protected:
  wafer target_ = LoadedWafer(FiveSites(), 200, 100);
};

TEST_F(LineCut, MeetsTheTestCircleInItsDirection) {
  constexpr float kDiagonal = 35.355339F;
  const struct {
    ScanLine cut;
    CutEnds ends;
  } rows[] = {
      {Through(0, 0, 10, 0), {-50, 0, 50, 0}},
      {Through(10, 0, 0, 0), {50, 0, -50, 0}},
      {Through(0, 0, 1, 1), {-kDiagonal, -kDiagonal, kDiagonal, kDiagonal}},
      {Through(1, 1, 0, 0), {kDiagonal, kDiagonal, -kDiagonal, -kDiagonal}},
      {Through(0, 30, 1, 30), {-40, 30, 40, 30}},
      {Through(300, 30, 200, 30), {40, 30, -40, 30}},
      {Through(30, 0, 30, 1), {30, -40, 30, 40}},
      {Through(30, 1, 30, 0), {30, 40, 30, -40}},
      {Through(30, 7, 30, 7), {30, 40, 30, -40}},
      {Through(50, 0, 50, 1), {50, 0, 50, 0}},
      {AtAngle(0), {0, -50, 0, 50}},
      {AtAngle(360), {0, -50, 0, 50}},
      {AtAngle(180), {0, 50, 0, -50}},
      {AtAngle(0, 30, 7), {30, -40, 30, 40}},
      {AtAngle(180, 30, 7), {30, 40, 30, -40}},
      {AtAngle(90), {50, 0, -50, 0}},
      {AtAngle(270), {-50, 0, 50, 0}},
      {AtAngle(90, 5, 30), {40, 30, -40, 30}},
      {AtAngle(45), {kDiagonal, -kDiagonal, -kDiagonal, kDiagonal}},
      {AtAngle(225), {-kDiagonal, kDiagonal, kDiagonal, -kDiagonal}},
  };
  for (const auto& row : rows) {
    const CutEnds ends = target_.EndsOf(row.cut);
    SCOPED_TRACE(testing::Message() << row.cut.at_angle << " " << row.cut.angle << " " << row.cut.x1
                                    << " " << row.cut.y1);
    EXPECT_NEAR(ends.ax, row.ends.ax, 2e-5);
    EXPECT_NEAR(ends.ay, row.ends.ay, 2e-5);
    EXPECT_NEAR(ends.bx, row.ends.bx, 2e-5);
    EXPECT_NEAR(ends.by, row.ends.by, 2e-5);
  }
}

// Pi has 24 bits: at 90 degrees the slope is its error, not zero.
TEST_F(LineCut, KeepsTheErrorOfPi) {
  EXPECT_EQ(target_.EndsOf(AtAngle(90)).ay,
            static_cast<float>(static_cast<float>(std::tan(double{wafer::kPi})) * 50.0));
}

TEST_F(LineCut, BesideTheCircleIsAnError) {
  for (const ScanLine& cut : {Through(50.001F, 0, 50.001F, 1), Through(0, 51, 1, 51),
                              AtAngle(0, -60, 0), AtAngle(90, 0, 60)}) {
    EXPECT_THROW(target_.EndsOf(cut), RunTimeError);
    EXPECT_THROW(target_.D1Plot(*NewPicture(88, 88), 88, cut, 0, {}), RunTimeError);
  }
}

class D1Plot : public LineCut {
 protected:
  json Trace(std::int16_t steps, const ScanLine& cut, const PlotArea& area = {}) {
    const auto picture = NewPicture(88, 101);
    target_.D1Plot(*picture, steps, cut, 0x80, area);
    return picture->TakeTrace();
  }
};

TEST_F(D1Plot, OfOneConstantValueIsALevelLine) {
  target_ = LoadedWafer(std::vector<Site>(4, {1, 1, 10}), 200, 100);
  target_.setMaximalMinial(20, 0);
  EXPECT_EQ(Trace(4, AtAngle(90)), json::parse(R"([
      ["Line", 0, 50.5, 22, 50.5, 128, "line"], ["Line", 22, 50.5, 44, 50.5, 128, "line"],
      ["Line", 44, 50.5, 66, 50.5, 128, "line"], ["Line", 66, 50.5, 88, 50.5, 128, "line"]])"));
}

TEST_F(D1Plot, FollowsTheInterpolationAlongTheCut) {
  const json trace = Trace(88, Through(-10, 20, 10, 20));
  ASSERT_EQ(trace.size(), 88U);
  const CutEnds ends = target_.EndsOf(Through(-10, 20, 10, 20));
  const auto height = [&](double share) {
    const double x = ends.ax + share * (ends.bx - ends.ax);
    return 101 - (target_.Interpolation(static_cast<float>(x), 20) - 10) * 101.0 / (18 - 10);
  };
  for (std::size_t i = 0; i < 88; ++i) {
    const double from = static_cast<double>(i);
    EXPECT_EQ(trace[i][1], from);
    EXPECT_EQ(trace[i][3], from + 1);
    EXPECT_NEAR(trace[i][2].get<double>(), height(from / 88), 1e-3) << i;
    EXPECT_NEAR(trace[i][4].get<double>(), height((from + 1) / 88), 1e-3) << i;
    EXPECT_EQ(trace[i][2], trace[i > 0 ? i - 1 : 0][i > 0 ? 4 : 2]);
  }
}

TEST_F(D1Plot, DoesNotClipAtTheLimits) {
  target_.setMaximalMinial(11, 10.5F);
  double highest = 0;
  for (const json& call : Trace(88, AtAngle(90)))
    highest = std::min(highest, call[4].get<double>());
  EXPECT_LT(highest, -200);
}

TEST_F(D1Plot, OnAPageFillsItsRectangle) {
  target_ = LoadedWafer(std::vector<Site>(4, {1, 1, 10}), 200, 100);
  target_.setMaximalMinial(20, 0);
  EXPECT_EQ(Trace(2, AtAngle(0), {100, 200, 88, 400, 1}),
            json::parse(R"([["Line", 100, 400, 144, 400, 128, "line"],
                            ["Line", 144, 400, 188, 400, 128, "line"]])"));
}

TEST_F(D1Plot, NeedsFourSites) {
  target_ = LoadedWafer({{0, 0, 1}, {1, 0, 2}, {0, 1, 3}}, 200, 100);
  target_.ScaleFloor = -7;
  EXPECT_EQ(Trace(88, AtAngle(0)), json::array());
  EXPECT_NO_THROW(Trace(88, AtAngle(0, 500, 0)));
  EXPECT_EQ(target_.ScaleFloor, -7);
}

TEST_F(D1Plot, BeginsTheScaleBelowALimitWithoutExtent) {
  const struct {
    float least, limit, floor;
  } rows[] = {{10, 20, 17.999F}, {-10, 20, 21.999F}, {10, -20, -18.001F}, {-10, -20, -22.001F}};
  for (const auto& row : rows) {
    target_ = LoadedWafer({{0, 0, row.least}, {1, 0, 30}, {0, 1, 30}, {1, 1, 30}}, 200, 100);
    target_.setMaximalMinial(row.limit, row.limit);
    Trace(4, AtAngle(0));
    EXPECT_FLOAT_EQ(target_.ScaleFloor, row.floor) << row.least;
  }
  target_.setMaximalMinial(9, 2);
  target_.ScaleFloor = -1;
  Trace(4, AtAngle(0));
  EXPECT_EQ(target_.ScaleFloor, 2);
}

TEST_F(LineCut, GridHasFourFieldsEachWay) {
  const auto picture = NewPicture(101, 201);
  wafer::D1Plot_AdjustLines(*picture, 0, 0, 100, 200);
  const json trace = picture->TakeTrace();
  ASSERT_EQ(trace.size(), 11U);
  for (int i = 0; i <= 4; ++i) {
    const auto k = static_cast<std::size_t>(i);
    EXPECT_EQ(trace[k], (json{"Line", 25 * i, 0, 25 * i, 200, trace[0][5], "line"}));
    EXPECT_EQ(trace[5 + k], (json{"Line", 0, 50 * i, 100, 50 * i, trace[0][5], "line"}));
  }
  EXPECT_EQ(trace[10], json::array({"Picture"}));
}

TEST_F(LineCut, GridOnPaperEndsAPixelEarlier) {
  const auto paper = NewPaper(4, 8);
  wafer::D1Plot_AdjustLines(*paper, 10, 20, 104, 208);
  const json trace = paper->TakeTrace();
  ASSERT_EQ(trace.size(), 10U);
  EXPECT_EQ(trace[4], (json{"Line", 110, 20, 110, 228, trace[0][5], "line"}));
  EXPECT_EQ(trace[9], (json{"Line", 10, 220, 114, 220, trace[0][5], "line"}));
}

TEST_F(LineCut, GridSurvivesAsTheBackground) {
  const auto picture = NewPicture(41, 41);
  wafer::D1Plot_AdjustLines(*picture, 0, 0, 40, 40);
  const auto grid = PixelAt(*picture, 10, 5);
  EXPECT_NE(grid, PixelAt(*picture, 5, 5));
  picture->Cls();
  EXPECT_EQ(PixelAt(*picture, 10, 5), grid);
}

TEST_F(LineCut, ReadOutsNameValuesAndPositions) {
  target_ = LoadedWafer({{0, 0, 10}, {10, 0, 12}, {0, 10, 14}, {0, 30, 18}}, 200, 100);
  std::vector<std::unique_ptr<Node>> nodes;
  std::vector<Label*> x, y;
  for (int i = 0; i < 10; ++i) {
    nodes.push_back(std::make_unique<Node>(NodeKind::Label, "lbl", TwipsBox{}));
    (i < 5 ? x : y).push_back(nodes.back().get());
  }
  target_.D1Plot_Show_lblXY(x, y, Through(-1, 30, 1, 30));
  const char* expected[] = {"X=-40.00Y=30.00",
                            "X=-20.00Y=30.00",
                            "X=0.00Y=30.00",
                            "X=20.00Y=30.00",
                            "X=40.00Y=30.00",
                            "10.0",
                            "12.0",
                            "14.0",
                            "16.0",
                            "18.0"};
  for (std::size_t i = 0; i < 10; ++i) EXPECT_EQ(nodes[i]->Text(), expected[i]) << i;
}

class FakeMarker final : public Marker {
 public:
  void Move(const SurfacePoint& begin, const SurfacePoint& end) override {
    begin_ = begin;
    end_ = end;
  }
  void Visible(bool visible) override { visible_ = visible; }

  SurfacePoint begin_;
  SurfacePoint end_;
  bool visible_ = false;
};

class Indicator : public LineCut {
 protected:
  FakeMarker marker_;
};

// 27 cells of 4 mm to each side of the centre.
TEST_F(Indicator, ScalesThePictureToTheWafer) {
  const auto picture = NewPicture(84, 84);
  for (int again = 0; again < 2; ++again) {
    target_.draw_indicator(*picture, marker_, AtAngle(0, 30, 0));
    EXPECT_EQ(picture->TakeTrace(), json::parse(R"([["ScaleLeft", -108], ["ScaleTop", -108],
                                                    ["ScaleWidth", 216], ["ScaleHeight", 216]])"));
  }
  EXPECT_TRUE(marker_.visible_);
  // On a circle of 220 mm: half the chord at X = 30 is 105.83 mm.
  EXPECT_EQ(marker_.begin_.x, 30);
  EXPECT_NEAR(marker_.begin_.y, 105.83, 5e-3);
  EXPECT_NEAR(marker_.end_.y, -105.83, 5e-3);
  EXPECT_EQ(target_.TestDiameter, 100);
}

TEST_F(Indicator, KeepsBothAxesAlike) {
  const auto picture = NewPicture(168, 84);
  target_.draw_indicator(*picture, marker_, AtAngle(0));
  EXPECT_EQ(picture->TakeTrace(), json::parse(R"([["ScaleLeft", -216], ["ScaleTop", -108],
                                                  ["ScaleWidth", 432], ["ScaleHeight", 216]])"));
}

TEST_F(Indicator, GivesAWaferWithoutADiameterTheUsualOne) {
  target_.WaferDiameter = 0;
  target_.draw_indicator(*NewPicture(84, 84), marker_, AtAngle(0));
  EXPECT_EQ(target_.WaferDiameter, 200);
}

TEST_F(Indicator, DoesNotShowACutBesideTheTestCircle) {
  EXPECT_THROW(target_.draw_indicator(*NewPicture(84, 84), marker_, AtAngle(0, 60, 0)),
               RunTimeError);
  EXPECT_FALSE(marker_.visible_);
  EXPECT_EQ(target_.TestDiameter, 100);
}

}  // namespace
}  // namespace discoplan
