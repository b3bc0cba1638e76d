// SPDX-License-Identifier: MIT
#include "discoplan/figures/lattice_spline.h"

#include <algorithm>
#include <cmath>

namespace discoplan::figures {
namespace {

/// Of solvers for several weights together.
constexpr std::size_t kMostKeptBytes = 2 << 20;

/// The first of four knots along one side, and how far the place is beyond the second; what is
/// beyond the border is at the border.
struct Spot {
  int first;
  float part;
};
Spot SpotAt(double place, int count) {
  const int cell = std::clamp(static_cast<int>(place), 1, count - 3);
  return {cell - 1, static_cast<float>(std::clamp(place - cell, 0.0, 1.0))};
}

/// What each of the four counts.
inline std::array<float, 4> WeightsAt(float t) {
  const float u = t * t;
  const float v = u * t;
  constexpr float kSixth = 1 / 6.0F;
  return {(1 - 3 * t + 3 * u - v) * kSixth, (4 - 6 * u + 3 * v) * kSixth,
          (1 + 3 * t + 3 * u - 3 * v) * kSixth, v * kSixth};
}

}  // namespace

LatticeSpline::LatticeSpline(double half_side, double pitch)
    : LatticeSpline(KnotGrid{std::max(2, static_cast<int>(std::ceil(half_side / pitch)) + 1)},
                    pitch) {
  sites_.emplace_back(grid_);
}

LatticeSpline LatticeSpline::Copy() const {
  LatticeSpline copy(grid_, pitch_);
  copy.sites_.push_back(sites_.front());
  return copy;
}

Lattice LatticeSpline::KnotLattice() const {
  const double edge = pitch_ * grid_.half;
  return {-edge, edge, pitch_, grid_.Side(), grid_.Side()};
}

SplineTap LatticeSpline::TapOf(double x, double y) const {
  const double middle = grid_.half;
  const Spot across = SpotAt(middle + x / pitch_, grid_.Side());
  const Spot down = SpotAt(middle - y / pitch_, grid_.Side());
  return {static_cast<std::uint32_t>(grid_.Cell(down.first, across.first)), across.part, down.part};
}

void LatticeSpline::Add(const SplineTap& place) {
  constexpr std::size_t kAcross = KnotMatrix::kAcross;
  constexpr std::size_t kReach = KnotMatrix::kReach;
  const std::array<float, 4> across = WeightsAt(place.across);
  const std::array<float, 4> down = WeightsAt(place.down);
  // Products with each of the four and those up to three beside it.
  std::array<std::array<float, 4>, kAcross> products = {};
  for (std::size_t k = 0; k < 4; ++k) {
    for (std::size_t partner = 0; partner < 4; ++partner) {
      products[partner + kReach - k][k] = across[k] * across[partner];
    }
  }
  const std::size_t stride = grid_.Stride();
  const std::size_t corner = place.first - grid_.Cell(0);
  const auto row = static_cast<int>(corner / stride);
  const std::size_t column = corner % stride;
  KnotMatrix& matrix = sites_.front();
  for (std::size_t upper = 0; upper < 4; ++upper) {
    for (std::size_t below = 0; upper + below < 4; ++below) {
      const float weight = down[upper] * down[upper + below];
      float* line = matrix.Line(row + static_cast<int>(upper), static_cast<int>(below)) + column;
      for (const std::array<float, 4>& of_four : products) {
        std::array<float, 4> sums;
        for (std::size_t k = 0; k < 4; ++k) sums[k] = line[k] + weight * of_four[k];
        for (std::size_t k = 0; k < 4; ++k) line[k] = sums[k];
        line += stride;
      }
    }
  }
  // What was made of fewer sites.
  if (sites_.size() > 1) sites_.erase(sites_.begin() + 1, sites_.end());
  of_bending_.clear();
}

void LatticeSpline::AddValue(const SplineTap& place, float value, Knots& sums) const {
  float* at = &sums[place.first];
  const std::array<float, 4> across = WeightsAt(place.across);
  for (const float down : WeightsAt(place.down)) {
    const float weight = down * value;
    std::array<float, 4> now;
    for (std::size_t k = 0; k < 4; ++k) now[k] = at[k] + weight * across[k];
    for (std::size_t k = 0; k < 4; ++k) at[k] = now[k];
    at += grid_.Stride();
  }
}

float LatticeSpline::At(const Knots& found, const SplineTap& place) const {
  const float* at = &found[place.first];
  const std::array<float, 4> across = WeightsAt(place.across);
  float value = 0;
  for (const float down : WeightsAt(place.down)) {
    value += down * (at[0] * across[0] + at[1] * across[1] + at[2] * across[2] + at[3] * across[3]);
    at += grid_.Stride();
  }
  return value;
}

int LatticeSpline::Improve(const Knots& sums, Aim aim, Knots& found) {
  if (sites_.size() == 1) {
    std::vector<KnotMatrix> all = AllLevels(std::move(sites_.front()));
    sites_ = std::move(all);
  }
  const double weight = aim.bending / (pitch_ * pitch_);
  auto solver = of_bending_.find(weight);
  if (solver == of_bending_.end()) {
    if (!aim.keeps) {
      return KnotSolver(sites_, static_cast<float>(weight)).Improve(sums, aim.enough, found);
    }
    if (!of_bending_.empty() &&
        (of_bending_.size() + 1) * of_bending_.begin()->second.Bytes() > kMostKeptBytes) {
      of_bending_.clear();
    }
    solver = of_bending_.try_emplace(weight, sites_, static_cast<float>(weight)).first;
  }
  return solver->second.Improve(sums, aim.enough, found);
}

std::vector<float> LatticeSpline::Coefficients(const Knots& found) const {
  std::vector<float> coefficients;
  coefficients.reserve(KnotLattice().Size());
  for (int row = 0; row < grid_.Side(); ++row) {
    const auto from = found.begin() + static_cast<std::ptrdiff_t>(grid_.Cell(row));
    coefficients.insert(coefficients.end(), from, from + grid_.Side());
  }
  return coefficients;
}

}  // namespace discoplan::figures
