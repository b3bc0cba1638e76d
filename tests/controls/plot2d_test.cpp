// SPDX-License-Identifier: MIT
#include "discoplan/controls/plot2d.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numeric>

#include "discoplan/controls/control_factory.h"
#include "hosts/recording/recording_host.h"

namespace discoplan {
namespace {

using testing::ElementsAre;

class Plot2DTest : public testing::Test {
 protected:
  Plot2DTest() : plot_(host_, &container_) {
    plot_.root().Move({0, 0, 6000, 4500});
    plot_.InitProperties();
    plot_.SetSize(6000, 4500);
    container_.TakeAnnounced();
    TakeTrace("PLOTA");
  }

  Node& Child(const char* name) { return *plot_.root().Find(name); }
  nlohmann::json TakeTrace(const char* name) {
    return dynamic_cast<Traced&>(*Child(name).Picture()).TakeTrace();
  }
  /// How often the map was drawn since the last look.
  int Redraws() {
    const nlohmann::json trace = TakeTrace("PLOTA");
    return static_cast<int>(
        std::ranges::count(trace, nlohmann::json::parse(R"(["ForeColor", 0])")));
  }
  LoadResult Load(const std::vector<float>& values = {1, 2, 3, 4, 5}) {
    std::vector<float> x(values.size());
    std::iota(x.begin(), x.end(), 10.0F);
    return plot_.SetWaferData(x, x, values);
  }
  bool ShowsSnapshot() { return Child("RePlot").Visible() && !Child("PLOTA").Visible(); }

  RecordingHost host_;
  RecordingContainer container_;
  Plot2D plot_;
};

TEST_F(Plot2DTest, StartsWithTheValuesOfANewControl) {
  RecordingContainer container;
  Plot2D fresh(host_, &container);
  fresh.InitProperties();
  EXPECT_THAT(container.TakeAnnounced(),
              ElementsAre("TestDiameter", "WaferDiameter", "WaferStyle", "Resolution", "ShowSites",
                          "HideLegend", "PlotCaption"));
  EXPECT_EQ(fresh.TestDiameter(), 194);
  EXPECT_EQ(fresh.WaferDiameter(), 200);
  EXPECT_EQ(fresh.WaferStyle(), WaferSt::Notch);
  EXPECT_EQ(fresh.Resolution(), 5);
  EXPECT_EQ(fresh.ShowSites(), Sites::HideSite);
  EXPECT_FALSE(fresh.HideLegend());
  EXPECT_EQ(fresh.PlotCaption(), "Wafer");
  EXPECT_EQ(fresh.PrinterObj(), nullptr);
}

TEST_F(Plot2DTest, WithoutDataPlotsNothing) {
  EXPECT_EQ(plot_.Plot(), PlotResult::NoData);
  EXPECT_EQ(TakeTrace("PLOTA").size(), 0U);
}

TEST_F(Plot2DTest, DrawsOnceUntilItIsStale) {
  ASSERT_EQ(Load(), LoadResult::Loaded);
  EXPECT_EQ(plot_.Plot(), PlotResult::Done);
  EXPECT_EQ(Redraws(), 1);
  EXPECT_EQ(plot_.Plot(), PlotResult::Done);  // lays out, and shows the snapshot
  EXPECT_EQ(Redraws(), 0);
  EXPECT_TRUE(ShowsSnapshot());
  plot_.SetPlotNotVaild();
  plot_.Plot();
  EXPECT_EQ(Redraws(), 1);
  EXPECT_FALSE(ShowsSnapshot());
}

struct Stale {
  const char* name;
  double value;
  bool redraws;
};

TEST_F(Plot2DTest, RedrawsAfterWhatThePictureDependsOn) {
  ASSERT_EQ(Load(), LoadResult::Loaded);
  for (const Stale& row : {Stale{"WaferStyle", 2, true}, Stale{"TestDiameter", 190, true},
                           Stale{"Resolution", 6, true}, Stale{"ShowSites", 1, true},
                           Stale{"IntervalColor4", 255, true}, Stale{"BackColor", 255, false},
                           Stale{"MousePointer", 2, false}, Stale{"HideLegend", 0, false}}) {
    plot_.Plot();
    Redraws();
    container_.TakeAnnounced();
    plot_.Members().At(row.name).Set(plot_, Variant(row.value));
    EXPECT_THAT(container_.TakeAnnounced(), ElementsAre(row.name));
    EXPECT_EQ(Redraws(), 0) << row.name;
    plot_.Plot();
    EXPECT_EQ(Redraws(), row.redraws ? 1 : 0) << row.name;
  }
}

struct Stored {
  const char* name;
  double given;
  double read;
};

TEST_F(Plot2DTest, MendsPropertiesAsTheyAreWritten) {
  for (const Stored& row : {
           Stored{"WaferStyle", 2, 2},
           Stored{"WaferStyle", 3, 1},
           Stored{"WaferStyle", 7, 1},
           Stored{"WaferStyle", 70000, 1},
           Stored{"ShowSites", 70000, -1},
           Stored{"WaferStyle", -1, 1},
           Stored{"WaferDiameter", 0, 200},
           Stored{"WaferDiameter", -5, 200},
           Stored{"WaferDiameter", 300, 300},
           Stored{"TestDiameter", -1, 300},
           Stored{"TestDiameter", 0, 0},
           Stored{"TestDiameter", 500, 500},
           Stored{"TestDiameter", 194, 194},
           Stored{"Resolution", 0, 5},
           Stored{"Resolution", -1, 5},
           Stored{"Resolution", 60, 48.5},
           Stored{"Resolution", 48.5, 48.5},
           Stored{"ShowSites", 17, -1},
           Stored{"ShowSites", 0, 0},
           Stored{"HideLegend", 3, -1},
           Stored{"HideLegend", 0, 0},
           Stored{"IntervalColor3", 0x123456, 0x123456},
           Stored{"IntervalColor3", 0x7FFFFF01, 2147483392},  // 24 bits survive
       }) {
    const Member& member = plot_.Members().At(row.name);
    member.Set(plot_, Variant(row.given));
    EXPECT_EQ(member.Get(plot_).AsDouble(), row.read) << row.name << ' ' << row.given;
  }
}

TEST_F(Plot2DTest, WaferDiameterDropsTheData) {
  ASSERT_EQ(Load(), LoadResult::Loaded);
  plot_.WaferDiameter(plot_.WaferDiameter());
  EXPECT_EQ(plot_.Plot(), PlotResult::NoData);
  EXPECT_EQ(plot_.Maximum(), 5);  // statistics stay until the next load
}

TEST_F(Plot2DTest, TestDiameterDropsSitesForGood) {
  const std::vector<float> x = {0, 60, 0}, y = {0, 0, 20};
  ASSERT_EQ(plot_.SetWaferData(x, y, std::vector<float>{1, 2, 3}), LoadResult::Loaded);
  plot_.TestDiameter(100);
  plot_.TestDiameter(194);
  FloatArray a, b, z;
  EXPECT_EQ(plot_.GetWaferData(a, b, z), 2);
  EXPECT_THAT(z.values, ElementsAre(1, 3));
  EXPECT_NO_THROW(plot_.TestDiameter(0.001F));
  EXPECT_EQ(plot_.GetWaferData(a, b, z), 1);  // the one at the centre
}

TEST_F(Plot2DTest, PlotTrimsATestDiameterBeyondTheWafer) {
  plot_.TestDiameter(300);
  ASSERT_EQ(Load(), LoadResult::Loaded);
  plot_.Plot();
  EXPECT_EQ(plot_.TestDiameter(), 200);
  plot_.TestDiameter(0);
  ASSERT_EQ(Load(), LoadResult::Loaded);
  plot_.Plot();
  EXPECT_EQ(plot_.TestDiameter(), 200);
}

TEST_F(Plot2DTest, GivesBackWhatItStored) {
  FloatArray x{.lower = 4, .values = {9}, .dimensioned = true}, y, z;
  EXPECT_EQ(plot_.GetWaferData(x, y, z), 0);
  EXPECT_EQ(x.lower, 4);  // left alone
  ASSERT_EQ(Load({5e-16F, -2, 3}), LoadResult::Loaded);
  EXPECT_EQ(plot_.GetWaferData(x, y, z), 3);
  EXPECT_EQ(x.lower, 1);
  EXPECT_THAT(x.values, ElementsAre(10, 11, 12));
  EXPECT_THAT(z.values, ElementsAre(0, -2, 3));
}

TEST_F(Plot2DTest, StatisticsAreOfTheData) {
  ASSERT_EQ(Load({1, 2, 3}), LoadResult::Loaded);
  EXPECT_EQ(plot_.mean(), 2);
  EXPECT_EQ(plot_.StdDev(), 1);
  EXPECT_EQ(plot_.StdDevPercent(), 50);
  EXPECT_EQ(plot_.range(), 2);
  EXPECT_EQ(plot_.HiLo(), 50);
  plot_.SetPlotLimit(0, 10);
  EXPECT_EQ(plot_.range(), 2);
  ASSERT_EQ(Load({-1, -2, -3}), LoadResult::Loaded);
  EXPECT_EQ(plot_.StdDevPercent(), 0);
  ASSERT_EQ(Load({3, -3}), LoadResult::Loaded);
  EXPECT_EQ(plot_.HiLo(), 0);
}

TEST_F(Plot2DTest, LimitsReplotAndSurviveALoad) {
  ASSERT_EQ(Load(), LoadResult::Loaded);
  EXPECT_TRUE(plot_.SetPlotLimit(0, 10));
  EXPECT_EQ(Redraws(), 0);  // not plotted yet
  plot_.Plot();
  Redraws();
  EXPECT_FALSE(plot_.SetPlotLimit(0, 10));  // the same pair: nothing at all
  EXPECT_EQ(Redraws(), 0);
  ASSERT_EQ(Load({100, 200}), LoadResult::Loaded);
  EXPECT_EQ(plot_.Wafer().PlotMaximum, 10);
  plot_.Plot();
  Redraws();
  EXPECT_FALSE(plot_.SetPlotLimit(7, 3));  // ends the limit, though its values stay
  EXPECT_EQ(Redraws(), 1);
  EXPECT_EQ(plot_.Wafer().PlotMaximum, 10);
  ASSERT_EQ(Load({100, 200}), LoadResult::Loaded);
  EXPECT_EQ(plot_.Wafer().PlotMaximum, 200);
  EXPECT_FALSE(plot_.SetPlotLimit(5, 5));
  plot_.Plot();
  plot_.SetPlotLimit(1, 2);
  Redraws();
  plot_.ReleasePlotLimit();
  EXPECT_EQ(Redraws(), 1);
  EXPECT_EQ(plot_.Wafer().PlotMaximum, 200);
}

TEST_F(Plot2DTest, LoadsEndThePlottedState) {
  ASSERT_EQ(Load(), LoadResult::Loaded);
  plot_.Plot();
  plot_.Plot();
  ASSERT_TRUE(ShowsSnapshot());
  TakeTrace("PLOTA");
  const std::vector<float> three = {1, 2, 3}, four = {1, 2, 3, 4};
  EXPECT_EQ(plot_.SetWaferData(three, four, three), LoadResult::UpperBoundsDiffer);
  EXPECT_EQ(TakeTrace("PLOTA"), nlohmann::json::parse(R"([["Cls"]])"));  // cleared all the same
  EXPECT_FALSE(Child("RePlot").Visible());
  EXPECT_TRUE(Child("PLOTA").Visible());
  EXPECT_EQ(Child("RePlot").Image(), nullptr);
  plot_.Plot();
  plot_.Plot();
  Redraws();
  EXPECT_EQ(plot_.SetWaferData(four, four, three), LoadResult::Failed);
  EXPECT_EQ(TakeTrace("PLOTA").size(), 0U);  // the picture's state is untouched
  EXPECT_TRUE(ShowsSnapshot());
  EXPECT_EQ(plot_.SetDataFile("/nowhere.dat", 5), LoadResult::Failed);
  EXPECT_EQ(TakeTrace("PLOTA"), nlohmann::json::parse(R"([["Cls"]])"));
}

TEST_F(Plot2DTest, ClearKeepsTheData) {
  ASSERT_EQ(Load(), LoadResult::Loaded);
  plot_.Plot();
  TakeTrace("PLOTA");
  plot_.clear();
  EXPECT_EQ(TakeTrace("PLOTA"), nlohmann::json::parse(R"([["Cls"]])"));
  EXPECT_NE(Child("RePlot").Image(), nullptr);
  plot_.Plot();
  EXPECT_EQ(Redraws(), 1);
}

TEST_F(Plot2DTest, TellsWhenAPitchHasBecomeTooLarge) {
  plot_.Resolution(40);
  ASSERT_EQ(Load(), LoadResult::Loaded);
  plot_.TestDiameter(100);
  plot_.Plot();
  const std::vector<Message> messages = host_.TakeMessages();
  ASSERT_EQ(messages.size(), 1U);
  EXPECT_EQ(messages[0].text, "Maximal possible resolution is 25 mm");
  EXPECT_EQ(messages[0].title, "Standard resolution to high ");
  EXPECT_TRUE(messages[0].critical);
  EXPECT_TRUE(messages[0].system_modal);
  EXPECT_EQ(plot_.Resolution(), 25);
  EXPECT_EQ(Redraws(), 1);
}

TEST_F(Plot2DTest, TakesOnlyArraysFromVariants) {
  const Variant array(FloatArray{.lower = 1, .values = {1, 2}, .dimensioned = true});
  EXPECT_EQ(plot_.SetWaferData_Variant(array, array, array), LoadResult::Loaded);
  EXPECT_THROW((void)plot_.SetWaferData_Variant(array, array, Variant(3.0)), RunTimeError);
  EXPECT_THROW((void)plot_.SetWaferData_Variant(Variant(), array, array), RunTimeError);
}

TEST_F(Plot2DTest, InterpolatesWithoutAPlot) {
  ASSERT_EQ(Load(), LoadResult::Loaded);
  EXPECT_EQ(plot_.Interpolation(Variant(12.0), Variant(12.0)), 3);
  EXPECT_EQ(plot_.Interpolation(Variant(std::string("12")), Variant(std::string(" 12"))), 3);
  EXPECT_THROW(plot_.Interpolation(Variant(std::string("x")), Variant(1.0)), RunTimeError);
}

TEST_F(Plot2DTest, ForwardsTheMouseFromItsFramesOnly) {
  struct Row {
    const char* child;
    bool forwards;
  };
  for (const Row& row : {Row{"Plot2D", true}, Row{"Frplot", true}, Row{"frmove", true},
                         Row{"PLOTA", false}, Row{"RePlot", false}, Row{"frleg", false}}) {
    plot_.Mouse(Child(row.child), {.event = MouseEvent::Click});
    plot_.Mouse(Child(row.child),
                {.event = MouseEvent::MouseDown, .button = 2, .shift = 1, .x = 3, .y = 4.5F});
    const auto raised = container_.TakeRaised();
    ASSERT_EQ(raised.size(), row.forwards ? 2U : 0U) << row.child;
    if (!row.forwards) continue;
    EXPECT_EQ(raised[0].name, "Click");
    EXPECT_TRUE(raised[0].args.empty());
    EXPECT_EQ(raised[1].name, "MouseDown");
    EXPECT_THAT(raised[1].args, ElementsAre(Variant(std::int16_t{2}), Variant(std::int16_t{1}),
                                            Variant(3.0F), Variant(4.5F)));
  }
}

TEST_F(Plot2DTest, ListsItsMembersInInterfaceOrder) {
  std::vector<std::string> names;
  for (const Member& member : plot_.Members()) names.emplace_back(member.name);
  EXPECT_THAT(
      names,
      ElementsAre("PrinterObj", "hdc", "hwnd", "MouseIcon", "MousePointer", "About", "WaferStyle",
                  "StdDevPercent", "StdDev", "HiLo", "range", "Maximum", "Minimum", "mean",
                  "TestDiameter", "WaferDiameter", "Resolution", "ShowSites", "Plot", "BackColor",
                  "ShowPlotOption", "ReleasePlotLimit", "SetPlotLimit", "SetWaferData_Variant",
                  "SetWaferData", "HideLegend", "PlotCaption", "PrintPlot", "PrintLegend",
                  "PrintWaferStatistic", "PrintWaferSize", "clear", "GetWaferData", "SetDataFile",
                  "Interpolation", "IntervalColor1", "IntervalColor2", "IntervalColor3",
                  "IntervalColor4", "IntervalColor5", "IntervalColor6", "IntervalColor7",
                  "IntervalColor8", "IntervalColor9", "IntervalColor0", "SetPlotNotVaild"));
}

TEST_F(Plot2DTest, SurvivesValuesThatAreNoNumbers) {
  ASSERT_EQ(Load(), LoadResult::Loaded);
  const float values[] = {std::nanf(""), std::numeric_limits<float>::infinity(), -1e38F, 1e38F};
  for (const char* name : {"TestDiameter", "Resolution", "WaferDiameter"}) {
    for (const float value : values) {
      plot_.Members().At(name).Set(plot_, Variant(value));
      Load();
      EXPECT_NO_THROW(plot_.Plot()) << name << ' ' << value;
    }
  }
  for (const float value : values) EXPECT_NO_THROW(plot_.SetSize(value, value));
}

}  // namespace
}  // namespace discoplan
