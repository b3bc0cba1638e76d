// SPDX-License-Identifier: MIT
#include "discoplan/controls/histo.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <thread>

#include "discoplan/render/control_limits.h"
#include "hosts/recording/recording_host.h"

namespace discoplan {
namespace {

using nlohmann::json;
using testing::ElementsAre;
using testing::IsEmpty;

class HistoControl : public testing::Test {
 protected:
  HistoControl() { Begin(histo_); }
  ~HistoControl() override { ThreadControlLimits() = {}; }

  void Begin(Histo& histo) {
    histo.InitProperties();
    histo.SetSize(6000, 4500);
    container_.TakeAnnounced();
  }
  static Node& Child(Histo& histo, const char* name) { return *histo.root().Find(name); }
  Node& Child(const char* name) { return Child(histo_, name); }
  static json Trace(Histo& histo, const char* name) {
    return dynamic_cast<Recording<Picture>&>(*Child(histo, name).Picture()).TakeTrace();
  }
  static bool Prints(const json& trace, const char* text) {
    return std::ranges::find(trace, json{"Print", text}) != trace.end();
  }
  static void Load(Histo& histo) {
    const std::vector<float> x = {0, 50, 0, -50, 0}, y = {0, 0, 50, 0, -50},
                             z = {10, 12, 14, 16, 18};
    ASSERT_EQ(histo.SetWaferData(x, y, z), LoadResult::Loaded);
  }

  RecordingHost host_;
  RecordingContainer container_;
  Histo histo_{host_, &container_};
};

TEST_F(HistoControl, MendsItsProperties) {
  EXPECT_EQ(histo_.Resolution(), 10);
  EXPECT_EQ(histo_.PlotType(), PlotTyEnum::vbbottom);
  const std::pair<float, float> resolutions[] = {
      {0, 10}, {7.6F, 8}, {6.5F, 6}, {-3, -3}, {500, 500}};
  for (const auto& [given, read] : resolutions) {
    histo_.Resolution(given);
    EXPECT_EQ(histo_.Resolution(), read) << given;
  }
  EXPECT_THROW(histo_.Resolution(40000), RunTimeError);
  const std::pair<int, int> types[] = {{0, 1}, {1, 1}, {4, 4}, {5, 1}, {-1, 1}};
  for (const auto& [given, read] : types) {
    histo_.PlotType(static_cast<PlotTyEnum>(given));
    EXPECT_EQ(static_cast<int>(histo_.PlotType()), read) << given;
  }
}

TEST_F(HistoControl, AnnouncesWhatChanged) {
  histo_.Resolution(5);
  histo_.PlotType(PlotTyEnum::vbTop);
  histo_.BeamColor(0x123456);
  histo_.GaussCurveColor(0x654321);
  EXPECT_THAT(container_.TakeAnnounced(),
              ElementsAre("Resolution", "PlotType", "BeamColor", "GaussCurveColor"));
  EXPECT_EQ(histo_.BeamColor(), 0x123456U);
  EXPECT_EQ(histo_.Wafer().AuxColor[1], 0x123456);
  EXPECT_EQ(histo_.Wafer().AuxColor[0], 0x654321);
}

TEST_F(HistoControl, DrawsOnEachPlot) {
  EXPECT_EQ(histo_.Plot(), PlotResult::NoData);
  Load(histo_);
  for (int again = 0; again < 2; ++again) {
    Trace(histo_, "histPic");
    EXPECT_EQ(histo_.Plot(), PlotResult::Done);
    const json bars = Trace(histo_, "PLOTA");
    EXPECT_EQ(
        std::ranges::count(bars, json("filled"),
                           [](const json& call) { return call[0] == "Line" ? call[6] : json(); }),
        5);
    const json axes = Trace(histo_, "histPic");
    EXPECT_EQ(axes[0], json::array({"Cls"}));
    EXPECT_TRUE(Prints(axes, "Mean"));
    EXPECT_TRUE(Prints(axes, "10.0") && Prints(axes, "18.0"));
  }
  histo_.SetSize(6015, 4500);
  EXPECT_FALSE(Prints(Trace(histo_, "histPic"), "Mean")) << "a new size doesn't draw";
}

TEST_F(HistoControl, SharesItsControlLimitsInTheThread) {
  Histo other(host_, nullptr);
  Begin(other);
  Load(histo_);
  histo_.PlotType(PlotTyEnum::vbLeft);
  const auto shows = [&] {
    Trace(histo_, "histPic");
    histo_.Plot();
    return Prints(Trace(histo_, "histPic"), "UCL");
  };
  EXPECT_FALSE(shows());
  other.ShowControlLimit(11, 17);
  EXPECT_FALSE(Prints(Trace(histo_, "histPic"), "UCL")) << "not before the next draw";
  EXPECT_TRUE(shows());
  histo_.PlotType(PlotTyEnum::vbbottom);
  EXPECT_FALSE(shows());
  histo_.PlotType(PlotTyEnum::vbRight);
  EXPECT_TRUE(shows());
  std::thread([&] { EXPECT_FALSE(ThreadControlLimits().shown); }).join();
  other.ResetControlLimit();
  EXPECT_FALSE(shows());
}

TEST_F(HistoControl, AlignsItsChartWithAPlotBesideIt) {
  const TwipsBox plain = Child("PLOTA").Box();
  histo_.SetChartDim(600, 1500);
  EXPECT_EQ(Child("PLOTA").Box().top, 600);
  EXPECT_EQ(Child("PLOTA").Box().height, 1500);
  EXPECT_EQ(Child("PLOTA").Box().left, plain.left);
  histo_.SetChartDim(0, 1500);
  EXPECT_EQ(Child("PLOTA").Box().height, plain.height);
}

TEST_F(HistoControl, AsksForItsLeastSize) {
  const struct {
    float width, height, taken_width, taken_height;
  } rows[] = {{1999, 1999, 2100, 2100}, {2000, 2000, 2000, 2000}, {5000, 10, 5000, 2100}};
  for (const auto& row : rows) {
    histo_.SetSize(row.width, row.height);
    EXPECT_EQ(histo_.root().Box().width, row.taken_width);
    EXPECT_EQ(histo_.root().Box().height, row.taken_height);
    EXPECT_GT(Child("PLOTA").Box().width, 300);
    EXPECT_GT(Child("PLOTA").Box().height, 300);
  }
}

TEST_F(HistoControl, KeepsLabelsOfAnyMagnitudeInside) {
  for (const float factor : {1e-9F, 1.0F, 1234.5678F, -98765.4F, 1e9F}) {
    const std::vector<float> x = {0, 50, 0}, y = {0, 0, 50};
    const std::vector<float> z = {1 * factor, 1.7F * factor, 3 * factor};
    ASSERT_EQ(histo_.SetWaferData(x, y, z), LoadResult::Loaded);
    Trace(histo_, "histPic");
    histo_.Plot();
    float at = 0;
    for (const json& call : Trace(histo_, "histPic")) {
      if (call[0] == "CurrentX") at = call[1].get<float>();
      if (call[0] != "Print") continue;
      EXPECT_GE(at, 0) << call << ' ' << factor;
      EXPECT_LE(at + 6 * static_cast<float>(call[1].get<std::string>().size()),
                Child("histPic").Picture()->ScaleWidth())
          << call << ' ' << factor;
    }
  }
}

TEST_F(HistoControl, SetPlotNotVaildHasNoEffect) {
  Load(histo_);
  histo_.Plot();
  Trace(histo_, "PLOTA");
  histo_.SetPlotNotVaild();
  EXPECT_EQ(Trace(histo_, "PLOTA"), json::array());
}

TEST_F(HistoControl, BordersItsFrame) {
  histo_.Borderstyle(0);
  EXPECT_FALSE(Child("frmhist").Bordered());
  histo_.Borderstyle(1);
  EXPECT_TRUE(Child("frmhist").Bordered());
}

TEST_F(HistoControl, OffersNoMembersOfMaps) {
  for (const char* name : {"ShowSites", "PrintLegend", "IntervalColor0"}) {
    EXPECT_EQ(histo_.Members().Find(name), nullptr) << name;
  }
  for (const char* name : {"PlotType", "Resolution", "SetChartDim", "ShowControlLimit",
                           "SetWaferData_Variant", "PlotCaption"}) {
    EXPECT_NE(histo_.Members().Find(name), nullptr) << name;
  }
}

}  // namespace
}  // namespace discoplan
