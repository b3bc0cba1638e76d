// SPDX-License-Identifier: MIT
#include "discoplan/analysis/surface_fit.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "discoplan/analysis/least_squares.h"
#include "discoplan/analysis/sample.h"
#include "discoplan/analysis/zernike.h"
#include "tests/analysis/example_lot.h"

namespace discoplan::analysis {
namespace {

double Factorial(int n) { return n < 2 ? 1 : n * Factorial(n - 1); }

/// By the sum of powers.
double PlainZernike(const ZernikeIndex& term, double rho, double angle) {
  const int m = std::abs(term.m);
  double radial = 0;
  for (int k = 0; k <= (term.n - m) / 2; ++k) {
    radial += (k % 2 == 0 ? 1 : -1) * Factorial(term.n - k) /
              (Factorial(k) * Factorial((term.n + m) / 2 - k) * Factorial((term.n - m) / 2 - k)) *
              std::pow(rho, term.n - 2 * k);
  }
  const double norm = std::sqrt((m == 0 ? 1 : 2) * (term.n + 1.0));
  return norm * radial * (term.m < 0 ? std::sin(m * angle) : std::cos(m * angle));
}

TEST(Zernike, NumbersTermsByTheStandard) {
  const ZernikeIndex rows[] = {{0, 0}, {1, -1}, {1, 1}, {2, -2}, {2, 0}, {2, 2}, {3, -3}, {3, -1}};
  for (int number = 0; number < 8; ++number) EXPECT_EQ(ZernikeOf(number), rows[number]) << number;
  for (int number = 0; number < ZernikeTerms(20); ++number) {
    const auto [n, m] = ZernikeOf(number);
    EXPECT_EQ(number, (n * (n + 2) + m) / 2);
  }
}

TEST(Zernike, IsTheSumOfPowers) {
  for (int number = 0; number < ZernikeTerms(12); ++number) {
    const ZernikeIndex term = ZernikeOf(number);
    for (const double rho : {0.0, 0.3, 0.7, 1.0}) {
      for (const double angle : {0.0, 0.4, 2.0, -1.3}) {
        EXPECT_NEAR(Zernike(term, rho * std::cos(angle), rho * std::sin(angle)),
                    PlainZernike(term, rho, angle), 1e-8)
            << number << ' ' << rho << ' ' << angle;
      }
    }
  }
}

// At the edge the radial part is 1, whatever the order.
TEST(Zernike, StaysExactAtHighOrders) {
  for (const int n : {20, 40, 60}) EXPECT_NEAR(Zernike({n, 0}, 1, 0), std::sqrt(n + 1.0), 1e-9);
}

TEST(FitPlane, AgreesWithAnotherProgramOnAMeasuredWafer) {
  const PlaneFit plane = FitPlane(Slot7());
  EXPECT_TRUE(plane.IsUnique());
  EXPECT_NEAR(plane.offset, 9.747255124360615, 1e-7);
  EXPECT_NEAR(plane.slope_x, -0.00039017252341907484, 1e-9);
  EXPECT_NEAR(plane.slope_y, -0.0012279523246529046, 1e-9);
}

TEST(FitPlane, TellsTiltAndDirection) {
  const std::vector<Site> sites = {{0, 0, 10}, {10, 0, 13}, {0, 10, 14}, {10, 10, 17}};
  const PlaneFit plane = FitPlane(sites);
  EXPECT_NEAR(plane.Tilt(), 0.5, 1e-12);
  EXPECT_NEAR(plane.Direction(), std::atan2(4, 3) * 180 / M_PI, 1e-9);
  for (const Site& rest : ResidualsOf(sites, plane)) EXPECT_NEAR(rest.z, 0, 1e-6);
}

TEST(FitPlane, SaysThatALineTellsNoPlane) {
  const std::vector<Site> line = {{0, 0, 1}, {1, 2, 2}, {2, 4, 3}, {3, 6, 4}};
  EXPECT_EQ(FitPlane(line).rank, 2U);
  EXPECT_FALSE(FitPlane(line).IsUnique());
  for (const Site& rest : ResidualsOf(line, FitPlane(line))) EXPECT_NEAR(rest.z, 0, 1e-6);
  EXPECT_EQ(FitPlane(std::span(line).first(1)).rank, 1U);
}

// numpy's lstsq, by singular values, of polynomials by the sum of powers.
TEST(FitZernike, AgreesWithAnotherProgramOnAMeasuredWafer) {
  constexpr double kCoefficients[] = {
      9.68892715236,    -0.0650977695222, -0.0208231726417, 0.00671674776452,  0.0935911215518,
      -0.0719546850366, 0.0255278619737,  -0.0320194677374, -0.00999723552172, -0.00983627305526,
      0.0040425376257,  -0.0102059396687, 0.0092793105421,  0.0128939888125,   0.0308450099092};
  const std::vector<Site> sites = Slot7();
  const ZernikeFit fit = FitZernike(sites, 4);
  EXPECT_NEAR(fit.radius, 147.00007518885832, 1e-5);
  EXPECT_EQ(fit.rank, 15U);
  for (std::size_t term = 0; term < 15; ++term) {
    EXPECT_NEAR(fit.coefficients[term], kCoefficients[term], 1e-6) << term;
  }
  double squares = 0;
  for (const Site& rest : ResidualsOf(sites, fit)) squares += rest.z * rest.z;
  EXPECT_NEAR(std::sqrt(squares / 49), 0.0771823208126181, 1e-6);
}

// 49 sites, a centre and three rings, on which four radial terms of one frequency depend on each
// other; only the rounding of positions to a micrometre tells them apart.
TEST(FitZernike, TellsWhereTheSitesAreTooFew) {
  EXPECT_TRUE(FitZernike(Slot7(), 6).IsUnique());
  const ZernikeFit fit = FitZernike(Slot7(), 7);
  EXPECT_EQ(fit.rank, 34U);
  EXPECT_FALSE(fit.IsUnique());
  for (const double coefficient : fit.coefficients) EXPECT_LT(std::abs(coefficient), 10);
  // 55 terms.
  EXPECT_LT(FitZernike(Slot7(), 9).rank, 49U);
}

TEST(FitZernike, FindsTheTermsThatASurfaceIsMadeOf) {
  std::mt19937 random(7);
  std::uniform_real_distribution<float> place(-100, 100);
  std::vector<Site> sites;
  while (sites.size() < 200) {
    const Site site{place(random), place(random), 0};
    if (std::hypot(site.x, site.y) <= 100) sites.push_back(site);
  }
  for (Site& site : sites) {
    site.z = static_cast<float>(5 + 2 * Zernike({3, -1}, site.x / 100.0, site.y / 100.0));
  }
  const ZernikeFit fit = FitZernike(sites, 5, 100);
  for (int term = 0; term < ZernikeTerms(5); ++term) {
    EXPECT_NEAR(fit.coefficients[static_cast<std::size_t>(term)],
                term == 0   ? 5
                : term == 7 ? 2
                            : 0,
                1e-6)
        << term;
  }
}

// Against the normal equations, solved by Cramer's rule in two unknowns.
TEST(Solve, MakesTheSumOfSquaresLeast) {
  std::mt19937 random(3);
  std::normal_distribution<double> normal;
  for (int run = 0; run < 20; ++run) {
    DesignMatrix design(9, 2);
    std::vector<double> values(9);
    double aa = 0, ab = 0, bb = 0, av = 0, bv = 0;
    for (std::size_t row = 0; row < 9; ++row) {
      const double a = design.At(row, 0) = normal(random) * 1e6;
      const double b = design.At(row, 1) = normal(random);
      const double v = values[row] = normal(random);
      aa += a * a, ab += a * b, bb += b * b, av += a * v, bv += b * v;
    }
    const double determinant = aa * bb - ab * ab;
    const LeastSquares fit = Solve(design, values);
    EXPECT_EQ(fit.rank, 2U);
    EXPECT_NEAR(fit.coefficients[0], (av * bb - bv * ab) / determinant, 1e-15);
    EXPECT_NEAR(fit.coefficients[1], (bv * aa - av * ab) / determinant, 1e-9);
  }
}

TEST(Solve, CountsIndependentColumns) {
  DesignMatrix design(4, 3);
  for (std::size_t row = 0; row < 4; ++row) {
    design.At(row, 0) = 1;
    design.At(row, 1) = static_cast<double>(row);
    design.At(row, 2) = 3 - 2 * static_cast<double>(row);
  }
  const LeastSquares fit = Solve(design, std::vector<double>{1, 3, 5, 7});
  EXPECT_EQ(fit.rank, 2U);
  for (std::size_t row = 0; row < 4; ++row) {
    double sum = 0;
    for (std::size_t c = 0; c < 3; ++c) sum += design.At(row, c) * fit.coefficients[c];
    EXPECT_NEAR(sum, 1 + 2.0 * static_cast<double>(row), 1e-12);
  }
  EXPECT_EQ(Solve(DesignMatrix(3, 2), std::vector<double>{1, 2, 3}).rank, 0U);
  EXPECT_EQ(Solve(DesignMatrix(0, 2), {}).rank, 0U);
}

/// Sites on a line tell the terms of one variable apart and no more, whichever way it runs and
/// though their positions are rounded.
TEST(FitZernike, TakesNothingFromTheRoundingOfPositions) {
  for (const double angle : {0.0, 0.5, 1.5707963267948966, 2.2}) {
    std::vector<Site> sites;
    for (int i = -5; i <= 5; ++i) {
      sites.push_back({static_cast<float>(3.6 * i * std::cos(angle)),
                       static_cast<float>(3.6 * i * std::sin(angle)),
                       static_cast<float>(i * i % 7)});
    }
    EXPECT_EQ(FitPlane(sites).rank, 2U) << angle;
    for (const int order : {1, 2, 3}) {
      const ZernikeFit fit = FitZernike(sites, order);
      EXPECT_EQ(fit.rank, static_cast<std::size_t>(order) + 1) << angle;
      EXPECT_NEAR(fit.At(0, 0), FitZernike(sites, order, 40).At(0, 0), 1e-5) << angle;
    }
  }
}

/// A line in any direction and a ring, written with three decimals.
TEST(FitZernike, FindsTheRankOfLinesAndRings) {
  std::mt19937 random(11);
  std::uniform_real_distribution<double> part(0, 1);
  const auto written = [](double place) {
    return static_cast<float>(std::round(place * 1e3) / 1e3);
  };
  for (int run = 0; run < 60; ++run) {
    const double radius = 25 + 125 * part(random);
    const double turn = 2 * M_PI * part(random);
    std::vector<Site> line, ring;
    for (int i = 0; i < 41; ++i) {
      const double along = radius * (i - 20) / 20;
      line.push_back({written(along * std::cos(turn)), written(along * std::sin(turn)), 1});
      const double angle = turn + 2 * M_PI * i / 41;
      ring.push_back({written(radius * std::cos(angle)), written(radius * std::sin(angle)), 1});
    }
    EXPECT_EQ(FitPlane(line).rank, 2U);
    EXPECT_EQ(FitPlane(ring).rank, 3U);
    for (std::size_t order = 1; order <= 10; ++order) {
      EXPECT_EQ(FitZernike(line, static_cast<int>(order)).rank, order + 1) << run << ' ' << order;
      EXPECT_EQ(FitZernike(ring, static_cast<int>(order)).rank, 2 * order + 1)
          << run << ' ' << order;
    }
  }
}

}  // namespace
}  // namespace discoplan::analysis
