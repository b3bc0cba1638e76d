// SPDX-License-Identifier: MIT
#include "apps/view/pointed_site.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "hosts/qt/plot_widgets.h"

namespace discoplan::app {
namespace {

TEST(PointedSite, IsFoundOnFlatMapsOnly) {
  const std::vector<float> x = {0, 50}, y = {0, 0}, z = {1, 3};
  qt::Plot2DWidget map;
  EXPECT_FALSE(PointOnWafer(map.Control(), {0.5, 0.5})) << "without a wafer";
  map.resize(500, 400);
  map.show();
  map.setResolution(9.7);
  ASSERT_EQ(map.SetWaferData(x, y, z), LoadResult::Loaded);
  map.Plot();
  const auto upper = PointOnWafer(map.Control(), {0.5, 0});
  const auto right = PointOnWafer(map.Control(), {1, 0.5});
  ASSERT_TRUE(upper && right);
  EXPECT_EQ(upper->x(), 0);
  EXPECT_EQ(right->y(), 0);
  // The measured 194 mm end 3 pixels before the nearer edges.
  EXPECT_GT(std::min(upper->y(), right->x()), 97);
  EXPECT_LT(std::min(upper->y(), right->x()), 100);
  qt::Plot3DWidget surface;
  ASSERT_EQ(surface.SetWaferData(x, y, z), LoadResult::Loaded);
  EXPECT_FALSE(PointOnWafer(surface.Control(), {0.5, 0.5}));
}

TEST(PointedSite, IsNamedWhenItIsNear) {
  const std::vector<float> x = {0, 50, 0, -50}, y = {0, 0, 50, 0}, z = {1, 3, 5, 7};
  qt::Plot2DWidget map;
  ASSERT_EQ(map.SetWaferData(x, y, z), LoadResult::Loaded);
  EXPECT_EQ(Describe(map.Control(), {49, 1}), "X 50.0 mm   Y 0.0 mm   3   (site 2)");
  EXPECT_EQ(Describe(map.Control(), {0, 98}), "");
  EXPECT_TRUE(Describe(map.Control(), {25, 25}).endsWith("(between sites)"));
}

}  // namespace
}  // namespace discoplan::app
