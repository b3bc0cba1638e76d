// SPDX-License-Identifier: MIT
// Sites that are left out before anything is computed: beyond an area, outliers, too many.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <random>
#include <sstream>
#include <tuple>

#include "data/exclusions.h"
#include "tests/data/data_files.h"

namespace discoplan::data {
namespace {

TEST(LeftOut, IsToldInWords) {
  std::istringstream stream(
      "X (mm),Y (mm),V\n0,0,1\n0,140,2\n0,148,3\n0,147.0005,100\n-5,0,2\n5,0,1.5\n");
  const Lot lot = Read({.path = "a.csv",
                        .edge_exclusion = 3,
                        .outliers = OutlierRule{3.5, OutlierRule::Spread::Mad}},
                       stream);
  // 147.0005 is 147 as far as positions are rounded; the median of 1, 1.5, 2, 2, 100 is 2 and that
  // of the distances 0.5, so that 2 +- 3.5 * 1.4826 * 0.5 stays.
  EXPECT_EQ(lot.wafers[0].SitesText(), "4 of 6 sites; 1 beyond 147 mm, 1 outlier");
  EXPECT_EQ(lot.wafers[0].diameter, 300.0F);
  EXPECT_EQ(lot.wafers[0].test_diameter, 294.0F);
  EXPECT_EQ(lot.wafers[0].Measured(), 6);
}

TEST(LeftOut, FollowsTheQuartiles) {
  // Of 1, 2, 3, 4, 9 the quartiles are 2 and 4; 2 - 1.5 * 2 to 4 + 1.5 * 2 stays.
  std::istringstream stream("-50,0,1\n50,0,2\n0,50,3\n0,-50,4\n0,0,9\n");
  const Lot lot = Read({.path = "a.csv", .outliers = OutlierRule{}}, stream);
  EXPECT_EQ(lot.wafers[0].SitesText(), "5 sites") << "a factor of 0 reaches nowhere";
  std::istringstream again("-50,0,1\n50,0,2\n0,50,3\n0,-50,4\n0,0,9\n");
  const Lot dropped =
      Read({.path = "a.csv", .outliers = OutlierRule{1.5, OutlierRule::Spread::Iqr}}, again);
  EXPECT_EQ(dropped.wafers[0].SitesText(), "4 of 5 sites; 1 outlier");
  EXPECT_EQ(Quantile({4, 1, 3, 2}, 0.25), 1.75);
  EXPECT_EQ(Quantile({4, 1, 3, 2}, 1), 4);
}

TEST(LeftOut, RulesOfOutliersAreAFactorAndASpread) {
  const auto rule = ParseOutlierRule("3.5mad");
  ASSERT_TRUE(rule);
  EXPECT_EQ(rule->factor, 3.5);
  EXPECT_EQ(rule->spread, OutlierRule::Spread::Mad);
  for (const char* text :
       {"", "iqr", "0iqr", ".mad", "1.5", "1.5 iqr", "-1iqr", "1.5IQR", "1..5iqr"}) {
    EXPECT_FALSE(ParseOutlierRule(text)) << text;
  }
}

TEST(LeftOut, IsToldOfWhereNothingTellsOutliers) {
  for (const auto spread : {OutlierRule::Spread::Iqr, OutlierRule::Spread::Mad}) {
    std::istringstream same("-50,0,1\n50,0,1\n0,50,1\n0,-50,1\n0,0,9\n");
    const Lot lot = Read({.path = "a.csv", .outliers = OutlierRule{1.5, spread}}, same);
    EXPECT_EQ(lot.wafers[0].SitesText(), "5 sites");
    EXPECT_EQ(lot.warnings.at(0),
              "so many values of 'a' are the same that none of the others can be told to be an "
              "outlier");
    std::istringstream flat("-50,0,1\n50,0,1\n0,50,1\n0,-50,1\n0,0,1\n");
    EXPECT_TRUE(
        Read({.path = "a.csv", .outliers = OutlierRule{1.5, spread}}, flat).warnings.empty());
  }
}

TEST(LeftOut, IsThinnedEvenly) {
  Wafer wafer;
  for (int column = 0; column < 300; ++column) {
    for (int row = 0; row < 300; ++row) {
      wafer.x.push_back(static_cast<float>(column));
      wafer.y.push_back(static_cast<float>(row));
      wafer.value.push_back(1);
    }
  }
  Thin(kMostSites, wafer);
  EXPECT_LE(wafer.x.size(), 32767U);
  EXPECT_GT(wafer.x.size(), 30000U);
  EXPECT_EQ(wafer.Measured(), 90000);
  // Each tenth of the square holds its part.
  for (int tenth = 0; tenth < 10; ++tenth) {
    std::size_t here = 0;
    for (const float x : wafer.x) here += static_cast<int>(x) / 30 == tenth;
    EXPECT_NEAR(static_cast<double>(here), static_cast<double>(wafer.x.size()) / 10, 250);
  }
  std::ostringstream table;
  for (int site = 0; site < 40000; ++site) table << site * 0.005 - 100 << ",0," << site % 7 << '\n';
  std::istringstream stream(table.str());
  const Lot lot = Read({.path = "a.csv", .thin = true}, stream);
  EXPECT_LE(lot.wafers[0].x.size(), 32767U);
  EXPECT_EQ(lot.wafers[0].Measured(), 40000);
}

/// Those nearest to the centres of the squares of the finest grid that is no fuller than that.
std::vector<std::size_t> ThinnedPlainly(const Wafer& wafer, std::size_t most) {
  const auto along = std::minmax_element(wafer.x.begin(), wafer.x.end());
  const auto across = std::minmax_element(wafer.y.begin(), wafer.y.end());
  const double whole = std::max(static_cast<double>(*along.second) - *along.first,
                                static_cast<double>(*across.second) - *across.first);
  std::map<std::pair<double, double>, std::size_t> nearest;
  const auto fill = [&](double side) {
    nearest.clear();
    const auto from_centre = [&](std::size_t i) {
      const double x = wafer.x[i] - double{*along.first};
      const double y = wafer.y[i] - double{*across.first};
      const double column = std::min(std::floor(x / whole * side), side - 1);
      const double row = std::min(std::floor(y / whole * side), side - 1);
      return std::tuple(
          row, column,
          std::hypot(x - (column + 0.5) * (whole / side), y - (row + 0.5) * (whole / side)));
    };
    for (std::size_t i = 0; i < wafer.x.size(); ++i) {
      const auto [row, column, distance] = from_centre(i);
      const auto [place, is_first] = nearest.try_emplace({row, column}, i);
      if (!is_first && distance < std::get<2>(from_centre(place->second))) place->second = i;
    }
    return nearest.size();
  };
  double fits = 1;
  for (double low = 1, high = 1025; low + 1 < high; fits = low) {
    const double side = std::floor((low + high) / 2);
    (fill(side) <= most ? low : high) = side;
  }
  fill(fits);
  std::vector<std::size_t> kept;
  for (const auto& [square, site] : nearest) kept.push_back(site);
  std::sort(kept.begin(), kept.end());
  return kept;
}

TEST(LeftOut, IsThinnedToTheSameSitesAsByThePlainWay) {
  std::mt19937 random(7);
  for (int round = 0; round < 6; ++round) {
    Wafer wafer;
    const int steps = round % 2 == 0 ? 40 : 100000;  // dies, whose distances tie, or any places
    for (int i = 0; i < 3000; ++i) {
      wafer.x.push_back(static_cast<float>(static_cast<int>(random() % 997) % steps) / 7);
      wafer.y.push_back(static_cast<float>(static_cast<int>(random() % 499) % steps) / 3 - 50);
      wafer.value.push_back(static_cast<float>(i));
    }
    const std::vector<std::size_t> kept = ThinnedPlainly(wafer, 500);
    Thin(500, wafer);
    ASSERT_EQ(std::vector<std::size_t>(wafer.value.begin(), wafer.value.end()), kept) << round;
  }
}

}  // namespace
}  // namespace discoplan::data
