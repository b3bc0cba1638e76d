// SPDX-License-Identifier: MIT
#include "discoplan/analysis/figures_of_merit.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>
#include <random>
#include <set>

#include "discoplan/analysis/compensated_sum.h"
#include "tests/analysis/example_lot.h"

namespace discoplan::analysis {
namespace {

std::optional<double> Figure(const char* key, const std::vector<Site>& sites) {
  const FigureOfMerit* figure = FindFigure(key);
  if (figure == nullptr) throw std::out_of_range(key);
  return figure->compute(Sample(sites));
}

TEST(CompensatedSum, KeepsWhatAPlainSumLoses) {
  CompensatedSum sum;
  for (const double term : {1.0, 1e100, 1.0, -1e100}) sum += term;
  EXPECT_EQ(sum.Value(), 2);
  CompensatedSum tenths;
  for (int i = 0; i < 1000000; ++i) tenths += 0.1;
  EXPECT_EQ(tenths.Value(), 100000);
}

/// What rounding took, by the larger of both terms.
struct SumByTheLarger {
  double sum = 0;
  double lost = 0;

  void Add(double term) {
    const double next = sum + term;
    lost += std::abs(sum) >= std::abs(term) ? (sum - next) + term : (term - next) + sum;
    sum = next;
  }
};

TEST(CompensatedSum, IsTheSameInEitherOrderOfTerms) {
  std::mt19937_64 random(1);
  for (int round = 0; round < 2000; ++round) {
    CompensatedSum sum;
    SumByTheLarger plain;
    for (int i = 0; i < 50; ++i) {
      const double digits = static_cast<double>(random()) - 9e18;
      const double term = std::ldexp(digits, static_cast<int>(random() % 80) - 100);
      sum += term;
      plain.Add(term);
      ASSERT_EQ(sum.Value(), plain.sum + plain.lost);
    }
  }
}

TEST(Sample, TakesTheMedianDeviationWithoutSortingAgain) {
  std::mt19937 random(2);
  for (std::size_t count = 1; count < 400; ++count) {
    std::vector<double> values(count);
    // Halves of whole numbers, with many ties, or any fractions.
    for (double& value : values) {
      value = count % 2 == 0 ? static_cast<double>(random() % 40) / 2 - 7
                             : static_cast<double>(random()) / 3e8;
    }
    const Sample sample(values);
    const double median = sample.Quantile(0.5);
    for (double& value : values) value = std::abs(value - median);
    ASSERT_EQ(sample.MedianDeviation(), Sample(values).Quantile(0.5)) << count;
  }
}

TEST(Sample, SortsManySitesAsComparingThemDoes) {
  std::mt19937 draw(11);
  std::uniform_int_distribution<int> exponent(-44, 37);
  std::uniform_real_distribution<float> digits(-10, 10);
  for (const std::size_t count : {1u, 2u, 5u, 64u, 95u, 96u, 97u, 400u, 999u, 1000u, 3000u}) {
    std::vector<Site> sites;
    std::vector<double> sorted;
    for (std::size_t i = 0; i < count; ++i) {
      float z = digits(draw);
      if (i % 3 == 0) z *= std::pow(10.0f, static_cast<float>(exponent(draw)));
      if (i % 50 == 0) z = 0;
      if (i % 7 == 0 && i > 0) z = sites[i - 1].z;
      sites.push_back({static_cast<float>(i % 60), static_cast<float>(i / 60), z});
      sorted.push_back(DecimalOf(z));
    }
    std::sort(sorted.begin(), sorted.end());
    const Sample sample(sites);
    EXPECT_EQ(sample.sorted, sorted) << count;
    const Sample values(sorted);
    EXPECT_EQ(sample.mean, values.mean);
    EXPECT_EQ(sample.squares, values.squares);
    EXPECT_EQ(sample.Plane().slope_x, FitPlane(sites).slope_x);
  }
}

TEST(DecimalOf, IsTheShortestDecimalOfTheFloat) {
  EXPECT_EQ(DecimalOf(10.446F), 10.446);
  EXPECT_EQ(DecimalOf(-0.1F), -0.1);
  EXPECT_EQ(DecimalOf(5606.509F), 5606.509);
  EXPECT_EQ(DecimalOf(16777216.0F), 16777216);
  EXPECT_EQ(DecimalOf(0), 0);
  EXPECT_EQ(DecimalOf(1e-30F), static_cast<double>(1e-30F));
  EXPECT_EQ(DecimalOf(0.0012345F), 0.0012345);
  const float infinite = std::numeric_limits<float>::infinity();
  EXPECT_EQ(DecimalOf(infinite), infinite);
}

// Many at once are the same as each by itself, whatever stands beside it.
TEST(DecimalOf, IsTheSameForManyAtOnce) {
  std::mt19937 draw(5);
  std::uniform_real_distribution<float> digits(-10, 10);
  constexpr float kOdd[] = {0,         -0.0F, 1e-30F, 9.999e-4F, 1e-3F,
                            0.015625F, 1e7F,  1.1e7F, 8388607.5F};
  for (int round = 0; round < 3000; ++round) {
    std::vector<float> values(1 + draw() % 200);
    const float scale = std::pow(10.0F, static_cast<float>(draw() % 12) - 5);
    const float step = round % 2 == 0 ? 0 : std::pow(10.0F, static_cast<float>(draw() % 4) - 2);
    for (float& value : values) {
      value = scale * (round % 3 == 0 ? 1 + digits(draw) / 1000 : digits(draw));
      if (step > 0) value = std::round(value / step) * step;
      if (round % 5 == 0 && draw() % 20 == 0) value = kOdd[draw() % std::size(kOdd)];
    }
    std::vector<double> decimals(values.size());
    DecimalsOf(values, decimals);
    for (std::size_t i = 0; i < values.size(); ++i) {
      ASSERT_EQ(decimals[i], DecimalOf(values[i])) << values[i];
    }
  }
}

// One that takes wafer after wafer is the same as one made for each, at new places too.
TEST(Sample, KeepsNothingOfTheWaferBefore) {
  std::mt19937 draw(9);
  std::uniform_real_distribution<float> within(-100, 100);
  Sample kept;
  std::vector<Site> sites;
  for (int wafer = 0; wafer < 200; ++wafer) {
    if (wafer % 3 == 0) {
      sites.resize(1 + draw() % 150);
      for (Site& site : sites) site = {within(draw), within(draw), 0};
    }
    if (wafer % 7 == 0) sites.front().x = -sites.front().x;
    for (Site& site : sites) site.z = 500 + within(draw);
    kept.Take(sites);
    const Sample fresh(sites);
    for (const FigureOfMerit& figure : FiguresOfMerit()) {
      ASSERT_EQ(figure.compute(kept), figure.compute(fresh)) << figure.key << " of " << wafer;
    }
    ASSERT_EQ(kept.sorted, fresh.sorted);
  }
}

// Any decimal of up to six digits comes back from its float.
TEST(DecimalOf, GivesBackWhatAFileSaid) {
  for (int digits = 1; digits < 1000000; digits += 7) {
    const double number = digits / 1e4;
    if (number < 1e-3) continue;
    ASSERT_EQ(DecimalOf(static_cast<float>(number)), number);
  }
}

struct Expected {
  const char* key;
  double value;
};

// Of rational numbers (mean, squares, range), numpy 2 (quantile, lstsq) and scipy
// (median_abs_deviation), from the decimals of the file.
TEST(FiguresOfMerit, AgreeWithOtherProgramsOnAMeasuredWafer) {
  const Expected rows[] = {
      {"mean", 9.747255102040816},
      {"std_dev", 0.21613649146355846},
      {"std_dev_percent", 2.2174087904840536},
      {"minimum", 9.4911},
      {"maximum", 10.446},
      {"range", 0.9549},
      {"hi_lo_percent", 4.789563176189115},
      {"range_percent", 9.79660417218453},
      {"half_range_percent", 4.898302086092265},
      {"three_sigma", 3 * 0.21613649146355846},
      {"median", 9.6995},
      {"quartile_1", 9.5934},
      {"quartile_3", 9.8538},
      {"iqr", 0.2604},
      {"mad", 0.1282},
      {"robust_sigma", 0.1282 / 0.674489750196082},
  };
  for (const Expected& row : rows) {
    EXPECT_NEAR(Figure(row.key, Slot7()).value(), row.value, 1e-12) << row.key;
  }
  // The positions are 32-bit floats here.
  EXPECT_NEAR(Figure("tilt", Slot7()).value(), 0.0012884492654550589, 1e-9);
  EXPECT_NEAR(Figure("tilt_direction", Slot7()).value(), 252.37274072421752, 1e-4);
  EXPECT_NEAR(Figure("interpolation_error", Slot7()).value(), 0.1265599993033197, 1e-6);
}

// Opposite corners of a square are alike, so that rounding alone tilts its plane.
TEST(FiguresOfMerit, TellNoDirectionOfALevelPlane) {
  std::vector<Site> square = {{70, 70, 1.1F}, {-70, 70, 1.3F}, {-70, -70, 1.1F}, {70, -70, 1.3F}};
  EXPECT_LT(Figure("tilt", square).value(), 1e-15);
  EXPECT_FALSE(Figure("tilt_direction", square));
  for (Site& site : square) site.z += site.x > 0 ? 1e-4F : 0;
  EXPECT_NEAR(std::remainder(Figure("tilt_direction", square).value(), 360), 0, 0.1);
}

// 1, 2, 4, 9: quartiles at places 1.75, 2.5 and 3.25 are 1.75, 3 and 5.25; distances from the
// median 1, 1, 2 and 6.
TEST(FiguresOfMerit, OfFourValuesByHand) {
  const std::vector<Site> sites = AtCentre({4, 1, 9, 2});
  const Expected rows[] = {{"mean", 4},
                           {"std_dev", std::sqrt(38.0 / 3)},
                           {"range", 8},
                           {"half_range_percent", 100},
                           {"range_percent", 200},
                           {"hi_lo_percent", 80},
                           {"quartile_1", 1.75},
                           {"median", 3},
                           {"quartile_3", 5.25},
                           {"mad", 1.5}};
  for (const Expected& row : rows) EXPECT_DOUBLE_EQ(*Figure(row.key, sites), row.value) << row.key;
}

TEST(FiguresOfMerit, AreEmptyWhereTheyMeanNothing) {
  const std::vector<Site> one = AtCentre({5});
  for (const char* key : {"std_dev", "std_dev_percent", "three_sigma", "tilt", "tilt_direction",
                          "interpolation_error"}) {
    EXPECT_FALSE(Figure(key, one)) << key;
  }
  EXPECT_EQ(Figure("hi_lo_percent", one), 0);
  EXPECT_EQ(Figure("mad", one), 0);
  for (const char* key : {"std_dev_percent", "range_percent", "half_range_percent"}) {
    EXPECT_FALSE(Figure(key, AtCentre({-1, 1}))) << key;
    EXPECT_FALSE(Figure(key, AtCentre({0, 0, 0}))) << key;
    // 1e-9 beside a spread of 2 is a rest of rounding.
    EXPECT_FALSE(Figure(key, AtCentre({-1, 1, 1e-9F}))) << key;
  }
  EXPECT_FALSE(Figure("hi_lo_percent", AtCentre({-3, 3})));
}

TEST(FiguresOfMerit, TakeThePercentOfANegativeMeanByItsMagnitude) {
  EXPECT_DOUBLE_EQ(*Figure("std_dev_percent", AtCentre({-1, -2, -3})), 50);
  EXPECT_DOUBLE_EQ(*Figure("hi_lo_percent", AtCentre({-1, -2, -3})), 50);
}

// Counts of defects, most of them 0: a sigma of many means, and no sign in doubt.
TEST(FiguresOfMerit, GiveLargePercentagesOfValuesOfOneSign) {
  std::vector<float> values(400, 0.0F);
  values[7] = 4;
  EXPECT_NEAR(*Figure("std_dev_percent", AtCentre(values)), 2000, 1e-9);
}

TEST(FiguresOfMerit, AreTheSameForAnyOrderOfSites) {
  std::vector<Site> sites = Slot7();
  const Sample before(sites);
  std::rotate(sites.begin(), sites.begin() + 11, sites.end());
  const Sample after(sites);
  for (const FigureOfMerit& figure : FiguresOfMerit().first(16)) {
    EXPECT_EQ(figure.compute(before), figure.compute(after)) << figure.key;
  }
}

TEST(FiguresOfMerit, HaveKeysTitlesFormulasAndSourcesOfTheirOwn) {
  std::set<std::string_view> keys;
  std::set<std::string_view> titles;
  for (const FigureOfMerit& figure : FiguresOfMerit()) {
    keys.insert(figure.key);
    titles.insert(figure.title);
    EXPECT_FALSE(figure.formula.empty()) << figure.key;
    EXPECT_FALSE(figure.source.empty()) << figure.key;
    EXPECT_EQ(FindFigure(figure.key), &figure);
  }
  EXPECT_EQ(keys.size(), FiguresOfMerit().size());
  EXPECT_EQ(titles.size(), FiguresOfMerit().size());
  EXPECT_EQ(FindFigure("none"), nullptr);
}

// 12 even values and one far off: quartiles 3 and 9 of 0 to 12.
TEST(FencesOf, CutOffWhatIsFarOut) {
  std::vector<double> values(13);
  std::iota(values.begin(), values.end(), 0.0);
  EXPECT_EQ(FencesOf(Sample(values)).low, 0);
  EXPECT_EQ(FencesOf(Sample(values)).high, 12);
  values.back() = 100;
  EXPECT_EQ(FencesOf(Sample(values)).high, 9 + 1.5 * 6);
}

}  // namespace
}  // namespace discoplan::analysis
