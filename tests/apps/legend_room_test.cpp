// SPDX-License-Identifier: MIT
// A legend's width doesn't change the map's size within one lot.
#include "apps/discoplan/legend_room.h"

#include <gtest/gtest.h>

#include <fstream>

#include "hosts/headless/classic_look.h"
#include "tests/temporary_folder.h"

namespace discoplan::app {
namespace {

class LegendRoomTest : public testing::Test {
 protected:
  LegendRoomTest() {
    std::ofstream file(file_);
    file << "Wafer,X,Y,Thickness\n";
    for (int i = 0; i < 9; ++i) {
      const int x = 40 * (i % 3) - 40;
      const int y = 40 * (i / 3) - 40;
      file << "short," << x << ',' << y << ',' << 1 + i % 2 << '\n';
      file << "long," << x << ',' << y << ',' << 123456.7 + 31.3 * i << '\n';
    }
  }

  PictureRequest RequestFor(const std::string& wafer) const {
    PictureRequest request;
    request.data.path = file_;
    request.data.by = {"Wafer"};
    if (!wafer.empty()) request.data.wafers = {wafer};
    return request;
  }
  Wafer Read(const std::string& name) const { return data::Read(RequestFor(name).data).wafers[0]; }

  /// Side of the plot's frame in twips, in a picture of that size.
  float PlotOf(const ControlClass& kind, const std::string& name, float width, float height,
               bool alike) const {
    const PictureRequest request = RequestFor(name);
    const Wafer measured = Read(name);
    HeadlessHost host(ScreenFor(kind, 800, 600));
    PlotStage stage{host, width, height};
    if (alike) {
      stage.width = LegendRoomOf(kind, request, measured, stage).WidthFor(width, height);
      EXPECT_LE(stage.width, width);
    }
    const auto control = LoadedControl(kind, request.plot, request.data, measured, stage);
    control->Plot();
    return control->root().Find("Frplot")->Box().height;
  }

  const TemporaryFolder temporary_;
  const std::filesystem::path file_ = temporary_.path() / "lot.csv";
};

TEST_F(LegendRoomTest, LeavesThePlotsOfALotOfOneSize) {
  for (const char* name : {"2D", "2DN", "3D", "3DB"}) {
    const ControlClass& kind = *PlotKindsOf({name}).front();
    EXPECT_GT(PlotOf(kind, "short", 8000, 6000, false), PlotOf(kind, "long", 8000, 6000, false));
    EXPECT_EQ(PlotOf(kind, "short", 8000, 6000, true), PlotOf(kind, "long", 8000, 6000, true));
    // The longest legend is as it was, and a picture with room for all is too.
    EXPECT_EQ(PlotOf(kind, "long", 8000, 6000, true), PlotOf(kind, "long", 8000, 6000, false));
    EXPECT_EQ(PlotOf(kind, "short", 12000, 6000, true), 6000);
  }
}

TEST_F(LegendRoomTest, TakesNoneWhereThereIsNoneToAgreeWith) {
  const Wafer measured = Read("short");
  HeadlessHost host;
  const PlotStage stage{host, 8000, 6000};
  const auto width = [&](const char* kind, const PictureRequest& request) {
    return LegendRoomOf(*PlotKindsOf({kind}).front(), request, measured, stage)
        .WidthFor(stage.width, stage.height);
  };
  EXPECT_LT(width("2D", RequestFor("short")), 8000);
  EXPECT_EQ(width("2DS", RequestFor("short")), 8000) << "its numbers are as long for all";
  EXPECT_EQ(width("histo", RequestFor("short")), 8000);
  EXPECT_EQ(width("2D", RequestFor("")), 8000) << "a file of one wafer";
  PictureRequest bare = RequestFor("short");
  bare.plot.no_legend = true;
  EXPECT_EQ(width("2D", bare), 8000);
}

}  // namespace
}  // namespace discoplan::app
