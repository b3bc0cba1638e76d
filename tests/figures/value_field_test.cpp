// SPDX-License-Identifier: MIT
#include "discoplan/figures/value_field.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "discoplan/figures/isolines.h"
#include "discoplan/figures/refine.h"
#include "discoplan/figures/thin_plate.h"
#include "discoplan/figures/ticks.h"

namespace discoplan::figures {
namespace {

struct Sites {
  std::vector<float> x, y, value;
  SiteView View() const { return {x, y, value}; }
};

template <class Value>
Sites Spread(int count, Value value) {
  Sites sites;
  for (int i = 0; i < count; ++i) {
    const double r = 145 * std::sqrt((i + 0.5) / count);
    const double angle = 2.399963 * i;  // the golden one
    sites.x.push_back(static_cast<float>(r * std::cos(angle)));
    sites.y.push_back(static_cast<float>(r * std::sin(angle)));
    sites.value.push_back(static_cast<float>(value(sites.x.back(), sites.y.back())));
  }
  return sites;
}

float ValueAt(const ValueField& field, double x, double y) {
  float value = 0;
  field.Evaluate({x, y, 1e9, 1, 1}, 300, {&value, 1});
  return value;
}

// A plane bends nowhere, so that every thin-plate spline is the plane itself.
TEST(ValueField, SmoothKeepsAPlane) {
  for (const int count : {20, 150, 700, 5000}) {
    const auto plane = [](double x, double y) { return 50 + 0.1 * x - 0.03 * y; };
    const Sites sites = Spread(count, plane);
    const auto field = MakeField(sites.View(), 150, Interpolation::Smooth);
    for (const Point p : {Point{0, 0}, Point{70, -33}, Point{-100, 60}}) {
      EXPECT_NEAR(ValueAt(*field, p.x, p.y), plane(p.x, p.y), 0.01) << count;
    }
    EXPECT_LT(field->LeaveOneOutError(), 0.01);
  }
}

// A 32-bit float holds 1e6 to a sixteenth.
TEST(ValueField, KeepsSmallDifferencesOfLargeValues) {
  const Sites far = Spread(49, [](double x, double y) { return 1e6 + (x * x + y * y) / 7500; });
  Sites near = far;
  for (float& value : near.value) value -= 1e6F;
  const auto near_field = MakeField(near.View(), 150, Interpolation::Smooth);
  const auto far_field = MakeField(far.View(), 150, Interpolation::Smooth);
  EXPECT_EQ(far_field->Method(), near_field->Method());
  EXPECT_NEAR(far_field->LeaveOneOutError(), near_field->LeaveOneOutError(), 1e-6);
  for (double x = -130; x <= 130; x += 6.5) {
    const double wanted = 1e6 + static_cast<double>(ValueAt(*near_field, x, 17));
    EXPECT_NEAR(ValueAt(*far_field, x, 17), wanted, 0.032) << x;
  }
}

TEST(ValueField, SmoothNeverLeavesTheRangeByMoreThanATwentieth) {
  const Sites sites = Spread(49, [](double x, double) { return x > 0 ? 1.0 : 0.0; });
  const auto field = MakeField(sites.View(), 150, Interpolation::Smooth);
  const Lattice lattice = {-150, 150, 2, 151, 151};
  std::vector<float> values(lattice.Size());
  field->Evaluate(lattice, 150, values);
  for (int j = 0; j < lattice.rows; ++j) {
    for (int i = 0; i < lattice.columns; ++i) {
      if (std::hypot(lattice.X(i), lattice.Y(j)) > 150) continue;
      const float value = values[static_cast<std::size_t>(j * lattice.columns + i)];
      ASSERT_GE(value, -0.0501F);
      ASSERT_LE(value, 1.0501F);
    }
  }
}

// Each site foretold by a spline through the others, one after the other.
TEST(ValueField, LeaveOneOutErrorsInClosedFormAreThoseOfLeavingOut) {
  std::mt19937 random(1);
  std::uniform_real_distribution<double> uniform(-1, 1);
  std::vector<Sample> samples;
  for (int i = 0; i < 25; ++i) {
    samples.push_back({100 * uniform(random), 100 * uniform(random), uniform(random)});
  }
  for (const double smoothing : {0.0, 0.03}) {
    double sum = 0;
    for (std::size_t i = 0; i < samples.size(); ++i) {
      std::vector<Sample> others = samples;
      others.erase(others.begin() + static_cast<std::ptrdiff_t>(i));
      const ThinPlate spline(others, PlateEquations(others, 100, smoothing));
      const auto x = static_cast<float>(samples[i].x);
      float value = 0;
      spline.Evaluate({&x, 1}, static_cast<float>(samples[i].y), {&value, 1});
      sum += (value - samples[i].value) * (value - samples[i].value);
    }
    const double closed = PlateEquations(samples, 100, smoothing).SquaredErrors(samples);
    EXPECT_NEAR(closed, sum, 0.002 * sum);
  }
}

// Within the wafer's structure the spline foretells better than the mean of four.
TEST(ValueField, SmoothForetellsSitesBetterThanTheMeanOfFour) {
  const auto bowl = [](double x, double y) { return 100 + (x * x + y * y) / 5000 + x / 100; };
  const Sites sites = Spread(49, bowl);
  EXPECT_LT(MakeField(sites.View(), 150, Interpolation::Smooth)->LeaveOneOutError(),
            0.3 * MakeField(sites.View(), 150, Interpolation::Idw4)->LeaveOneOutError());
}

// Noise is what is left of sites that are foretold; to follow it would foretell worse.
TEST(ValueField, SmoothOfManySitesLeavesTheNoise) {
  for (const int count : {900, 6000}) {
    std::mt19937 random(7);
    std::normal_distribution<double> noise(0, 1);
    const auto bowl = [](double x, double y) { return 100 + (x * x + y * y) / 500 + x / 20; };
    const Sites sites =
        Spread(count, [&](double x, double y) { return bowl(x, y) + noise(random); });
    const auto field = MakeField(sites.View(), 150, Interpolation::Smooth);
    EXPECT_NEAR(field->LeaveOneOutError(), 1, 0.15) << count;
    for (const Point p : {Point{0, 0}, Point{70, -33}, Point{-100, 60}, Point{0, 140}}) {
      EXPECT_NEAR(ValueAt(*field, p.x, p.y), bowl(p.x, p.y), 0.8) << count;
    }
  }
}

// Without noise it goes through what lies between the sites.
TEST(ValueField, SmoothOfManySitesFollowsWaves) {
  const auto waves = [](double x, double y) { return std::sin(x / 15) * std::cos(y / 20); };
  const Sites sites = Spread(2000, waves);
  const auto field = MakeField(sites.View(), 150, Interpolation::Smooth);
  for (double x = -90; x <= 90; x += 7)
    EXPECT_NEAR(ValueAt(*field, x, x / 3), waves(x, x / 3), 0.03);
}

TEST(ValueField, RowsAreTheSameAloneAndTogether) {
  std::vector<float> x, y, value;
  for (int i = 0; i < 60; ++i) {
    const double r = 95 * std::sqrt((i + 0.5) / 60);
    x.push_back(static_cast<float>(r * std::cos(2.399963 * i)));
    y.push_back(static_cast<float>(r * std::sin(2.399963 * i)));
    value.push_back(static_cast<float>(i % 7));
  }
  const auto field = MakeField({x, y, value}, 100, Interpolation::Idw4);
  const Lattice whole = {-103, 103, 2.1, 99, 99};
  std::vector<float> values(whole.Size(), -1);
  field->Evaluate(whole, 98, values);
  for (int row = 0; row < whole.rows; ++row) {
    const Lattice line = {whole.x0, whole.Y(row), whole.step, whole.columns, 1};
    std::vector<float> alone(line.Size(), -2);
    field->Evaluate(line, 98, alone);
    const auto start = values.begin() + static_cast<std::ptrdiff_t>(row) * whole.columns;
    EXPECT_TRUE(std::equal(alone.begin(), alone.end(), start)) << row;
  }
}

TEST(ValueField, TwoSitesGiveTheirMean) {
  const Sites sites = {{0, 10}, {0, 0}, {1, 3}};
  EXPECT_EQ(ValueAt(*MakeField(sites.View(), 100, Interpolation::Smooth), 40, 40), 2);
}

// 1 at the centre, 0.1 more for each mm to the right and 0.2 for each mm up: at (4, 5) it is 2.4.
TEST(ValueField, ThreeSitesGiveThePlaneThroughThemALittleBeyondTheirRange) {
  const Sites sites = {{0, 10, 0}, {0, 0, 20}, {1, 2, 5}};
  const auto field = MakeField(sites.View(), 100, Interpolation::Smooth);
  EXPECT_EQ(field->Method(), "plane through three sites");
  EXPECT_FLOAT_EQ(ValueAt(*field, 4, 5), 2.4F);
  EXPECT_FLOAT_EQ(ValueAt(*field, 90, 0), 5.2F);
  EXPECT_FLOAT_EQ(ValueAt(*field, -90, 0), 0.8F);
  const Sites in_line = {{0, 10, 20}, {0, 5, 10.001F}, {1, 2, 6}};
  EXPECT_EQ(ValueAt(*MakeField(in_line.View(), 100, Interpolation::Smooth), 40, 40), 3);
  EXPECT_EQ(ValueAt(*MakeField(sites.View(), 100, Interpolation::Idw4), 4, 5), 8 / 3.0F);
}

TEST(ValueField, RefiningKeepsAParabola) {
  const auto parabola = [](double x, double y) { return x * x - 0.5 * y * y + x * y; };
  const Lattice coarse = {-10, 10, 1, 21, 21};
  std::vector<float> values;
  for (int j = 0; j < 21; ++j) {
    for (int i = 0; i < 21; ++i) {
      values.push_back(static_cast<float>(parabola(coarse.X(i), coarse.Y(j))));
    }
  }
  const Lattice fine = {-7.3, 6.9, 0.37, 35, 35};
  std::vector<float> refined(fine.Size());
  Refine(coarse, values, fine, refined);
  for (int j = 0; j < fine.rows; ++j) {
    for (int i = 0; i < fine.columns; ++i) {
      EXPECT_NEAR(refined[static_cast<std::size_t>(j * fine.columns + i)],
                  parabola(fine.X(i), fine.Y(j)), 1e-3);
    }
  }
}

TEST(Isolines, OfAConeAreClosedCircles) {
  const Lattice lattice = {-10, 10, 0.25, 81, 81};
  std::vector<float> values;
  for (int j = 0; j < 81; ++j) {
    for (int i = 0; i < 81; ++i) {
      values.push_back(static_cast<float>(std::hypot(lattice.X(i), lattice.Y(j))));
    }
  }
  const auto lines = IsolineFinder(lattice, values).Lines(6.1);
  ASSERT_EQ(lines.size(), 1u);
  EXPECT_EQ(lines.front().front(), lines.front().back());
  for (const Point p : lines.front()) EXPECT_NEAR(std::hypot(p.x, p.y), 6.1, 0.005);
  // Above a line through its middle it is half as long, and ends on that line.
  const auto upper = Clipped(lines.front(), [](Point p) { return p.y >= 0.1; });
  double length = 0;
  for (const auto& piece : upper) {
    for (std::size_t i = 1; i < piece.size(); ++i) {
      length += std::hypot(piece[i].x - piece[i - 1].x, piece[i].y - piece[i - 1].y);
    }
  }
  EXPECT_NEAR(length, 3.14159 * 6.1 - 0.2, 0.05);
}

double DistanceTo(Point p, Point a, Point b) {
  const Point along = b - a;
  const double square = along.x * along.x + along.y * along.y;
  const Point from = p - a;
  const double part =
      square > 0 ? std::clamp((from.x * along.x + from.y * along.y) / square, 0.0, 1.0) : 0;
  const Point off = from - along * part;
  return std::hypot(off.x, off.y);
}

TEST(Isolines, AreThinnedWithinATolerance) {
  constexpr double kTolerance = 0.01;
  std::mt19937 random(5);
  std::uniform_real_distribution<double> turn(-0.2, 0.2);
  std::uniform_real_distribution<double> jump(-0.004, 0.004);
  for (int round = 0; round < 200; ++round) {
    // Straight, in circles, winding, and coming back the way they went.
    std::vector<Point> line = {{3, 4}};
    double angle = 0.3;
    for (int i = 0; i < 300; ++i) {
      angle += round % 4 == 0 ? 0 : round % 4 == 1 ? 0.021 : turn(random);
      if (round % 4 == 3 && i % 50 == 49) angle += 3.14159265;
      const Point last = line.back();
      line.push_back(
          {last.x + std::cos(angle) + jump(random), last.y + std::sin(angle) + jump(random)});
    }
    const std::vector<Point> thinned = Thinned(line, kTolerance);
    ASSERT_EQ(thinned.front(), line.front());
    ASSERT_EQ(thinned.back(), line.back());
    std::size_t at = 0;
    for (std::size_t k = 1; k < thinned.size(); ++k) {
      const std::size_t start = at;
      while (at + 1 < line.size() && line[++at] != thinned[k]) {
      }
      ASSERT_EQ(line[at], thinned[k]) << "a point of the line, in its order";
      for (std::size_t i = start; i < at; ++i) {
        EXPECT_LE(DistanceTo(line[i], thinned[k - 1], thinned[k]), kTolerance * 1.0001);
      }
    }
    if (round % 4 == 0) {
      EXPECT_LT(thinned.size(), 30u);
    }
  }
  // Chords of a circle of radius 100 that are 0.01 off it in their middle are 2.83 long.
  std::vector<Point> circle;
  for (int i = 0; i <= 1000; ++i) {
    circle.push_back({100 * std::cos(i * 0.00628318531), 100 * std::sin(i * 0.00628318531)});
  }
  EXPECT_NEAR(static_cast<double>(Thinned(circle, kTolerance).size()), 222, 30);
  EXPECT_EQ(Thinned({{1, 1}, {1, 1}, {1, 1}}, kTolerance).size(), 2u);
}

TEST(Ticks, AreRoundAndFewEnough) {
  EXPECT_EQ(RoundTicks(0, 10, 6).values, (std::vector<double>{0, 2, 4, 6, 8, 10}));
  EXPECT_EQ(RoundTicks(9.49, 10.45, 6).step, 0.2);
  EXPECT_EQ(RoundTicks(9.49, 10.45, 6).Text(9.6), "9.6");
  EXPECT_EQ(RoundTicks(-1, 1, 5).Text(-0.5), "\u22120.5");
  EXPECT_EQ(RoundTicks(0, 1, 5).decimals, 2);  // quarters
  EXPECT_EQ(RoundTicks(5, 5, 5).values, std::vector<double>{5});
}

}  // namespace
}  // namespace discoplan::figures
