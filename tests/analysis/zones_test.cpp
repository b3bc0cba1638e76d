// SPDX-License-Identifier: MIT
#include "discoplan/analysis/zones.h"

#include <gtest/gtest.h>

#include "discoplan/analysis/surface_fit.h"
#include "tests/analysis/example_lot.h"

namespace discoplan::analysis {
namespace {

std::vector<Site> OnTheXAxis(int last) {
  std::vector<Site> sites;
  for (int x = 0; x <= last; ++x)
    sites.push_back({static_cast<float>(x), 0, static_cast<float>(x)});
  return sites;
}

// Sites at 0 to 10 mm whose values are their radii.
TEST(RingsOf, EqualWidthTakeTheOuterEdgeIn) {
  const std::vector<Zone> rings = RingsOf(OnTheXAxis(10), {.rings = 2});
  ASSERT_EQ(rings.size(), 2U);
  EXPECT_EQ(rings[0].name, "0 to 5 mm");
  EXPECT_EQ(rings[0].count, 6U);
  EXPECT_EQ(rings[0].mean, 2.5);
  EXPECT_EQ(rings[1].count, 5U);
  EXPECT_EQ(rings[1].mean, 8);
  EXPECT_EQ(rings[1].minimum, 6);
  EXPECT_EQ(rings[1].maximum, 10);
}

// 10 / sqrt(2) is 7.07.
TEST(RingsOf, EqualAreaAreNarrowerOutside) {
  const std::vector<Zone> rings =
      RingsOf(OnTheXAxis(10), {.rings = 2, .rule = RingRule::EqualArea});
  EXPECT_NEAR(rings[0].outer, 7.0710678, 1e-6);
  EXPECT_EQ(rings[0].count, 8U);
  EXPECT_EQ(rings[1].count, 3U);
}

TEST(RingsOf, CountSitesBeyondInTheLastAndLeaveEmptyOnesEmpty) {
  const std::vector<Site> sites = {{0, 0, 1}, {50, 0, 3}};
  const std::vector<Zone> rings = RingsOf(sites, {.rings = 3, .radius = 30});
  EXPECT_EQ(rings[0].count, 1U);
  EXPECT_FALSE(rings[0].sigma);
  EXPECT_EQ(rings[1].count, 0U);
  EXPECT_FALSE(rings[1].mean);
  EXPECT_EQ(rings[2].mean, 3);
}

// The polar pattern of 1, 8, 16 and 24 sites at 0, 49, 98 and 147 mm.
TEST(ProfileOf, PutsEachCircleOfAPolarPatternInARing) {
  const RadialProfile profile = ProfileOf(Slot7());
  ASSERT_EQ(profile.rings.size(), 4U);
  const std::size_t counts[] = {1, 8, 16, 24};
  for (std::size_t i = 0; i < 4; ++i) EXPECT_EQ(profile.rings[i].count, counts[i]) << i;
}

TEST(ProfileOf, LeavesResidualsWhoseRingsHaveMeanZero) {
  const std::vector<Site> sites = Slot7();
  const std::vector<Site> rest = ResidualsOf(sites, ProfileOf(sites));
  for (const Zone& ring : ProfileOf(rest).rings) EXPECT_NEAR(ring.mean.value(), 0, 1e-6);
}

TEST(QuadrantsOf, GiveEachAxisToTheQuadrantThatBeginsThere) {
  const std::vector<Site> sites = {{0, 0, 99}, {1, 0, 1},   {1, 1, 1},  {0, 1, 2}, {-1, 1, 2},
                                   {-1, 0, 3}, {-1, -1, 3}, {0, -1, 4}, {1, -1, 4}};
  const std::vector<Zone> quadrants = QuadrantsOf(sites);
  ASSERT_EQ(quadrants.size(), 4U);
  for (std::size_t i = 0; i < 4; ++i) {
    EXPECT_EQ(quadrants[i].count, 2U) << i;
    EXPECT_EQ(quadrants[i].mean, static_cast<double>(i + 1)) << i;
    EXPECT_EQ(quadrants[i].sigma, 0) << i;
  }
  EXPECT_EQ(quadrants[0].name, "quadrant 1");
}

}  // namespace
}  // namespace discoplan::analysis
