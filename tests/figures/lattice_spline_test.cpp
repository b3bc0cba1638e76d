// SPDX-License-Identifier: MIT
#include "discoplan/figures/lattice_spline.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

#include "discoplan/figures/field_kinds.h"

namespace discoplan::figures {
namespace {

std::vector<Sample> Scattered(int count, double radius, unsigned seed) {
  std::mt19937 random(seed);
  std::uniform_real_distribution<double> uniform(-radius, radius);
  std::vector<Sample> samples;
  while (static_cast<int>(samples.size()) < count) {
    const Sample sample = {uniform(random), uniform(random), uniform(random) / radius};
    if (std::hypot(sample.x, sample.y) <= radius) samples.push_back(sample);
  }
  return samples;
}

/// Sites of 150 mm, taken in.
struct Taken {
  std::vector<SplineTap> taps;
  Knots sums;

  Taken(LatticeSpline& spline, const std::vector<Sample>& samples) : sums(spline.None()) {
    for (const Sample& sample : samples) {
      taps.push_back(spline.TapOf(sample.x, sample.y));
      spline.Add(taps.back());
      spline.AddValue(taps.back(), static_cast<float>(sample.value), sums);
    }
  }
};

/// Coefficients of the least squares and bending: of all equations one by one, in full.
std::vector<double> PlainSolution(const LatticeSpline& spline, const std::vector<Sample>& samples,
                                  double weight) {
  const Lattice knots = spline.KnotLattice();
  const auto side = static_cast<std::size_t>(knots.columns);
  const std::size_t count = side * side;
  std::vector<std::vector<double>> rows(count, std::vector<double>(count + 1));
  std::vector<std::pair<std::size_t, double>> parts;
  const auto add = [&](double times, double value) {
    for (const auto& [i, a] : parts) {
      for (const auto& [j, b] : parts) rows[i][j] += times * a * b;
      rows[i][count] += times * a * value;
    }
    parts.clear();
  };
  // The cubic B-spline of a distance in knots.
  const auto spline_at = [](double t) {
    t = std::abs(t);
    return t < 1 ? 2 / 3.0 - t * t + t * t * t / 2 : t < 2 ? std::pow(2 - t, 3) / 6 : 0;
  };
  for (const Sample& sample : samples) {
    for (std::size_t row = 0; row < side; ++row) {
      for (std::size_t column = 0; column < side; ++column) {
        const double part = spline_at((sample.x - knots.X(static_cast<int>(column))) / knots.step) *
                            spline_at((sample.y - knots.Y(static_cast<int>(row))) / knots.step);
        if (part != 0) parts.push_back({row * side + column, part});
      }
    }
    add(1, sample.value);
  }
  for (std::size_t row = 0; row < side; ++row) {
    for (std::size_t column = 0; column < side; ++column) {
      const std::size_t at = row * side + column;
      if (column + 2 < side) parts = {{at, 1}, {at + 1, -2}, {at + 2, 1}}, add(weight, 0);
      if (row + 2 < side) parts = {{at, 1}, {at + side, -2}, {at + 2 * side, 1}}, add(weight, 0);
      if (column + 1 < side && row + 1 < side) {
        parts = {{at, 1}, {at + 1, -1}, {at + side, -1}, {at + side + 1, 1}};
        add(2 * weight, 0);
      }
    }
  }
  for (std::size_t k = 0; k < count; ++k) {
    for (std::size_t i = k + 1; i < count; ++i) {
      const double factor = rows[i][k] / rows[k][k];
      for (std::size_t j = k; factor != 0 && j <= count; ++j) rows[i][j] -= factor * rows[k][j];
    }
  }
  std::vector<double> found(count);
  for (std::size_t k = count; k-- > 0;) {
    double sum = rows[k][count];
    for (std::size_t j = k + 1; j < count; ++j) sum -= rows[k][j] * found[j];
    found[k] = sum / rows[k][k];
  }
  return found;
}

TEST(LatticeSpline, IsTheLeastSumOfSquaresAndBending) {
  // Knots from the middle to the border: 4 to 11, so that there are one to three coarser lattices.
  for (const double pitch : {50.0, 38.0, 30.0, 21.0, 15.0}) {
    for (const double weight : {100.0, 1.0, 0.01}) {
      const std::vector<Sample> samples = Scattered(300, 150, 3);
      LatticeSpline spline(150, pitch);
      const Taken taken(spline, samples);
      Knots found = spline.None();
      spline.Improve(taken.sums, {weight * pitch * pitch, 1e-9}, found);
      const std::vector<float> coefficients = spline.Coefficients(found);
      const std::vector<double> wanted = PlainSolution(spline, samples, weight);
      ASSERT_EQ(coefficients.size(), wanted.size());
      double farthest = 0;
      for (std::size_t i = 0; i < wanted.size(); ++i) {
        farthest = std::max(farthest, std::abs(coefficients[i] - wanted[i]));
      }
      EXPECT_LT(farthest, 0.003) << pitch << " " << weight;
    }
  }
}

// What the steps towards the solution leave: as much as was said, of the sum over all sites.
TEST(LatticeSpline, IsAsNearToTheLeastSquaresAsItSays) {
  const std::vector<Sample> samples = Scattered(2000, 150, 8);
  for (const double weight : {10.0, 0.1, 0.001}) {
    LatticeSpline spline(150, 5);
    const Taken taken(spline, samples);
    Knots exact = spline.None();
    spline.Improve(taken.sums, {weight * 25, 1e-9}, exact);
    for (const double enough : {1.0, 0.01, 0.0001}) {
      Knots quick = spline.None();
      spline.Improve(taken.sums, {weight * 25, enough}, quick);
      double sum = 0;
      for (const SplineTap& tap : taken.taps) {
        sum += std::pow(spline.At(quick, tap) - spline.At(exact, tap), 2);
      }
      EXPECT_LT(sum, 2 * enough) << weight;
    }
  }
}

// Each cycle leaves less than half of what was wrong, on large lattices as on small ones: from
// nothing to a thousandth in ten steps.
TEST(LatticeSpline, NeedsFewSteps) {
  for (const double pitch : {20.0, 5.0, 2.0}) {
    LatticeSpline spline(150, pitch);
    const int count = static_cast<int>(3 * 70000 / (pitch * pitch));
    const Taken taken(spline, Scattered(count, 150, 2));
    for (const double weight : {10.0, 1.0, 0.1}) {
      Knots found = spline.None();
      EXPECT_LE(spline.Improve(taken.sums, {weight * pitch * pitch, 1e-6 * count}, found), 10)
          << pitch << " " << weight;
    }
  }
}

/// The field on a lattice over the wafer.
std::vector<float> Drawn(const std::vector<Sample>& samples, PlacePlan& plan) {
  std::vector<float> x, y, value;
  for (const Sample& sample : samples) {
    x.push_back(static_cast<float>(sample.x));
    y.push_back(static_cast<float>(sample.y));
    value.push_back(static_cast<float>(sample.value));
  }
  const auto field = MakeField({x, y, value}, 150, Interpolation::Smooth, plan);
  const Lattice lattice = {-150, 150, 5, 61, 61};
  std::vector<float> drawn(lattice.Size() + 1);
  field->Evaluate(lattice, 150, std::span(drawn).first(lattice.Size()));
  drawn.back() = static_cast<float>(field->LeaveOneOutError());
  return drawn;
}

TEST(PlacePlan, FieldsAreTheSameWhateverWasMadeBefore) {
  for (const int count : {30, 200, 600, 5000, 9000}) {
    std::vector<std::vector<Sample>> wafers;
    for (unsigned seed = 0; seed < 3; ++seed) {
      std::vector<Sample> samples = Scattered(count, 145, 1);
      std::mt19937 random(seed);
      std::uniform_real_distribution<double> noise(0, seed);  // much, some, or none
      for (Sample& sample : samples) {
        sample.value = std::sin(sample.x / 40) + std::cos(sample.y / 20) + noise(random);
      }
      wafers.push_back(samples);
    }
    wafers.push_back(Scattered(count, 145, 9));
    PlacePlan kept;
    for (const std::size_t i : {0u, 1u, 0u, 3u, 2u, 2u, 1u, 3u, 0u}) {
      PlacePlan fresh;
      EXPECT_EQ(Drawn(wafers[i], kept), Drawn(wafers[i], fresh)) << count << " " << i;
    }
  }
}

TEST(PlacePlan, SitesInOnePlaceAreOneWithTheirMean) {
  const std::vector<float> x = {5, -1, 5, 5};
  const std::vector<float> y = {2, 0, 1, 2};
  const std::vector<float> value = {3, 7, 4, 6};
  PlacePlan plan;
  for (int turn = 0; turn < 2; ++turn) {
    const std::vector<Sample> samples = plan.Distinct({x, y, value});
    ASSERT_EQ(samples.size(), 3u);
    const double wanted[][3] = {{-1, 0, 7}, {5, 1, 4}, {5, 2, 4.5}};
    for (std::size_t i = 0; i < 3; ++i) {
      EXPECT_EQ(samples[i].x, wanted[i][0]);
      EXPECT_EQ(samples[i].y, wanted[i][1]);
      EXPECT_EQ(samples[i].value, wanted[i][2]);
    }
  }
}

}  // namespace
}  // namespace discoplan::figures
