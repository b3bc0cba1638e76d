// SPDX-License-Identifier: MIT
#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "discoplan/base/wide_loops.h"
#include "discoplan/figures/field_kinds.h"
#include "discoplan/figures/place_plan.h"
#include "discoplan/figures/refine.h"

namespace discoplan::figures {
namespace {

constexpr double kOvershoot = 0.05;
constexpr double kNever = std::numeric_limits<double>::infinity();

DISCOPLAN_WIDE_LOOPS void Bound(std::span<float> values, float low, float high) {
  for (float& value : values) value = std::min(std::max(value, low), high);
}

DISCOPLAN_WIDE_LOOPS void AddSlope(float start, std::span<const float> across, float* values) {
  for (std::size_t i = 0; i < across.size(); ++i) values[i] += start + across[i];
}

/// What no value leaves.
struct Bounds {
  float low;
  float high;

  explicit Bounds(const std::vector<Sample>& samples) {
    const auto [least, most] =
        std::minmax_element(samples.begin(), samples.end(),
                            [](const Sample& a, const Sample& b) { return a.value < b.value; });
    const double margin = kOvershoot * (most->value - least->value);
    low = static_cast<float>(least->value - margin);
    high = static_cast<float>(most->value + margin);
  }
  void Keep(std::span<float> values) const { Bound(values, low, high); }
};

class PlateField final : public ValueField {
 public:
  PlateField(const std::vector<Sample>& samples, double radius, PlacePlan& plan)
      : bounds_(samples),
        pitch_(SpacingOf(samples.size(), radius) / kNodesBetweenSites),
        smoothing_(ChosenFor(samples, radius, plan)),
        spline_(samples, plan.Plate(samples, radius, smoothing_)),
        nodes_(NodesOver(radius)),
        values_(nodes_.Size()) {
    EvaluateAll(nodes_, kEverywhere, values_, plan.PlateKernels());
  }

  void Evaluate(const Lattice& lattice, double radius, std::span<float> values) const override {
    // A spline of smooth data needn't be asked at every pixel.
    if (pitch_ <= 1.3 * lattice.step) {
      EvaluateAll(lattice, radius, values, nullptr);
    } else {
      Refine(nodes_, values_, lattice, values);
    }
    bounds_.Keep(values);
  }

  std::string Method() const override {
    return smoothing_ > 0 ? "thin-plate spline with smoothing" : "thin-plate spline";
  }

 private:
  static constexpr double kNodesBetweenSites = 5;
  static constexpr double kEverywhere = 1e9;

  /// The smoothing by which sites are foretold best.
  double ChosenFor(const std::vector<Sample>& samples, double radius, PlacePlan& plan) {
    static constexpr std::array kSmoothings = {0.0, 0.003, 0.03, 0.3, 3.0};
    double least = kNever;
    double chosen = 0;
    for (const double smoothing : kSmoothings) {
      const double sum = plan.Plate(samples, radius, smoothing).SquaredErrors(samples);
      // More smoothing than the values bear only gets worse.
      if (sum >= least && least < kNever) break;
      if (sum < least) chosen = smoothing;
      least = std::min(least, sum);
    }
    error_ = least < kNever ? std::sqrt(least / static_cast<double>(samples.size())) : 0;
    return chosen;
  }

  /// As far as maps look, and a little farther for what is in between.
  Lattice NodesOver(double radius) const {
    const int side = static_cast<int>(std::ceil(1.1 * radius / pitch_)) + 2;
    return {-side * pitch_, side * pitch_, pitch_, 2 * side + 1, 2 * side + 1};
  }

  /// At points so near the centre; with kernels that are kept from spline to spline, if at all.
  void EvaluateAll(const Lattice& lattice, double radius, std::span<float> values,
                   std::vector<float>* kept) const {
    std::fill(values.begin(), values.end(), 0.0F);
    const auto columns = static_cast<std::size_t>(lattice.columns);
    std::vector<float> x(columns);
    for (std::size_t i = 0; i < columns; ++i) {
      x[i] = static_cast<float>(lattice.X(static_cast<int>(i)));
    }
    const bool is_first = kept != nullptr && kept->empty();
    std::size_t used = 0;
    for (int row = 0; row < lattice.rows; ++row) {
      const double y = lattice.Y(row);
      const double half = radius * radius - y * y;
      if (half < 0) continue;
      const double reach = std::sqrt(half);
      const auto column_at = [&](double place) {
        return std::clamp((place - lattice.x0) / lattice.step, -1.0, lattice.columns + 1.0);
      };
      const auto first = static_cast<std::size_t>(std::max(0.0, std::ceil(column_at(-reach))));
      const auto end = static_cast<std::size_t>(
          std::clamp(std::floor(column_at(reach)) + 1, 0.0, double(lattice.columns)));
      if (first >= end) continue;
      const auto here = std::span<const float>(x).subspan(first, end - first);
      const auto down = static_cast<float>(y);
      std::span<const float> kernels;
      if (kept != nullptr) {
        const std::size_t count = here.size() * spline_.Sites();
        if (is_first) {
          kept->resize(used + count);
          spline_.Kernels(here, down, std::span(*kept).subspan(used));
        }
        kernels = std::span(*kept).subspan(used, count);
        used += count;
      }
      const auto start = static_cast<std::size_t>(row) * columns + first;
      spline_.Evaluate(here, down, values.subspan(start, here.size()), kernels);
    }
  }

  Bounds bounds_;
  double pitch_;
  double smoothing_;
  ThinPlate spline_;
  Lattice nodes_;
  std::vector<float> values_;  // at the nodes
};

/// The one of least squares; level where the sites don't tell.
struct Plane {
  double level = 0;
  double across = 0;
  double up = 0;

  explicit Plane(const std::vector<Sample>& samples) {
    const auto count = static_cast<double>(samples.size());
    double x = 0, y = 0, value = 0;
    for (const Sample& s : samples) x += s.x / count, y += s.y / count, value += s.value / count;
    double xx = 0, xy = 0, yy = 0, xv = 0, yv = 0;
    for (const Sample& s : samples) {
      xx += (s.x - x) * (s.x - x);
      xy += (s.x - x) * (s.y - y);
      yy += (s.y - y) * (s.y - y);
      xv += (s.x - x) * (s.value - value);
      yv += (s.y - y) * (s.value - value);
    }
    const double square = xx * yy - xy * xy;
    if (square > 1e-9 * xx * yy) {
      across = (xv * yy - yv * xy) / square;
      up = (yv * xx - xv * xy) / square;
    }
    level = value - across * x - up * y;
  }
  double At(double x, double y) const { return level + across * x + up * y; }
};

class LatticeField final : public ValueField {
 public:
  LatticeField(std::vector<Sample> samples, double radius, PlacePlan& plan)
      : bounds_(samples), plane_(samples) {
    std::vector<float> values;
    values.reserve(samples.size());
    const double range = std::max(static_cast<double>(bounds_.high) - bounds_.low, kLeastRange);
    for (const Sample& sample : samples) {
      values.push_back(static_cast<float>((sample.value - plane_.At(sample.x, sample.y)) / range));
    }
    LatticeFit& fit = plan.LatticeOf(samples, radius);
    std::vector<Sample>().swap(samples);  // which is much, of many sites
    LatticeFit::Result found = fit.Of(values);
    knots_ = found.knots;
    coefficients_ = std::move(found.coefficients);
    for (float& each : coefficients_) each *= static_cast<float>(range);
    error_ = found.error * range;
  }

  void Evaluate(const Lattice& lattice, double, std::span<float> values) const override {
    Refine(knots_, coefficients_, lattice, values, Points::Coefficients);
    std::vector<float> across;
    const auto step = static_cast<float>(plane_.across * lattice.step);
    for (int i = 0; i < lattice.columns; ++i) across.push_back(step * static_cast<float>(i));
    for (int row = 0; row < lattice.rows; ++row, values = values.subspan(across.size())) {
      const auto start = static_cast<float>(plane_.At(lattice.x0, lattice.Y(row)));
      AddSlope(start, across, values.data());
      bounds_.Keep(values.first(across.size()));
    }
  }

  std::string Method() const override { return "smoothing spline"; }

 private:
  static constexpr double kLeastRange = 1e-30;

  Bounds bounds_;
  Plane plane_;
  Lattice knots_;
  std::vector<float> coefficients_;
};

}  // namespace

std::shared_ptr<const ValueField> MakePlateField(const std::vector<Sample>& samples, double radius,
                                                 PlacePlan& plan) {
  return std::make_shared<PlateField>(samples, radius, plan);
}

std::shared_ptr<const ValueField> MakeLatticeField(std::vector<Sample> samples, double radius,
                                                   PlacePlan& plan) {
  return std::make_shared<LatticeField>(std::move(samples), radius, plan);
}

}  // namespace discoplan::figures
