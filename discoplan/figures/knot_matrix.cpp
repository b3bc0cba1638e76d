// SPDX-License-Identifier: MIT
#include "discoplan/figures/knot_matrix.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace discoplan::figures {
namespace {

constexpr int kReach = KnotMatrix::kReach;
constexpr std::size_t kAcross = KnotMatrix::kAcross;
constexpr int kSpread = 2;
/// Parts of a spline in those with knots half as far apart, from two to the left on.
constexpr std::array<float, 2 * kSpread + 1> kParts = {0.125F, 0.5F, 0.75F, 0.5F, 0.125F};

inline void AddTimes(float factor, const float* from, float* to, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) to[i] += factor * from[i];
}

/// Calls `visit` for all parts of finer splines in a coarser one and in that `apart` knots farther
/// on: with the first finer one's distance from the middle, how far the second is from it, and the
/// product of the parts.
template <class Visit>
void ForEachPair(int apart, Visit visit) {
  for (int one = -kSpread; one <= kSpread; ++one) {
    for (int other = -kSpread; other <= kSpread; ++other) {
      const int between = 2 * apart + other - one;
      if (std::abs(between) > kReach) continue;
      visit(one, between,
            kParts[static_cast<std::size_t>(one + kSpread)] *
                kParts[static_cast<std::size_t>(other + kSpread)]);
    }
  }
}

/// Sums of seven products for each of `count`, of numbers `apart` and numbers 1 apart.
inline void AddSeven(const float* a, std::ptrdiff_t apart, const float* x, float* sums,
                     std::size_t count) {
  const float* const b = a + apart;
  const float* const c = b + apart;
  const float* const d = c + apart;
  const float* const e = d + apart;
  const float* const f = e + apart;
  const float* const g = f + apart;
  for (std::size_t i = 0; i < count; ++i) {
    sums[i] += a[i] * x[i] + b[i] * x[i + 1] + c[i] * x[i + 2] + d[i] * x[i + 3] + e[i] * x[i + 4] +
               f[i] * x[i + 5] + g[i] * x[i + 6];
  }
}

}  // namespace

double Dot(const KnotGrid& grid, const Knots& a, const Knots& b) {
  std::vector<float> columns(grid.Width());
  for (int row = 0; row < grid.Side(); ++row) {
    const float* one = &a[grid.Cell(row)];
    const float* other = &b[grid.Cell(row)];
    for (std::size_t i = 0; i < columns.size(); ++i) columns[i] += one[i] * other[i];
  }
  return std::accumulate(columns.begin(), columns.end(), 0.0);
}

void AddFiner(const KnotGrid& grid, const Knots& coarse, Knots& fine) {
  const KnotGrid from = grid.Coarser();
  const std::size_t side = from.Stride();
  std::vector<float> line(side + KnotGrid::kRim);
  std::vector<float> both(2 * side);  // at the coarser knots and between them
  for (int row = 0; row < grid.Side(); ++row) {
    std::fill(line.begin(), line.end(), 0.0F);
    const int beyond_first = row - grid.Below(0);
    for (int other = (beyond_first - 1) / 2; other <= beyond_first / 2 + 1; ++other) {
      const int off = row - grid.Below(other);
      AddTimes(kParts[static_cast<std::size_t>(off + kSpread)], &coarse[from.Cell(other)],
               line.data() + 1, side - 1);
    }
    const float* at = line.data();  // beside the first knot
    for (std::size_t i = 0; i < side; ++i) {
      both[2 * i] = 0.125F * (at[i] + at[i + 2]) + 0.75F * at[i + 1];
      both[2 * i + 1] = 0.5F * (at[i + 1] + at[i + 2]);
    }
    AddTimes(1, both.data() - grid.Below(0), &fine[grid.Cell(row)],
             static_cast<std::size_t>(grid.Side()));
  }
}

void SumCoarser(const KnotGrid& grid, const Knots& fine, Knots& coarse) {
  const KnotGrid to = grid.Coarser();
  std::vector<float> line(grid.Stride() + 2 * KnotGrid::kRim);
  const float* const first = line.data() + KnotGrid::kRim + grid.Below(0);
  for (int row = 0; row < to.Side(); ++row) {
    std::fill(line.begin(), line.end(), 0.0F);
    for (int off = -kSpread; off <= kSpread; ++off) {
      const int other = grid.Below(row) + off;
      if (other < 0 || other >= grid.Side()) continue;
      AddTimes(kParts[static_cast<std::size_t>(off + kSpread)], &fine[grid.Cell(other)],
               line.data() + KnotGrid::kRim, grid.Width());
    }
    float* sums = &coarse[to.Cell(row)];
    for (int i = 0; i < to.Side(); ++i) {
      const float* at = first + 2 * i;
      sums[i] = 0.125F * (at[-2] + at[2]) + 0.5F * (at[-1] + at[1]) + 0.75F * at[0];
    }
  }
}

KnotMatrix::KnotMatrix(KnotGrid grid)
    : grid_(grid), parts_(Place(grid.Side(), 0) + KnotGrid::kRim) {}

/// Calls `add` for each row and those near it with the first of seven columns of parts, how far it
/// is to the next, where the seven knots begin, and sums to add to.
template <class Add>
void KnotMatrix::SumRows(Add add, Knots& result) const {
  constexpr std::size_t kBlock = 64;
  const auto stride = static_cast<std::ptrdiff_t>(grid_.Stride());
  for (int row = 0; row < grid_.Side(); ++row) {
    const int from = std::max(row - kReach, 0);
    const int to = std::min(row + kReach, grid_.Side() - 1);
    for (std::size_t start = 0; start < grid_.Width(); start += kBlock) {
      const std::size_t count = std::min(kBlock, grid_.Width() - start);
      float sums[kBlock] = {};
      for (int other = from; other <= to; ++other) {
        const std::size_t knots = grid_.Cell(other) + start - kReach;
        if (other >= row) {
          add(Line(row, other - row) + start, stride, knots, sums, count);
        } else {
          // What upper knots have in this row's, from the left one's part three to the right on.
          const float* parts = Line(other, row - other) + start + 2 * kReach * stride - kReach;
          add(parts, 1 - stride, knots, sums, count);
        }
      }
      std::copy_n(sums, count, &result[grid_.Cell(row) + start]);
    }
  }
}

void KnotMatrix::Multiply(const Knots& x, Knots& product) const {
  SumRows([&x](const float* parts, std::ptrdiff_t apart, std::size_t knots, float* sums,
               std::size_t count) { AddSeven(parts, apart, &x[knots], sums, count); },
          product);
}

Knots KnotMatrix::Sizes() const {
  Knots sizes(grid_.Size());
  SumRows(
      [](const float* parts, std::ptrdiff_t apart, std::size_t, float* sums, std::size_t count) {
        for (std::size_t k = 0; k < kAcross; ++k, parts += apart) {
          for (std::size_t i = 0; i < count; ++i) sums[i] += std::abs(parts[i]);
        }
      },
      sizes);
  return sizes;
}

void CoarsenLine(const KnotGrid& grid, const float* fine, float* coarse) {
  const KnotGrid to = grid.Coarser();
  const auto side = static_cast<std::size_t>(to.Side());
  // Every second number side by side.
  const std::size_t half = side + kSpread;
  std::vector<float> sorted(2 * kAcross * half);
  const auto each = [&](int plane, int off) {
    const auto place = static_cast<std::size_t>(off + kSpread);
    return &sorted[(2 * static_cast<std::size_t>(plane) + place % 2) * half + place / 2];
  };
  for (std::size_t k = 0; k < kAcross; ++k) {
    const float* from = fine + k * grid.Stride() + grid.Below(0) - kSpread;
    float* even = &sorted[2 * k * half];
    float* odd = even + half;
    for (std::size_t i = 0; i < half; ++i) {
      even[i] = from[2 * i];
      odd[i] = from[2 * i + 1];
    }
  }
  for (int apart = -kReach; apart <= kReach; ++apart) {
    float* sums = coarse + static_cast<std::size_t>(apart + kReach) * to.Stride();
    ForEachPair(apart, [&](int one, int between, float part) {
      AddTimes(part, each(between + kReach, one), sums, side);
    });
  }
}

/// First down, then along the rows.
KnotMatrix KnotMatrix::Coarser() const {
  KnotMatrix coarse(grid_.Coarser());
  const std::size_t size = LineSize();
  const std::size_t stride = grid_.Stride();
  std::vector<float> line(size + 2 * KnotGrid::kRim);
  float* const sums = line.data() + KnotGrid::kRim;
  for (int row = 0; row < coarse.grid_.Side(); ++row) {
    for (int below = 0; below <= kReach; ++below) {
      std::fill(line.begin(), line.end(), 0.0F);
      ForEachPair(below, [&](int one, int between, float part) {
        const int own = grid_.Below(row) + one;
        const int other = own + between;
        if (std::min(own, other) < 0 || std::max(own, other) >= grid_.Side()) return;
        if (between >= 0) {
          AddTimes(part, Line(own, between), sums, size);
          return;
        }
        // Parts are held by the upper of two rows.
        const float* const from = Line(other, -between);
        for (std::size_t k = 0; k < kAcross; ++k) {
          AddTimes(part, from + (kAcross - 1 - k) * stride + k - kReach, sums + k * stride,
                   grid_.Width());
        }
      });
      CoarsenLine(grid_, sums, coarse.Line(row, below));
    }
  }
  return coarse;
}

}  // namespace discoplan::figures
