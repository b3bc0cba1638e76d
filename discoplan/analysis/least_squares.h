// SPDX-License-Identifier: MIT
#pragma once

/// Linear least squares by Householder reflections with column pivoting (G. Golub and C. Van Loan,
/// "Matrix Computations", 4th ed., 5.4), which tells the rank.
///
///     DesignMatrix design(sites.size(), 3);          // rows, columns
///     design.At(row, column) = ...;
///     const LeastSquares fit = Solve(design, values);
///     if (fit.rank < 3) Warn("the sites don't tell all terms apart");

#include <cstddef>
#include <span>
#include <vector>

#include "discoplan/export.h"

namespace discoplan::analysis {

class DesignMatrix {
 public:
  DesignMatrix(std::size_t rows, std::size_t columns)
      : rows_(rows), columns_(columns), cells_(rows * columns) {}

  std::size_t Rows() const { return rows_; }
  std::size_t Columns() const { return columns_; }
  double& At(std::size_t row, std::size_t column) { return cells_[column * rows_ + row]; }
  double At(std::size_t row, std::size_t column) const { return cells_[column * rows_ + row]; }
  std::span<double> Column(std::size_t column) {
    return std::span(cells_).subspan(column * rows_, rows_);
  }

 private:
  std::size_t rows_;
  std::size_t columns_;
  std::vector<double> cells_;  // column after column
};

struct LeastSquares {
  std::vector<double> coefficients;  ///< One for each column.
  /// Columns that are independent within rounding. Where it is less than all, the others have the
  /// coefficient 0: a solution, but not the only one.
  std::size_t rank = 0;
};

/// The coefficients that make the sum of squares of `design * coefficients - values` least. As many
/// values as rows; a matrix without rows has rank 0.
DISCOPLAN_EXPORT LeastSquares Solve(DesignMatrix design, std::span<const double> values);

}  // namespace discoplan::analysis
