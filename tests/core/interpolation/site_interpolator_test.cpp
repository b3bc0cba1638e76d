// SPDX-License-Identifier: MIT
#include "discoplan/core/interpolation/site_interpolator.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <limits>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "discoplan/base/numbers.h"
#include "discoplan/core/wafer.h"
#include "discoplan/core/wafer_data.h"
#include "discoplan/core/worker_pool.h"

namespace discoplan {
namespace {

constexpr float kNotAsked = std::numeric_limits<float>::quiet_NaN();
constexpr float kUntouched = -12345;

/// Numbers that come soon, also without optimisation, and are the same everywhere.
class Random {
 public:
  explicit Random(std::uint64_t seed) : state_(seed * 2862933555777941757U + 3037000493U) {}

  /// From 0 to below `end`.
  int Below(int end) {
    state_ = state_ * 6364136223846793005U + 1442695040888963407U;
    return static_cast<int>((state_ >> 33) % static_cast<std::uint64_t>(end));
  }
  float Between(float low, float high) {
    return low + (high - low) * static_cast<float>(Below(1 << 20)) / static_cast<float>(1 << 20);
  }

 private:
  std::uint64_t state_;
};

/// Sites of a wafer with the radius 1.
using Sites = std::vector<Site>;

Sites Scattered(Random& random, int count) {
  Sites sites;
  while (static_cast<int>(sites.size()) < count) {
    const float x = random.Between(-1, 1);
    const float y = random.Between(-1, 1);
    if (x * x + y * y <= 1) sites.push_back({x, y, random.Between(-5, 100)});
  }
  return sites;
}

Sites Rings(Random& random, int count) {
  Sites sites = {{0, 0, 3}};
  for (int ring = 1; static_cast<int>(sites.size()) < count; ++ring) {
    for (int i = 0; i < 8 * ring; ++i) {
      const float t = 0.785398163F * static_cast<float>(i) / static_cast<float>(ring);
      const float r = 0.9F * static_cast<float>(ring) / std::sqrt(static_cast<float>(count) / 4);
      sites.push_back({r * std::cos(t), r * std::sin(t), random.Between(9, 11)});
    }
  }
  std::erase_if(sites, [](const Site& site) { return std::hypot(site.x, site.y) > 1; });
  return sites;
}

/// Exact in binary, so that many distances are equal.
Sites Dies(Random& random, int count) {
  Sites sites;
  const int half = static_cast<int>(std::sqrt(static_cast<float>(count) / 3.2F)) + 1;
  const float pitch = std::ldexp(std::floor(std::ldexp(0.97F / static_cast<float>(half), 9)), -9);
  for (int j = -half; j <= half; ++j) {
    for (int i = -half; i <= half; ++i) {
      const float x = pitch * static_cast<float>(i);
      const float y = pitch * static_cast<float>(j);
      if (x * x + y * y <= 1) sites.push_back({x, y, static_cast<float>(random.Below(9))});
    }
  }
  return sites;
}

Sites Twins(Random& random, int count) {
  Sites sites = Scattered(random, count / 2 + 5);
  for (std::size_t i = 0; i < static_cast<std::size_t>(count) / 2; ++i) {
    sites.push_back({sites[i].x, sites[i].y, -sites[i].z});
  }
  return sites;
}

Sites OnTheRim(Random& random, int count) {
  Sites sites = Scattered(random, count);
  for (Site& site : sites) {
    const float r = std::hypot(site.x, site.y) + 1e-6F;
    site.x *= 0.97F / r;
    site.y *= 0.97F / r;
  }
  return sites;
}

Sites InOneHalf(Random& random, int count) {
  Sites sites = Scattered(random, count);
  for (Site& site : sites) site.y = -std::abs(site.y);
  return sites;
}

/// Most sites in a small spot, so that the search often ends with its first cell.
Sites InASpot(Random& random, int count) {
  Sites sites = Scattered(random, count);
  for (std::size_t i = 5; i < sites.size(); ++i) {
    sites[i].x = 0.3F + sites[i].x * 0.01F;
    sites[i].y *= 0.01F;
  }
  return sites;
}

/// Values that overflow when they are weighed near a site, or anywhere.
Sites WithHugeValues(Random& random, int count) {
  Sites sites = Scattered(random, count);
  for (Site& site : sites) site.z *= 1e35F;
  sites[3].z = -std::numeric_limits<float>::infinity();
  return sites;
}

constexpr std::array kKinds = {Scattered, Rings,     Dies,    Twins,
                               OnTheRim,  InOneHalf, InASpot, WithHugeValues};

wafer Loaded(Sites sites, float diameter, float test_diameter) {
  wafer target;
  target.WaferDiameter = diameter;
  target.TestDiameter = test_diameter;
  target.SetNop(static_cast<float>(sites.size()));
  for (const Site& site : sites) {
    target.SetGridValue(site.x * diameter / 2, site.y * diameter / 2, site.z);
  }
  // Huge values have no deviation; the cells are there by then.
  Attempt([&] { target.MaxMin(); });
  return target;
}

struct LatticeShape {
  int columns;
  int rows;
  float left = 0;
  float top = 0;
  float pitch = 1;
};

std::vector<Site> LatticePoints(Random& random, const LatticeShape& shape, float not_asked) {
  std::vector<Site> points;
  for (int j = 0; j < shape.rows; ++j) {
    for (int i = 0; i < shape.columns; ++i) {
      const float x = shape.left + shape.pitch * static_cast<float>(i);
      const bool is_asked = random.Between(0, 1) >= not_asked;
      points.push_back(
          {is_asked ? x : kNotAsked, shape.top - shape.pitch * static_cast<float>(j), kUntouched});
    }
  }
  return points;
}

bool SameBits(float a, float b) { return std::memcmp(&a, &b, sizeof a) == 0; }

/// Each way against the walk, and the query of a single point too.
void Compare(const wafer& source, const std::vector<Site>& points, int columns,
             const std::string& what) {
  const WaferData data = source.Data();
  const SiteInterpolator plain(data, SiteSearch::Plain);
  std::vector<Site> due = points;
  for (Site& point : due) {
    if (!std::isnan(point.x)) point.z = plain.At(point.x, point.y);
  }
  for (const SiteSearch search : SiteSearches()) {
    std::vector<Site> values = points;
    SiteInterpolator(data, search).Evaluate(values, static_cast<std::size_t>(columns));
    for (std::size_t i = 0; i < due.size(); ++i) {
      ASSERT_TRUE(SameBits(values[i].z, due[i].z))
          << what << ", search " << static_cast<int>(search) << ", at " << points[i].x << ", "
          << points[i].y << ": " << values[i].z << " not " << due[i].z;
    }
  }
  for (std::size_t i = 0; i < due.size(); i += 5) {
    if (std::isnan(points[i].x)) continue;
    ASSERT_TRUE(SameBits(source.Interpolation(points[i].x, points[i].y), due[i].z))
        << what << ", single at " << points[i].x << ", " << points[i].y << " not " << due[i].z;
  }
}

/// Positions and pitch either at random or at round fractions of the radius.
LatticeShape SmallShape(Random& random, float radius) {
  LatticeShape shape{.columns = 3 + random.Below(6), .rows = 1 + random.Below(6)};
  if (random.Below(2) == 0) {
    shape.left = radius * random.Between(-1.2F, 1);
    shape.top = radius * random.Between(-1, 1.2F);
    shape.pitch = radius * random.Between(0.001F, 0.2F);
  } else {
    const float unit = radius / 16;
    shape.left = unit * static_cast<float>(random.Below(32) - 18);
    shape.top = unit * static_cast<float>(random.Below(32) - 14);
    shape.pitch = random.Below(2) == 0 ? unit : unit / 4;
  }
  return shape;
}

TEST(SiteInterpolator, EqualsTheWalkOnManyWafers) {
  constexpr std::array kDiameters = {200.0F, 300.0F, 100.0F, 25.0F, 2.0F};
  constexpr std::array kTestParts = {0.97F, 1.0F, 0.97F, 0.1F, 1.5F, 0.0F};
  for (int seed = 0; seed < 100000; ++seed) {
    Random random(static_cast<std::uint64_t>(seed));
    const int kind = seed % static_cast<int>(kKinds.size());
    const float diameter = kDiameters[static_cast<std::size_t>(random.Below(5))];
    const float part = kTestParts[static_cast<std::size_t>(random.Below(6))];
    const int count = 10 + random.Below(seed % 199 == 0 ? 32700 : 50);
    Sites sites = kKinds[static_cast<std::size_t>(kind)](random, count);
    sites.resize(std::min<std::size_t>(sites.size(), 32767));
    const wafer source = Loaded(std::move(sites), diameter, diameter * part);
    const LatticeShape shape = SmallShape(random, diameter / 2);
    Compare(source, LatticePoints(random, shape, 0.1F), shape.columns,
            "wafer " + std::to_string(seed));
    if (HasFatalFailure()) return;
  }
}

TEST(SiteInterpolator, EqualsTheWalkOnWholeWafers) {
  for (const int count : {49, 300, 1000, 32000}) {
    for (std::size_t kind = 0; kind < kKinds.size(); ++kind) {
      Random random(kind);
      Sites sites = kKinds[kind](random, count);
      sites.resize(std::min<std::size_t>(sites.size(), 32767));
      const wafer source = Loaded(std::move(sites), 200, 194);
      for (const float pitch : {2.0F, 1.94F, 12.5F}) {
        const int side = static_cast<int>(210 / pitch);
        const float edge = pitch * static_cast<float>(side / 2);
        const LatticeShape shape{
            .columns = side, .rows = side, .left = -edge, .top = edge, .pitch = pitch};
        Compare(source, LatticePoints(random, shape, 0), side,
                std::to_string(count) + " sites of kind " + std::to_string(kind));
        if (HasFatalFailure()) return;
      }
    }
  }
}

TEST(SiteInterpolator, EqualsThePassOverFewSites) {
  constexpr std::array kDiameters = {200.0F, 300.0F, 2.0F, 1e-5F, 1e6F};
  for (int seed = 0; seed < 20000; ++seed) {
    Random random(static_cast<std::uint64_t>(seed));
    const float diameter = kDiameters[static_cast<std::size_t>(random.Below(5))];
    Sites sites = kKinds[static_cast<std::size_t>(seed) % kKinds.size()](random, 12);
    // The kinds begin with what is alike, in a corner or at one place.
    std::rotate(sites.begin(), sites.begin() + random.Below(static_cast<int>(sites.size())),
                sites.end());
    sites.resize(static_cast<std::size_t>(4 + random.Below(6)));
    if (seed % 16 == 0) sites[1] = sites[0];
    const wafer source = Loaded(std::move(sites), diameter, diameter);
    LatticeShape shape = SmallShape(random, diameter / 2);
    if (seed % 8 == 0) shape.pitch = diameter * 1.5F;  // to where no slot is taken
    Compare(source, LatticePoints(random, shape, 0.1F), shape.columns,
            "wafer " + std::to_string(seed));
    if (HasFatalFailure()) return;
  }
}

TEST(SiteInterpolator, EqualsTheWalkOnSitesAndBesideThem) {
  for (std::size_t kind = 0; kind < kKinds.size(); ++kind) {
    Random random(kind);
    const wafer source = Loaded(kKinds[kind](random, 500), 200, 194);
    for (const Site& site : source.Sites()) {
      Compare(source,
              {{site.x, site.y, 0},
               {std::nextafter(site.x, 1000.0F), site.y, 0},
               {site.x, site.y + 0.001F, 0}},
              3, "kind " + std::to_string(kind));
      if (HasFatalFailure()) return;
    }
  }
}

TEST(SiteInterpolator, AnswersForAnyPointAndAnyTestDiameter) {
  const float huge = std::numeric_limits<float>::max();
  const float infinity = std::numeric_limits<float>::infinity();
  std::vector<Site> points;
  for (const float x : {0.0F, 99.0F, -130.0F, -1e5F, 1e9F, huge, infinity}) {
    for (const float y : {0.0F, 1e-30F, -99.0F, 140.0F, 1e20F, -huge, kNotAsked}) {
      points.push_back({x, y, 0});
    }
  }
  Random random(5);
  for (const float test_diameter : {0.0F, 1.0F, 20.0F, 1e6F, 1e30F, kNotAsked, infinity}) {
    for (const int count : {1, 3, 5, 9, 10, 40, 700}) {
      const wafer source = Loaded(Scattered(random, count), 200, test_diameter);
      const std::string what = std::to_string(count) + " sites";
      for (const Site& point : points) Compare(source, {point}, 1, what);
      Compare(source, points, 7, what);
      Compare(source, points, 49, what);
    }
  }
}

// The cell of such a point is as far off as a 32-bit number reaches, and its rings lie beyond.
TEST(SiteInterpolator, AnswersForPointsFarOffTinyCells) {
  Random random(6);
  const wafer source = Loaded(Scattered(random, 5000), 0.002F, 0.002F);
  const WaferData data = source.Data();
  for (const float x : {-67000.0F, 67000.0F, -67100.0F, 67100.0F}) {
    for (const float y : {0.0F, -67000.0F, 67000.0F}) {
      std::vector<Site> points = {{x, y, kUntouched}};
      SiteInterpolator(data).Evaluate(points, 1);
      EXPECT_EQ(points[0].z, SiteInterpolator(data, SiteSearch::Plain).At(x, y)) << x << ", " << y;
    }
  }
}

TEST(SiteInterpolator, TakesAllPointsForOneRowWithoutColumns) {
  Random random(7);
  const wafer source = Loaded(Scattered(random, 100), 200, 194);
  std::vector<Site> points = LatticePoints(random, {.columns = 30, .rows = 1}, 0);
  SiteInterpolator(source.Data()).Evaluate(points, 0);
  for (const Site& point : points) EXPECT_EQ(point.z, source.Interpolation(point.x, point.y));
  SiteInterpolator(source.Data()).Evaluate({}, 0);
}

TEST(SiteInterpolator, FollowsAChangeOfTheSites) {
  Random random(8);
  const std::vector<Site> points =
      LatticePoints(random, {.columns = 20, .rows = 20, .left = -95, .top = 95, .pitch = 10}, 0);
  const auto change = [](int way, wafer& target) {
    switch (way) {
      case 0:
        return target.rotate(33);
      case 1:
        return target.mirror_X();
      case 2:
        return target.mirror_Y();
      case 3:
        return target.radial_zone_average();
      case 4:
        return target.OverwriteGridValue(3, 1, 2, 500);
      case 5:
        return target.SetGridValueD(4, -20, 30, -500);
      default:
        return static_cast<void>(target.MoveGrid(1, 1));
    }
  };
  for (int way = 0; way < 7; ++way) {
    wafer source = Loaded(Scattered(random, 200), 200, 206);
    const Site before = source.GetGridValue(3);
    change(way, source);
    // With the cells as they were, and then with new ones.
    Compare(source, points, 20, "stale cells, way " + std::to_string(way));
    source.MaxMin();
    Compare(source, points, 20, "new cells, way " + std::to_string(way));
    source.OverwriteGridValue(3, before.x, before.y, before.z);
  }
}

TEST(SiteInterpolator, GivesTheSameWithWorkers) {
  const auto workers = std::make_shared<WorkerPool>(3);
  for (std::size_t kind = 0; kind < kKinds.size(); ++kind) {
    Random random(kind);
    wafer source = Loaded(kKinds[kind](random, 1000), 200, 194);
    source.UseWorkers(workers);
    // Few enough to be left to one thread, just shared, and with a last row that isn't whole.
    for (const std::size_t count : {63U * 65U, 64U * 64U, 130U * 64U - 7U}) {
      std::vector<Site> points = LatticePoints(
          random, {.columns = 64, .rows = 130, .left = -98, .top = 98, .pitch = 1.5F}, 0.1F);
      points.resize(count);
      Compare(source, points, 64, "kind " + std::to_string(kind));
      if (HasFatalFailure()) return;
    }
  }
}

TEST(SiteInterpolator, TakesAnyNumberOfPointsAndColumns) {
  Random random(9);
  const wafer source = Loaded(Scattered(random, 100), 200, 194);
  for (int count = 0; count <= 70; ++count) {
    for (const int columns : {1, 2, 3, 4, 5, 16, 17, 100}) {
      std::vector<Site> points = LatticePoints(
          random, {.columns = count, .rows = 1, .left = -60, .top = 3, .pitch = 1.7F}, 0);
      Compare(source, points, columns, std::to_string(count) + " points");
    }
  }
}

}  // namespace
}  // namespace discoplan
