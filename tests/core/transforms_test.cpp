// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "discoplan/base/numbers.h"
#include "discoplan/core/wafer.h"

namespace discoplan {
namespace {

wafer WithSites(const std::vector<Site>& sites, float test_diameter = 200) {
  wafer target;
  target.WaferDiameter = 200;
  target.TestDiameter = test_diameter;
  if (sites.empty()) return target;
  target.SetNop(static_cast<float>(sites.size()));
  for (const Site& site : sites) target.SetGridValue(site.x, site.y, site.z);
  return target;
}

std::vector<Site> SitesOf(const wafer& source) {
  return {source.Sites().begin(), source.Sites().end()};
}

TEST(Transforms, CentersTheBoundingBoxAndNotTheMean) {
  wafer target = WithSites({{10, 0, 1}, {30, 0, 2}, {12, 0, 3}}, 100);
  EXPECT_TRUE(target.CenterGrid());
  EXPECT_EQ(SitesOf(target), (std::vector<Site>{{-10, 0, 1}, {10, 0, 2}, {-8, 0, 3}}));
}

TEST(Transforms, CentersBothAxes) {
  wafer target = WithSites({{-4, 8, 1}, {0, 2, 2}});
  EXPECT_TRUE(target.CenterGrid());
  EXPECT_EQ(SitesOf(target), (std::vector<Site>{{-2, 3, 1}, {2, -3, 2}}));
}

TEST(Transforms, MovesAllSitesOrNone) {
  const struct {
    float dx, dy;
    bool moved;
  } rows[] = {{60, 0, true},       {60.001F, 0, false}, {200, 0, false}, {0, 70, true},
              {0, 70.001F, false}, {-95, 0, true},      {-96, 0, false}};
  for (const auto& row : rows) {
    wafer target = WithSites({{40, 0, 1}, {0, 30, 2}});
    const std::vector<Site> before = SitesOf(target);
    EXPECT_EQ(target.MoveGrid(row.dx, row.dy), row.moved) << row.dx;
    EXPECT_EQ(SitesOf(target) == before, !row.moved) << row.dx;
  }
}

TEST(Transforms, AcceptsASiteOnTheTestCircle) {
  wafer target = WithSites({{40, 0, 1}});
  EXPECT_TRUE(target.MoveGrid(60, 0));
  EXPECT_EQ(target.GetGridValue(1).x, 100);
  EXPECT_FALSE(target.MoveGrid(std::nextafter(0.0F, 1.0F) + 0.0001F, 0));
  EXPECT_EQ(target.GetGridValue(1).x, 100);
}

TEST(Transforms, OfAnEmptyStore) {
  wafer target = WithSites({});
  EXPECT_TRUE(target.MoveGrid(1000, 0));
  EXPECT_THROW(target.CenterGrid(), RunTimeError);
  EXPECT_NO_THROW(target.rotate(90));
  EXPECT_NO_THROW(target.mirror_X());
}

TEST(Transforms, RefusedCentringLeavesAllSites) {
  wafer target = WithSites({{90, 0, 1}, {98, 80, 2}}, 80);  // centred, both reach 40.2 mm out
  const std::vector<Site> before = SitesOf(target);
  EXPECT_FALSE(target.CenterGrid());
  EXPECT_EQ(SitesOf(target), before);
}

TEST(Transforms, RotateClockwise) {
  const struct {
    float angle;
    Site from;
    float x, y;
  } rows[] = {
      {90, {1, 0, 5}, 0, -1},
      {90, {0, 1, 5}, 1, 0},
      {90, {-1, 0, 5}, 0, 1},
      {90, {0, -1, 5}, -1, 0},
      {45, {3, 4, 5}, 4.949747F, 0.7071068F},
      {0, {-3, -4, 5}, -3, -4},
      {-90, {1, 0, 5}, 0, 1},
      {450, {1, 0, 5}, 0, -1},
      {-450, {1, 0, 5}, 0, 1},
      {180, {-3, 4, 5}, 3, -4},
      {36090, {0, 10, 5}, 10, 0},
  };
  for (const auto& row : rows) {
    wafer target = WithSites({row.from});
    target.rotate(row.angle);
    // Pi has 24 bits, which shows after a hundred turns.
    EXPECT_NEAR(target.GetGridValue(1).x, row.x, 2e-4) << row.angle;
    EXPECT_NEAR(target.GetGridValue(1).y, row.y, 2e-4) << row.angle;
    EXPECT_EQ(target.GetGridValue(1).z, 5);
  }
}

TEST(Transforms, RotateLeavesTheCentreAndAnswersForAnyAngle) {
  wafer target = WithSites({{7, 0, 1}, {0, 0, 2}, {0, -3, 3}});
  target.rotate(33);
  EXPECT_EQ(target.GetGridValue(2), (Site{0, 0, 2}));
  for (const float angle : {1e30F, -1e30F}) {
    target.rotate(angle);
    EXPECT_NEAR(std::hypot(target.GetGridValue(1).x, target.GetGridValue(1).y), 7, 1e-4);
  }
  EXPECT_THROW(target.rotate(std::numeric_limits<float>::infinity()), RunTimeError);
}

TEST(Transforms, RotateEqualsTheRuleTurnByTurn) {
  constexpr double kTurn = 2.0 * wafer::kPi;
  for (int step = -2000; step <= 2000; ++step) {
    const auto angle = static_cast<float>(step * 7.3);
    wafer target = WithSites({{3, 0, 1}});
    target.rotate(angle);
    double u = -static_cast<double>(static_cast<float>(angle * double{wafer::kPi} / 180));
    while (u > kTurn) u -= kTurn;
    while (u < 0) u += kTurn;
    EXPECT_EQ(target.GetGridValue(1).x, static_cast<float>(3 * std::cos(u))) << angle;
    EXPECT_EQ(target.GetGridValue(1).y, static_cast<float>(3 * std::sin(u))) << angle;
  }
}

TEST(Transforms, MirrorsTwiceGiveTheOldValues) {
  const std::vector<Site> sites = {{1, 2, 3}, {-4.1F, 5.7F, 6}, {0, 0, 0}};
  wafer target = WithSites(sites);
  target.mirror_X();
  EXPECT_EQ(target.GetGridValue(1), (Site{1, -2, 3}));
  target.mirror_Y();
  EXPECT_EQ(target.GetGridValue(2), (Site{4.1F, -5.7F, 6}));
  target.mirror_X();
  target.mirror_Y();
  EXPECT_EQ(SitesOf(target), sites);
}

}  // namespace
}  // namespace discoplan
