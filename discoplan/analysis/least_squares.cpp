// SPDX-License-Identifier: MIT
#include "discoplan/analysis/least_squares.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <numeric>

#include "discoplan/analysis/compensated_sum.h"

namespace discoplan::analysis {
namespace {

double Dot(std::span<const double> a, std::span<const double> b) {
  return SumOfTerms(a.size(), [&](std::size_t i) { return a[i] * b[i]; });
}

double Norm(std::span<const double> a) { return std::sqrt(Dot(a, a)); }

/// Takes the mirror image of `target` at the plane that is orthogonal to `normal`.
void Reflect(std::span<const double> normal, double half_square, std::span<double> target) {
  const double along = Dot(normal, target) / half_square;
  for (std::size_t i = 0; i < normal.size(); ++i) target[i] -= along * normal[i];
}

/// What tells no terms apart, for each step of their order. Files give positions to a micrometre,
/// 2e-5 of the smallest wafer's radius, and a term rises by up to twice its order and size over a
/// radius: rounding alone leaves up to a third of this, while patterns of sites that do tell the
/// terms of order 10 apart leave a hundredth of them.
constexpr double kNegligible = 1e-4;

}  // namespace

FactoredDesign::FactoredDesign(DesignMatrix design)
    : matrix_(std::move(design)),
      order_(matrix_.Columns()),
      scales_(matrix_.Columns()),
      lengths_(matrix_.Columns()),
      diagonal_(matrix_.Columns()) {
  std::iota(order_.begin(), order_.end(), std::size_t{0});
  ScaleColumns();
  const std::size_t steps = std::min(matrix_.Rows(), matrix_.Columns());
  half_squares_.reserve(steps);
  const double negligible = kNegligible * std::max(matrix_.Terms().order, 1);
  for (std::size_t step = 0; step < steps; ++step) {
    const double length = TakeLargest(step);
    if (!(length > negligible)) break;
    Eliminate(step, length);
  }
}

// To the length 1 at most, so that the rank doesn't depend on the units of the columns.
void FactoredDesign::ScaleColumns() {
  const std::size_t first = matrix_.Terms().first;
  double longest = 0;
  for (std::size_t c = 0; c < matrix_.Columns(); ++c) {
    lengths_[c] = scales_[c] = Norm(matrix_.Column(c));
    if (c >= first) longest = std::max(longest, lengths_[c]);
  }
  for (std::size_t c = 0; c < matrix_.Columns(); ++c) {
    if (c >= first) scales_[c] = longest;
    if (scales_[c] == 0) continue;
    lengths_[c] /= scales_[c];
    for (double& cell : matrix_.Column(c)) cell /= scales_[c];
  }
}

/// What is left of a column from row `step` on.
double FactoredDesign::Rest(std::size_t c, std::size_t step) {
  return step == 0 ? lengths_[c] : Norm(matrix_.Column(c).subspan(step));
}

/// Brings the column with the longest rest to place `step`; its length.
double FactoredDesign::TakeLargest(std::size_t step) {
  std::size_t best = step;
  double largest = -1;
  for (std::size_t c = step; c < matrix_.Columns(); ++c) {
    const double rest = Rest(c, step);
    if (rest > largest) {
      largest = rest;
      best = c;
    }
  }
  if (best != step) {
    const std::span<double> target = matrix_.Column(step);
    std::swap_ranges(target.begin(), target.end(), matrix_.Column(best).begin());
    std::swap(order_[step], order_[best]);
  }
  return largest;
}

/// Turns the rest of column `step`, of that length, into the row's own axis. What stays in its
/// place is the normal of the mirror, of which half the square is length (length + |first|).
void FactoredDesign::Eliminate(std::size_t step, double length) {
  const std::span<double> normal = matrix_.Column(step).subspan(step);
  half_squares_.push_back(length * (length + std::abs(normal[0])));
  diagonal_[step] = normal[0] >= 0 ? -length : length;
  normal[0] -= diagonal_[step];
  for (std::size_t c = step + 1; c < matrix_.Columns(); ++c) {
    Reflect(normal, half_squares_[step], matrix_.Column(c).subspan(step));
  }
}

void FactoredDesign::Solve(std::span<double> values, std::span<double> coefficients) const {
  assert(values.size() == matrix_.Rows() && coefficients.size() == matrix_.Columns());
  for (std::size_t step = 0; step < Rank(); ++step) {
    Reflect(matrix_.Column(step).subspan(step), half_squares_[step], values.subspan(step));
  }
  std::fill(coefficients.begin(), coefficients.end(), 0.0);
  for (std::size_t i = Rank(); i-- > 0;) {
    double rest = values[i];
    for (std::size_t c = i + 1; c < Rank(); ++c) {
      rest -= matrix_.At(i, c) * coefficients[order_[c]] * scales_[order_[c]];
    }
    coefficients[order_[i]] = rest / diagonal_[i] / scales_[order_[i]];
  }
}

LeastSquares Solve(DesignMatrix design, std::span<const double> values) {
  const FactoredDesign factored(std::move(design));
  LeastSquares fit{std::vector<double>(factored.Columns()), factored.Rank()};
  std::vector<double> spoilt(values.begin(), values.end());
  factored.Solve(spoilt, fit.coefficients);
  return fit;
}

}  // namespace discoplan::analysis
