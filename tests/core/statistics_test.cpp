// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cmath>

#include "discoplan/base/numbers.h"
#include "discoplan/core/stored_value.h"
#include "discoplan/core/wafer.h"

namespace discoplan {
namespace {

wafer Loaded(const std::vector<float>& values) {
  wafer target;
  target.WaferDiameter = 200;
  target.TestDiameter = 200;
  target.SetNop(static_cast<float>(values.size()));
  for (const float value : values) target.SetGridValue(0, 0, value);
  target.MaxMin();
  return target;
}

const Variant kWholeZero(std::int16_t{0});

TEST(Statistics, OfAHandfulOfValues) {
  const wafer target = Loaded({1, 2, 3, 6});
  EXPECT_EQ(target.mean, 3);
  EXPECT_EQ(target.StdDev, std::sqrt(14.0 / 3));
  EXPECT_EQ(target.Maximum, 6);
  EXPECT_EQ(target.Minimum, 1);
  EXPECT_EQ(target.PlotMaximum, 6);
  EXPECT_EQ(target.PlotMinimum, 1);
  EXPECT_EQ(target.ValueSum, 12);
  EXPECT_EQ(target.PlotRange, 5);
  EXPECT_EQ(target.ScaleFloor, 1);
  EXPECT_EQ(target.HiLoPercent, Variant(static_cast<float>(500.0 / 7)));
}

TEST(Statistics, SumInThirtyTwoBits) {
  // 16777216 + 1 + 1 stays 16777216 in a 32-bit float.
  const wafer target = Loaded({16777216, 1, 1});
  EXPECT_EQ(target.ValueSum, 16777216);
  EXPECT_EQ(target.mean, 16777216.0 / 3);
}

struct Floor {
  std::vector<float> values;
  float floor;
};

TEST(Statistics, PutTheScaleFloorUnderAConstant) {
  for (const Floor& row :
       {Floor{{10}, static_cast<float>(10 * 0.9 - 0.001)}, Floor{{-5, -5, -5}, -5.501F},
        Floor{{0, 0}, -0.001F}, Floor{{3, 4}, 3}}) {
    EXPECT_EQ(Loaded(row.values).ScaleFloor, row.floor) << row.values.front();
  }
}

TEST(Statistics, OfOneSiteHaveNoDeviation) {
  const wafer target = Loaded({7.5F});
  EXPECT_EQ(target.mean, 7.5);
  EXPECT_EQ(target.StdDev, 0);
}

TEST(Statistics, GiveTheWholeNumberZeroWhereLimitsCancel) {
  EXPECT_EQ(Loaded({3, -3}).HiLoPercent, kWholeZero);
  EXPECT_EQ(Loaded({0, 0}).HiLoPercent, kWholeZero);
  wafer target = Loaded({1, 2});
  target.setMaximalMinial(4, -4);
  EXPECT_EQ(target.HiLoPercent, kWholeZero);
  EXPECT_EQ(target.PlotRange, 8);
}

TEST(Statistics, LimitsLeaveTheDataAlone) {
  wafer target = Loaded({1, 2, 3});
  target.setMaximalMinial(2, 2);
  EXPECT_EQ(target.Maximum, 3);
  EXPECT_EQ(target.PlotMaximum, 2);
  EXPECT_EQ(target.PlotRange, 0);
  EXPECT_EQ(target.ScaleFloor, static_cast<float>(2 * 0.9 - 0.001));
  EXPECT_TRUE(target.HasPlotLimit());
}

TEST(Statistics, NeedASite) {
  wafer empty;
  EXPECT_THROW(empty.MaxMin(), RunTimeError);
}

// Of any number of sites, on the edge and as large as it says.
TEST(Statistics, AreSureOfValuesUpToTheLargestSummed) {
  for (int count = 1; count <= 32767; count += count < 1000 ? 1 : 997) {
    wafer target;
    target.WaferDiameter = 300;
    target.SetNop(static_cast<float>(count));
    for (int i = 0; i < count; ++i) {
      const float sign = i % 2 == 0 ? 1.0F : -1.0F;
      const bool is_up = i % 4 < 2;
      target.SetGridValue(is_up ? 0 : sign * 150, is_up ? sign * 150 : 0,
                          i % 3 == 0 ? kSurelySummedValue : -kSurelySummedValue);
    }
    ASSERT_NO_THROW(target.MaxMin()) << count;
    for (int i = 1; i <= count; ++i) {
      const Site site = target.GetGridValue(static_cast<std::int16_t>(i));
      target.OverwriteGridValue(static_cast<std::int16_t>(i), site.x, site.y, -kSurelySummedValue);
    }
    ASSERT_NO_THROW(target.MaxMin()) << count;
  }
}

TEST(Statistics, RefuseASumThatOverflows) { EXPECT_THROW(Loaded({3e38F, 3e38F}), RunTimeError); }

}  // namespace
}  // namespace discoplan
