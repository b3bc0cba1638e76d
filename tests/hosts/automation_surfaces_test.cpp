// SPDX-License-Identifier: MIT
#include <filesystem>
#include <fstream>
#include <sstream>

#include "tests/hosts/automation_requests_fixture.h"
#include "tests/temporary_folder.h"

namespace discoplan {
namespace {

using SurfaceRequests = AutomationRequests;

TEST_F(SurfaceRequests, DrawOnPaperWhatPaperOffers) {
  AskFor({{"op", "new"}, {"class", "Printer"}, {"id", "s"}});
  EXPECT_EQ(Draw(R"([["ScaleMode", 3], ["Line", 1, 2, 3, 4], ["Print", "x"],
                     ["Polygon", [[1, 2]]], ["FloodFill", 1, 2, 3], ["Circle", 1, 2, 3]])"),
            kDone);
  for (const char* call : {R"([["Cls"]])", R"([["Refresh"]])", R"([["Picture"]])"}) {
    ExpectRefused(Draw(call), call);
  }
}

TEST_F(SurfaceRequests, SaveASurfaceOfAControlOrAPicture) {
  const TemporaryFolder folder;
  const auto file = folder.path() / "map.png";
  const auto bytes = [&] {
    std::ifstream stream(file, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(stream), {});
  };
  NewPlot();
  NewPicture();
  json save = {{"op", "save"}, {"id", "p"}, {"surface", "PLOTA"}, {"file", file.string()}};
  EXPECT_EQ(AskFor(save), kDone);
  EXPECT_EQ(bytes().substr(0, 8), "\x89PNG\r\n\x1A\n");
  const std::string empty_plot = bytes();
  Call("SetWaferData", "[[0,10,0,-10,0],[0,0,10,0,-10],[1,2,3,4,5]]");
  Call("Plot", "[]");
  EXPECT_EQ(AskFor(save), kDone);
  EXPECT_NE(bytes(), empty_plot);
  save = {{"op", "save"}, {"id", "s"}, {"file", file.string()}};
  EXPECT_EQ(AskFor(save), kDone);
  // 20 pixels across and down, big-endian behind the header of the first chunk.
  EXPECT_EQ(bytes().substr(16, 8), std::string("\0\0\0\x14\0\0\0\x14", 8));
  std::filesystem::remove(file);

  Draw(R"([["Width", 0]])");
  ExpectRefused(AskFor(save), "an empty picture");
  save["file"] = folder.path().string();
  Draw(R"([["Width", 300]])");
  ExpectRefused(AskFor(save), "a folder");
  EXPECT_FALSE(std::filesystem::exists(file));
}

TEST_F(SurfaceRequests, PassTheMouseOnByteForByte) {
  NewPlot();
  for (const char* event : {"MouseDown", "MouseMove", "MouseUp"}) {
    EXPECT_EQ(AskFor({{"op", "mouse"},
                      {"id", "p"},
                      {"surface", "frmove"},
                      {"event", event},
                      {"button", -1},
                      {"shift", 7},
                      {"x", 0.1},
                      {"y", "NaN"}}),
              json({{"ok", true}, {"raised", {{event, -1, 7, 0.1, "NaN"}}}}));
  }
  EXPECT_EQ(AskFor({{"op", "mouse"}, {"id", "p"}, {"event", "DblClick"}}),
            json({{"ok", true}, {"raised", json::array({json::array({"DblClick"})})}}));
}

TEST_F(SurfaceRequests, SurviveSizesThatAreNone) {
  for (const json& size :
       {json("NaN"), json("Infinity"), json("-Infinity"), json(-1e30), json(1e38)}) {
    AutomationSession session;
    const auto ask = [&](json request) {
      request["id"] = "p";
      return json::parse(session.Answer(request.dump()));
    };
    EXPECT_TRUE(ask({{"op", "new"}, {"class", "Plot2D"}, {"width", size}, {"height", size}})["ok"]);
    ask({{"op", "call"},
         {"name", "SetWaferData"},
         {"args", {{1, 2, 3, 4}, {1, 2, 3, 4}, {1, 2, 3, 4}}}});
    EXPECT_TRUE(ask({{"op", "size"}, {"width", size}, {"height", 4000}})["ok"]);
    EXPECT_TRUE(ask({{"op", "size"}, {"width", 5000}, {"height", size}})["ok"]);
    EXPECT_TRUE(ask({{"op", "set"}, {"name", "HideLegend"}, {"value", -1}})["ok"]);
    EXPECT_TRUE(ask({{"op", "size"}, {"width", size}, {"height", size}})["ok"]);
    EXPECT_TRUE(ask({{"op", "call"}, {"name", "Plot"}, {"args", json::array()}})["ok"]);
    EXPECT_TRUE(ask({{"op", "tree"}})["ok"]);
    EXPECT_TRUE(ask({{"op", "size"}, {"width", 6000}, {"height", 4500}})["ok"]);
  }
}

TEST_F(SurfaceRequests, MakeSurfacesOfAnyResolution) {
  for (const json& twips : {json(0), json(-15), json("NaN"), json("Infinity"), json(1e-30)}) {
    for (const char* kind : {"Printer", "Picture"}) {
      AutomationSession session;
      const auto ask = [&](json request) {
        request["id"] = 1;
        return json::parse(session.Answer(request.dump()));
      };
      EXPECT_EQ(ask({{"op", "new"},
                     {"class", kind},
                     {"twips_per_pixel_x", twips},
                     {"twips_per_pixel_y", twips},
                     {"width", 300},
                     {"height", 300}}),
                kDone);
      EXPECT_EQ(ask({{"op", "draw"}, {"calls", json::parse(R"([["ScaleMode", 3], ["ForeColor", 255],
                         ["Line", 1, 2, 30, 40], ["Circle", 3, 3, 3], ["Print", "x"],
                         ["Polygon", [[1, 2], [3, 4], [9, 9]]], ["FloodFill", 1, 1, 0]])")}}),
                kDone)
          << kind << twips;
    }
  }
}

}  // namespace
}  // namespace discoplan
