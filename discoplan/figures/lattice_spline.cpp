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
  if (std::max(knots_.columns, knots_.rows) > kFewKnots) {
    coarser_.emplace_back(half_sides, 2 * pitch);
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
      for (std::size_t column = 0; column < 4; ++column) {
        const std::size_t cell =
            Cell(down.first + static_cast<int>(row), across.first + static_cast<int>(column));
        const float weight = down.weights[row] * across.weights[column];
        right_[cell] += weight * static_cast<float>(sample.value);
        float* partners = &products_[cell * kPartners + kSelf - column];
        for (std::size_t below = row; below < 4; ++below, partners += kLine) {
          const float factor = weight * down.weights[below];
          for (std::size_t k = 0; k < 4; ++k) partners[k] += factor * across.weights[k];
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
LatticeSpline::Cells LatticeSpline::MatrixOf(double weight) const {
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

/// Conjugate gradients, with each unknown measured by its own square.
void LatticeSpline::Improve(const Cells& matrix, double precision, Cells& x) const {
  Cells scale(x.size());
  for (int row = 0; row < knots_.rows; ++row) {
    for (int column = 0; column < knots_.columns; ++column) {
      const std::size_t cell = Cell(row, column);
      const float square = 2 * matrix[cell * kPartners + kSelf];
      scale[cell] = square > 0 ? 1 / square : 0;
    }
  }
  Cells product(x.size());
  Multiply(matrix, x, product);
  Cells rest(x.size());
  Cells step(x.size());
  Cells scaled(x.size());
  for (std::size_t i = 0; i < x.size(); ++i) {
    rest[i] = right_[i] - product[i];
    step[i] = scaled[i] = scale[i] * rest[i];
  }
  double size = Dot(rest, scaled);
  for (std::size_t i = 0; i < x.size(); ++i) product[i] = scale[i] * right_[i];
  const double enough = precision * precision * Dot(right_, product);
  for (int turn = 0; turn < kMostSteps && size > enough; ++turn) {
    Multiply(matrix, step, product);
    const auto length = static_cast<float>(size / Dot(step, product));
    for (std::size_t i = 0; i < x.size(); ++i) {
      x[i] += length * step[i];
      rest[i] -= length * product[i];
      scaled[i] = scale[i] * rest[i];
    }
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
      Refine(coarser.knots_, coarser.Solve(bending / kThinning, precision / 3), knots_, found,
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
  Improve(MatrixOf(bending / (knots_.step * knots_.step)), precision, x);
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
