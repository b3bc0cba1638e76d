// SPDX-License-Identifier: MIT
#include "discoplan/analysis/lot_summary.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "discoplan/analysis/variance_components.h"
#include "tests/analysis/example_lot.h"

namespace discoplan::analysis {
namespace {

std::vector<Sample> SamplesOf(const std::vector<std::vector<double>>& wafers) {
  std::vector<Sample> samples;
  for (const std::vector<double>& wafer : wafers) samples.emplace_back(wafer);
  return samples;
}

// Wafers 1 3 and 5 7 9 and 2: squares 2 + 8 + 0 over 6 - 3, means 2, 7 and 2 around 4.5, so
// 2 * 6.25 + 3 * 6.25 + 6.25 over 2, and n0 = (6 - 14 / 6) / 2 = 11 / 6.
TEST(VarianceComponents, OfUnequalWafersByHand) {
  const auto parts = VarianceComponentsOf(SamplesOf({{1, 3}, {5, 7, 9}, {2}})).value();
  EXPECT_EQ(parts.wafers, 3U);
  EXPECT_EQ(parts.sites, 6U);
  EXPECT_DOUBLE_EQ(parts.mean, 4.5);
  EXPECT_DOUBLE_EQ(parts.within, 10.0 / 3);
  EXPECT_DOUBLE_EQ(parts.effective_sites, 11.0 / 6);
  EXPECT_DOUBLE_EQ(parts.between, (18.75 - 10.0 / 3) / (11.0 / 6));
}

// Rational numbers from the decimals of the file.
TEST(VarianceComponents, AgreeWithRationalNumbersOnAMeasuredLot) {
  const std::vector<std::vector<Site>> lot = NativeOxideLot();
  std::vector<Sample> samples;
  for (const std::vector<Site>& wafer : lot) samples.emplace_back(std::span(wafer));
  const auto parts = VarianceComponentsOf(samples).value();
  EXPECT_EQ(parts.effective_sites, 49);
  EXPECT_NEAR(parts.mean, 9.833929632653062, 1e-12);
  EXPECT_NEAR(parts.within, 0.04937348588367347, 1e-12);
  EXPECT_NEAR(parts.between, 0.00639043701761766, 1e-12);
}

TEST(VarianceComponents, KeepTheSignOfWhatCanOnlyBeChance) {
  const auto parts = VarianceComponentsOf(SamplesOf({{0, 10}, {1, 9}, {2, 8}})).value();
  EXPECT_EQ(parts.between, 0);
  EXPECT_LT(parts.estimate, 0);
}

TEST(VarianceComponents, NeedTwoWafersAndASecondSite) {
  EXPECT_FALSE(VarianceComponentsOf(SamplesOf({{1, 2, 3}})));
  EXPECT_FALSE(VarianceComponentsOf(SamplesOf({{1}, {2}, {3}})));
  EXPECT_FALSE(VarianceComponentsOf({}));
}

// The estimators are unbiased: over many lots their means are the variances that the values were
// drawn with, also for wafers of different numbers of sites.
TEST(VarianceComponents, AreUnbiasedForUnequalWafers) {
  std::mt19937 random(11);
  std::normal_distribution<double> normal;
  constexpr int kLots = 4000;
  double within = 0;
  double between = 0;
  for (int lot = 0; lot < kLots; ++lot) {
    std::vector<std::vector<double>> wafers;
    for (const int sites : {2, 3, 5, 9, 17}) {
      const double centre = 3 * normal(random);
      std::vector<double>& wafer = wafers.emplace_back();
      for (int i = 0; i < sites; ++i) wafer.push_back(centre + 2 * normal(random));
    }
    const auto parts = VarianceComponentsOf(SamplesOf(wafers)).value();
    within += parts.within / kLots;
    between += parts.estimate / kLots;
  }
  EXPECT_NEAR(within, 4, 0.1);
  EXPECT_NEAR(between, 9, 0.5);
}

// Distances from the median 10: 1, 0, 1, 2, and 0.
TEST(OutlyingOf, GoesByTheMedianDeviation) {
  const double limit = 10 + 3.5 * 1.482602218505602;
  EXPECT_EQ(OutlyingOf(std::vector<double>{9, 10, 11, 12, limit + 0.01}),
            (std::vector<bool>{false, false, false, false, false}));
  EXPECT_EQ(OutlyingOf(std::vector<double>{9, 10, 10, 11, limit + 0.01}),
            (std::vector<bool>{false, false, false, false, true}));
  EXPECT_EQ(OutlyingOf(std::vector<double>{9, 10, 10, 11, limit - 0.01}),
            (std::vector<bool>{false, false, false, false, false}));
}

TEST(OutlyingOf, MarksNoneOfEqualOnesAndTheOneThatDiffers) {
  EXPECT_EQ(OutlyingOf(std::vector<double>{5, 5, 5, 5}), std::vector<bool>(4, false));
  EXPECT_EQ(OutlyingOf(std::vector<double>{5, 5, 5, 5, 5, 6}),
            (std::vector<bool>{false, false, false, false, false, true}));
  EXPECT_EQ(OutlyingOf(std::vector<double>{1, 1, 9}), std::vector<bool>(3, false));
}

// Slot 25 lies 6.55 robust deviations above the others' means, all sigmas within 3.5.
TEST(LotSummary, MarksTheOutlyingWaferOfAMeasuredLot) {
  const std::vector<std::vector<Site>> lot = NativeOxideLot();
  std::vector<LotWafer> wafers;
  for (std::size_t i = 0; i < lot.size(); ++i) wafers.push_back({std::to_string(i + 1), lot[i]});
  const LotSummary summary = SummaryOf(wafers);
  ASSERT_EQ(summary.wafers.size(), 25U);
  for (const WaferSummary& wafer : summary.wafers) {
    EXPECT_EQ(wafer.outlying, wafer.name == "25" ? Outlying::Mean : Outlying::No) << wafer.name;
  }
  EXPECT_EQ(summary.worst, 24U);
  EXPECT_EQ(summary.all.Count(), 1225U);
  EXPECT_NEAR(summary.scale.low, 9.4651, 1e-12);
  EXPECT_NEAR(summary.scale.high, 10.33465, 1e-12);
}

// Means of 0 but for the last bit of one.
TEST(LotSummary, TakesNoRoundingForOutlying) {
  const std::vector<std::vector<Site>> lot = {AtCentre({-1, 1}), AtCentre({-1, 1}),
                                              AtCentre({-1, 1.0000001F}), AtCentre({-1, 1}),
                                              AtCentre({-1, 1})};
  std::vector<LotWafer> wafers;
  for (const std::vector<Site>& sites : lot) wafers.push_back({"", sites});
  for (const WaferSummary& wafer : SummaryOf(wafers).wafers) {
    EXPECT_EQ(wafer.outlying, Outlying::No);
  }
}

TEST(LotSummary, MarksAWideWaferButNoNarrowOne) {
  const std::vector<std::vector<Site>> lot = {AtCentre({9, 10, 11}), AtCentre({8.9F, 10, 11.1F}),
                                              AtCentre({9.1F, 10, 10.9F}), AtCentre({0, 10, 20}),
                                              AtCentre({10, 10, 10})};
  std::vector<LotWafer> wafers;
  for (const std::vector<Site>& sites : lot) wafers.push_back({"", sites});
  const LotSummary summary = SummaryOf(wafers);
  EXPECT_EQ(summary.wafers[3].outlying, Outlying::Sigma);
  EXPECT_EQ(summary.wafers[4].outlying, Outlying::No);
  EXPECT_EQ(summary.worst, 3U);
}

}  // namespace
}  // namespace discoplan::analysis
