// SPDX-License-Identifier: MIT
#pragma once

/// Equations between neighbouring knots of a square lattice, on it and on coarser ones.
///
/// Cubic B-splines with knots twice as far apart are sums of those in between (C. de Boor, "A
/// Practical Guide to Splines", 1978), so that what holds for the finer coefficients gives what
/// holds for the coarser ones.

#include <array>
#include <cstddef>
#include <vector>

#include "discoplan/export.h"

namespace discoplan::figures {

/// A number for each knot.
using Knots = std::vector<float>;

/// Knots around a middle one, as many on all sides, and the places of their numbers: row by row
/// with zeros in between, so that neighbours beyond the border are asked like any other.
struct KnotGrid {
  static constexpr std::size_t kRim = 4;

  int half = 2;  ///< From the middle to the border.

  int Side() const { return 2 * half + 1; }
  std::size_t Width() const { return (static_cast<std::size_t>(Side()) + 3) / 4 * 4; }
  std::size_t Stride() const { return Width() + kRim; }
  std::size_t Cell(int row, int column = 0) const {
    return kRim + static_cast<std::size_t>(row) * Stride() + static_cast<std::size_t>(column);
  }
  std::size_t Size() const { return Cell(Side()); }
  /// Every second knot, and some beyond the border.
  KnotGrid Coarser() const { return {half / 2 + 1}; }
  /// Number of the row or column that lies where one of the coarser grid does.
  int Below(int coarse) const { return 2 * (coarse - Coarser().half) + half; }
};

/// Sum of the products.
double Dot(const KnotGrid& grid, const Knots& a, const Knots& b);
/// Adds what a spline on the coarser grid has at the knots.
void AddFiner(const KnotGrid& grid, const Knots& coarse, Knots& fine);
/// The other way round, sums of what each coarser knot has a part in.
void SumCoarser(const KnotGrid& grid, const Knots& fine, Knots& coarse);

/// Symmetric. Each knot has a part in the 7 x 7 around it.
class DISCOPLAN_EXPORT KnotMatrix {
 public:
  static constexpr int kReach = 3;
  static constexpr std::size_t kAcross = 2 * kReach + 1;
  static constexpr std::size_t kDown = kReach + 1;

  explicit KnotMatrix(KnotGrid grid);

  const KnotGrid& Grid() const { return grid_; }
  std::size_t Bytes() const { return parts_.size() * sizeof(float); }
  /// Parts of the knots of a row in those so many rows below, at most `kReach`: for each column
  /// from `kReach` to the left on, at places a stride apart, a number for each knot.
  float* Line(int row, int below) { return &parts_[Place(row, below)]; }
  const float* Line(int row, int below) const { return &parts_[Place(row, below)]; }
  std::size_t LineSize() const { return kAcross * grid_.Stride(); }

  void Multiply(const Knots& x, Knots& product) const;
  /// Sums of the sizes of all parts of each knot.
  Knots Sizes() const;
  /// That of the coefficients of splines on the coarser grid.
  KnotMatrix Coarser() const;

 private:
  template <class Add>
  void SumRows(Add add, Knots& result) const;
  std::size_t Place(int row, int below) const {
    return KnotGrid::kRim +
           (static_cast<std::size_t>(row) * kDown + static_cast<std::size_t>(below)) * LineSize();
  }

  KnotGrid grid_;
  std::vector<float> parts_;
};

/// A line of a matrix on the coarser grid's columns. Both may be read `kRim` places around.
void CoarsenLine(const KnotGrid& grid, const float* fine, float* coarse);

}  // namespace discoplan::figures
