// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <numeric>

#include "discoplan/controls/plot2d.h"
#include "hosts/recording/recording_host.h"

namespace discoplan {
namespace {

class Layout : public testing::Test {
 protected:
  Layout() : plot_(host_) {
    plot_.root().Move({0, 0, 6000, 4500});
    plot_.InitProperties();
    plot_.SetSize(6000, 4500);
  }

  Node& Child(const char* name) { return *plot_.root().Find(name); }
  void Load() {
    std::vector<float> ramp(9);
    std::iota(ramp.begin(), ramp.end(), 1.0F);
    ASSERT_EQ(plot_.SetWaferData(ramp, ramp, ramp), LoadResult::Loaded);
  }
  int Redraws() {
    const auto trace = dynamic_cast<Traced&>(*Child("PLOTA").Picture()).TakeTrace();
    return static_cast<int>(
        std::ranges::count(trace, nlohmann::json::parse(R"(["ForeColor", 0])")));
  }

  RecordingHost host_;
  Plot2D plot_;
};

TEST_F(Layout, SnapsBackToTheLeastSizeInOneNestedResize) {
  Load();
  Redraws();
  plot_.SetSize(4000, 4000);
  EXPECT_EQ(plot_.root().Box().width, 4500);
  EXPECT_EQ(plot_.root().Box().height, 4000);
  EXPECT_EQ(Redraws(), 1);
  EXPECT_TRUE(Child("PLOTA").Visible());  // a second layout would have shown the snapshot
  EXPECT_FALSE(Child("RePlot").Visible());
  plot_.SetSize(1, 1);
  EXPECT_EQ(plot_.root().Box().width, 4500);
  EXPECT_EQ(plot_.root().Box().height, 3180);
}

TEST_F(Layout, StopsWhereTheContainerKeepsTheSize) {
  struct Stubborn : Container {
    void ResizeRequested(float, float, const std::function<void(float, float)>&) override {}
  } stubborn;
  Plot2D plot(host_, &stubborn);
  plot.SetSize(4000, 4000);
  EXPECT_EQ(plot.root().Box().width, 4000);
}

TEST_F(Layout, WithoutLegendGoesDownTo750) {
  plot_.HideLegend(true);
  plot_.SetSize(4000, 3000);
  EXPECT_EQ(plot_.root().Box().width, 4000);
  EXPECT_EQ(Child("Frplot").Box().height, 3000);
  plot_.SetSize(700, 4000);
  EXPECT_EQ(plot_.root().Box().width, 750);
  EXPECT_EQ(Child("Frplot").Box().height, 750);
  plot_.SetSize(800, 749);
  EXPECT_EQ(plot_.root().Box().height, 750);
}

TEST_F(Layout, MakesTheFrameNearlySquareInWhatThePanelLeaves) {
  const float panel = Child("frmove").Box().width;
  for (const auto& [width, height] : {std::pair{6000.0F, 3500.0F}, {5000.0F, 3500.0F}}) {
    plot_.SetSize(width, height);
    const float side = std::min(width - panel, height);
    EXPECT_EQ(Child("Frplot").Box().height, side);
    EXPECT_FLOAT_EQ(Child("Frplot").Box().width, 0.97F * side);
    EXPECT_EQ(Child("frmove").Box().left, width - panel);
    const TwipsBox& plot = Child("PLOTA").Box();
    EXPECT_FLOAT_EQ(plot.width, Child("Frplot").Box().width - 2 * plot.left);
    EXPECT_FLOAT_EQ(plot.height, side - plot.top - plot.left);
    EXPECT_EQ(Child("RePlot").Box().width, plot.width);
    EXPECT_EQ(Child("RePlot").Box().top, plot.top);
  }
}

TEST_F(Layout, WidensThePanelForLongValues) {
  // 26 characters of 6 pixels at 15 twips, from 375 twips on.
  ASSERT_EQ(plot_.SetWaferData(std::vector<float>{0, 1}, std::vector<float>{0, 1},
                               std::vector<float>{0.1234567F, 0.1234589F}),
            LoadResult::Loaded);
  plot_.Plot();
  float widest = 1695;
  for (int i = 1; i <= 10; ++i) {
    const Node& row = Child(("ScaleValue(" + std::to_string(i) + ")").c_str());
    EXPECT_EQ(row.Box().width, static_cast<float>(row.Text().size()) * 90);
    widest = std::max(widest, row.Right());
  }
  ASSERT_GT(widest, 1695);
  EXPECT_EQ(Child("legende").Box().width, widest);
  EXPECT_EQ(Child("frleg").Box().width, widest + 240);
  EXPECT_EQ(Child("Frame1").Box().width, widest + 450);
  EXPECT_EQ(Child("frmove").Box().width, widest + 450);
  EXPECT_EQ(Child("Command1").Box().width, widest + 240);
  EXPECT_EQ(Child("FNLabel").Box().width, widest + 240);
}

TEST_F(Layout, StretchesTheSnapshotOfAValidPlot) {
  Load();
  plot_.Plot();
  const auto image = Child("RePlot").Image();
  ASSERT_NE(image, nullptr);
  EXPECT_FALSE(Child("RePlot").Visible());
  Redraws();
  for (const float width : {7000.0F, 8000.0F}) {
    plot_.SetSize(width, 6000);
    EXPECT_EQ(Redraws(), 0);
    EXPECT_TRUE(Child("RePlot").Visible());
    EXPECT_FALSE(Child("PLOTA").Visible());
    EXPECT_EQ(Child("RePlot").Image(), image);
  }
  plot_.HideLegend(true);
  EXPECT_EQ(Redraws(), 0);
  EXPECT_EQ(Child("Frplot").Box().height, 6000);
}

TEST_F(Layout, DrawsOnAResizeWhenDataWait) {
  Load();
  Redraws();
  plot_.SetSize(7000, 6000);
  EXPECT_EQ(Redraws(), 1);
  plot_.SetPlotNotVaild();
  plot_.HideLegend(true);
  EXPECT_EQ(Redraws(), 1);
}

TEST_F(Layout, ShowsTheLegendOfTheMomentInEachResize) {
  Load();
  plot_.SetSize(7000, 6000);
  EXPECT_EQ(Child("ScaleValue(1)").Text(), "8.2 - 9.0");
  plot_.SetPlotLimit(1, 9.5F);
  plot_.SetSize(7000, 6100);
  EXPECT_NE(Child("ScaleValue(1)").Text().find(" > "), std::string::npos);
}

TEST_F(Layout, HandsTheFocusToAButtonThatShows) {
  ASSERT_NE(plot_.Focused(), nullptr);
  EXPECT_EQ(plot_.Focused()->name, "Command1");
  plot_.HideLegend(true);
  EXPECT_EQ(plot_.Focused(), nullptr);
}

TEST_F(Layout, PaintsItsBackColourOnAllButThePlot) {
  plot_.BackColor(0x123456);
  for (const char* name :
       {"Plot2D", "frmove", "legende", "FNPic", "FNLabel", "Frplot", "frleg", "Frame1"}) {
    EXPECT_EQ(Child(name).BackColor(), 0x123456U) << name;
  }
  EXPECT_EQ(Child("PLOTA").BackColor(), kWhite);
  EXPECT_EQ(plot_.BackColor(), 0x123456U);
}

TEST_F(Layout, KeepsEveryChildInsideItsParentAtTheLeastSize) {
  plot_.SetSize(4500, 3180);
  const std::function<void(const Node&)> check = [&](const Node& node) {
    for (const auto& child : node.children()) {
      EXPECT_LE(child->Right(), node.Box().width) << child->name;
      EXPECT_LE(child->Box().top + child->Box().height, node.Box().height) << child->name;
      check(*child);
    }
  };
  check(plot_.root());
}

}  // namespace
}  // namespace discoplan
