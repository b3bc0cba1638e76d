// SPDX-License-Identifier: MIT
#include "discoplan/core/loading.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <numeric>

#include "discoplan/base/numbers.h"
#include "tests/temporary_folder.h"

namespace discoplan {
namespace {

wafer NewWafer() {
  wafer target;
  target.WaferDiameter = 200;
  target.TestDiameter = 200;
  target.FlatRatio = 1;
  return target;
}

std::vector<float> Ramp(int count, float first = 1) {
  std::vector<float> values(static_cast<std::size_t>(count));
  std::iota(values.begin(), values.end(), first);
  return values;
}

enum { kFails = -1 };

/// Result of a load, or `kFails` for a run-time error.
int Load(wafer& target, const ArrayView& x, const ArrayView& y, const ArrayView& z,
         bool limit = false) {
  int result = kFails;
  Attempt([&] { result = static_cast<int>(LoadArrays(target, limit, x, y, z)); });
  return result;
}

struct Bounds {
  int lower;
  int count;
};
struct BoundsCase {
  Bounds x, y, z;
  int result;
};

TEST(Loading, ComparesBoundsWeakly) {
  for (const BoundsCase& row : {
           BoundsCase{{1, 9}, {1, 9}, {1, 9}, 0},
           BoundsCase{{5, 9}, {5, 9}, {5, 9}, 0},
           BoundsCase{{-4, 9}, {-4, 9}, {-4, 9}, 0},
           BoundsCase{{1, 9}, {1, 10}, {1, 9}, 1},  // both differ from y
           BoundsCase{{1, 9}, {1, 8}, {1, 7}, 1},
           BoundsCase{{0, 10}, {1, 9}, {0, 10}, 2},     // same upper bounds
           BoundsCase{{0, 9}, {1, 9}, {1, 9}, kFails},  // z agrees with y: an index error later
           BoundsCase{{1, 9}, {1, 9}, {1, 5}, kFails},
           BoundsCase{{1, 5}, {1, 9}, {1, 9}, 0},  // x decides the number
           BoundsCase{{1, 9}, {1, 9}, {1, 20}, 0},
       }) {
    wafer target = NewWafer();
    const auto x = Ramp(row.x.count);
    const auto y = Ramp(row.y.count);
    const auto z = Ramp(row.z.count);
    EXPECT_EQ(Load(target, {x, row.x.lower}, {y, row.y.lower}, {z, row.z.lower}), row.result)
        << row.x.lower << ' ' << row.y.count << ' ' << row.z.count;
  }
}

TEST(Loading, KeepsTheSitesUpToAFailure) {
  wafer target = NewWafer();
  const auto ten = Ramp(9);
  EXPECT_EQ(Load(target, ten, ten, Ramp(5)), kFails);
  EXPECT_EQ(target.GetNop(), 9);
  EXPECT_EQ(target.GetGridValue(5), (Site{5, 5, 5}));
  EXPECT_EQ(target.GetGridValue(6), Site{});
  EXPECT_EQ(target.Maximum, 0);  // no statistics yet
}

TEST(Loading, LeavesTheStoreAloneWhereBoundsDontFit) {
  wafer target = NewWafer();
  ASSERT_EQ(Load(target, Ramp(3), Ramp(3), Ramp(3)), 0);
  EXPECT_EQ(Load(target, Ramp(3), Ramp(4), Ramp(3)), 1);
  EXPECT_EQ(Load(target, ArrayView(), Ramp(3), Ramp(3)), kFails);  // not dimensioned
  EXPECT_EQ(Load(target, Ramp(3), Ramp(3), ArrayView()), kFails);
  EXPECT_EQ(Load(target, {Ramp(3), 32766}, {Ramp(3), 32766}, {Ramp(3), 32766}), kFails);
  EXPECT_EQ(target.GetNop(), 3);
}

TEST(Loading, TakesUpTo32767Sites) {
  const std::vector<float> at(32768, 1.5F);
  const ArrayView most(std::span<const float>(at).first(32767));
  wafer target = NewWafer();
  EXPECT_EQ(Load(target, most, most, most), 0);
  EXPECT_EQ(target.GetNop(), 32767);
  EXPECT_EQ(Load(target, at, at, at), kFails);  // the upper bound overflows first
  EXPECT_EQ(target.GetNop(), 32767);
  const ArrayView from_zero(at, 0);
  EXPECT_EQ(Load(target, from_zero, from_zero, from_zero), kFails);  // the count overflows
  EXPECT_EQ(target.GetNop(), 0);
}

TEST(Loading, KeepsPlotLimits) {
  wafer target = NewWafer();
  ASSERT_EQ(Load(target, Ramp(3), Ramp(3), Ramp(3)), 0);
  ASSERT_TRUE(ApplyPlotLimit(target, 0, 10));
  ASSERT_EQ(Load(target, Ramp(3), Ramp(3), std::vector<float>{100, 150, 200}, true), 0);
  EXPECT_EQ(target.PlotMaximum, 10);
  EXPECT_EQ(target.PlotMinimum, 0);
  EXPECT_EQ(target.Maximum, 200);
  ASSERT_EQ(Load(target, Ramp(3), Ramp(3), std::vector<float>{100, 150, 200}, false), 0);
  EXPECT_EQ(target.PlotMaximum, 200);
}

TEST(Loading, RefusesLimitsOutOfOrder) {
  wafer target = NewWafer();
  ASSERT_TRUE(ApplyPlotLimit(target, 1, 2));
  EXPECT_FALSE(ApplyPlotLimit(target, 5, 5));
  EXPECT_FALSE(ApplyPlotLimit(target, 7, 3));
  EXPECT_EQ(target.PlotMaximum, 2);
  EXPECT_EQ(target.PlotMinimum, 1);
}

struct FarSite {
  int count;
  float x;
  int result;
};

TEST(Loading, RefusesASiteBeyondTheCells) {
  // Cells of 112.1 mm for 10 sites reach to 168.1 mm, cells of 25.1 mm for 200 sites to 112.8 mm.
  for (const FarSite& row : {FarSite{9, 5000, 0}, FarSite{10, 168, 0}, FarSite{10, 169, kFails},
                             FarSite{10, -169, kFails}, FarSite{200, 112, 0},
                             FarSite{200, 113, kFails}, FarSite{200, 120, kFails}}) {
    wafer target = NewWafer();
    std::vector<float> x(static_cast<std::size_t>(row.count), 0.0F);
    const std::vector<float> y = x;
    x.back() = row.x;
    EXPECT_EQ(Load(target, x, y, Ramp(row.count)), row.result) << row.count << ' ' << row.x;
    EXPECT_EQ(target.GetNop(), row.count);
    EXPECT_EQ(target.GetGridValue(static_cast<std::int16_t>(row.count)).x, row.x);
  }
}

TEST(Loading, ClipsWithOnePercentOnTheSquareOfTheRadius) {
  wafer target = NewWafer();
  const std::vector<float> x = {50.2F, 50.3F, 0, -50.3F, 20};
  ASSERT_EQ(Load(target, x, std::vector<float>(5), Ramp(5)), 0);
  ASSERT_TRUE(ApplyPlotLimit(target, -1, 1));
  ClipToTestDiameter(target, true, 100);
  ASSERT_EQ(target.Sites().size(), 3U);  // 50.3 * 50.3 = 2530.09 is above 2525
  EXPECT_EQ(target.GetGridValue(1).z, 1);
  EXPECT_EQ(target.GetGridValue(2).z, 3);
  EXPECT_EQ(target.GetGridValue(3).z, 5);
  EXPECT_EQ(target.TestDiameter, 100);
  EXPECT_EQ(target.PlotMaximum, 1);
  EXPECT_EQ(target.mean, 3);
}

TEST(Loading, ClippingWithoutLossChangesNothing) {
  wafer target = NewWafer();
  ASSERT_EQ(Load(target, Ramp(3), Ramp(3), Ramp(3)), 0);
  ClipToTestDiameter(target, false, 100);
  EXPECT_EQ(target.TestDiameter, 200);
  EXPECT_EQ(target.GetNop(), 3);
}

TEST(Loading, ClippingAwayAllSitesEmptiesTheStore) {
  wafer target = NewWafer();
  ASSERT_EQ(Load(target, Ramp(3, 60), Ramp(3), Ramp(3)), 0);
  EXPECT_NO_THROW(ClipToTestDiameter(target, false, 10));
  EXPECT_EQ(target.GetNop(), 0);
}

class DataFile : public testing::Test {
 protected:
  void Write(const std::vector<double>& blocks) const {
    std::ofstream file(path_, std::ios::binary);
    file.write(reinterpret_cast<const char*>(blocks.data()),
               static_cast<std::streamsize>(blocks.size() * sizeof(double)));
  }

  const TemporaryFolder folder_;
  const std::filesystem::path path_ = folder_.path() / "wafer.dat";
};

TEST_F(DataFile, HoldsThreeBlocks) {
  Write({1, 2, 3, 4, 5, 6, 0.1, 8, 9, 99});  // and one number too many
  wafer target = NewWafer();
  EXPECT_EQ(LoadFile(target, false, path_.string(), 3), LoadResult::Loaded);
  EXPECT_EQ(target.GetGridValue(1), (Site{1, 4, 0.1F}));
  EXPECT_EQ(target.GetGridValue(3), (Site{3, 6, 9}));
}

TEST_F(DataFile, ThatFailsLeavesTheStoreSized) {
  Write({1, 2, 3, 4, 5, 6, 7, 8});
  const std::pair<std::string, float> rows[] = {
      {path_.string(), 3}, {"/nowhere/at-all.dat", 3}, {folder_.path().string(), 3}};
  for (const auto& [path, count] : rows) {
    wafer target = NewWafer();
    EXPECT_EQ(LoadFile(target, false, path, count), LoadResult::Failed) << path;
    EXPECT_EQ(target.GetNop(), 3) << path;
    EXPECT_EQ(target.GetGridValue(1), Site{}) << path;
  }
  EXPECT_FALSE(std::filesystem::exists("/nowhere/at-all.dat"));
}

TEST_F(DataFile, RefusesCountsAndValuesThatDontFit) {
  Write({1, 2, 1e300});
  wafer target = NewWafer();
  for (const float count : {1.0F, 0.0F, -1.0F, 32768.0F, std::nanf("")}) {
    EXPECT_EQ(LoadFile(target, false, path_.string(), count), LoadResult::Failed) << count;
  }
}

}  // namespace
}  // namespace discoplan
