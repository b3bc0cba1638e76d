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

/// Columns are made of positions, which are 32-bit floats: what is no more than their rounding
/// tells no terms apart.
constexpr double kNegligible = 5e-7;

class PivotedQr {
 public:
  PivotedQr(DesignMatrix design, std::span<const double> values)
      : matrix_(std::move(design)),
        values_(values.begin(), values.end()),
        order_(matrix_.Columns()),
        scales_(matrix_.Columns()),
        diagonal_(matrix_.Columns()) {
    std::iota(order_.begin(), order_.end(), std::size_t{0});
    ScaleColumns();
  }

  LeastSquares Solve() {
    const std::size_t steps = std::min(matrix_.Rows(), matrix_.Columns());
    std::size_t rank = 0;
    for (; rank < steps; ++rank) {
      const double length = TakeLargest(rank);
      if (!(length > kNegligible)) break;
      Eliminate(rank, length);
    }
    return {SolveBackwards(rank), rank};
  }

 private:
  // To the length 1, so that the rank doesn't depend on the units of the columns.
  void ScaleColumns() {
    for (std::size_t c = 0; c < matrix_.Columns(); ++c) scales_[c] = Norm(matrix_.Column(c));
    if (scales_.empty()) return;
    const double least = kNegligible * *std::max_element(scales_.begin(), scales_.end());
    for (std::size_t c = 0; c < matrix_.Columns(); ++c) {
      if (!(scales_[c] > least)) scales_[c] = 0;
      for (double& cell : matrix_.Column(c)) cell = scales_[c] != 0 ? cell / scales_[c] : 0;
    }
  }

  /// What is left of a column from row `step` on.
  double Rest(std::size_t c, std::size_t step) {
    if (step == 0) return scales_[c] != 0 ? 1 : 0;
    return Norm(matrix_.Column(c).subspan(step));
  }

  /// Brings the column with the longest rest to place `step`; its length.
  double TakeLargest(std::size_t step) {
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
  void Eliminate(std::size_t step, double length) {
    const std::span<double> normal = matrix_.Column(step).subspan(step);
    const double half_square = length * (length + std::abs(normal[0]));
    diagonal_[step] = normal[0] >= 0 ? -length : length;
    normal[0] -= diagonal_[step];
    for (std::size_t c = step + 1; c < matrix_.Columns(); ++c) {
      Reflect(normal, half_square, matrix_.Column(c).subspan(step));
    }
    Reflect(normal, half_square, std::span(values_).subspan(step));
  }

  std::vector<double> SolveBackwards(std::size_t rank) {
    std::vector<double> coefficients(matrix_.Columns(), 0.0);
    for (std::size_t i = rank; i-- > 0;) {
      double rest = values_[i];
      for (std::size_t c = i + 1; c < rank; ++c) {
        rest -= matrix_.At(i, c) * coefficients[order_[c]] * scales_[order_[c]];
      }
      coefficients[order_[i]] = rest / diagonal_[i] / scales_[order_[i]];
    }
    return coefficients;
  }

  DesignMatrix matrix_;
  std::vector<double> values_;
  std::vector<std::size_t> order_;  // the column that stands at each place
  std::vector<double> scales_;      // of the columns as they were
  std::vector<double> diagonal_;
};

}  // namespace

LeastSquares Solve(DesignMatrix design, std::span<const double> values) {
  assert(values.size() == design.Rows());
  return PivotedQr(std::move(design), values).Solve();
}

}  // namespace discoplan::analysis
