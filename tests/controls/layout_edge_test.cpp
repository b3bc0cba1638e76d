// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numeric>

#include "discoplan/controls/plot2d.h"
#include "hosts/recording/recording_host.h"

namespace discoplan {
namespace {

using nlohmann::json;

/// A container that answers a request for a size by `answer`.
class Asked : public Container {
 public:
  using Take = std::function<void(float, float)>;

  void ResizeRequested(float width, float height, const Take& take) override {
    requests.emplace_back(width, height);
    if (requests.size() < 100) answer(width, height, take);
  }
  void UseTwips() override { ++resizes; }

  std::function<void(float, float, const Take&)> answer = [](float w, float h, const Take& take) {
    take(w, h);
  };
  std::vector<std::pair<float, float>> requests;
  int resizes = 0;  // each begins with twips
};

class LayoutEdge : public testing::Test {
 protected:
  LayoutEdge() : plot_(host_, &container_) {
    plot_.root().Move({0, 0, 6000, 4500});
    plot_.InitProperties();
    plot_.SetSize(6000, 4500);
    container_.resizes = 0;
  }

  Node& Child(const std::string& name) { return *plot_.root().Find(name); }
  json TakeTrace(const char* name) {
    return dynamic_cast<Traced&>(*Child(name).Picture()).TakeTrace();
  }
  void Load() {
    std::vector<float> ramp(9);
    std::iota(ramp.begin(), ramp.end(), 1.0F);
    ASSERT_EQ(plot_.SetWaferData(ramp, ramp, ramp), LoadResult::Loaded);
    TakeTrace("PLOTA");
    TakeTrace("FNPic");
  }
  void ExpectBox(const char* name, const TwipsBox& due) {
    const TwipsBox& box = Child(name).Box();
    EXPECT_FLOAT_EQ(box.left, due.left) << name;
    EXPECT_FLOAT_EQ(box.top, due.top) << name;
    EXPECT_FLOAT_EQ(box.width, due.width) << name;
    EXPECT_FLOAT_EQ(box.height, due.height) << name;
  }

  RecordingHost host_;
  Asked container_;
  Plot2D plot_;
};

struct MinimumCase {
  bool hidden;
  float width, height;              // given
  float asked_width, asked_height;  // 0 where nothing is asked for
};

TEST_F(LayoutEdge, AsksOnceForTheLeastSize) {
  for (const MinimumCase& row : {
           MinimumCase{false, 4000, 4500, 4500, 4500},
           MinimumCase{false, 4499.5F, 3180, 4500, 3180},
           MinimumCase{false, 4500, 3179, 4500, 3180},
           MinimumCase{false, 4500, 3180, 0, 0},
           MinimumCase{false, 0, -5, 4500, 3180},
           MinimumCase{true, 4000, 3000, 0, 0},
           MinimumCase{true, 750, 750, 0, 0},
           MinimumCase{true, 749, 800, 750, 800},
           MinimumCase{true, 800, 749, 800, 750},
           MinimumCase{true, 1, 1, 750, 750},
       }) {
    plot_.HideLegend(row.hidden);
    container_.requests.clear();
    container_.resizes = 0;
    plot_.SetSize(row.width, row.height);
    const bool asks = row.asked_width > 0;
    ASSERT_EQ(container_.requests.size(), asks ? 1U : 0U) << row.width << ' ' << row.height;
    EXPECT_EQ(container_.resizes, asks ? 2 : 1);  // one nested
    if (!asks) continue;
    EXPECT_EQ(container_.requests[0], std::pair(row.asked_width, row.asked_height));
    EXPECT_EQ(plot_.root().Box().width, row.asked_width);
    EXPECT_EQ(plot_.root().Box().height, row.asked_height);
  }
}

TEST_F(LayoutEdge, DoesNoLayoutInTheOuterResize) {
  Load();
  plot_.Plot();
  const TwipsBox frame = Child("Frplot").Box();
  container_.answer = [&](float, float, const Asked::Take&) {};  // keeps the size as it is
  plot_.SetSize(4000, 4000);
  ExpectBox("Frplot", frame);
  EXPECT_TRUE(Child("PLOTA").Visible());
  EXPECT_FALSE(Child("RePlot").Visible());
  // The nested one does it all: 4500 - 2145 = 2355 for the frame, and a stretched snapshot.
  container_.answer = [](float w, float h, const Asked::Take& take) { take(w, h); };
  plot_.SetSize(4000, 4000);
  ExpectBox("Frplot", {0, 0, 0.97F * 2355, 2355});
  EXPECT_TRUE(Child("RePlot").Visible());
}

TEST_F(LayoutEdge, EndsWhereTheContainerGivesLess) {
  const float nan = std::nanf("");
  for (const auto& [width, height] :
       {std::pair{4200.0F, 4000.0F}, {4000.0F, 4000.0F}, {0.0F, 0.0F}, {nan, nan}}) {
    container_.answer = [w = width, h = height](float, float, const Asked::Take& take) {
      take(w, h);
    };
    container_.requests.clear();
    plot_.SetSize(4000, 4000);
    EXPECT_EQ(container_.requests.size(), 1U) << width;
    EXPECT_EQ(std::isnan(plot_.root().Box().width), std::isnan(width));
    // It asks again when it is placed anew.
    container_.answer = [](float w, float h, const Asked::Take& take) { take(w, h); };
    plot_.SetSize(4000, 4000);
    EXPECT_EQ(plot_.root().Box().width, 4500);
  }
}

TEST_F(LayoutEdge, AsksAgainAfterAContainerThatFailed) {
  container_.answer = [](float, float, const Asked::Take&) -> void {
    numbers_detail::Raise(Fault::MemberNotOffered);
  };
  EXPECT_NO_THROW(plot_.SetSize(4000, 4000));
  EXPECT_NO_THROW(plot_.SetSize(4000, 4000));
  EXPECT_EQ(container_.requests.size(), 2U);
}

TEST_F(LayoutEdge, WidensThePanelToTheWidestRow) {
  Node& row = Child("ScaleValue(7)");
  row.SizeByText({});
  row.Move({500, row.Box().top, 1500, row.Box().height});  // ends at 2000
  for (int i = 1; i <= 10; ++i) {
    Node& other = Child(std::string("ScaleValue(").append(std::to_string(i)).append(")"));
    other.SizeByText({});
    if (&other != &row) other.Width(100);
  }
  plot_.SetSize(6000, 3500);
  EXPECT_EQ(Child("legende").Box().width, 2000);
  EXPECT_EQ(Child("frleg").Box().width, 2240);
  EXPECT_EQ(Child("Frame1").Box().width, 2450);
  EXPECT_EQ(Child("frmove").Box().width, 2450);
  EXPECT_EQ(Child("frmove").Box().left, 3550);
  EXPECT_EQ(Child("Command1").Box().width, 2240);
  EXPECT_EQ(Child("FNLabel").Box().width, 2240);
  for (const float width : {1195.0F, 1195.5F, 0.0F}) {  // 1695 is the least
    row.Width(width);
    plot_.SetSize(6000, 3500);
    EXPECT_EQ(Child("legende").Box().width, std::max(1695.0F, 500 + width));
  }
}

struct PlaceCase {
  float width, height;
  float panel;  // 0 for a hidden one
  float side;
};

TEST_F(LayoutEdge, PlacesTheFrameInWhatThePanelLeaves) {
  // A panel of 2000 would need a legend of 1550, so the least of 1695 is widened to 2000 + 145.
  for (const PlaceCase& row : {
           PlaceCase{6000, 3500, 2145, 3500},
           PlaceCase{5000, 3500, 2145, 2855},
           PlaceCase{5645, 3500, 2145, 3500},
           PlaceCase{5644, 3500, 2145, 3499},
           PlaceCase{20000, 3180, 2145, 3180},
           PlaceCase{6000, 3500, 0, 3500},
           PlaceCase{4000, 6000, 0, 4000},
           PlaceCase{750, 750, 0, 750},
       }) {
    plot_.HideLegend(row.panel == 0);
    plot_.SetSize(row.width, row.height);
    const float across = static_cast<float>(0.97 * row.side);
    ExpectBox("Frplot", {0, 0, across, row.side});
    ExpectBox("PLOTA", {105, 225, across - 210, row.side - 330});
    ExpectBox("RePlot", {105, 225, across - 210, row.side - 330});
    EXPECT_EQ(Child("frmove").Visible(), row.panel > 0);
    if (row.panel == 0) continue;
    EXPECT_EQ(Child("frmove").Box().left, row.width - row.panel);
  }
}

TEST_F(LayoutEdge, KeepsLeftAndTopOfWhatItMoves) {
  Child("Frplot").Move({30, 60, 1, 1});
  Child("PLOTA").Move({50, 300, 1, 1});
  Child("frmove").Move({7, 45, 1, 2000});
  plot_.SetSize(6000, 3500);
  ExpectBox("Frplot", {30, 60, 3395, 3500});
  ExpectBox("PLOTA", {50, 300, 3395 - 100, 3500 - 350});
  ExpectBox("RePlot", {50, 300, 3395 - 100, 3500 - 350});
  ExpectBox("frmove", {3855, 45, 2145, 2000});
}

TEST_F(LayoutEdge, SecondResizeWithASnapshotMovesOnly) {
  Load();
  plot_.Plot();
  plot_.SetSize(7000, 6000);
  const auto image = Child("RePlot").Image();
  TakeTrace("PLOTA");
  TakeTrace("FNPic");
  plot_.SetSize(8000, 7000);
  EXPECT_EQ(TakeTrace("PLOTA"), json::array());
  EXPECT_EQ(TakeTrace("FNPic"), json::array());
  EXPECT_EQ(Child("RePlot").Image(), image);
  ExpectBox("RePlot", {105, 225, 0.97F * 5855 - 210, 5855 - 330});
  // Going back to the old size is a resize like any other.
  plot_.SetSize(6000, 4500);
  EXPECT_TRUE(Child("RePlot").Visible());
}

TEST_F(LayoutEdge, SnapshotShowsWhatWasDrawn) {
  Load();
  plot_.Plot();
  const Canvas& drawn = Child("PLOTA").Picture()->canvas();
  const auto image = Child("RePlot").Image();
  ASSERT_EQ(image->Width(), drawn.Width());
  EXPECT_TRUE(std::ranges::equal(image->Pixels(), drawn.Pixels()));
  const int width = image->Width();
  plot_.SetSize(9000, 8000);
  EXPECT_EQ(Child("RePlot").Image()->Width(), width);  // not computed anew
  EXPECT_GT(Child("PLOTA").Picture()->canvas().Width(), width);
}

TEST_F(LayoutEdge, BeforeDataOnlyThePointerMoves) {
  struct Pointers : Container {
    void PointerChanged(std::int16_t pointer) override { seen.push_back(pointer); }
    std::vector<std::int16_t> seen;
  } container;
  Plot2D plot(host_, &container);
  plot.SetSize(6000, 4500);
  EXPECT_EQ(container.seen, (std::vector<std::int16_t>{11, 0}));
  EXPECT_EQ(plot.MousePointer(), 0);
  plot.MousePointer(5);
  plot.SetSize(6000, 4600);
  EXPECT_EQ(plot.MousePointer(), 0);  // a host's pointer doesn't survive
}

TEST_F(LayoutEdge, RedrawsInOrder) {
  Load();
  plot_.SetSize(6000, 4500);
  // The indicator first, in black on white, then the plot and at last its drawing colour.
  const json indicator = TakeTrace("FNPic");
  EXPECT_EQ(indicator[0], json::parse(R"(["ForeColor", 0])"));
  EXPECT_EQ(Child("FNLabel").Text(), "Notch");
  const json plot = TakeTrace("PLOTA");
  EXPECT_EQ(plot.front(), json::parse(R"(["Cls"])"));
  EXPECT_EQ(plot.back(), json::parse(R"(["ForeColor", 0])"));
  plot_.WaferStyle(WaferSt::Flat);
  plot_.Plot();
  EXPECT_EQ(Child("FNLabel").Text(), "Notch");  // a flat leaves the title as it was
}

TEST_F(LayoutEdge, AFailingRedrawLeavesTheHourglass) {
  Load();
  plot_.Plot();
  TakeTrace("PLOTA");
  Surface& indicator = *Child("FNPic").Picture();
  const float across = indicator.ScaleWidth();
  indicator.ScaleWidth(std::numeric_limits<float>::infinity());  // has no centre
  plot_.SetPlotNotVaild();
  EXPECT_NO_THROW(plot_.SetSize(6000, 4500));
  EXPECT_EQ(plot_.MousePointer(), 11);
  EXPECT_EQ(TakeTrace("PLOTA"), json::array());
  indicator.ScaleWidth(across);
  plot_.SetSize(6000, 4600);  // stale still: a real redraw
  EXPECT_EQ(plot_.MousePointer(), 0);
  EXPECT_FALSE(Child("RePlot").Visible());
}

TEST_F(LayoutEdge, SwallowsWhatTheContainerDoesNotOffer) {
  struct Bare : Container {
    void UseTwips() override { numbers_detail::Raise(Fault::MemberNotOffered); }
  } container;
  Plot2D plot(host_, &container);
  EXPECT_NO_THROW(plot.SetSize(6000, 3500));
  EXPECT_EQ(plot.root().Find("Frplot")->Box().height, 3500);
}

TEST_F(LayoutEdge, HidingTheLegendStretchesOrRedraws) {
  Load();
  plot_.Plot();
  TakeTrace("PLOTA");
  plot_.HideLegend(true);
  EXPECT_EQ(TakeTrace("PLOTA"), json::array());
  EXPECT_TRUE(Child("RePlot").Visible());
  ExpectBox("Frplot", {0, 0, 0.97F * 4500, 4500});
  plot_.SetPlotNotVaild();
  plot_.HideLegend(false);
  EXPECT_FALSE(TakeTrace("PLOTA").empty());
  EXPECT_FALSE(Child("RePlot").Visible());
}

TEST_F(LayoutEdge, EndsWithAnySize) {
  Load();
  const float infinity = std::numeric_limits<float>::infinity();
  for (const bool hidden : {false, true}) {
    for (const float value : {std::nanf(""), infinity, -infinity, 3e38F, -3e38F, 1e9F, 0.0F}) {
      plot_.HideLegend(hidden);
      EXPECT_NO_THROW(plot_.SetSize(value, 4000));
      EXPECT_NO_THROW(plot_.SetSize(4000, value));
      plot_.SetPlotNotVaild();
      EXPECT_NO_THROW(plot_.SetSize(value, value));
      plot_.SetSize(6000, 4500);
      EXPECT_EQ(Child("Frplot").Box().height, hidden ? 4500 : 3855);
    }
  }
}

}  // namespace
}  // namespace discoplan
