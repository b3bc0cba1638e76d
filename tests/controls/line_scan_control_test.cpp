// SPDX-License-Identifier: MIT
#include "discoplan/controls/line_scan.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>

#include "hosts/recording/recording_host.h"

namespace discoplan {
namespace {

using nlohmann::json;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr int kUp = 38;
constexpr int kDown = 40;

class LineScanControl : public testing::Test {
 protected:
  LineScanControl() {
    scan_.InitProperties();
    scan_.SetSize(6000, 4500);
    container_.TakeAnnounced();
  }

  Node& Child(const char* name) { return *scan_.root().Find(name); }
  json Trace(const char* name) {
    return dynamic_cast<Recording<Picture>&>(*Child(name).Picture()).TakeTrace();
  }
  std::size_t Lines(const char* name) {
    std::size_t lines = 0;
    for (const json& call : Trace(name)) lines += call[0] == "Line" && call[5] == 0x80;
    return lines;
  }
  void Load() {
    const std::vector<float> x = {0, 50, 0, -50, 0}, y = {0, 0, 50, 0, -50},
                             z = {10, 12, 14, 16, 18};
    ASSERT_EQ(scan_.SetWaferData(x, y, z), LoadResult::Loaded);
  }
  void LoadAndPlot() {
    Load();
    ASSERT_EQ(scan_.Plot(), PlotResult::Done);
    Trace("PLOTA");
  }
  void Type(const std::string& text) {
    Child("AngleValue").Text(text);
    Child("AngleValue").on_change();
  }

  RecordingHost host_;
  RecordingContainer container_;
  LineScan scan_{host_, &container_};
};

TEST_F(LineScanControl, TakesAnglesOfOneTurn) {
  for (const std::int16_t angle : std::initializer_list<std::int16_t>{0, 1, 359}) {
    scan_.angle(angle);
    EXPECT_EQ(scan_.angle(), angle);
    EXPECT_EQ(Child("AngleValue").Text(), std::to_string(angle));
    EXPECT_EQ(Child("UpDown1").Value(), angle);
  }
  scan_.angle(360);
  EXPECT_EQ(scan_.angle(), 0);
  EXPECT_THAT(container_.TakeAnnounced(), ElementsAre("Angle", "Angle", "Angle", "Angle"));
}

TEST_F(LineScanControl, RefusesOtherAnglesAloud) {
  scan_.angle(30);
  container_.TakeAnnounced();
  for (const std::int16_t angle : std::initializer_list<std::int16_t>{-1, 361}) {
    scan_.angle(angle);
    const auto messages = host_.TakeMessages();
    ASSERT_EQ(messages.size(), 1U);
    EXPECT_EQ(messages[0].text, "Angle value must be between 0 and 359");
    EXPECT_EQ(messages[0].title, "Input Error");
    EXPECT_TRUE(messages[0].critical && messages[0].system_modal);
  }
  EXPECT_EQ(scan_.angle(), 30);
  EXPECT_THAT(container_.TakeAnnounced(), IsEmpty());
}

TEST_F(LineScanControl, FollowsWhatIsTyped) {
  LoadAndPlot();
  const struct {
    const char* typed;
    const char* stands;
    int angle;
  } rows[] = {{"45", "45", 45}, {"359", "359", 359}, {"360", "0", 0}, {"7", "7", 7},
              {"-1", "0", 0},   {"12", "12", 12},    {"abc", "0", 0}, {"9", "9", 9},
              {"", "", 0},      {"1.5", "0", 0},     {"8", "8", 8},   {"1e1", "0", 0}};
  for (const auto& row : rows) {
    Type(row.typed);
    EXPECT_EQ(Child("AngleValue").Text(), row.stands) << row.typed;
    EXPECT_EQ(scan_.angle(), row.angle) << row.typed;
    EXPECT_EQ(Lines("PLOTA"), 88U) << row.typed;
  }
}

TEST_F(LineScanControl, ShowsItsAngleAlsoWhileTheCutIsALine) {
  LoadAndPlot();
  scan_.PlotType(PlotTypeEnumLineScan::vbline);
  scan_.LineStartPointX(-50);
  scan_.LineEndPointX(50);
  scan_.angle(90);
  const TwipsBox level = Child("picplus").Box();
  const Node* line = Child("picplus").parent();
  ASSERT_NE(line, nullptr);
  scan_.PlotType(PlotTypeEnumLineScan::vbAngle);
  scan_.Plot();
  EXPECT_EQ(Child("picplus").Box().left, level.left);
  EXPECT_EQ(Child("picplus").Box().top, level.top);
}

TEST_F(LineScanControl, DrawsNothingForAModeThatIsNone) {
  LoadAndPlot();
  scan_.PlotType(static_cast<PlotTypeEnumLineScan>(5));
  Trace("FNPic");
  Trace("PLOTA");
  scan_.Plot();
  EXPECT_EQ(Lines("PLOTA"), 0U);
  EXPECT_THAT(Trace("FNPic"), IsEmpty());
}

TEST_F(LineScanControl, AResizeDrawsOnceWhatWasAskedFor) {
  Load();
  Trace("PLOTA");
  scan_.SetSize(7000, 5000);
  EXPECT_EQ(Lines("PLOTA"), 0U);
  scan_.Plot();
  Trace("PLOTA");
  scan_.SetSize(6500, 4800);
  EXPECT_EQ(Lines("PLOTA"), 88U);
  scan_.SetSize(100, 100);  // the size that it asks for draws
  EXPECT_EQ(Lines("PLOTA"), 88U);
}

TEST_F(LineScanControl, TurnsByKeysAndSpinner) {
  scan_.angle(359);
  Child("AngleValue").on_key(kUp);
  EXPECT_EQ(scan_.angle(), 0);
  Child("AngleValue").on_key(kDown);
  EXPECT_EQ(scan_.angle(), 359);
  Child("AngleValue").on_key(65);
  EXPECT_EQ(scan_.angle(), 359);
  Child("UpDown1").on_spin(3);
  EXPECT_EQ(scan_.angle(), 2);
  Child("UpDown1").on_spin(-5);
  EXPECT_EQ(scan_.angle(), 357);
  Child("UpDown1").on_spin(2'000'000'000);
  EXPECT_EQ(scan_.angle(), (357 + 2'000'000'000 % 360) % 360);
  EXPECT_EQ(Child("AngleValue").Text(), std::to_string(scan_.angle()));
}

TEST_F(LineScanControl, WithoutDataTurnsTheIndicatorAlone) {
  Child("UpDown1").on_spin(90);
  EXPECT_EQ(Lines("PLOTA"), 0U);
  EXPECT_TRUE(Child("picplus").Visible());
  // The cut at 90 degrees ends on the left, in the middle of the picture.
  const TwipsBox& marker = Child("picplus").Box();
  const TwipsBox& picture = Child("FNPic").Box();
  EXPECT_LT(marker.left, picture.left + 60);
  EXPECT_NEAR(marker.top + marker.height / 2, picture.top + picture.height / 2, 2);
}

TEST_F(LineScanControl, PlotsAtOnceAndAgain) {
  Load();
  EXPECT_EQ(Lines("PLOTA"), 0U);
  EXPECT_EQ(scan_.Plot(), PlotResult::Done);
  EXPECT_GE(Lines("PLOTA"), 88U);
  EXPECT_EQ(Child("FNLabel(0)").Text(), "Angle :");
  EXPECT_EQ(Child("lblX(0)").Text(), "X=0.00Y=-97.00");
  EXPECT_EQ(Child("lblY(4)").Text(), "18.0");
  scan_.Shown();
  EXPECT_EQ(Lines("PLOTA"), 88U);
  scan_.clear();
  Trace("PLOTA");
  scan_.Shown();
  EXPECT_EQ(Lines("PLOTA"), 0U);
}

TEST_F(LineScanControl, ChangesItsMode) {
  LoadAndPlot();
  scan_.PlotType(PlotTypeEnumLineScan::vbline);
  EXPECT_EQ(Trace("PLOTA"), json::parse(R"([["Cls"]])"));
  EXPECT_FALSE(Child("FNLabel(0)").Visible());
  EXPECT_TRUE(Child("FNLabel(1)").Visible());
  scan_.LineStartPointX(-10);
  scan_.LineStartPointY(1);
  scan_.LineEndPointX(10);
  scan_.LineEndPointY(2);
  scan_.RotationPointX(3);
  scan_.RotationPointY(4);
  EXPECT_THAT(container_.TakeAnnounced(),
              ElementsAre("1DPlotType", "1DLineStartX", "1DLineStartY", "1DLineEndX", "1DLineEndY",
                          "1DRotationX", "1DRotationY"));
  EXPECT_EQ(Trace("PLOTA").size(), 6U);  // cleared by each
  EXPECT_EQ(scan_.Plot(), PlotResult::Done);
  EXPECT_EQ(Lines("PLOTA"), 88U);
  EXPECT_EQ(Child("lblX(4)").Text().substr(0, 7), "X=96.79");  // by hand: y = 0.05 x + 1.5
  EXPECT_EQ(Child("FNLabel(1)").Text(), "Notch");
}

TEST_F(LineScanControl, ACutBesideTheWaferLeavesItsPartOut) {
  LoadAndPlot();
  scan_.RotationPointX(98);
  EXPECT_EQ(scan_.Plot(), PlotResult::Done);
  EXPECT_EQ(Lines("PLOTA"), 0U);
  scan_.angle(90);
  EXPECT_EQ(Lines("PLOTA"), 88U);
}

TEST_F(LineScanControl, LimitsReachTheReadOuts) {
  LoadAndPlot();
  EXPECT_TRUE(scan_.SetPlotLimit(0, 40));
  EXPECT_EQ(Child("lblY(2)").Text(), "20.0");
  EXPECT_GE(Lines("PLOTA"), 88U);
  EXPECT_TRUE(scan_.SetPlotLimit(0, 40));  // the same again is no reason to stay
  EXPECT_GE(Lines("PLOTA"), 88U);
  EXPECT_FALSE(scan_.SetPlotLimit(40, 0));
  scan_.ReleasePlotLimit();
  EXPECT_EQ(Child("lblY(0)").Text(), "10.0");
  EXPECT_GE(Lines("PLOTA"), 88U);
}

TEST_F(LineScanControl, ClearsForSetPlotNotVaild) {
  LoadAndPlot();
  scan_.SetPlotNotVaild();
  EXPECT_EQ(Trace("PLOTA"), json::parse(R"([["Cls"]])"));
}

TEST_F(LineScanControl, AsksForItsLeastSize) {
  const struct {
    bool legend;
    float width, height, taken_width, taken_height;
  } rows[] = {{true, 3999, 2849, 4000, 2850},
              {true, 4000, 2850, 4000, 2850},
              {true, 5000, 100, 5000, 2850},
              {false, 3999, 1769, 4000, 1770},
              {false, 4000, 1770, 4000, 1770}};
  for (const auto& row : rows) {
    scan_.HideLegend(!row.legend);
    scan_.SetSize(row.width, row.height);
    EXPECT_EQ(scan_.root().Box().width, row.taken_width) << row.width;
    EXPECT_EQ(scan_.root().Box().height, row.taken_height) << row.height;
    EXPECT_EQ(Child("frmove").Visible(), row.legend);
    EXPECT_GT(Child("PLOTA").Box().width, 1000);
    EXPECT_GT(Child("PLOTA").Box().height, 500);
  }
}

TEST_F(LineScanControl, HasRoomForItsValuesBesideTheChart) {
  LoadAndPlot();
  scan_.SetSize(6000, 4500);
  const float narrow = Child("PLOTA").Box().left;
  scan_.SetPlotLimit(-123456.8F, 123456.8F);
  scan_.SetSize(6001, 4500);
  EXPECT_GT(Child("PLOTA").Box().left, narrow);
  for (int i = 0; i < 5; ++i) {
    const Node& label = Child(("lblY(" + std::to_string(i) + ")").c_str());
    EXPECT_GE(label.Box().left, 0) << i;
    EXPECT_LE(label.Right(), Child("PLOTA").Box().left) << i;
  }
}

TEST_F(LineScanControl, ColoursAllThatLiesAroundTheCurve) {
  scan_.BackColor(0x00FFFF);
  for (const char* name : {"LineScan", "Plot", "FNLabel(0)", "FNLabel(1)", "FNPic", "Picture1",
                           "Picture2", "Picture3", "Picture4", "picplus", "Frame1"}) {
    EXPECT_EQ(Child(name).BackColor(), 0x00FFFFU) << name;
  }
  EXPECT_EQ(Child("PLOTA").BackColor(), kWhite);
  EXPECT_THAT(container_.TakeAnnounced(), ElementsAre("BackColor"));
}

// Showing the cut gives a scan without a diameter one of 200 mm, and its radius with it.
TEST_F(LineScanControl, InterpolatesAlsoWhereTheCutWasShownFirst) {
  LineScan scan(host_, &container_);
  scan.BackColor(0x00FFFF);
  scan.TestDiameter(194);
  std::vector<float> x;
  std::vector<float> y;
  for (int i = 0; i < 12; ++i) {
    x.push_back(static_cast<float>(20 * (i % 4) - 30));
    y.push_back(static_cast<float>(20 * (i / 4) - 20));
  }
  ASSERT_EQ(scan.SetWaferData(x, y, std::vector<float>(12, 7)), LoadResult::Loaded);
  EXPECT_EQ(scan.Wafer().WaferRadius(), 100);
  EXPECT_FLOAT_EQ(scan.Interpolation(Variant(10.0F), Variant(10.0F)), 7);
}

TEST_F(LineScanControl, OffersNoMembersOfMaps) {
  for (const char* name :
       {"ShowSites", "Resolution", "SetWaferData_Variant", "PrintLegend", "IntervalColor0"}) {
    EXPECT_EQ(scan_.Members().Find(name), nullptr) << name;
  }
  for (const char* name :
       {"angle", "PlotType", "RotationPointX", "LineEndPointY", "SetWaferData"}) {
    EXPECT_NE(scan_.Members().Find(name), nullptr) << name;
  }
}

TEST_F(LineScanControl, PassesTheMouseOn) {
  for (const char* name : {"LineScan", "Plot", "lblX(0)", "lblY(4)"}) {
    scan_.Mouse(Child(name), {.event = MouseEvent::MouseDown, .button = 1, .x = 5, .y = 6});
    EXPECT_EQ(container_.TakeRaised().size(), 1U) << name;
  }
  scan_.Mouse(Child("PLOTA"), {.event = MouseEvent::MouseDown});
  EXPECT_THAT(container_.TakeRaised(), IsEmpty());
}

// 4500 twips high: chart from 300 down to 4500 - 2 * 195 - 2 * 60 = 3990, so 3690 high.
TEST_F(LineScanControl, WritesTheValuesBesideTheirHeights) {
  LoadAndPlot();
  const TwipsBox& chart = Child("PLOTA").Box();
  EXPECT_EQ(chart.top, 300);
  EXPECT_EQ(chart.height, 3690);
  const std::array<float, 5> middles = {3990, 3067.5F, 2145, 1222.5F, 300};  // the lowest first
  for (std::size_t i = 0; i < middles.size(); ++i) {
    const TwipsBox& box = Child(IndexedName("lblY", i).c_str()).Box();
    EXPECT_EQ(box.top + 97.5F, middles[i]) << i;
    EXPECT_EQ(box.left + box.width, chart.left - 60) << i;
    const std::size_t characters = Child(IndexedName("lblY", i).c_str()).Text().size();
    EXPECT_EQ(box.width, static_cast<float>(characters) * 6 * 15) << i;
  }
  EXPECT_EQ(chart.left, 2 * 60 + 360) << "beside the widest of them";
}

TEST(LineScanPointer, IsAnHourglassWhileItDraws) {
  struct Watching final : Container {
    void PointerChanged(std::int16_t pointer) override { seen.push_back(pointer); }
    std::vector<std::int16_t> seen;
  };
  for (const auto type : {PlotTypeEnumLineScan::vbAngle, PlotTypeEnumLineScan::vbline}) {
    RecordingHost host;
    Watching container;
    LineScan scan(host, &container);
    scan.InitProperties();
    scan.PlotType(type);
    scan.LineEndPointX(50);
    const std::vector<float> x = {0, 50}, y = {0, 0}, z = {1, 2};
    ASSERT_EQ(scan.SetWaferData(x, y, z), LoadResult::Loaded);
    scan.MousePointer(2);
    container.seen.clear();
    scan.Plot();
    EXPECT_THAT(container.seen, ElementsAre(11, 0));
    EXPECT_EQ(scan.MousePointer(), 0);
  }
}

}  // namespace
}  // namespace discoplan
