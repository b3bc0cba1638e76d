// SPDX-License-Identifier: MIT
#include "discoplan/figures/knot_solver.h"

#include <algorithm>
#include <cmath>

namespace discoplan::figures {
namespace {

constexpr int kReach = KnotMatrix::kReach;
constexpr int kCoarsest = 3;  // knots from the middle to the border
constexpr int kMostSteps = 100;
/// Of the step that is safe for each knot by itself; below 2 it never leads away.
constexpr float kBoldness = 1.8F;

std::vector<float> LineOf(const KnotGrid& grid) {
  return std::vector<float>(KnotMatrix::kAcross * grid.Stride() + 2 * KnotGrid::kRim);
}

/// Squares of sums of neighbours times `factors`.
std::vector<float> SquaresOf(const KnotGrid& grid, std::initializer_list<float> factors) {
  std::vector<float> line = LineOf(grid);
  const auto count = static_cast<int>(factors.size());
  for (int first = 0; first + count <= grid.Side(); ++first) {
    for (int i = 0; i < count; ++i) {
      for (int k = 0; k < count; ++k) {
        line[KnotGrid::kRim + static_cast<std::size_t>(k - i + kReach) * grid.Stride() +
             static_cast<std::size_t>(first + i)] += factors.begin()[i] * factors.begin()[k];
      }
    }
  }
  return line;
}

KnotMatrix WithBends(const KnotMatrix& sites, const Bends& bends, float weight) {
  const KnotGrid& grid = sites.Grid();
  KnotMatrix matrix(grid);
  const float* const value = &bends.values[KnotGrid::kRim];
  const float* const slope = &bends.slopes[KnotGrid::kRim];
  const float* const bend = &bends.bends[KnotGrid::kRim];
  for (int row = 0; row < grid.Side(); ++row) {
    for (int below = 0; below <= kReach; ++below) {
      const std::size_t down =
          static_cast<std::size_t>(below + kReach) * grid.Stride() + static_cast<std::size_t>(row);
      const float across = weight * value[down];
      const float mixed = weight * 2 * slope[down];
      const float along = weight * bend[down];
      const float* from = sites.Line(row, below);
      float* line = matrix.Line(row, below);
      for (std::size_t i = 0; i < matrix.LineSize(); ++i) {
        line[i] = from[i] + (across * bend[i] + mixed * slope[i] + along * value[i]);
      }
    }
  }
  return matrix;
}

}  // namespace

Bends::Bends(KnotGrid of)
    : grid(of),
      values(SquaresOf(of, {1})),
      slopes(SquaresOf(of, {-1, 1})),
      bends(SquaresOf(of, {1, -2, 1})) {}

Bends Bends::Coarser() const {
  Bends coarse(grid.Coarser());
  for (const auto line : {&Bends::values, &Bends::slopes, &Bends::bends}) {
    coarse.*line = LineOf(coarse.grid);
    CoarsenLine(grid, (this->*line).data() + KnotGrid::kRim,
                (coarse.*line).data() + KnotGrid::kRim);
  }
  return coarse;
}

FewKnots::FewKnots(const KnotMatrix& matrix) : grid_(matrix.Grid()) {
  const int side = grid_.Side();
  const auto count = static_cast<std::size_t>(side * side);
  rows_.resize(count * count);
  inverse_.resize(count);
  for (int row = 0; row < side; ++row) {
    for (int column = 0; column < side; ++column) {
      const auto knot = static_cast<std::size_t>(row * side + column);
      for (int below = 0; below <= std::min(kReach, side - 1 - row); ++below) {
        for (int other = std::max(0, column - kReach); other <= std::min(side - 1, column + kReach);
             ++other) {
          const auto partner = static_cast<std::size_t>((row + below) * side + other);
          const auto place = static_cast<std::size_t>(other - column + kReach) * grid_.Stride() +
                             static_cast<std::size_t>(column);
          rows_[knot * count + partner] = matrix.Line(row, below)[place];
        }
      }
    }
  }
  for (std::size_t k = 0; k < count; ++k) {
    const double* top = &rows_[k * count];
    // Nothing tells of a knot whose square is lost: it stays where it is.
    const double own = matrix.Line(static_cast<int>(k) / side,
                                   0)[kReach * grid_.Stride() + k % static_cast<std::size_t>(side)];
    inverse_[k] = top[k] > 1e-6 * own ? 1 / top[k] : 0;
    for (std::size_t i = k + 1; i < count; ++i) {
      const double factor = top[i] * inverse_[k];
      double* row = &rows_[i * count];
      for (std::size_t j = i; j < count; ++j) row[j] -= factor * top[j];
      row[k] = factor;  // for the way back
    }
  }
}

void FewKnots::Solve(const Knots& right, Knots& x) const {
  const std::size_t count = inverse_.size();
  const auto side = static_cast<std::size_t>(grid_.Side());
  const auto cell = [&](std::size_t knot) {
    return grid_.Cell(static_cast<int>(knot / side), static_cast<int>(knot % side));
  };
  std::vector<double> rest(count);
  for (std::size_t k = 0; k < count; ++k) rest[k] = right[cell(k)];
  for (std::size_t k = 0; k < count; ++k) {
    const double* row = &rows_[k * count];
    rest[k] *= inverse_[k];
    for (std::size_t i = k + 1; i < count; ++i) rest[i] -= row[i] * rest[k];
  }
  for (std::size_t k = count; k-- > 0;) {
    const double* row = &rows_[k * count];
    for (std::size_t i = 0; i < k; ++i) rest[i] -= row[i] * rest[k];
  }
  for (std::size_t k = 0; k < count; ++k) x[cell(k)] = static_cast<float>(rest[k]);
}

std::vector<KnotMatrix> AllLevels(KnotMatrix finest) {
  std::vector<KnotMatrix> levels;
  levels.push_back(std::move(finest));
  while (levels.back().Grid().half > kCoarsest) levels.push_back(levels.back().Coarser());
  return levels;
}

KnotSolver::KnotSolver(const std::vector<KnotMatrix>& sites, float weight)
    : levels_([&] {
        std::vector<Level> levels;
        Bends bends(sites.front().Grid());
        for (const KnotMatrix& matrix : sites) {
          if (!levels.empty()) bends = bends.Coarser();
          levels.push_back({WithBends(matrix, bends, weight), {}});
          Knots& scale = levels.back().scale;
          scale = levels.back().matrix.Sizes();
          for (float& size : scale) size = size > 0 ? kBoldness / size : 0;
        }
        return levels;
      }()),
      last_(levels_.back().matrix) {}

std::size_t KnotSolver::Bytes() const {
  std::size_t bytes = 0;
  for (const Level& level : levels_) bytes += level.matrix.Bytes();
  return bytes;
}

/// What is at hand on each lattice while what is left on the finest is looked at.
struct KnotSolver::Work {
  Knots rest;
  Knots x;
  Knots left;
};

void KnotSolver::Cycle(std::size_t level, std::vector<Work>& works) const {
  auto& [rest, x, left] = works[level];
  if (level + 1 == levels_.size()) return last_.Solve(rest, x);
  const KnotMatrix& matrix = levels_[level].matrix;
  const Knots& scale = levels_[level].scale;
  for (std::size_t i = 0; i < x.size(); ++i) x[i] = scale[i] * rest[i];
  matrix.Multiply(x, left);
  for (std::size_t i = 0; i < left.size(); ++i) left[i] = rest[i] - left[i];
  SumCoarser(matrix.Grid(), left, works[level + 1].rest);
  Cycle(level + 1, works);
  AddFiner(matrix.Grid(), works[level + 1].x, x);
  matrix.Multiply(x, left);
  for (std::size_t i = 0; i < x.size(); ++i) x[i] += scale[i] * (rest[i] - left[i]);
}

int KnotSolver::Improve(const Knots& right, double enough, Knots& x) const {
  std::vector<Work> works;
  for (const Level& level : levels_) {
    const Knots none(level.scale.size());
    works.push_back({none, none, none});
  }
  const KnotMatrix& matrix = levels_.front().matrix;
  const KnotGrid& grid = matrix.Grid();
  Knots& rest = works.front().rest;
  const Knots& scaled = works.front().x;
  Knots& product = works.front().left;
  matrix.Multiply(x, product);
  for (std::size_t i = 0; i < x.size(); ++i) rest[i] = right[i] - product[i];
  Cycle(0, works);
  Knots step = scaled;
  double size = Dot(grid, rest, scaled);
  int steps = 0;
  for (; steps < kMostSteps && size > enough; ++steps) {
    matrix.Multiply(step, product);
    const auto length = static_cast<float>(size / Dot(grid, step, product));
    for (std::size_t i = 0; i < x.size(); ++i) {
      x[i] += length * step[i];
      rest[i] -= length * product[i];
    }
    Cycle(0, works);
    const double left = Dot(grid, rest, scaled);
    const auto turned = static_cast<float>(left / size);
    size = left;
    for (std::size_t i = 0; i < x.size(); ++i) step[i] = scaled[i] + turned * step[i];
  }
  return steps;
}

}  // namespace discoplan::figures
