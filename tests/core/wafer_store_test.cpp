// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <limits>

#include "discoplan/base/numbers.h"
#include "discoplan/core/wafer.h"

namespace discoplan {
namespace {

Fault FaultOf(const std::function<void()>& step) {
  try {
    step();
  } catch (const RunTimeError& error) {
    return error.fault();
  }
  return Fault{};
}

TEST(WaferStore, StartsEmptyWithTheColourTable) {
  const wafer fresh;
  EXPECT_EQ(fresh.GetNop(), 0);
  EXPECT_TRUE(fresh.GridChanged);
  EXPECT_TRUE(fresh.HiLoPercent.IsEmpty());
  const std::array<float, 10> intervals = {0x000080, 0x0000FF, 0x00FFFF, 0x00FF00, 0x008080,
                                           0x008000, 0x808000, 0xFF0000, 0x800000, 0x800080};
  EXPECT_EQ(fresh.IntervalColor, intervals);
  EXPECT_EQ(fresh.AuxColor, (std::array<float, 3>{0x000080, 0x008000, 0x800000}));
}

TEST(WaferStore, IgnoresSitesBehindTheLast) {
  wafer store;
  store.SetNop(3);
  for (float z : {1.0F, 2.0F, 3.0F, 4.0F}) store.SetGridValue(z, -z, z);
  ASSERT_EQ(store.Sites().size(), 3U);
  EXPECT_EQ(store.GetGridValue(3), (Site{3, -3, 3}));
  store.SetGridValue(9, 9, -9);
  EXPECT_FALSE(store.HasNegativeValue);
}

struct Clamp {
  float given;
  float stored;
  bool zero;
  bool negative;
};

TEST(WaferStore, ClampsWhatIsTooSmallToZero) {
  const float below = std::nextafter(1e-15F, 0.0F);
  const float nan = std::numeric_limits<float>::quiet_NaN();
  for (const Clamp& row : {
           Clamp{5e-16F, 0, true, false},
           Clamp{-5e-16F, 0, true, false},
           Clamp{below, 0, true, false},
           Clamp{-below, 0, true, false},
           Clamp{1e-15F, 1e-15F, false, false},
           Clamp{-1e-15F, -1e-15F, false, true},
           Clamp{0, 0, true, false},
           Clamp{nan, 0, true, false},
           Clamp{7, 7, false, false},
           Clamp{-7, -7, false, true},
       }) {
    wafer store;
    store.SetNop(1);
    store.SetGridValue(0, 0, row.given);
    EXPECT_EQ(store.GetGridValue(1).z, row.stored) << row.given;
    EXPECT_EQ(store.HasZeroValue, row.zero) << row.given;
    EXPECT_EQ(store.HasNegativeValue, row.negative) << row.given;
  }
}

TEST(WaferStore, TellsItsThreeWritersApart) {
  wafer store;
  store.SetNop(2);
  store.SetGridValueD(2, 1, 2, 3);
  EXPECT_EQ(store.GetGridValue(2), (Site{1, 2, 3}));
  store.SetGridValueD(3, 9, 9, 9);  // above the count: nothing
  EXPECT_EQ(FaultOf([&] { store.SetGridValueD(0, 1, 1, 1); }), Fault::Subscript);
  EXPECT_EQ(FaultOf([&] { store.SetGridValueD(-1, 1, 1, 1); }), Fault::Subscript);
  EXPECT_EQ(FaultOf([&] { store.OverwriteGridValue(3, 1, 1, 1); }), Fault::Subscript);
  store.OverwriteGridValue(1, 4, 5, 6);
  store.SetGridValue(7, 8, 9);  // still the first one's turn
  EXPECT_EQ(store.GetGridValue(1), (Site{7, 8, 9}));
  EXPECT_EQ(FaultOf([&] { std::ignore = store.GetGridValue(3); }), Fault::Subscript);
  EXPECT_EQ(FaultOf([] { std::ignore = wafer().GetGridValue(1); }), Fault::Subscript);
}

TEST(WaferStore, TakesACountOfSixteenBits) {
  wafer store;
  store.SetNop(32767);
  EXPECT_EQ(store.Sites().size(), 32767U);
  EXPECT_EQ(FaultOf([&] { store.SetNop(32768); }), Fault::Overflow);
  EXPECT_EQ(store.GetNop(), 32767);  // nothing stored before the overflow
  EXPECT_EQ(FaultOf([&] { store.SetNop(std::numeric_limits<float>::quiet_NaN()); }),
            Fault::Overflow);
  EXPECT_EQ(FaultOf([&] { store.SetNop(0); }), Fault::Subscript);
  EXPECT_EQ(FaultOf([&] { store.SetNop(-3); }), Fault::Subscript);
}

TEST(WaferStore, ResetKeepsStatisticsAndGeometry) {
  wafer store;
  store.WaferDiameter = 200;
  store.SetNop(2);
  store.SetGridValue(0, 0, -4);
  store.SetGridValue(1, 0, 0);
  store.MaxMin();
  store.reset();
  EXPECT_EQ(store.GetNop(), 0);
  EXPECT_EQ(store.Minimum, -4);
  EXPECT_EQ(store.WaferDiameter, 200);
  EXPECT_FALSE(store.HasNegativeValue);
  EXPECT_FALSE(store.HasZeroValue);
  store.SetNop(1);
  store.SetGridValue(5, 6, 7);
  EXPECT_EQ(store.GetGridValue(1), (Site{5, 6, 7}));
}

}  // namespace
}  // namespace discoplan
