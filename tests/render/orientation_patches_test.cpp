// SPDX-License-Identifier: MIT
#include "discoplan/render/orientation_patches.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <vector>

#include "hosts/recording/recording_host.h"

namespace discoplan {
namespace {

using nlohmann::json;

TEST(OrientationPatches, SeenFromAboveAreSquares) {
  // 68 pixels less 2 are the diagonal of ten cells: 66 / 10 / sqrt 2 = 4.667 each, the first
  // corner five of them left of and above the centre at 34.
  RecordingHost host;
  const auto picture = host.NewPicture(1020, 1020);
  const auto polygons = [&](float rotation, float inclination) {
    DrawOrientationPatches(*picture, rotation, inclination);
    json found = json::array();
    for (const json& call : dynamic_cast<Recording<Picture>&>(*picture).TakeTrace()) {
      if (call[0] == "Polygon") found.push_back(call[1]);
    }
    return found;
  };
  EXPECT_EQ(polygons(0, 90)[0], json::parse("[[11,11],[15,11],[15,15],[11,15]]"));
  EXPECT_EQ(polygons(0, 90)[99], json::parse("[[53,53],[57,53],[57,57],[53,57]]"));
  // A quarter of a turn takes the last field up to the right; from the side they are a line.
  EXPECT_EQ(polygons(90, 90)[99], json::parse("[[53,15],[53,11],[57,11],[57,15]]"));
  for (const json& corners : polygons(45, 0)) {
    for (const json& corner : corners) EXPECT_EQ(corner[1], 34);
  }
  for (float rotation = 0; rotation <= 90; rotation += 15) {
    for (const json& corners : polygons(rotation, 90)) {
      for (const json& corner : corners) {
        EXPECT_TRUE(corner[0] >= 0 && corner[0] < 68 && corner[1] >= 0 && corner[1] < 68)
            << rotation << corner;
      }
    }
  }
}

TEST(OrientationPatches, AreAHundredWithOneRed) {
  RecordingHost host;
  const auto picture = host.NewPicture(1020, 1020);
  DrawOrientationPatches(*picture, 40, 35);
  const json trace = dynamic_cast<Recording<Picture>&>(*picture).TakeTrace();
  EXPECT_EQ(trace[0], (json{"ForeColor", 0}));
  EXPECT_EQ(trace[1], (json{"BackColor", 0xFFFFFF}));
  EXPECT_EQ(trace[2], json::array({"Cls"}));
  std::vector<int> fills;
  for (const json& call : trace) {
    if (call[0] == "FillColor") fills.push_back(call[1]);
    if (call[0] != "Polygon") continue;
    for (const json& corner : call[1]) {
      EXPECT_GE(corner[0], 0);
      EXPECT_LT(corner[0], 68);
      EXPECT_GE(corner[1], 0);
      EXPECT_LT(corner[1], 68);
    }
  }
  ASSERT_EQ(fills.size(), 100U);
  EXPECT_EQ(std::ranges::count(fills, 0x000080), 1);
  EXPECT_EQ(fills.back(), 0x000080);
}

}  // namespace
}  // namespace discoplan
