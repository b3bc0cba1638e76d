// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "data/read.h"
#include "discoplan/controls/plot2d.h"
#include "hosts/recording/recording_host.h"
#include "tests/places.h"

namespace discoplan {
namespace {

/// The instrument prints four decimals of what it summed up from values with four decimals.
constexpr double kHalfADigit = 0.00005;
/// Our sums are accumulated in 32 bits.
constexpr double kOurSums = 0.00002;
/// Its range comes from extremes before they were rounded, ours from those that it printed.
constexpr double kADigit = 0.0001;

TEST(LotStatistics, AgreeWithTheInstrumentsOwnOnAllWafers) {
  const data::Lot data = data::Read({.path = Example("native_oxide_lot.csv")});
  ASSERT_EQ(data.wafers.size(), 25U);
  for (const data::Wafer& measured : data.wafers) {
    SCOPED_TRACE(measured.name);
    ASSERT_TRUE(measured.reported.has_value());
    RecordingHost host;
    Plot2D control(host);
    control.WaferDiameter(300);
    ASSERT_EQ(control.SetWaferData(measured.x, measured.y, measured.value), LoadResult::Loaded);
    EXPECT_NEAR(control.mean(), measured.reported->mean, kHalfADigit + kOurSums);
    EXPECT_NEAR(control.StdDev(), measured.reported->stddev, kHalfADigit + kOurSums);
    EXPECT_FLOAT_EQ(control.Minimum(), static_cast<float>(measured.reported->min));
    EXPECT_FLOAT_EQ(control.Maximum(), static_cast<float>(measured.reported->max));
    EXPECT_NEAR(control.range(), measured.reported->range, kADigit + 1e-6);
  }
}

}  // namespace
}  // namespace discoplan
