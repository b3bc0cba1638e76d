// SPDX-License-Identifier: MIT
#pragma once

/// Solves the equations of a smoothing spline's coefficients: conjugate gradients, with what is
/// left measured by one cycle over the lattice and the coarser ones (O. Tatebe, "The multigrid
/// preconditioned conjugate gradient method", 1993).

#include <memory>
#include <vector>

#include "discoplan/figures/knot_matrix.h"

namespace discoplan::figures {

/// Squares of how splines along one line of knots bend, and what else makes up the bending of those
/// on a lattice: one line of a `KnotMatrix` each.
struct Bends {
  explicit Bends(KnotGrid grid);
  Bends Coarser() const;

  KnotGrid grid;
  std::vector<float> values;  ///< Of coefficients.
  std::vector<float> slopes;  ///< Of their first differences.
  std::vector<float> bends;   ///< Of their second differences.
};

/// The equations on the coarsest lattice.
class FewKnots {
 public:
  explicit FewKnots(const KnotMatrix& matrix);
  void Solve(const Knots& right, Knots& x) const;

 private:
  KnotGrid grid_;
  std::vector<double> rows_;  // decomposed
  std::vector<double> inverse_;
};

class DISCOPLAN_EXPORT KnotSolver {
 public:
  /// Matrices of sites for a lattice and the coarser ones, to which `weight` times the squares of
  /// second differences along both sides, and twice those of the mixed ones, are added.
  KnotSolver(const std::vector<KnotMatrix>& sites, float weight);

  /// Makes x better until the sum that is to be least is at most about `enough` too large. Gives
  /// the number of steps.
  int Improve(const Knots& right, double enough, Knots& x) const;
  std::size_t Bytes() const;

 private:
  struct Work;
  /// About the solution for what is left.
  void Cycle(std::size_t level, std::vector<Work>& works) const;

  struct Level {
    KnotMatrix matrix;
    Knots scale;  // what of a knot's rest is taken at once
  };
  std::vector<Level> levels_;
  FewKnots last_;
};

/// A matrix and those of all coarser lattices.
std::vector<KnotMatrix> AllLevels(KnotMatrix finest);

}  // namespace discoplan::figures
