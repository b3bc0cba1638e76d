// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cmath>

#include "discoplan/base/numbers.h"
#include "discoplan/core/wafer.h"

namespace discoplan {
namespace {

wafer WithValues(const std::vector<float>& values) {
  wafer target;
  target.WaferDiameter = 200;
  target.TestDiameter = 200;
  target.SetNop(static_cast<float>(values.size()));
  for (const float value : values) target.SetGridValue(0, 0, value);
  target.MaxMin();
  return target;
}

TEST(ControlStatistics, NormalCurveHasNoFactorOfTheDeviation) {
  const wafer target = WithValues({1, 2, 3, 4, 5});  // mean 3, deviation 1.5811388
  EXPECT_FLOAT_EQ(target.Gauss(3), 0.39894228F);
  EXPECT_FLOAT_EQ(target.Gauss(3 + 1.5811388F), 0.24197072F);
  EXPECT_FLOAT_EQ(target.Gauss(3 - 2 * 1.5811388F), 0.05399097F);
  EXPECT_FLOAT_EQ(wafer::StandardNormal(0), 0.39894228F);
  EXPECT_FLOAT_EQ(wafer::StandardNormal(-1), 0.24197072F);
  EXPECT_EQ(wafer::StandardNormal(40), 0);
}

TEST(ControlStatistics, NormalCurveWithoutDeviationIsADivisionByZero) {
  try {
    WithValues({4, 4}).Gauss(4);
    FAIL() << "no error";
  } catch (const RunTimeError& error) {
    EXPECT_EQ(error.fault(), Fault::DivisionByZero);
  }
}

TEST(ControlStatistics, CountsBeyondTheLimitsOnly) {
  wafer target = WithValues({1, 2, 3, 4, 5});
  const struct {
    float lower, upper, below, above;
  } rows[] = {{1, 5, 0, 0}, {1.001F, 4.999F, 1, 1}, {3, 3, 2, 2}, {6, 0, 5, 5}, {9, 9, 5, 0}};
  for (const auto& row : rows) {
    target.Points_OutCL(row.lower, row.upper);
    EXPECT_EQ(target.CountBelowLCL, row.below) << row.lower;
    EXPECT_EQ(target.CountAboveUCL, row.above) << row.upper;
  }
}

TEST(ControlStatistics, SumsSquaredDistancesIn32Bits) {
  EXPECT_EQ(WithValues({1, 2, 4}).Globlal_Value_Sub_Mean(2), 5);
  EXPECT_EQ(wafer().Globlal_Value_Sub_Mean(2), 0);
  // 2^24 + 1 isn't a 32-bit float: the ones are lost one by one behind the large square.
  EXPECT_EQ(WithValues({4096, 1, 1, 1}).Globlal_Value_Sub_Mean(0), 16777216);
  EXPECT_EQ(WithValues({1, 1, 1, 4096}).Globlal_Value_Sub_Mean(0), 16777220);
}

class Zones : public testing::Test {
 protected:
  static wafer Ring(const std::vector<Site>& sites, float test_diameter) {
    wafer target;
    target.TestDiameter = test_diameter;
    target.SetNop(static_cast<float>(sites.size()));
    for (const Site& site : sites) target.SetGridValue(site.x, site.y, site.z);
    return target;
  }
};

// Nine sites make (3 + 1) / 2 + 0.4999, so 2 zones of 200 / 3 = 66.67 mm: a disc up to 33.33 mm
// and the ring around it.
TEST_F(Zones, ReplaceEachValueByTheMeanOfItsRing) {
  wafer target = Ring({{0, 0, 1},
                       {33, 0, 3},
                       {0, -33, 5},
                       {34, 0, 10},
                       {0, 100, 20},
                       {60, 80, 30},
                       {150, 0, 40},
                       {-34, 0, 50},
                       {0, 34, 60}},
                      200);
  target.radial_zone_average();
  for (std::int16_t i = 1; i <= 9; ++i) {
    EXPECT_EQ(target.GetGridValue(i).z, i <= 3 ? 3 : 35) << i;
  }
}

// 100 sites make 6 zones, so a width of 110 / 11 = 10 mm; the bounds are 5, 15, 25, 35, 45 mm.
TEST_F(Zones, TakeTheOuterBoundIn) {
  std::vector<Site> sites;
  for (int i = 0; i < 100; ++i) {
    const auto radius = static_cast<float>(i % 10 < 5 ? 5 + 10 * (i % 5) : 5.5 + 10 * (i % 5));
    sites.push_back({radius, 0, static_cast<float>(i % 10)});
  }
  wafer target = Ring(sites, 110);
  target.radial_zone_average();
  // Zone k holds the sites at 5 + 10 k, of value k, and those at 5.5 + 10 (k - 1), of value k + 4.
  const float expected[] = {0, 3, 4, 5, 6, 3, 4, 5, 6, 9};
  for (std::int16_t i = 0; i < 100; ++i) {
    EXPECT_EQ(target.GetGridValue(static_cast<std::int16_t>(i + 1)).z, expected[i % 10]) << i;
  }
}

TEST_F(Zones, LeaveThreeSitesAsTheyAre) {
  wafer target = Ring({{0, 0, 1}, {1, 0, 2}, {0, 1, 3}}, 200);
  target.radial_zone_average();
  EXPECT_EQ(target.GetGridValue(2).z, 2);
  target = Ring({{0, 0, 1}, {1, 0, 2}, {0, 1, 3}, {1, 1, 6}}, 200);
  target.radial_zone_average();
  EXPECT_EQ(target.GetGridValue(2).z, 3);
}

}  // namespace
}  // namespace discoplan
