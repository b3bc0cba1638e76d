// SPDX-License-Identifier: MIT
#include "discoplan/figures/thin_plate.h"

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

inline float QuickKernel(float squared) { return squared * QuickLog(squared + 1e-30F); }

/// Square, by rows.
class Matrix {
 public:
  explicit Matrix(std::size_t side) : side_(side), cells_(side * side) {}
  double& At(std::size_t row, std::size_t column) { return cells_[row * side_ + column]; }
  double* Row(std::size_t row) { return cells_.data() + row * side_; }
  std::size_t Side() const { return side_; }

 private:
  std::size_t side_;
  std::vector<double> cells_;
};

/// Decomposes in place with row exchanges; false if it has no inverse.
bool Decompose(Matrix& matrix, std::vector<std::size_t>& order) {
  const std::size_t side = matrix.Side();
  order.resize(side);
  for (std::size_t i = 0; i < side; ++i) order[i] = i;
  for (std::size_t k = 0; k < side; ++k) {
    std::size_t pivot = k;
    for (std::size_t i = k + 1; i < side; ++i) {
      if (std::abs(matrix.At(i, k)) > std::abs(matrix.At(pivot, k))) pivot = i;
    }
    if (std::abs(matrix.At(pivot, k)) < 1e-12) return false;
    if (pivot != k) {
      std::swap(order[k], order[pivot]);
      std::swap_ranges(matrix.Row(k), matrix.Row(k) + side, matrix.Row(pivot));
    }
    const double* top = matrix.Row(k);
    for (std::size_t i = k + 1; i < side; ++i) {
      double* row = matrix.Row(i);
      const double factor = row[k] /= top[k];
      for (std::size_t j = k + 1; j < side; ++j) row[j] -= factor * top[j];
    }
  }
  return true;
}

void Solve(Matrix& matrix, const std::vector<std::size_t>& order, const std::vector<double>& right,
           std::vector<double>& solution) {
  const std::size_t side = matrix.Side();
  solution.resize(side);
  for (std::size_t i = 0; i < side; ++i) {
    const double* row = matrix.Row(i);
    double sum = right[order[i]];
    for (std::size_t j = 0; j < i; ++j) sum -= row[j] * solution[j];
    solution[i] = sum;
  }
  for (std::size_t i = side; i-- > 0;) {
    const double* row = matrix.Row(i);
    double sum = solution[i];
    for (std::size_t j = i + 1; j < side; ++j) sum -= row[j] * solution[j];
    solution[i] = sum / row[i];
  }
}

/// Kernels of all pairs, and the plane beside and below them.
Matrix System(std::span<const Sample> samples, Point centre, double scale, double smoothing) {
  const std::size_t count = samples.size();
  Matrix matrix(count + kPlane);
  for (std::size_t i = 0; i < count; ++i) {
    const double x = (samples[i].x - centre.x) / scale;
    const double y = (samples[i].y - centre.y) / scale;
    for (std::size_t j = 0; j < i; ++j) {
      const double dx = x - (samples[j].x - centre.x) / scale;
      const double dy = y - (samples[j].y - centre.y) / scale;
      matrix.At(i, j) = matrix.At(j, i) = Kernel(dx * dx + dy * dy);
    }
    matrix.At(i, i) = smoothing;
    matrix.At(i, count) = matrix.At(count, i) = 1;
    matrix.At(i, count + 1) = matrix.At(count + 1, i) = x;
    matrix.At(i, count + 2) = matrix.At(count + 2, i) = y;
  }
  return matrix;
}

double Mean(std::span<const Sample> samples) {
  double sum = 0;
  for (const Sample& sample : samples) sum += sample.value;
  return sum / static_cast<double>(samples.size());
}

std::vector<double> RightSide(std::span<const Sample> samples, double mean) {
  std::vector<double> right(samples.size() + kPlane);
  for (std::size_t i = 0; i < samples.size(); ++i) right[i] = samples[i].value - mean;
  return right;
}

}  // namespace

ThinPlate::ThinPlate(std::span<const Sample> samples, Point centre, double scale, double smoothing)
    : centre_(centre), scale_(scale), mean_(Mean(samples)) {
  Matrix matrix = System(samples, centre, scale, smoothing);
  std::vector<std::size_t> order;
  // Sites on one line leave the plane open: then the mean must do.
  if (samples.size() < kPlane + 1 || !Decompose(matrix, order)) return;
  std::vector<double> solution;
  Solve(matrix, order, RightSide(samples, mean_), solution);
  for (std::size_t i = 0; i < samples.size(); ++i) {
    x_.push_back(static_cast<float>((samples[i].x - centre.x) / scale));
    y_.push_back(static_cast<float>((samples[i].y - centre.y) / scale));
    weights_.push_back(static_cast<float>(solution[i]));
  }
  for (std::size_t k = 0; k < kPlane; ++k) {
    plane_[k] = static_cast<float>(solution[samples.size() + k]);
  }
}

void ThinPlate::Add(std::span<const float> x, float y, std::span<const float> weights,
                    std::span<float> sums) const {
  constexpr std::size_t kBlock = 64;
  float place[kBlock];
  float value[kBlock];
  const auto down = static_cast<float>((y - centre_.y) / scale_);
  for (std::size_t start = 0; start < x.size(); start += kBlock) {
    const std::size_t count = std::min(kBlock, x.size() - start);
    for (std::size_t i = 0; i < count; ++i) {
      place[i] = static_cast<float>((x[start + i] - centre_.x) / scale_);
      value[i] = static_cast<float>(mean_) + plane_[0] + plane_[1] * place[i] + plane_[2] * down;
    }
    for (std::size_t j = 0; j < x_.size(); ++j) {
      const float dy = down - y_[j];
      const float across = dy * dy;
      const float site = x_[j];
      const float weight = weights_[j];
      for (std::size_t i = 0; i < count; ++i) {
        const float dx = place[i] - site;
        value[i] += weight * QuickKernel(dx * dx + across);
      }
    }
    for (std::size_t i = 0; i < count; ++i) sums[start + i] += weights[start + i] * value[i];
  }
}

std::vector<double> ThinPlate::SquaredErrors(std::span<const Sample> samples, Point centre,
                                             double scale, std::span<const double> smoothings) {
  const std::vector<double> right = RightSide(samples, Mean(samples));
  std::vector<double> errors;
  for (const double smoothing : smoothings) {
    Matrix matrix = System(samples, centre, scale, smoothing);
    std::vector<std::size_t> order;
    double sum = INFINITY;
    if (samples.size() > kPlane + 1 && Decompose(matrix, order)) {
      std::vector<double> weights;
      std::vector<double> column;
      Solve(matrix, order, right, weights);
      sum = 0;
      for (std::size_t i = 0; i < samples.size(); ++i) {
        std::vector<double> unit(right.size());
        unit[i] = 1;
        Solve(matrix, order, unit, column);
        const double error = weights[i] / column[i];
        sum += error * error;
      }
    }
    errors.push_back(sum);
  }
  return errors;
}

}  // namespace discoplan::figures
