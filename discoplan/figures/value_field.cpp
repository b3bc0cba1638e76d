// SPDX-License-Identifier: MIT
#include "discoplan/figures/value_field.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <numeric>

#include "discoplan/base/numbers.h"
#include "discoplan/core/interpolation/site_interpolator.h"
#include "discoplan/core/wafer.h"
#include "discoplan/core/wafer_data.h"
#include "discoplan/figures/site_grid.h"
#include "discoplan/figures/thin_plate.h"

namespace discoplan::figures {
namespace {

constexpr std::size_t kFewest = 4;
constexpr std::size_t kMostInOne = 160;  // sites that one spline takes
constexpr double kOvershoot = 0.05;
constexpr double kNever = std::numeric_limits<double>::infinity();

class ConstantField final : public ValueField {
 public:
  explicit ConstantField(double value) : value_(static_cast<float>(value)) {}
  void Evaluate(const Lattice&, double, std::span<float> values) const override {
    std::fill(values.begin(), values.end(), value_);
  }
  std::string Method() const override { return "mean of too few sites"; }

 private:
  float value_;
};

/// The classic rule, by the classic look's own kernels.
class Idw4Field final : public ValueField {
 public:
  Idw4Field(const SiteView& sites, double radius) {
    // The sites' cells reach a little beyond the wafer.
    double farthest = radius;
    for (std::size_t i = 0; i < sites.Size(); ++i) {
      farthest = std::max<double>(farthest, std::hypot(sites.x[i], sites.y[i]));
    }
    wafer_.WaferDiameter = static_cast<float>(2 * farthest);
    wafer_.TestDiameter = wafer_.WaferDiameter;
    wafer_.reset();
    wafer_.SetNop(static_cast<float>(sites.Size()));
    for (std::size_t i = 0; i < sites.Size(); ++i) {
      wafer_.SetGridValue(sites.x[i], sites.y[i], sites.value[i]);
    }
    wafer_.MaxMin();
  }

  void Evaluate(const Lattice& lattice, double radius, std::span<float> values) const override {
    const float unasked = std::numeric_limits<float>::quiet_NaN();
    std::vector<Site> points(values.size());
    std::size_t at = 0;
    for (int row = 0; row < lattice.rows; ++row) {
      const double y = lattice.Y(row);
      const double reach = radius * radius - y * y;
      for (int column = 0; column < lattice.columns; ++column) {
        const double x = lattice.X(column);
        points[at].x = x * x <= reach ? static_cast<float>(x) : unasked;
        points[at++].y = static_cast<float>(y);
      }
    }
    SiteInterpolator(wafer_.Data()).Evaluate(points, static_cast<std::size_t>(lattice.columns));
    for (std::size_t i = 0; i < points.size(); ++i) values[i] = points[i].z;
  }
  std::string Method() const override { return "mean of the four nearest sites (idw4)"; }

  void MeasureError(const std::vector<Sample>& samples) {
    const SiteGrid grid(samples);
    double sum = 0;
    for (std::size_t i = 0; i < samples.size(); ++i) {
      double weights = 0;
      double values = 0;
      for (const std::size_t near : grid.Nearest(samples[i].x, samples[i].y, 5)) {
        if (near == i) continue;
        const double dx = samples[near].x - samples[i].x;
        const double dy = samples[near].y - samples[i].y;
        const double weight = 1 / std::max(dx * dx + dy * dy, 1e-12);
        weights += weight;
        values += weight * samples[near].value;
      }
      const double error = values / weights - samples[i].value;
      sum += error * error;
    }
    error_ = std::sqrt(sum / static_cast<double>(samples.size()));
  }

 private:
  wafer wafer_;
};

/// Falls from 1 to 0 as `part` goes from 0 to 1, without a kink at either end; with its mirror
/// image it adds up to 1.
double Fade(double part) { return 1 - part * part * (3 - 2 * part); }

/// One spline, or one for each node of a square lattice of which the four around a point are
/// blended.
class SmoothField final : public ValueField {
 public:
  SmoothField(std::vector<Sample> samples, double radius) : samples_(std::move(samples)) {
    const auto [low, high] =
        std::minmax_element(samples_.begin(), samples_.end(),
                            [](const Sample& a, const Sample& b) { return a.value < b.value; });
    const double margin = kOvershoot * (high->value - low->value);
    low_ = static_cast<float>(low->value - margin);
    high_ = static_cast<float>(high->value + margin);
    const double count = static_cast<double>(samples_.size());
    spacing_ = radius * std::sqrt(3.14159 / count);
    if (samples_.size() <= kMostInOne) {
      ChooseSmoothing({samples_}, {{Point{}}}, radius);
      splines_.emplace_back(samples_, Point{}, radius, smoothing_);
      return;
    }
    Divide(radius);
  }

  void Evaluate(const Lattice& lattice, double radius, std::span<float> values) const override {
    // A spline of smooth data needn't be asked at every pixel.
    const double pitch = std::max(lattice.step, spacing_ / kNodesBetweenSites);
    if (pitch <= 1.3 * lattice.step) return EvaluateAll(lattice, radius, values);
    const Lattice coarse = Around(lattice, pitch);
    std::vector<float> nodes(coarse.Size());
    EvaluateAll(coarse, radius + 4 * pitch, nodes);
    Refine(coarse, nodes, lattice, values);
    for (float& value : values) value = std::clamp(value, low_, high_);
  }

  std::string Method() const override {
    return std::string(splines_.size() > 1 ? "blended thin-plate splines" : "thin-plate spline") +
           (smoothing_ > 0 ? " with smoothing" : "");
  }

 private:
  static constexpr double kNodesBetweenSites = 5;

  static Lattice Around(const Lattice& fine, double pitch) {
    const auto across = [&](int count) {
      return static_cast<int>(std::ceil((count - 1) * fine.step / pitch)) + 5;
    };
    return {fine.x0 - 2 * pitch, fine.y0 + 2 * pitch, pitch, across(fine.columns),
            across(fine.rows)};
  }

  /// Nodes so far apart that each has its share of sites.
  void Divide(double radius) {
    const bool many = samples_.size() > 4000;
    const std::size_t share = many ? 16 : 36;
    pitch_ = spacing_ * (many ? 2.2 : 2.6);
    side_ = static_cast<int>(std::ceil(2 * radius / pitch_)) + 1;
    corner_ = -pitch_ * (side_ - 1) / 2;
    const SiteGrid grid(samples_);
    std::vector<Point> centres;
    std::vector<std::vector<Sample>> shares;
    std::vector<std::size_t> numbers;
    number_of_.assign(static_cast<std::size_t>(side_) * static_cast<std::size_t>(side_), -1);
    for (int row = 0; row < side_; ++row) {
      for (int column = 0; column < side_; ++column) {
        const Point centre{corner_ + column * pitch_, corner_ + row * pitch_};
        if (std::hypot(centre.x, centre.y) > radius + 1.5 * pitch_) continue;
        number_of_[Number(column, row)] = static_cast<int>(centres.size());
        centres.push_back(centre);
        std::vector<Sample> nearest;
        for (const std::size_t i : grid.Nearest(centre.x, centre.y, share)) {
          nearest.push_back(samples_[i]);
        }
        shares.push_back(std::move(nearest));
      }
    }
    // A few of them tell how much smoothing is due.
    std::vector<std::vector<Sample>> some;
    std::vector<Point> their_centres;
    const std::size_t stride = std::max<std::size_t>(1, shares.size() / 12);
    for (std::size_t i = stride / 2; i < shares.size(); i += stride) {
      some.push_back(shares[i]);
      their_centres.push_back(centres[i]);
    }
    const double scale = 2 * pitch_;
    ChooseSmoothing(some, their_centres, scale);
    for (std::size_t i = 0; i < centres.size(); ++i) {
      splines_.emplace_back(shares[i], centres[i], scale, smoothing_);
    }
  }

  void ChooseSmoothing(const std::vector<std::vector<Sample>>& groups,
                       const std::vector<Point>& centres, double scale) {
    static constexpr std::array kSmoothings = {0.0, 0.003, 0.03, 0.3, 3.0};
    std::array<double, kSmoothings.size()> sums = {};
    double count = 0;
    for (std::size_t i = 0; i < groups.size(); ++i) {
      const auto errors = ThinPlate::SquaredErrors(groups[i], centres[i], scale, kSmoothings);
      for (std::size_t k = 0; k < sums.size(); ++k) sums[k] += errors[k];
      count += static_cast<double>(groups[i].size());
    }
    const auto best = std::min_element(sums.begin(), sums.end());
    error_ = *best < kNever ? std::sqrt(*best / count) : 0;
    smoothing_ = kSmoothings[static_cast<std::size_t>(best - sums.begin())];
  }

  std::size_t Number(int column, int row) const {
    return static_cast<std::size_t>(row) * static_cast<std::size_t>(side_) +
           static_cast<std::size_t>(column);
  }

  void EvaluateAll(const Lattice& lattice, double radius, std::span<float> values) const {
    std::fill(values.begin(), values.end(), 0.0F);
    std::vector<float> x(static_cast<std::size_t>(lattice.columns));
    for (int i = 0; i < lattice.columns; ++i) {
      x[static_cast<std::size_t>(i)] = static_cast<float>(lattice.X(i));
    }
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
      const auto start = static_cast<std::ptrdiff_t>(static_cast<std::size_t>(row) *
                                                     static_cast<std::size_t>(lattice.columns));
      const std::span<float> sums =
          values.subspan(static_cast<std::size_t>(start) + first, end - first);
      EvaluateRow(std::span(x).subspan(first, end - first), y, sums);
      for (float& value : sums) value = std::clamp(value, low_, high_);
    }
  }

  void EvaluateRow(std::span<const float> x, double y, std::span<float> sums) const {
    if (splines_.size() == 1) {
      const std::vector<float> ones(x.size(), 1.0F);
      return splines_.front().Add(x, static_cast<float>(y), ones, sums);
    }
    const double down = std::clamp((y - corner_) / pitch_, 0.0, side_ - 1.001);
    const int row = static_cast<int>(down);
    std::vector<float> weights;
    for (std::size_t start = 0; start < x.size();) {
      const auto along = [&](std::size_t i) {
        return std::clamp((static_cast<double>(x[i]) - corner_) / pitch_, 0.0, side_ - 1.001);
      };
      const int column = static_cast<int>(along(start));
      std::size_t end = start;
      while (end < x.size() && static_cast<int>(along(end)) == column) ++end;
      for (const int right : {0, 1}) {
        for (const int below : {0, 1}) {
          const double across = std::abs(down - row - below);
          weights.clear();
          for (std::size_t i = start; i < end; ++i) {
            weights.push_back(
                static_cast<float>(Fade(across) * Fade(std::abs(along(i) - column - right))));
          }
          const int number = number_of_[Number(column + right, row + below)];
          if (number < 0) continue;
          splines_[static_cast<std::size_t>(number)].Add(x.subspan(start, end - start),
                                                         static_cast<float>(y), weights,
                                                         sums.subspan(start, end - start));
        }
      }
      start = end;
    }
  }

  std::vector<Sample> samples_;
  std::vector<ThinPlate> splines_;
  std::vector<int> number_of_;  // of the spline at a node, -1 off the wafer
  double spacing_ = 1;
  double smoothing_ = 0;
  double pitch_ = 1;
  double corner_ = 0;
  int side_ = 1;
  float low_ = 0;
  float high_ = 0;
};

/// Sites in one place become one.
std::vector<Sample> Distinct(const SiteView& sites) {
  std::vector<Sample> samples;
  for (std::size_t i = 0; i < sites.Size(); ++i) {
    samples.push_back({sites.x[i], sites.y[i], sites.value[i]});
  }
  std::sort(samples.begin(), samples.end(),
            [](const Sample& a, const Sample& b) { return a.x != b.x ? a.x < b.x : a.y < b.y; });
  std::size_t kept = 0;
  for (std::size_t i = 0; i < samples.size();) {
    Sample sample = samples[i];
    std::size_t end = i + 1;
    for (; end < samples.size() && samples[end].x == sample.x && samples[end].y == sample.y; ++end)
      sample.value += samples[end].value;
    sample.value /= static_cast<double>(end - i);
    samples[kept++] = sample;
    i = end;
  }
  samples.resize(kept);
  return samples;
}

/// Weights of four neighbours by cubic convolution (R. G. Keys, 1981).
std::array<float, 4> CubicWeights(double t) {
  const double u = t * t;
  const double v = u * t;
  return {static_cast<float>((-v + 2 * u - t) / 2), static_cast<float>((3 * v - 5 * u + 2) / 2),
          static_cast<float>((-3 * v + 4 * u + t) / 2), static_cast<float>((v - u) / 2)};
}

struct Tap {
  int first;
  std::array<float, 4> weights;
};

Tap TapAt(double place, int count) {
  const int cell = std::clamp(static_cast<int>(std::floor(place)), 1, count - 3);
  return {cell - 1, CubicWeights(place - cell)};
}

}  // namespace

void Refine(const Lattice& coarse, std::span<const float> values, const Lattice& fine,
            std::span<float> refined) {
  const auto width = static_cast<std::size_t>(fine.columns);
  std::vector<Tap> taps;
  for (int i = 0; i < fine.columns; ++i) {
    taps.push_back(TapAt((fine.X(i) - coarse.x0) / coarse.step, coarse.columns));
  }
  // Rows of the coarse lattice, refined along X, four of them at a time.
  std::array<std::vector<float>, 4> rows;
  std::array<int, 4> held = {-1, -1, -1, -1};
  for (std::vector<float>& row : rows) row.resize(width);
  for (int j = 0; j < fine.rows; ++j) {
    const Tap down = TapAt((coarse.y0 - fine.Y(j)) / coarse.step, coarse.rows);
    std::array<const float*, 4> used;
    for (int k = 0; k < 4; ++k) {
      const int number = down.first + k;
      const auto slot = static_cast<std::size_t>(number % 4);
      used[static_cast<std::size_t>(k)] = rows[slot].data();
      if (held[slot] == number) continue;
      held[slot] = number;
      const float* from = values.data() + static_cast<std::size_t>(number) *
                                              static_cast<std::size_t>(coarse.columns);
      for (std::size_t i = 0; i < width; ++i) {
        const float* four = from + taps[i].first;
        const auto& w = taps[i].weights;
        rows[slot][i] = four[0] * w[0] + four[1] * w[1] + four[2] * w[2] + four[3] * w[3];
      }
    }
    float* to = refined.data() + static_cast<std::size_t>(j) * width;
    const auto& w = down.weights;
    for (std::size_t i = 0; i < width; ++i) {
      to[i] = used[0][i] * w[0] + used[1][i] * w[1] + used[2][i] * w[2] + used[3][i] * w[3];
    }
  }
}

std::shared_ptr<const ValueField> MakeField(const SiteView& sites, double radius,
                                            Interpolation interpolation) {
  std::vector<Sample> samples = Distinct(sites);
  if (samples.size() < kFewest) {
    double sum = 0;
    for (const Sample& sample : samples) sum += sample.value;
    return std::make_shared<ConstantField>(
        samples.empty() ? 0 : sum / static_cast<double>(samples.size()));
  }
  if (interpolation == Interpolation::Smooth) {
    return std::make_shared<SmoothField>(std::move(samples), radius);
  }
  auto field = std::make_shared<Idw4Field>(sites, radius);
  field->MeasureError(samples);
  return field;
}

}  // namespace discoplan::figures
