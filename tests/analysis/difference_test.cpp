// SPDX-License-Identifier: MIT
#include "discoplan/analysis/difference.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

#include "discoplan/analysis/decimal.h"
#include "discoplan/analysis/interpolation_error.h"
#include "discoplan/analysis/positions.h"
#include "discoplan/analysis/site_tree.h"
#include "tests/analysis/example_lot.h"

namespace discoplan::analysis {
namespace {

std::vector<Site> RandomSites(std::size_t count, unsigned seed, bool on_lattice) {
  std::mt19937 random(seed);
  std::uniform_real_distribution<float> place(-100, 100);
  std::vector<Site> sites(count);
  for (Site& site : sites) {
    site = {place(random), place(random), place(random)};
    if (on_lattice) site = {std::round(site.x / 20) * 20, std::round(site.y / 20) * 20, site.z};
  }
  return sites;
}

std::vector<std::size_t> PlainNearest(const std::vector<Site>& sites, double x, double y,
                                      std::size_t count, std::size_t without) {
  std::vector<std::pair<double, std::size_t>> all;
  for (std::size_t i = 0; i < sites.size(); ++i) {
    if (i != without) all.emplace_back(std::hypot(x - sites[i].x, y - sites[i].y), i);
  }
  std::sort(all.begin(), all.end());
  std::vector<std::size_t> nearest;
  for (std::size_t i = 0; i < std::min(count, all.size()); ++i) nearest.push_back(all[i].second);
  return nearest;
}

// With ties and duplicates, which lie on a lattice.
TEST(SiteTree, FindsWhatAWalkOverAllSitesFinds) {
  for (unsigned seed = 0; seed < 40; ++seed) {
    const std::size_t count = seed == 39 ? 3000 : 1 + seed * 7;
    const std::vector<Site> sites = RandomSites(count, seed, seed % 2 == 0);
    const SiteTree tree(sites);
    const std::vector<Site> queries = RandomSites(30, seed + 100, seed % 4 == 0);
    for (std::size_t q = 0; q < queries.size(); ++q) {
      const std::size_t without = q % 3 == 0 ? q % sites.size() : SiteTree::kNobody;
      std::vector<std::size_t> found;
      for (const Neighbour& near : tree.Nearest(queries[q].x, queries[q].y, 4, without)) {
        found.push_back(near.site);
      }
      ASSERT_EQ(found, PlainNearest(sites, queries[q].x, queries[q].y, 4, without)) << seed;
    }
  }
}

// On circles, whose radii as floats are the same, or not, by the last bit of a distance.
TEST(SiteTree, TellsSitesApartByTheLastBitOfTheirDistance) {
  std::mt19937 random(3);
  std::uniform_real_distribution<double> angle(0, 7);
  for (int round = 0; round < 200; ++round) {
    std::vector<Site> sites;
    for (int i = 0; i < 300; ++i) {
      const double radius = round % 2 == 0 ? 100 : i % 3 + 1e-30;
      const double at = angle(random);
      sites.push_back({static_cast<float>(radius * std::cos(at)),
                       static_cast<float>(radius * std::sin(at)), 0});
    }
    const SiteTree tree(sites);
    std::vector<std::size_t> found;
    for (const Neighbour& near : tree.Nearest(0, 0, 7)) {
      EXPECT_EQ(near.distance, std::hypot(0.0 - sites[near.site].x, 0.0 - sites[near.site].y));
      found.push_back(near.site);
    }
    ASSERT_EQ(found, PlainNearest(sites, 0, 0, 7, SiteTree::kNobody)) << round;
  }
}

// Below ten sites the search of the plots passes over all of them.
TEST(InterpolatedAt, IsTheInterpolationOfThePlots) {
  const std::vector<Site> sites = RandomSites(9, 5, false);
  wafer measured;
  measured.WaferDiameter = 300;
  measured.TestDiameter = 294;
  measured.SetNop(9);
  for (const Site& site : sites) measured.SetGridValue(site.x, site.y, site.z);
  measured.MaxMin();
  const SiteTree tree(sites);
  for (const Site& at : RandomSites(50, 6, false)) {
    EXPECT_NEAR(InterpolatedAt(tree, at.x, at.y), measured.Interpolation(at.x, at.y), 1e-4);
  }
  EXPECT_EQ(InterpolatedAt(tree, sites[3].x, sites[3].y), DecimalOf(sites[3].z));
}

// Without itself, the centre of a square is the mean of its corners. A corner is foretold by the
// centre at 10 sqrt(2), two corners at 20 and one at 20 sqrt(2): weights 4, 2, 2 and 1 of 9.
TEST(LeaveOneOut, OfASquareByHand) {
  const std::vector<Site> sites = {
      {0, 0, 9}, {10, 10, 0}, {-10, 10, 0}, {-10, -10, 0}, {10, -10, 0}};
  const InterpolationError error = LeaveOneOut(sites).value();
  EXPECT_NEAR(error.rms, std::sqrt((9.0 * 9 + 4 * 4.0 * 4) / 5), 1e-12);
  EXPECT_EQ(error.largest, 9);
  EXPECT_EQ(error.worst, 0U);
  EXPECT_FALSE(LeaveOneOut(std::span(sites).first(4)));
}

TEST(LeaveOneOut, AgreesWithAnotherProgramOnAMeasuredWafer) {
  const InterpolationError error = LeaveOneOut(Slot7()).value();
  EXPECT_NEAR(error.rms, 0.1265599993033197, 1e-6);
  EXPECT_NEAR(error.largest, 0.42204007664156507, 1e-6);
  EXPECT_EQ(error.worst, 24U);
}

TEST(DifferenceOf, PairsTheSameSitesInAnyOrder) {
  const std::vector<Site> sites = {{0, 0, 10.3F}, {50, 0, 11}, {0, 50, 12}};
  const std::vector<Site> other = {{0.05F, 50, 2}, {0, 0, 10.1F}, {50, -0.05F, 1}};
  const Derived change = DifferenceOf(sites, other);
  EXPECT_EQ(change.sites, (std::vector<Site>{{0, 0, 0.2F}, {50, 0, 10}, {0, 50, 10}}));
  EXPECT_EQ(change.matched, 3U);
  EXPECT_EQ(change.interpolated, 0U);
  EXPECT_NEAR(change.farthest, 0.05, 1e-6);
}

TEST(DifferenceOf, InterpolatesBetweenOtherSites) {
  const std::vector<Site> sites = {{0, 0, 10}, {10, 10, 10}};
  const std::vector<Site> other = {{10, 10, 1}, {-10, 10, 2}, {-10, -10, 3}, {10, -10, 4}};
  const Derived change = DifferenceOf(sites, other);
  EXPECT_EQ(change.sites, (std::vector<Site>{{0, 0, 7.5F}, {10, 10, 9}}));
  EXPECT_EQ(change.matched, 1U);
  EXPECT_EQ(change.interpolated, 1U);
}

// 100.1F is 100.0999985: less 100.1 it would leave 1.5e-6.
TEST(DifferenceOf, LeavesNothingBetweenEqualValues) {
  const std::vector<Site> other = {
      {10, 10, 100.1F}, {-10, 10, 100.1F}, {-10, -10, 100.1F}, {10, -10, 100.1F}};
  const Derived change = DifferenceOf(std::vector<Site>{{3, 4, 100.1F}}, other);
  ASSERT_EQ(change.interpolated, 1U);
  EXPECT_NEAR(change.sites[0].z, 0, 1e-13);
}

TEST(DifferenceOf, LeavesOutWhatItCantInterpolate) {
  const std::vector<Site> sites = {{0, 0, 10}, {10, 10, 10}};
  const Derived change = DifferenceOf(sites, std::vector<Site>{{10, 10, 1}});
  EXPECT_EQ(change.sites, (std::vector<Site>{{10, 10, 9}}));
  EXPECT_EQ(change.missing, 1U);
  EXPECT_TRUE(DifferenceOf(sites, {}).sites.empty());
}

TEST(MeanWafer, IsTheMeanAtEachSiteOfTheFirst) {
  const std::vector<Site> a = {{0, 0, 1}, {10, 0, 2}};
  const std::vector<Site> b = {{10, 0, 4}, {0, 0, 3}};
  const std::span<const Site> wafers[] = {a, b};
  const Derived mean = MeanWafer(wafers);
  EXPECT_EQ(mean.sites, (std::vector<Site>{{0, 0, 2}, {10, 0, 3}}));
  EXPECT_EQ(mean.matched, 2U);
  EXPECT_EQ(MeanWafer(std::span(wafers).first(1)).sites, a);
}

TEST(Turned, QuarterTurnsAreExact) {
  const std::vector<Site> sites = RandomSites(50, 1, false);
  for (std::size_t i = 0; i < sites.size(); ++i) {
    EXPECT_EQ(Turned(sites, 90)[i], (Site{-sites[i].y, sites[i].x, sites[i].z}));
    EXPECT_EQ(Turned(sites, 180)[i], (Site{-sites[i].x, -sites[i].y, sites[i].z}));
    EXPECT_EQ(Turned(sites, -90)[i], (Site{sites[i].y, -sites[i].x, sites[i].z}));
  }
  EXPECT_EQ(Turned(sites, 360 * 7 + 270), Turned(sites, -90));
  EXPECT_EQ(Turned(sites, 0), sites);
}

// By complex numbers.
TEST(Turned, ByAnyAngleCounterClockwise) {
  const std::vector<Site> sites = RandomSites(20, 2, false);
  for (const double degrees : {30.0, 45.0, -100.0, 213.7, 1000.0}) {
    const std::vector<Site> turned = Turned(sites, degrees);
    for (std::size_t i = 0; i < sites.size(); ++i) {
      const double radius = std::hypot(sites[i].x, sites[i].y);
      const double angle = std::atan2(sites[i].y, sites[i].x) + degrees * M_PI / 180;
      EXPECT_NEAR(turned[i].x, radius * std::cos(angle), 1e-4);
      EXPECT_NEAR(turned[i].y, radius * std::sin(angle), 1e-4);
    }
  }
}

TEST(Mirrored, SwapsTheSidesOfOneAxis) {
  const std::vector<Site> sites = {{1, 2, 3}, {0, -4, 5}};
  EXPECT_EQ(Mirrored(sites, MirrorAxis::X), (std::vector<Site>{{-1, 2, 3}, {0, -4, 5}}));
  EXPECT_EQ(Mirrored(sites, MirrorAxis::Y), (std::vector<Site>{{1, -2, 3}, {0, 4, 5}}));
}

}  // namespace
}  // namespace discoplan::analysis
