// SPDX-License-Identifier: MIT
#include "discoplan/render/plots/histogram_bins.h"
#include "discoplan/core/wafer_data.h"

#include <cmath>
#include <limits>

#include "tests/render/plot_fixture.h"

namespace discoplan {
namespace {

using Counts = std::vector<std::int16_t>;

wafer WaferOf(const std::vector<float>& values) {
  std::vector<Site> sites;
  for (const float z : values) sites.push_back({static_cast<float>(sites.size()), 0, z});
  return LoadedWafer(sites);
}

wafer ZeroToTen() { return WaferOf({0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10}); }

TEST(HistogramBins, SiteOnABoundaryGoesToTheEvenBin) {
  // 0 and 10 by the rule for the ends; 1 and 2 as 1.5 and 2.5, both to 2.
  EXPECT_EQ(HistogramBins::Of(ZeroToTen().Data(), 10).counts,
            (Counts{0, 1, 2, 0, 2, 0, 2, 0, 2, 0, 2}));
}

TEST(HistogramBins, BoundaryTriples) {
  const struct {
    float boundary;
    std::size_t below, on, above;
  } kCases[] = {{1, 1, 2, 2}, {2, 2, 2, 3}, {5, 5, 6, 6}, {8, 8, 8, 9}};
  for (const auto& [boundary, below, on, above] : kCases) {
    const struct {
      float z;
      std::size_t bin;
    } kTriple[] = {{std::nextafter(boundary, 0.0F) - 1e-6F, below},
                   {boundary, on},
                   {std::nextafter(boundary, 10.0F) + 1e-6F, above}};
    for (const auto& [z, bin] : kTriple) {
      Counts expected(11, 0);
      ++expected[1];
      ++expected[10];
      ++expected[bin];
      EXPECT_EQ(HistogramBins::Of(WaferOf({0, z, 10}).Data(), 10).counts, expected) << z;
    }
  }
}

TEST(HistogramBins, EqualValuesLandInTheLastBin) {
  const struct { float value, lower; } kCases[] = {{10, 8.999F}, {-10, -11.001F}, {0, -0.001F}};
  for (const auto& [value, lower] : kCases) {
    const HistogramBins bins = HistogramBins::Of(WaferOf({value, value, value}).Data(), 4);
    EXPECT_EQ(bins.lower, lower);
    EXPECT_EQ(bins.counts, (Counts{0, 0, 0, 0, 3}));
    EXPECT_EQ(bins.Peak(), 3);
  }
}

TEST(HistogramBins, SitesOutsideThePlotLimitsAreNotCounted) {
  wafer source = ZeroToTen();
  source.setMaximalMinial(8, 2);
  const HistogramBins bins = HistogramBins::Of(source.Data(), 6);
  EXPECT_EQ(bins.lower, 2);
  EXPECT_EQ(bins.width, 1);
  EXPECT_EQ(bins.counts, (Counts{0, 1, 2, 0, 2, 0, 2}));
}

TEST(HistogramBins, FewerThanThreeSitesAreNotCounted) {
  EXPECT_TRUE(HistogramBins::Of(WaferOf({1, 2}).Data(), 10).counts.empty());
  EXPECT_EQ(HistogramBins::Of(WaferOf({1, 2}).Data(), 10).width, 0.1F);
  EXPECT_EQ(HistogramBins::Of(WaferOf({1, 2, 3}).Data(), 2).counts, (Counts{0, 1, 2}));
}

TEST(HistogramBins, ImpossibleNumberOfBinsCountsNothing) {
  constexpr float kInfinity = std::numeric_limits<float>::infinity();
  for (const float number : {0.0F, -0.4F, -1.0F, -5.0F, 32768.0F, 1e9F, kInfinity, -kInfinity,
                             std::numeric_limits<float>::quiet_NaN()}) {
    const HistogramBins bins = HistogramBins::Of(ZeroToTen().Data(), number);
    EXPECT_LE(bins.counts.size(), 1U) << number;
    EXPECT_EQ(bins.Peak(), 0) << number;
  }
  EXPECT_EQ(HistogramBins::Of(ZeroToTen().Data(), 32767).counts.size(), 32768U);
}

}  // namespace
}  // namespace discoplan
