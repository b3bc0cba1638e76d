// SPDX-License-Identifier: MIT
#include "discoplan/figures/lattice_spline.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace discoplan::figures {
namespace {

constexpr int kReach = 3;  // of splines that overlap
constexpr std::size_t kLine = 8;
/// Partners of a spline in its own row and the three below, from three to the left on.
constexpr std::size_t kPartners = 4 * kLine;
constexpr std::size_t kSelf = kReach;
/// Of the coarser lattice's sites, which only have to tell about where to begin.
constexpr std::size_t kThinning = 2;
constexpr int kFewKnots = 12;
constexpr int kMostSteps = 300;

/// In lanes, so that it is quick and the same on every system.
double Dot(const std::vector<float>& a, const std::vector<float>& b) {
  std::array<float, 16> lanes = {};
  std::size_t i = 0;
  for (; i + lanes.size() <= a.size(); i += lanes.size()) {
    for (std::size_t k = 0; k < lanes.size(); ++k) lanes[k] += a[i + k] * b[i + k];
  }
  double sum = 0;
  for (; i < a.size(); ++i) sum += a[i] * b[i];
  for (const float lane : lanes) sum += lane;
  return sum;
}

inline void AddTimes(float factor, const std::array<float, 4>& weights, float* sums) {
  std::array<float, 4> now;
  for (std::size_t k = 0; k < 4; ++k) now[k] = sums[k] + factor * weights[k];
  for (std::size_t k = 0; k < 4; ++k) sums[k] = now[k];
}

int KnotsOver(double half, double pitch) {
  return std::max(5, static_cast<int>(std::ceil(2 * half / pitch)) + 3);
}

}  // namespace

LatticeSpline::LatticeSpline(Point half_sides, double pitch)
    : knots_{0, 0, pitch, KnotsOver(half_sides.x, pitch), KnotsOver(half_sides.y, pitch)} {
  knots_.x0 = -pitch * (knots_.columns - 1) / 2;
  knots_.y0 = pitch * (knots_.rows - 1) / 2;
  stride_ = static_cast<std::size_t>(knots_.columns) + kLine;
  right_.resize(stride_ * static_cast<std::size_t>(knots_.rows + kReach) + kLine);
  products_.resize(right_.size() * kPartners);
  if (std::max(knots_.columns, knots_.rows) <= kFewKnots) return;
  coarser_.emplace_back(half_sides, 2 * pitch);
  const Lattice& coarse = coarser_.front().knots_;
  for (int i = 0; i < knots_.columns; ++i) {
    const double place = (knots_.X(i) - coarse.x0) / coarse.step;
    across_.push_back(TapAt(place, coarse.columns, Points::Coefficients));
  }
  for (int j = 0; j < knots_.rows; ++j) {
    const double place = (coarse.y0 - knots_.Y(j)) / coarse.step;
    down_.push_back(TapAt(place, coarse.rows, Points::Coefficients));
  }
}

std::size_t LatticeSpline::Cell(int row, int column) const {
  return static_cast<std::size_t>(row) * stride_ + static_cast<std::size_t>(column + kReach);
}

void LatticeSpline::Add(std::span<const Sample> samples) {
  for (const Sample& sample : samples) {
    const Tap across =
        TapAt((sample.x - knots_.x0) / knots_.step, knots_.columns, Points::Coefficients);
    const Tap down = TapAt((knots_.y0 - sample.y) / knots_.step, knots_.rows, Points::Coefficients);
    for (std::size_t row = 0; row < 4; ++row) {
      const std::size_t first = Cell(down.first + static_cast<int>(row), across.first);
      for (std::size_t column = 0; column < 4; ++column) {
        const float weight = down.weights[row] * across.weights[column];
        right_[first + column] += weight * static_cast<float>(sample.value);
        float* own = &products_[(first + column) * kPartners + kSelf - column];
        const auto add = [&](std::size_t below) {
          AddTimes(weight * down.weights[row + below], across.weights, own + below * kLine);
        };
        // Written out: of a loop the compiler takes the lines side by side, not a line as a whole.
        switch (row) {
          case 0:
            add(3);
            [[fallthrough]];
          case 1:
            add(2);
            [[fallthrough]];
          case 2:
            add(1);
            [[fallthrough]];
          default:
            add(0);
        }
      }
    }
  }
  if (coarser_.empty()) return;
  std::vector<Sample> some;
  for (std::size_t i = 0; i < samples.size(); i += kThinning) some.push_back(samples[i]);
  coarser_.front().Add(some);
}

/// With the squares of second differences along both sides, and twice those of the mixed ones.
LatticeSpline::Cells LatticeSpline::MatrixOf(double bending) const {
  const double weight = bending / (knots_.step * knots_.step);
  Cells matrix = products_;
  for (int row = 0; row < knots_.rows; ++row) {
    for (int column = 0; column < knots_.columns; ++column) {
      float* own = &matrix[Cell(row, column) * kPartners];
      // The left half of its own row was summed up with the rest, and its own square counts twice.
      for (std::size_t k = 0; k < kSelf; ++k) own[k] = 0;
      own[kSelf] /= 2;
    }
  }
  struct Term {
    int row, column;
    float factor;
  };
  const auto add = [&](int row, int column, std::span<const Term> terms, double times) {
    for (std::size_t a = 0; a < terms.size(); ++a) {
      for (std::size_t b = a; b < terms.size(); ++b) {
        const std::size_t cell = Cell(row + terms[a].row, column + terms[a].column);
        const int line = terms[b].row - terms[a].row;
        const int place = static_cast<int>(kSelf) + terms[b].column - terms[a].column;
        const double part = a == b ? 0.5 : 1;
        matrix[cell * kPartners + static_cast<std::size_t>(line) * kLine +
               static_cast<std::size_t>(place)] +=
            static_cast<float>(part * times * terms[a].factor * terms[b].factor);
      }
    }
  };
  static constexpr std::array<Term, 3> kAcross = {{{0, 0, 1}, {0, 1, -2}, {0, 2, 1}}};
  static constexpr std::array<Term, 3> kDown = {{{0, 0, 1}, {1, 0, -2}, {2, 0, 1}}};
  static constexpr std::array<Term, 4> kMixed = {{{0, 0, 1}, {0, 1, -1}, {1, 0, -1}, {1, 1, 1}}};
  for (int row = 0; row < knots_.rows; ++row) {
    for (int column = 0; column < knots_.columns; ++column) {
      const bool wide = column + 2 < knots_.columns;
      const bool high = row + 2 < knots_.rows;
      if (wide) add(row, column, kAcross, weight);
      if (high) add(row, column, kDown, weight);
      if (column + 1 < knots_.columns && row + 1 < knots_.rows) {
        add(row, column, kMixed, 2 * weight);
      }
    }
  }
  return matrix;
}

void LatticeSpline::Multiply(const Cells& matrix, const Cells& x, Cells& product) const {
  std::fill(product.begin(), product.end(), 0.0F);
  for (int row = 0; row < knots_.rows; ++row) {
    for (int column = 0; column < knots_.columns; ++column) {
      const std::size_t cell = Cell(row, column);
      const float* a = &matrix[cell * kPartners];
      const float own = x[cell];
      std::array<float, kLine> sums = {};
      for (std::size_t line = 0; line < 4; ++line, a += kLine) {
        const float* from = &x[cell + line * stride_ - kSelf];
        float* to = &product[cell + line * stride_ - kSelf];
        std::array<float, kLine> there;
        for (std::size_t k = 0; k < kLine; ++k) {
          sums[k] += a[k] * from[k];
          there[k] = to[k] + a[k] * own;
        }
        for (std::size_t k = 0; k < kLine; ++k) to[k] = there[k];
      }
      float sum = 0;
      for (const float part : sums) sum += part;
      product[cell] += sum;
    }
  }
}

void LatticeSpline::AddFiner(const Cells& coarse, Cells& fine) const {
  const LatticeSpline& coarser = coarser_.front();
  const auto width = static_cast<std::size_t>(knots_.columns);
  const auto coarse_rows = static_cast<std::size_t>(coarser.knots_.rows);
  std::vector<float> rows(coarse_rows * width);
  for (std::size_t row = 0; row < coarse_rows; ++row) {
    const float* from = &coarse[coarser.Cell(static_cast<int>(row), 0)];
    for (std::size_t i = 0; i < width; ++i) {
      const auto& w = across_[i].weights;
      const float* four = from + across_[i].first;
      rows[row * width + i] = four[0] * w[0] + four[1] * w[1] + four[2] * w[2] + four[3] * w[3];
    }
  }
  for (int row = 0; row < knots_.rows; ++row) {
    const Tap& tap = down_[static_cast<std::size_t>(row)];
    const std::array<float, 4> w = tap.weights;
    const float* four = &rows[static_cast<std::size_t>(tap.first) * width];
    float* to = &fine[Cell(row, 0)];
    for (std::size_t i = 0; i < width; ++i) {
      to[i] += four[i] * w[0] + four[width + i] * w[1] + four[2 * width + i] * w[2] +
               four[3 * width + i] * w[3];
    }
  }
}

void LatticeSpline::SumCoarser(const Cells& fine, Cells& coarse) const {
  const LatticeSpline& coarser = coarser_.front();
  const auto width = static_cast<std::size_t>(knots_.columns);
  const auto coarse_rows = static_cast<std::size_t>(coarser.knots_.rows);
  std::vector<float> rows(coarse_rows * width);
  for (int row = 0; row < knots_.rows; ++row) {
    const Tap& tap = down_[static_cast<std::size_t>(row)];
    const float* from = &fine[Cell(row, 0)];
    for (std::size_t k = 0; k < 4; ++k) {
      const float weight = tap.weights[k];
      float* to = &rows[(static_cast<std::size_t>(tap.first) + k) * width];
      for (std::size_t i = 0; i < width; ++i) to[i] += weight * from[i];
    }
  }
  std::fill(coarse.begin(), coarse.end(), 0.0F);
  for (std::size_t row = 0; row < coarse_rows; ++row) {
    float* to = &coarse[coarser.Cell(static_cast<int>(row), 0)];
    const float* from = &rows[row * width];
    for (std::size_t i = 0; i < width;) {
      // Neighbours with the same four coarser knots.
      const int first = across_[i].first;
      std::array<float, 4> sums = {};
      for (; i < width && across_[i].first == first; ++i) {
        for (std::size_t k = 0; k < 4; ++k) sums[k] += from[i] * across_[i].weights[k];
      }
      for (std::size_t k = 0; k < 4; ++k) to[first + static_cast<int>(k)] += sums[k];
    }
  }
}

LatticeSpline::Scaling LatticeSpline::ScalingOf(const Cells& matrix, double bending) const {
  Scaling scaling;
  double times = 1;
  for (const LatticeSpline* level = this;;) {
    const bool own = level == this;
    const Cells coarse = own ? Cells() : level->MatrixOf(bending / times);
    const Cells& squares = own ? matrix : coarse;
    Cells inverse(level->right_.size());
    for (int row = 0; row < level->knots_.rows; ++row) {
      for (int column = 0; column < level->knots_.columns; ++column) {
        const std::size_t cell = level->Cell(row, column);
        const double square = times * 2 * squares[cell * kPartners + kSelf];
        inverse[cell] = square > 0 ? static_cast<float>(1 / square) : 0;
      }
    }
    scaling.push_back(std::move(inverse));
    if (level->coarser_.empty()) return scaling;
    level = &level->coarser_.front();
    times *= kThinning;
  }
}

void LatticeSpline::Scale(std::span<const Cells> scaling, const Cells& rest, Cells& scaled) const {
  for (std::size_t i = 0; i < rest.size(); ++i) scaled[i] = scaling.front()[i] * rest[i];
  if (coarser_.empty()) return;
  const LatticeSpline& coarser = coarser_.front();
  Cells coarse_rest(coarser.right_.size());
  Cells coarse_scaled(coarser.right_.size());
  SumCoarser(rest, coarse_rest);
  coarser.Scale(scaling.subspan(1), coarse_rest, coarse_scaled);
  AddFiner(coarse_scaled, scaled);
}

/// Conjugate gradients. What is left is measured on all the lattices at once, each unknown by its
/// own square, so that what is smooth is found in few steps too (J. H. Bramble, J. E. Pasciak, J.
/// Xu, "Parallel multilevel preconditioners", 1990).
void LatticeSpline::Improve(double bending, double precision, Cells& x) const {
  const Cells matrix = MatrixOf(bending);
  const Scaling scaling = ScalingOf(matrix, bending);
  Cells product(x.size());
  Multiply(matrix, x, product);
  Cells rest(x.size());
  Cells scaled(x.size());
  for (std::size_t i = 0; i < x.size(); ++i) rest[i] = right_[i] - product[i];
  Scale(scaling, rest, scaled);
  Cells step = scaled;
  double size = Dot(rest, scaled);
  Scale(scaling, right_, product);
  const double enough = precision * precision * Dot(right_, product);
  for (int turn = 0; turn < kMostSteps && size > enough; ++turn) {
    Multiply(matrix, step, product);
    const auto length = static_cast<float>(size / Dot(step, product));
    for (std::size_t i = 0; i < x.size(); ++i) {
      x[i] += length * step[i];
      rest[i] -= length * product[i];
    }
    Scale(scaling, rest, scaled);
    const double left = Dot(rest, scaled);
    const auto turned = static_cast<float>(left / size);
    size = left;
    for (std::size_t i = 0; i < x.size(); ++i) step[i] = scaled[i] + turned * step[i];
  }
}

std::vector<float> LatticeSpline::Solve(double bending, double precision,
                                        std::vector<float> from) const {
  std::vector<float> found = std::move(from);
  if (found.empty()) {
    found.resize(knots_.Size());
    if (!coarser_.empty()) {
      const LatticeSpline& coarser = coarser_.front();
      Refine(coarser.knots_, coarser.Solve(bending / kThinning, precision), knots_, found,
             Points::Coefficients);
    }
  }
  Cells x(right_.size());
  const auto each = [&](auto visit) {
    std::size_t at = 0;
    for (int row = 0; row < knots_.rows; ++row) {
      for (int column = 0; column < knots_.columns; ++column) visit(Cell(row, column), at++);
    }
  };
  each([&](std::size_t cell, std::size_t at) { x[cell] = found[at]; });
  Improve(bending, precision, x);
  each([&](std::size_t cell, std::size_t at) { found[at] = x[cell]; });
  return found;
}

double LatticeSpline::At(std::span<const float> coefficients, double x, double y) const {
  const Tap across = TapAt((x - knots_.x0) / knots_.step, knots_.columns, Points::Coefficients);
  const Tap down = TapAt((knots_.y0 - y) / knots_.step, knots_.rows, Points::Coefficients);
  double value = 0;
  for (std::size_t row = 0; row < 4; ++row) {
    const auto start = static_cast<std::size_t>(
        (down.first + static_cast<int>(row)) * knots_.columns + across.first);
    for (std::size_t column = 0; column < 4; ++column) {
      value += down.weights[row] * across.weights[column] * coefficients[start + column];
    }
  }
  return value;
}

}  // namespace discoplan::figures
