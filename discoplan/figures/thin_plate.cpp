// SPDX-License-Identifier: MIT
#include "discoplan/figures/thin_plate.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>

namespace discoplan::figures {
namespace {

constexpr std::size_t kPlane = 3;  // 1, x and y

/// r^2 log r^2 of a squared distance.
double Kernel(double squared) { return squared > 0 ? squared * std::log(squared) : 0; }

/// The logarithm to some 1e-5, in steps that the compiler takes for several values at once: the
/// argument is m * 2^e with m near 1, and 2 artanh((m - 1) / (m + 1)) is a short series.
inline float QuickLog(float value) {
  std::uint32_t bits;
  std::memcpy(&bits, &value, sizeof bits);
  const std::uint32_t shifted = bits - 0x3F3504F3u;  // of the square root of a half
  const auto exponent = static_cast<float>(static_cast<std::int32_t>(shifted) >> 23);
  bits = (shifted & 0x007FFFFFu) + 0x3F3504F3u;
  float mantissa;
  std::memcpy(&mantissa, &bits, sizeof mantissa);
  const float t = (mantissa - 1) / (mantissa + 1);
  const float u = t * t;
  return exponent * 0.693147181F + t * (2.0F + u * (0.666666667F + u * (0.4F + u * 0.285714286F)));
}

inline float KernelAt(float across, float squared_down) {
  const float squared = across * across + squared_down;
  return squared * QuickLog(squared + 1e-30F);
}

/// Decomposes rows in place with exchanges; false if they have no inverse.
bool Decompose(std::vector<double>& cells, std::vector<std::size_t>& order) {
  const std::size_t side = order.size();
  const auto row = [&](std::size_t i) { return cells.data() + i * side; };
  for (std::size_t i = 0; i < side; ++i) order[i] = i;
  for (std::size_t k = 0; k < side; ++k) {
    std::size_t pivot = k;
    for (std::size_t i = k + 1; i < side; ++i) {
      if (std::abs(row(i)[k]) > std::abs(row(pivot)[k])) pivot = i;
    }
    if (std::abs(row(pivot)[k]) < 1e-12) return false;
    if (pivot != k) {
      std::swap(order[k], order[pivot]);
      std::swap_ranges(row(k), row(k) + side, row(pivot));
    }
    const double* top = row(k);
    for (std::size_t i = k + 1; i < side; ++i) {
      double* own = row(i);
      const double factor = own[k] /= top[k];
      for (std::size_t j = k + 1; j < side; ++j) own[j] -= factor * top[j];
    }
  }
  return true;
}

/// Solves decomposed rows for `right`, which is 0 before its place `first`.
void Solve(const std::vector<double>& cells, const std::vector<double>& right, std::size_t first,
           std::vector<double>& solution) {
  const std::size_t side = right.size();
  solution.assign(side, 0);
  for (std::size_t i = first; i < side; ++i) {
    const double* row = &cells[i * side];
    double sum = right[i];
    for (std::size_t j = first; j < i; ++j) sum -= row[j] * solution[j];
    solution[i] = sum;
  }
  for (std::size_t i = side; i-- > 0;) {
    const double* row = &cells[i * side];
    double sum = solution[i];
    for (std::size_t j = i + 1; j < side; ++j) sum -= row[j] * solution[j];
    solution[i] = sum / row[i];
  }
}

double Mean(std::span<const Sample> samples) {
  double sum = 0;
  for (const Sample& sample : samples) sum += sample.value;
  return sum / static_cast<double>(samples.size());
}

}  // namespace

/// Kernels of all pairs, and the plane beside and below them.
PlateEquations::PlateEquations(std::span<const Sample> places, double scale, double smoothing)
    : scale_(scale) {
  const std::size_t count = places.size();
  if (count < kPlane + 1) return;
  side_ = count + kPlane;
  cells_.resize(side_ * side_);
  order_.resize(side_);
  const auto at = [this](std::size_t row, std::size_t column) -> double& {
    return cells_[row * side_ + column];
  };
  for (std::size_t i = 0; i < count; ++i) {
    const double x = places[i].x / scale;
    const double y = places[i].y / scale;
    for (std::size_t j = 0; j < i; ++j) {
      const double dx = x - places[j].x / scale;
      const double dy = y - places[j].y / scale;
      at(i, j) = at(j, i) = Kernel(dx * dx + dy * dy);
    }
    at(i, i) = smoothing;
    at(i, count) = at(count, i) = 1;
    at(i, count + 1) = at(count + 1, i) = x;
    at(i, count + 2) = at(count + 2, i) = y;
  }
  if (!Decompose(cells_, order_)) {
    side_ = 0;
    return;
  }
  std::vector<double> solution;
  own_weights_.resize(count);
  for (std::size_t row = 0; row < side_; ++row) {
    if (order_[row] >= count) continue;
    std::vector<double> unit(side_);
    unit[row] = 1;
    figures::Solve(cells_, unit, row, solution);
    own_weights_[order_[row]] = solution[order_[row]];
  }
}

std::vector<double> PlateEquations::Solve(std::span<const Sample> samples, double mean) const {
  std::vector<double> right(side_);
  std::vector<double> solution;
  if (side_ == 0) return solution;
  for (std::size_t row = 0; row < side_; ++row) {
    if (order_[row] < samples.size()) right[row] = samples[order_[row]].value - mean;
  }
  figures::Solve(cells_, right, 0, solution);
  return solution;
}

double PlateEquations::SquaredErrors(std::span<const Sample> samples) const {
  // A spline through so few others isn't determined.
  if (side_ == 0 || samples.size() <= kPlane + 1) return INFINITY;
  const std::vector<double> weights = Solve(samples, Mean(samples));
  double sum = 0;
  for (std::size_t i = 0; i < samples.size(); ++i) {
    const double error = weights[i] / own_weights_[i];
    sum += error * error;
  }
  return sum;
}

ThinPlate::ThinPlate(std::span<const Sample> samples, const PlateEquations& equations)
    : scale_(equations.Scale()), mean_(Mean(samples)) {
  const std::vector<double> solution = equations.Solve(samples, mean_);
  // Sites on one line leave the plane open: then the mean must do.
  if (solution.empty()) return;
  for (std::size_t i = 0; i < samples.size(); ++i) {
    x_.push_back(static_cast<float>(samples[i].x / scale_));
    y_.push_back(static_cast<float>(samples[i].y / scale_));
    weights_.push_back(static_cast<float>(solution[i]));
  }
  for (std::size_t k = 0; k < kPlane; ++k) {
    plane_[k] = static_cast<float>(solution[samples.size() + k]);
  }
}

void ThinPlate::Kernels(std::span<const float> x, float y, std::span<float> kernels) const {
  const auto down = static_cast<float>(y / scale_);
  std::vector<float> places;
  for (const float place : x) places.push_back(static_cast<float>(place / scale_));
  float* kernel = kernels.data();
  for (std::size_t j = 0; j < x_.size(); ++j, kernel += x.size()) {
    const float dy = down - y_[j];
    const float across = dy * dy;
    for (std::size_t i = 0; i < x.size(); ++i) kernel[i] = KernelAt(places[i] - x_[j], across);
  }
}

void ThinPlate::Evaluate(std::span<const float> x, float y, std::span<float> values,
                         std::span<const float> kernels) const {
  constexpr std::size_t kBlock = 64;
  float place[kBlock];
  float value[kBlock];
  const auto down = static_cast<float>(y / scale_);
  for (std::size_t start = 0; start < x.size(); start += kBlock) {
    const std::size_t count = std::min(kBlock, x.size() - start);
    for (std::size_t i = 0; i < count; ++i) {
      place[i] = static_cast<float>(x[start + i] / scale_);
      value[i] = static_cast<float>(mean_) + plane_[0] + plane_[1] * place[i] + plane_[2] * down;
    }
    for (std::size_t j = 0; j < x_.size(); ++j) {
      const float dy = down - y_[j];
      const float across = dy * dy;
      const float site = x_[j];
      const float weight = weights_[j];
      if (kernels.empty()) {
        for (std::size_t i = 0; i < count; ++i) {
          value[i] += weight * KernelAt(place[i] - site, across);
        }
      } else {
        const float* kernel = &kernels[j * x.size() + start];
        for (std::size_t i = 0; i < count; ++i) value[i] += weight * kernel[i];
      }
    }
    std::copy_n(value, count, &values[start]);
  }
}

}  // namespace discoplan::figures
