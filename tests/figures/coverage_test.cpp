// SPDX-License-Identifier: MIT
#include "discoplan/figures/coverage.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace discoplan::figures {
namespace {

struct Sites {
  std::vector<float> x, y;
  std::vector<float> value = std::vector<float>(x.size(), 1);

  WaferPlot Plot() const {
    WaferPlot plot;
    plot.sites = {x, y, value};
    plot.diameter = 300;
    return plot;
  }
};

TEST(Coverage, ThreeSitesTellOfTheTriangleBetweenThem) {
  const Sites sites{.x = {-60, 60, 0}, .y = {-60, -60, 80}};
  const Coverage coverage(sites.Plot());
  EXPECT_TRUE(coverage.HasFar());
  EXPECT_FALSE(coverage.IsFar({0, 0})) << "within";
  EXPECT_FALSE(coverage.IsFar({0, -70})) << "as near as 10 mm";
  EXPECT_TRUE(coverage.IsFar({0, -80}));
  EXPECT_TRUE(coverage.IsFar({0, 100}));
  EXPECT_TRUE(coverage.IsFar({-90, 40}));
  EXPECT_NEAR(coverage.DistanceAt({0, -100}), 40, 0.5);
  EXPECT_EQ(coverage.Note("hatched"), "hatched: more than 15 mm outside the three sites");
  const Sites reversed{.x = {0, 60, -60}, .y = {80, -60, -60}};
  EXPECT_FALSE(Coverage(reversed.Plot()).IsFar({0, 0})) << "whichever way round";
}

TEST(Coverage, FewerSitesAndThoseInLineTellOfTheirSurroundings) {
  for (const Sites& sites : {Sites{.x = {10}, .y = {0}}, Sites{.x = {10, 90}, .y = {0, 0}},
                             Sites{.x = {10, 50, 90}, .y = {0, 0, 0}}}) {
    const Coverage coverage(sites.Plot());
    EXPECT_FALSE(coverage.IsFar({10, 30}));
    EXPECT_TRUE(coverage.IsFar({10, 50}));
    EXPECT_EQ(coverage.Note("grey"), "grey: more than 38 mm from every site");
  }
}

TEST(Coverage, WhatIsFarLiesWithinTheStretchesOfItsLine) {
  std::mt19937 engine(7);
  std::uniform_real_distribution<float> place(-100, 100);
  Sites sites;
  for (int i = 0; i < 12; ++i) {
    sites.x.push_back(place(engine));
    sites.y.push_back(place(engine));
  }
  sites.value.resize(sites.x.size(), 1);
  const Coverage coverage(sites.Plot());
  std::vector<Coverage::Stretch> stretches;
  double within = 0;
  int lines = 0;
  int found = 0;
  double down_to = 1000;
  for (double y = 160; y > -160; y -= 0.7, ++lines) {
    const double distance = coverage.Far() - 0.3;
    if (y < down_to) {
      down_to = coverage.FindFar(y, distance, stretches);
      ++found;
    }
    for (std::size_t i = 0; i < stretches.size(); ++i) {
      EXPECT_LE(stretches[i].left, stretches[i].right);
      if (i > 0) {
        EXPECT_LE(stretches[i - 1].right, stretches[i].left);
      }
      within += std::min(stretches[i].right, 150.0) - std::max(stretches[i].left, -150.0);
    }
    for (double x = -160; x < 160; x += 0.3) {
      const bool held = std::any_of(stretches.begin(), stretches.end(), [x](const auto& stretch) {
        return stretch.left <= x && x <= stretch.right;
      });
      EXPECT_TRUE(held || coverage.DistanceAt({x, y}) < distance) << x << " " << y;
    }
  }
  EXPECT_LT(within, 0.8 * 300 * lines) << "what is near is mostly left out";
  EXPECT_LT(found, lines / 2);
}

}  // namespace
}  // namespace discoplan::figures
