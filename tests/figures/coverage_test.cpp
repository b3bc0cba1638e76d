// SPDX-License-Identifier: MIT
#include "discoplan/figures/coverage.h"

#include <gtest/gtest.h>

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

}  // namespace
}  // namespace discoplan::figures
