// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <functional>
#include <random>

#include "discoplan/base/numbers.h"
#include "discoplan/core/wafer.h"
#include "tests/core/interpolation/plain_search.h"

namespace discoplan {
namespace {

/// All sites in order of distance, the first met first among equals.
float PlainPass(const std::vector<Site>& sites, float x, float y) {
  std::vector<std::pair<double, std::size_t>> order;
  for (std::size_t i = 0; i < sites.size(); ++i) {
    const double dx = double{x} - sites[i].x;
    const double dy = double{y} - sites[i].y;
    order.emplace_back(std::sqrt(dx * dx + dy * dy), i);
  }
  std::ranges::stable_sort(order, {}, &std::pair<double, std::size_t>::first);
  if (order[0].first == 0) return sites[order[0].second].z;
  float numerator = 0;
  double denominator = 0;
  for (int k = 0; k < 4; ++k) {
    const auto& [d, s] = order[static_cast<std::size_t>(k)];
    numerator = static_cast<float>(numerator + sites[s].z / (d * d));
    denominator += 1 / (d * d);
  }
  return static_cast<float>(numerator / denominator);
}

wafer Loaded(const std::vector<Site>& sites, float diameter = 200, float test_diameter = 194) {
  wafer target;
  target.WaferDiameter = diameter;
  target.TestDiameter = test_diameter;
  target.FlatRatio = 1;
  target.SetNop(static_cast<float>(sites.size()));
  for (const Site& site : sites) target.SetGridValue(site.x, site.y, site.z);
  target.MaxMin();
  return target;
}

using Random = std::mt19937;

std::vector<Site> RandomSites(Random& random, int count) {
  std::uniform_real_distribution<float> angle(0, 6.2831853F);
  std::uniform_real_distribution<float> square(0, 1);
  std::normal_distribution<float> value(100, 20);
  std::vector<Site> sites;
  for (int i = 0; i < count; ++i) {
    const float r = 97 * std::sqrt(square(random));
    const float t = angle(random);
    sites.push_back({r * std::cos(t), r * std::sin(t), value(random)});
  }
  return sites;
}

std::vector<Site> PolarSites(Random& random, int) {
  std::normal_distribution<float> value(10, 1);
  std::vector<Site> sites = {{0, 0, value(random)}};
  for (int ring = 1; ring <= 3; ++ring) {
    for (int i = 0; i < 8 * ring; ++i) {
      const float t = 6.2831853F * static_cast<float>(i) / static_cast<float>(8 * ring);
      const float r = 32 * static_cast<float>(ring);
      sites.push_back({r * std::cos(t), r * std::sin(t), value(random)});
    }
  }
  return sites;
}

std::vector<Site> DieGrid(Random& random, int seed) {
  const float pitches[] = {5, 6, 10, 12.5F, 20};
  const float pitch = pitches[seed % 5];
  std::uniform_int_distribution<int> value(1, 9);
  std::vector<Site> sites;
  for (float y = -90; y <= 90; y += pitch) {
    for (float x = -90; x <= 90; x += pitch) {
      if (x * x + y * y <= 97 * 97) sites.push_back({x, y, static_cast<float>(value(random))});
    }
  }
  return sites;
}

std::vector<Site> Twins(Random& random, int count) {
  std::vector<Site> sites = RandomSites(random, count / 2 + 5);
  const std::size_t half = sites.size();
  for (std::size_t i = 0; i < half; ++i) sites.push_back({sites[i].x, sites[i].y, -sites[i].z});
  return sites;
}

std::vector<Site> LowerHalf(Random& random, int count) {
  std::vector<Site> sites = RandomSites(random, count);
  for (Site& site : sites) site.y = -std::abs(site.y);
  return sites;
}

std::vector<Site> Rim(Random& random, int count) {
  std::vector<Site> sites = RandomSites(random, count);
  for (Site& site : sites) {
    const float r = std::hypot(site.x, site.y);
    site.x *= 97 / r;
    site.y *= 97 / r;
  }
  return sites;
}

TEST(Interpolation, EqualsThePlainSearchToTheBit) {
  const std::pair<const char*, std::vector<Site> (*)(Random&, int)> kinds[] = {
      {"random", RandomSites}, {"polar", PolarSites}, {"dies", DieGrid},
      {"twins", Twins},        {"lower", LowerHalf},  {"rim", Rim}};
  const int counts[] = {10, 11, 25, 49, 100, 400, 1500};
  Random random(7);
  std::uniform_real_distribution<float> anywhere(-120, 120);
  std::size_t compared = 0;
  for (const auto& kind : kinds) {
    const char* name = kind.first;
    const auto make = kind.second;
    for (int seed = 0; seed < 42; ++seed) {
      const std::vector<Site> sites =
          make(random, name == std::string("dies") ? seed : counts[seed % 7]);
      const float test_diameter = seed % 3 == 0 ? 200.0F : seed % 3 == 1 ? 194.0F : 20.0F;
      const wafer target = Loaded(sites, 200, test_diameter);
      wafer changed = target;  // whose cells are walked
      changed.OverwriteGridValue(1, sites[0].x, sites[0].y, sites[0].z);
      PlainSearch plain(sites, 200, test_diameter);
      const auto compare = [&](float x, float y) {
        const float due = plain.Interpolation(x, y);
        for (const wafer* source : {&target, static_cast<const wafer*>(&changed)}) {
          const float ours = source->Interpolation(x, y);
          ASSERT_EQ(std::memcmp(&ours, &due, sizeof due), 0)
              << name << ' ' << seed << " at " << x << ", " << y << ": " << ours << " not " << due;
        }
        ++compared;
      };
      for (int i = -10; i <= 10; ++i) {
        for (int j = -10; j <= 10; ++j) {
          compare(static_cast<float>(i) * 10, static_cast<float>(j) * 10);
        }
      }
      for (int i = 0; i < 60; ++i) compare(anywhere(random), anywhere(random));
      for (std::size_t i = 0; i < sites.size(); i += 7) compare(sites[i].x, sites[i].y);
      compare(900, -900);
      if (HasFatalFailure()) return;
    }
  }
  EXPECT_GT(compared, 100000U);
}

TEST(Interpolation, PassesOverAllOfFourToNineSites) {
  Random random(11);
  std::uniform_real_distribution<float> anywhere(-100, 100);
  for (int seed = 0; seed < 600; ++seed) {
    std::vector<Site> sites = RandomSites(random, 4 + seed % 6);
    if (seed % 4 == 0) sites[1] = {sites[0].x, sites[0].y, 5};
    const wafer target = Loaded(sites);
    for (int i = 0; i < 20; ++i) {
      const float x = anywhere(random);
      const float y = anywhere(random);
      EXPECT_EQ(target.Interpolation(x, y), PlainPass(sites, x, y));
    }
    EXPECT_EQ(target.Interpolation(sites[2].x, sites[2].y), sites[2].z);
  }
}

TEST(Interpolation, WeighsByHand) {
  // Distances 10, 20, 20, 40 from the query at the centre.
  const wafer target = Loaded({{10, 0, 1}, {0, 20, 2}, {0, -20, 3}, {-40, 0, 4}});
  const double numerator = 1 / 100.0 + 2 / 400.0 + 3 / 400.0 + 4 / 1600.0;
  const double denominator = 1 / 100.0 + 2 / 400.0 + 1 / 1600.0;
  EXPECT_FLOAT_EQ(target.Interpolation(0, 0), static_cast<float>(numerator / denominator));
}

TEST(Interpolation, GivesZeroForFewerThanFourSites) {
  const wafer target = Loaded({{0, 0, 5}, {1, 0, 5}, {0, 1, 5}});
  EXPECT_EQ(target.Interpolation(0, 0), 0);
  EXPECT_EQ(wafer().Interpolation(0, 0), 0);
}

TEST(Interpolation, TakesTheFirstOfTwoSitesAtOnePlace) {
  std::vector<Site> sites = {{30, 30, 7}, {30, 30, 9}, {0, 0, 1}, {10, 0, 2}, {0, 10, 3}};
  EXPECT_EQ(Loaded(sites).Interpolation(30, 30), 7);
  for (int i = 0; i < 8; ++i) sites.push_back({static_cast<float>(-10 * i), 5, 1});
  EXPECT_EQ(Loaded(sites).Interpolation(30, 30), 7);
}

TEST(Interpolation, OnASiteGivesItsValueWithNineSitesAndWithTen) {
  for (const int count : {9, 10}) {
    std::vector<Site> sites;
    for (int i = 0; i < count; ++i) {
      sites.push_back({static_cast<float>(10 * i - 50), 0, static_cast<float>(i + 1)});
    }
    const wafer target = Loaded(sites);
    for (const Site& site : sites) EXPECT_EQ(target.Interpolation(site.x, site.y), site.z);
  }
}

TEST(Interpolation, FarFromFewSitesFindsNone) {
  const wafer target = Loaded({{0, 0, 5}, {1, 0, 5}, {0, 1, 5}, {1, 1, 5}});
  EXPECT_EQ(target.Interpolation(0, 290), 5);  // all four within 300 mm
  EXPECT_EQ(target.Interpolation(0, 301), 0);  // two of them beyond three radii
}

TEST(Interpolation, AnswersForAnyPointAndNeverFails) {
  Random random(3);
  const float nan = std::nanf("");
  const float huge = std::numeric_limits<float>::max();
  const float infinity = std::numeric_limits<float>::infinity();
  for (const int count : {5, 20}) {
    for (const float test_diameter : {0.0F, 194.0F, 1e6F, 1e30F, nan, infinity}) {
      const wafer target = Loaded(RandomSites(random, count), 200, test_diameter);
      for (const float x : {0.0F, -1e5F, 1e9F, huge, -huge, nan, infinity}) {
        EXPECT_TRUE(std::isfinite(target.Interpolation(x, 1)));
        EXPECT_TRUE(std::isfinite(target.Interpolation(1, x)));
      }
    }
  }
}

TEST(Interpolation, BetweenLoadAndStatisticsStaysSafe) {
  wafer target = Loaded(std::vector<Site>(500, Site{1, 2, 3}));
  target.reset();
  EXPECT_EQ(target.Interpolation(0, 0), 0);
  target.SetNop(12);
  EXPECT_EQ(target.Interpolation(0, 0), 0);
}

}  // namespace
}  // namespace discoplan
