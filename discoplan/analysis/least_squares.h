// SPDX-License-Identifier: MIT
#pragma once

/// Linear least squares by Householder reflections with column pivoting (G. Golub and C. Van Loan,
/// "Matrix Computations", 4th ed., 5.4), which tells the rank.
///
///     DesignMatrix design(sites.size(), 3);          // rows, columns
///     design.At(row, column) = ...;
///     const LeastSquares fit = Solve(design, values);
///     if (fit.rank < 3) Warn("the sites don't tell all terms apart");
///
/// Further values at the same sites take a fraction of the time:
///
///     const FactoredDesign factored(design);
///     factored.Solve(values, coefficients);

#include <cstddef>
#include <span>
#include <vector>

#include "discoplan/export.h"

namespace discoplan::analysis {

/// Columns from `first` on are polynomials of positions, of one unit and up to that order.
struct PositionTerms {
  std::size_t first = 0;
  int order = 1;
};

class DesignMatrix {
 public:
  DesignMatrix(std::size_t rows, std::size_t columns) : DesignMatrix(rows, columns, {columns}) {}
  DesignMatrix(std::size_t rows, std::size_t columns, PositionTerms terms)
      : rows_(rows), columns_(columns), terms_(terms), cells_(rows * columns) {}

  std::size_t Rows() const { return rows_; }
  std::size_t Columns() const { return columns_; }
  const PositionTerms& Terms() const { return terms_; }
  double& At(std::size_t row, std::size_t column) { return cells_[column * rows_ + row]; }
  double At(std::size_t row, std::size_t column) const { return cells_[column * rows_ + row]; }
  std::span<double> Column(std::size_t column) {
    return std::span(cells_).subspan(column * rows_, rows_);
  }
  std::span<const double> Column(std::size_t column) const {
    return std::span(cells_).subspan(column * rows_, rows_);
  }

 private:
  std::size_t rows_;
  std::size_t columns_;
  PositionTerms terms_;
  std::vector<double> cells_;  // column after column
};

struct LeastSquares {
  std::vector<double> coefficients;  ///< One for each column.
  /// Columns that are independent within rounding. Where it is less than all, the others have the
  /// coefficient 0: a solution, but not the only one.
  std::size_t rank = 0;
};

/// What follows from a design alone.
class DISCOPLAN_EXPORT FactoredDesign {
 public:
  explicit FactoredDesign(DesignMatrix design);

  std::size_t Columns() const { return matrix_.Columns(); }
  /// Columns that are independent within rounding.
  std::size_t Rank() const { return half_squares_.size(); }
  /// The coefficients of `discoplan::analysis::Solve`, one for each column. Spoils the values.
  void Solve(std::span<double> values, std::span<double> coefficients) const;

 private:
  void ScaleColumns();
  double Rest(std::size_t column, std::size_t step);
  double TakeLargest(std::size_t step);
  void Eliminate(std::size_t step, double length);

  DesignMatrix matrix_;
  std::vector<std::size_t> order_;  // the column that stands at each place
  std::vector<double> scales_;      // what the columns were divided by
  std::vector<double> lengths_;     // of the columns then
  std::vector<double> diagonal_;
  std::vector<double> half_squares_;  // of each mirror's normal
};

/// The coefficients that make the sum of squares of `design * coefficients - values` least. As many
/// values as rows; a matrix without rows has rank 0.
DISCOPLAN_EXPORT LeastSquares Solve(DesignMatrix design, std::span<const double> values);

}  // namespace discoplan::analysis
