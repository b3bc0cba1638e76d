// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <functional>
#include <limits>
#include <numeric>

#include "discoplan/controls/plot2d.h"
#include "hosts/recording/recording_host.h"

namespace discoplan {
namespace {

using nlohmann::json;
using testing::ElementsAre;
using testing::IsEmpty;

class Plot2DState : public testing::Test {
 protected:
  Plot2DState() : plot_(host_, &container_) {
    plot_.root().Move({0, 0, 6000, 4500});
    plot_.InitProperties();
    plot_.SetSize(6000, 4500);
    container_.TakeAnnounced();
    TakeTrace();
  }

  Node& Child(const char* name) { return *plot_.root().Find(name); }
  json TakeTrace() { return dynamic_cast<Traced&>(*Child("PLOTA").Picture()).TakeTrace(); }
  /// Cells are drawn only if the map was.
  bool Redrew() {
    const json trace = TakeTrace();
    return std::ranges::find(trace, json::parse(R"(["DrawStyle", 5])")) != trace.end();
  }
  LoadResult Load(const std::vector<float>& values = {1, 2, 3, 4, 5}) {
    std::vector<float> x(values.size());
    std::iota(x.begin(), x.end(), 10.0F);
    return plot_.SetWaferData(x, x, values);
  }

  // The flags, told from what they do.
  bool Valid() {  // a resize draws unless the plot is valid
    TakeTrace();
    plot_.SetSize(6000, 4500);
    return !Redrew();
  }
  bool Limited() {  // a load keeps limits in force
    EXPECT_EQ(Load({-1e6F, 0, 1, 2, 1e6F}), LoadResult::Loaded);
    return plot_.Wafer().PlotMaximum != 1e6F;
  }
  bool Requested() {  // limits replot at once
    TakeTrace();
    plot_.SetPlotLimit(-77, plot_.Wafer().PlotMaximum + 88);
    return Redrew();
  }

  RecordingHost host_;
  RecordingContainer container_;
  Plot2D plot_;
};

struct FlagCase {
  const char* name;
  std::function<void(Plot2D&)> act;
  bool valid;
  bool requested;
};

const std::vector<float> kFive = {1, 2, 3, 4, 5};

TEST_F(Plot2DState, FlagsAfterEachEvent) {
  for (const FlagCase& row : {
           FlagCase{"nothing", [](Plot2D&) {}, true, true},
           FlagCase{"load", [](Plot2D& p) { (void)p.SetWaferData(kFive, kFive, kFive); }, false,
                    false},
           FlagCase{"failed load", [](Plot2D& p) { (void)p.SetWaferData(kFive, kFive, {}); }, true,
                    true},
           FlagCase{"clear", [](Plot2D& p) { p.clear(); }, false, false},
           FlagCase{"WaferStyle", [](Plot2D& p) { p.WaferStyle(WaferSt::Notch); }, false, true},
           FlagCase{"TestDiameter", [](Plot2D& p) { p.TestDiameter(190); }, false, true},
           FlagCase{"Resolution", [](Plot2D& p) { p.Resolution(5); }, false, true},
           FlagCase{"ShowSites", [](Plot2D& p) { p.ShowSites(Sites::HideSite); }, false, true},
           FlagCase{"IntervalColor", [](Plot2D& p) { p.IntervalColor(3, 9); }, false, true},
           FlagCase{"SetPlotNotVaild", [](Plot2D& p) { p.SetPlotNotVaild(); }, false, true},
           FlagCase{"BackColor", [](Plot2D& p) { p.BackColor(9); }, true, true},
           FlagCase{"PlotCaption", [](Plot2D& p) { p.PlotCaption("x"); }, true, true},
           FlagCase{"HideLegend", [](Plot2D& p) { p.HideLegend(false); }, true, true},
           FlagCase{"Plot", [](Plot2D& p) { (void)p.Plot(); }, true, true},
           FlagCase{"SetPlotLimit", [](Plot2D& p) { (void)p.SetPlotLimit(0, 9); }, true, true},
           FlagCase{"bad limit", [](Plot2D& p) { (void)p.SetPlotLimit(9, 0); }, true, true},
           FlagCase{"ReleasePlotLimit", [](Plot2D& p) { p.ReleasePlotLimit(); }, true, true},
       }) {
    ASSERT_EQ(Load(), LoadResult::Loaded);
    ASSERT_EQ(plot_.Plot(), PlotResult::Done);
    row.act(plot_);
    // Asked in this order: a redraw would make the plot valid, but leaves the request alone.
    EXPECT_EQ(Valid(), row.valid) << row.name;
    EXPECT_EQ(Requested(), row.requested) << row.name;
    plot_.ReleasePlotLimit();
  }
}

struct LimitCase {
  std::vector<std::pair<float, float>> pairs;
  std::vector<bool> results;
  bool limited;
  float lower, upper;  // left in the wafer
};

TEST_F(Plot2DState, LimitsOfEqualAndUnequalPairs) {
  const float nan = std::nanf("");
  for (const LimitCase& row : {
           LimitCase{{{1, 5}}, {false}, false, 1, 5},  // those of the data: nothing happens
           LimitCase{{{0, 10}}, {true}, true, 0, 10},
           LimitCase{{{0, 10}, {0, 10}}, {true, false}, true, 0, 10},  // still in force
           LimitCase{{{5, 5}}, {false}, false, 1, 5},
           LimitCase{{{7, 3}}, {false}, false, 1, 5},
           LimitCase{{{0, 10}, {5, 5}}, {true, false}, false, 0, 10},
           LimitCase{{{0, 10}, {7, 3}}, {true, false}, false, 0, 10},
           LimitCase{{{0, 10}, {0, 11}}, {true, true}, true, 0, 11},
           LimitCase{{{0, 10}, {1, 5}}, {true, true}, true, 1, 5},
           LimitCase{{{1, 5.0000005F}}, {true}, true, 1, 5.0000005F},
           LimitCase{{{nan, 3}}, {false}, false, 1, 5},
           LimitCase{{{0, 10}, {3, nan}}, {true, false}, false, 0, 10},
       }) {
    plot_.ReleasePlotLimit();
    ASSERT_EQ(Load(), LoadResult::Loaded);
    for (std::size_t i = 0; i < row.pairs.size(); ++i) {
      EXPECT_EQ(plot_.SetPlotLimit(row.pairs[i].first, row.pairs[i].second), row.results[i]);
    }
    EXPECT_EQ(plot_.Wafer().PlotMinimum, row.lower);
    EXPECT_EQ(plot_.Wafer().PlotMaximum, row.upper);
    EXPECT_EQ(Limited(), row.limited) << row.pairs[0].first << ' ' << row.pairs[0].second;
  }
}

TEST_F(Plot2DState, AnEqualPairDoesNotReplot) {
  ASSERT_EQ(Load(), LoadResult::Loaded);
  plot_.Plot();
  plot_.SetPlotLimit(0, 10);
  TakeTrace();
  EXPECT_FALSE(plot_.SetPlotLimit(0, 10));
  EXPECT_EQ(TakeTrace(), json::array());
  EXPECT_FALSE(plot_.SetPlotLimit(7, 3));  // a bad pair does, though nothing changed
  EXPECT_TRUE(Redrew());
}

TEST_F(Plot2DState, LimitsSurviveTrimming) {
  const std::vector<float> x = {0, 60, 0}, y = {0, 0, 20};
  ASSERT_EQ(plot_.SetWaferData(x, y, std::vector<float>{1, 2, 3}), LoadResult::Loaded);
  plot_.SetPlotLimit(-4, 40);
  plot_.TestDiameter(100);
  EXPECT_EQ(plot_.Wafer().PlotMinimum, -4);
  EXPECT_EQ(plot_.Wafer().PlotMaximum, 40);
  plot_.ReleasePlotLimit();
  EXPECT_EQ(plot_.Wafer().PlotMaximum, 3);
}

struct BoundsCase {
  std::int32_t x_lower, y_lower, z_lower;
  std::size_t x_count, y_count, z_count;
  LoadResult result;
  float count;  // of sites afterwards; -1 for those of before
};

TEST_F(Plot2DState, ResultCodesOfALoad) {
  using enum LoadResult;
  const auto array = [](std::int32_t lower, std::size_t count) {
    return FloatArray{.lower = lower, .values = std::vector<float>(count, 1), .dimensioned = true};
  };
  for (const BoundsCase& row : {
           BoundsCase{1, 1, 1, 10, 10, 10, Loaded, 10},
           BoundsCase{0, 0, 0, 3, 3, 3, Loaded, 3},
           BoundsCase{-5, -5, -5, 1, 1, 1, Loaded, 1},
           BoundsCase{1, 1, 1, 10, 9, 8, UpperBoundsDiffer, -1},
           BoundsCase{1, 1, 1, 10, 9, 10, UpperBoundsDiffer, -1},
           BoundsCase{1, 0, 1, 10, 11, 10, LowerBoundsDiffer, -1},
           BoundsCase{1, 0, 2, 10, 11, 9, LowerBoundsDiffer, -1},
           BoundsCase{1, 1, 1, 10, 10, 5, Failed, 10},   // one that agrees is enough to begin
           BoundsCase{1, 1, 1, 5, 10, 10, Loaded, 5},    // the sites of x are all there
           BoundsCase{0, 1, 1, 11, 10, 10, Failed, 11},  // y has no element 0
           BoundsCase{1, 1, 1, 0, 3, 3, Failed, -1},
           BoundsCase{1, 1, 1, 3, 0, 3, Failed, -1},
           BoundsCase{1, 1, 1, 3, 3, 0, Failed, -1},
       }) {
    ASSERT_EQ(Load({8, 9}), LoadResult::Loaded);
    plot_.Plot();
    plot_.Plot();
    TakeTrace();
    EXPECT_EQ(plot_.SetWaferData(array(row.x_lower, row.x_count), array(row.y_lower, row.y_count),
                                 array(row.z_lower, row.z_count)),
              row.result);
    EXPECT_EQ(plot_.Wafer().GetNop(), row.count < 0 ? 2 : row.count);
    // All but a failure end with an empty picture in place of the snapshot.
    const bool ended = row.result != Failed;
    EXPECT_EQ(TakeTrace(), json::parse(ended ? R"([["Cls"]])" : "[]"));
    EXPECT_EQ(Child("RePlot").Visible(), !ended);
    EXPECT_EQ(Child("RePlot").Image() == nullptr, ended);
    EXPECT_EQ(Child("PLOTA").Visible(), ended);
  }
}

TEST_F(Plot2DState, AFailedLoadKeepsTheSitesUpToIt) {
  const std::vector<float> ten = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10};
  EXPECT_EQ(plot_.SetWaferData(ten, ten, kFive), LoadResult::Failed);
  FloatArray x, y, z;
  EXPECT_EQ(plot_.GetWaferData(x, y, z), 10);
  EXPECT_THAT(x.values, ElementsAre(1, 2, 3, 4, 5, 0, 0, 0, 0, 0));
  EXPECT_EQ(plot_.Plot(), PlotResult::Done);
}

TEST_F(Plot2DState, ResultCodesOfADataFile) {
  const auto file = std::filesystem::temp_directory_path() / "discoplan-state.dat";
  const std::vector<double> blocks = {1, 2, 3, 10, 20, 30, 7, 8, 9};
  std::ofstream(file, std::ios::binary)
      .write(reinterpret_cast<const char*>(blocks.data()),
             static_cast<std::streamsize>(blocks.size() * sizeof(double)));
  struct Row {
    float count;
    LoadResult result;
    float sites;
  };
  for (const Row& row : {
           Row{3, LoadResult::Loaded, 3},
           Row{2, LoadResult::Loaded, 2},
           Row{4, LoadResult::Failed, 4},
           Row{0, LoadResult::Failed, 0},
           Row{-1, LoadResult::Failed, -1},
           Row{40000, LoadResult::Failed, 0},
           Row{std::nanf(""), LoadResult::Failed, 0},
           Row{std::numeric_limits<float>::infinity(), LoadResult::Failed, 0},
       }) {
    TakeTrace();
    EXPECT_EQ(plot_.SetDataFile(file.string(), row.count), row.result) << row.count;
    EXPECT_EQ(plot_.Wafer().GetNop(), row.sites) << row.count;
    EXPECT_EQ(TakeTrace(), json::parse(R"([["Cls"]])")) << row.count;  // in any case
    EXPECT_NO_THROW((void)plot_.Plot());
  }
  EXPECT_EQ(plot_.SetDataFile(file.parent_path().string(), 3), LoadResult::Failed);
  EXPECT_EQ(plot_.SetDataFile("", 3), LoadResult::Failed);
  std::filesystem::remove(file);
}

TEST_F(Plot2DState, AnnouncesUnderTheNamesOfTheInterface) {
  for (const Member& member : plot_.Members()) {
    if (!member.writable()) continue;
    const std::string name(member.name);
    const bool text = member.type == Type::String;
    const bool object = member.type == Type::Object;
    member.Set(plot_, text ? Variant(std::string("x")) : object ? Variant() : Variant(2.0));
    if (name == "PrinterObj") {
      EXPECT_THAT(container_.TakeAnnounced(), IsEmpty());
    } else {
      EXPECT_THAT(container_.TakeAnnounced(), ElementsAre(name));
    }
  }
  plot_.clear();
  plot_.SetPlotNotVaild();
  plot_.About();
  plot_.ReleasePlotLimit();
  EXPECT_THAT(container_.TakeAnnounced(), IsEmpty());
}

TEST_F(Plot2DState, PlotMendsWhatWouldNotDraw) {
  plot_.TestDiameter(0);
  plot_.Resolution(7);  // a quarter of 0 is the most: stored as 0
  EXPECT_EQ(plot_.Resolution(), 0);
  ASSERT_EQ(Load(), LoadResult::Loaded);
  container_.TakeAnnounced();
  EXPECT_EQ(plot_.Plot(), PlotResult::Done);
  EXPECT_EQ(plot_.TestDiameter(), 200);
  EXPECT_EQ(plot_.Resolution(), 5);
  EXPECT_THAT(container_.TakeAnnounced(), ElementsAre("TestDiameter", "Resolution"));
}

TEST_F(Plot2DState, PlotOfAControlWithoutPropertiesFillsThemIn) {
  RecordingContainer container;
  Plot2D bare(host_, &container);
  bare.SetSize(6000, 4500);
  EXPECT_EQ(bare.SetWaferData(kFive, kFive, kFive), LoadResult::Loaded);
  // The wafer's diameter is 0, so `Plot` sets it, which drops the data as it always does.
  EXPECT_EQ(bare.Plot(), PlotResult::Done);
  EXPECT_THAT(container.TakeAnnounced(),
              ElementsAre("WaferStyle", "WaferDiameter", "TestDiameter", "Resolution"));
  EXPECT_EQ(bare.Wafer().GetNop(), 0);
  EXPECT_EQ(bare.WaferDiameter(), 200);
  EXPECT_EQ(bare.TestDiameter(), 200);
}

struct PitchCase {
  float test_diameter;
  float before;
  float after;
  const char* text;  // nothing where the pitch fits
};

TEST_F(Plot2DState, TellsOfAPitchThatATestDiameterLeftTooLarge) {
  for (const PitchCase& row : {
           PitchCase{100, 40, 25, "Maximal possible resolution is 25 mm"},
           PitchCase{100, 25, 25, nullptr},
           PitchCase{99.5F, 25, 24.875F, "Maximal possible resolution is 24.875 mm"},
           PitchCase{1.6F, 5, 0.4F, "Maximal possible resolution is 0.4 mm"},
       }) {
    plot_.TestDiameter(194);
    plot_.Resolution(row.before);
    const std::vector<float> centre = {0, 0.1F, -0.1F, 0.2F, 0};
    ASSERT_EQ(plot_.SetWaferData(centre, centre, kFive), LoadResult::Loaded);
    plot_.TestDiameter(row.test_diameter);
    EXPECT_EQ(plot_.Resolution(), row.before);  // stays until the redraw
    TakeTrace();
    plot_.Plot();
    const std::vector<Message> messages = host_.TakeMessages();
    EXPECT_EQ(plot_.Resolution(), row.after);
    EXPECT_TRUE(Redrew());
    ASSERT_EQ(messages.size(), row.text != nullptr ? 1U : 0U) << row.before;
    if (row.text == nullptr) continue;
    EXPECT_EQ(messages[0].text, row.text);
    EXPECT_EQ(messages[0].title, "Standard resolution to high ");
    EXPECT_TRUE(messages[0].critical);
    EXPECT_TRUE(messages[0].system_modal);
  }
}

TEST_F(Plot2DState, ResolutionIsLimitedInSilence) {
  plot_.Resolution(60);
  EXPECT_EQ(plot_.Resolution(), 48.5F);
  EXPECT_TRUE(host_.TakeMessages().empty());
}

TEST_F(Plot2DState, WaferDiameterLeavesAValidPlotValid) {
  ASSERT_EQ(Load(), LoadResult::Loaded);
  plot_.Plot();
  plot_.Plot();
  TakeTrace();
  plot_.WaferDiameter(300);
  EXPECT_EQ(TakeTrace(), json::parse(R"([["Cls"]])"));
  EXPECT_EQ(Child("RePlot").Image(), nullptr);
  EXPECT_FALSE(Child("RePlot").Visible());
  EXPECT_EQ(plot_.Wafer().WaferRadius(), 150);
  plot_.SetSize(7000, 6000);  // valid still: the empty snapshot comes up, and nothing is drawn
  EXPECT_TRUE(Child("RePlot").Visible());
  EXPECT_EQ(TakeTrace(), json::array());
  EXPECT_EQ(plot_.Plot(), PlotResult::NoData);
}

TEST_F(Plot2DState, ClearKeepsDataSnapshotAndLimits) {
  ASSERT_EQ(Load(), LoadResult::Loaded);
  plot_.SetPlotLimit(0, 10);
  plot_.Plot();
  plot_.clear();
  EXPECT_NE(Child("RePlot").Image(), nullptr);
  EXPECT_EQ(plot_.Wafer().GetNop(), 5);
  EXPECT_TRUE(Limited());
}

struct StatisticsCase {
  std::vector<float> values;
  float deviation_percent;
  float high_low;
  float range;
};

TEST_F(Plot2DState, StatisticsAtTheirEdges) {
  for (const StatisticsCase& row : {
           StatisticsCase{{1, 2, 3}, 50, 50, 2},
           StatisticsCase{{-1, -2, -3}, 0, 50, 2},  // a negative mean
           StatisticsCase{{-1, 1}, 0, 0, 2},        // mean and sum are 0
           StatisticsCase{{4}, 0, 0, 0},
           StatisticsCase{{0, 0}, 0, 0, 0},
           StatisticsCase{{-1, 3}, 282.8427F, 200, 4},
       }) {
    ASSERT_EQ(Load(row.values), LoadResult::Loaded);
    EXPECT_FLOAT_EQ(plot_.StdDevPercent(), row.deviation_percent) << row.values[0];
    EXPECT_FLOAT_EQ(plot_.HiLo(), row.high_low) << row.values[0];
    EXPECT_EQ(plot_.range(), row.range) << row.values[0];
  }
}

TEST_F(Plot2DState, MembersOfTheWindowAreTheContainers) {
  struct Window : Container {
    std::int32_t DeviceHandle() const override { return 77; }
    std::int32_t WindowHandle() const override { return -8; }
  } window;
  const Plot2D plot(host_, &window);
  EXPECT_EQ(plot.hdc(), 77);
  EXPECT_EQ(plot.hwnd(), -8);
  EXPECT_EQ(plot_.hdc(), 0);
}

TEST_F(Plot2DState, ColoursOfTheTenIntervals) {
  for (std::size_t i = 0; i < 10; ++i) {
    const std::string name = std::string("IntervalColor").append(std::to_string(i));
    plot_.Members().At(name).Set(plot_, Variant(static_cast<double>(1000 + i)));
    EXPECT_EQ(plot_.Wafer().IntervalColor[i], 1000.0F + static_cast<float>(i));
    EXPECT_EQ(plot_.IntervalColor(i), 1000 + i);
    EXPECT_THAT(container_.TakeAnnounced(), ElementsAre(name));
  }
  EXPECT_THROW(plot_.IntervalColor(10), RunTimeError);
  plot_.IntervalColor(3, 0x8000000F);  // a system colour is a negative number to the float
  EXPECT_EQ(plot_.IntervalColor(3), 0x80000000);
  plot_.IntervalColor(3, 0x01000001);
  EXPECT_EQ(plot_.IntervalColor(3), 0x01000000U);
}

TEST_F(Plot2DState, SurvivesEveryPropertyWithEveryNumber) {
  const float infinity = std::numeric_limits<float>::infinity();
  for (const Member& member : plot_.Members()) {
    if (!member.writable() || member.type == Type::Object || member.type == Type::String) continue;
    for (const float value : {std::nanf(""), infinity, -infinity, 3e38F, -3e38F, 1e-45F, -0.0F}) {
      Attempt([&] { member.Set(plot_, Variant(value)); });  // integers refuse what doesn't fit
      (void)Load();
      EXPECT_NO_THROW((void)plot_.Plot()) << member.name << value;
      plot_.SetPlotNotVaild();
      EXPECT_NO_THROW(plot_.SetSize(5000, 4000)) << member.name << value;
      Attempt([&] { (void)member.Get(plot_); });
    }
    plot_.InitProperties();
  }
}

TEST_F(Plot2DState, SurvivesSitesAndLimitsOfEveryNumber) {
  const float infinity = std::numeric_limits<float>::infinity();
  for (const float value : {std::nanf(""), infinity, -infinity, 3e38F, -3e38F, 1e-45F}) {
    for (const std::size_t count : {5U, 12U}) {
      std::vector<float> ramp(count);
      std::iota(ramp.begin(), ramp.end(), 1.0F);
      std::vector<float> odd = ramp;
      odd[1] = value;
      for (const auto& [x, z] : {std::pair{odd, ramp}, {ramp, odd}, {odd, odd}}) {
        EXPECT_NO_THROW((void)plot_.SetWaferData(x, ramp, z));
        EXPECT_NO_THROW((void)plot_.Plot());
        EXPECT_NO_THROW((void)plot_.Interpolation(Variant(value), Variant(value)));
      }
    }
    for (const auto& [lower, upper] : {std::pair{value, 5.0F}, {1.0F, value}, {value, value}}) {
      Attempt([&, low = lower, high = upper] { (void)plot_.SetPlotLimit(low, high); });
      EXPECT_NO_THROW((void)plot_.Plot());
      EXPECT_NO_THROW(plot_.SetSize(6000, 4500));
    }
    Attempt([&] { plot_.ReleasePlotLimit(); });
  }
}

}  // namespace
}  // namespace discoplan
