// SPDX-License-Identifier: MIT
#include "discoplan/figures/refine.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "discoplan/base/wide_loops.h"

namespace discoplan::figures {
namespace {

std::array<float, 4> WeightsAt(double t, Points points) {
  const double u = t * t;
  const double v = u * t;
  if (points == Points::Values) {
    return {static_cast<float>((-v + 2 * u - t) / 2), static_cast<float>((3 * v - 5 * u + 2) / 2),
            static_cast<float>((-3 * v + 4 * u + t) / 2), static_cast<float>((v - u) / 2)};
  }
  return {static_cast<float>((1 - 3 * t + 3 * u - v) / 6),
          static_cast<float>((4 - 6 * u + 3 * v) / 6),
          static_cast<float>((1 + 3 * t + 3 * u - 3 * v) / 6), static_cast<float>(v / 6)};
}

/// A row of the coarse lattice at the places of the fine one.
DISCOPLAN_WIDE_LOOPS void RefineAcross(const float* from, std::span<const Tap> taps, float* to) {
  for (std::size_t i = 0; i < taps.size(); ++i) {
    const float* four = from + taps[i].first;
    const auto& w = taps[i].weights;
    to[i] = four[0] * w[0] + four[1] * w[1] + four[2] * w[2] + four[3] * w[3];
  }
}

/// A row between four of them.
DISCOPLAN_WIDE_LOOPS void RefineDown(const std::array<const float*, 4>& rows,
                                     const std::array<float, 4>& w, std::span<float> to) {
  for (std::size_t i = 0; i < to.size(); ++i) {
    to[i] = rows[0][i] * w[0] + rows[1][i] * w[1] + rows[2][i] * w[2] + rows[3][i] * w[3];
  }
}

}  // namespace

Tap TapAt(double place, int count, Points points) {
  // What is below the first cell is rounded up to it.
  const int cell = std::clamp(static_cast<int>(place), 1, count - 3);
  return {cell - 1, WeightsAt(std::clamp(place - cell, 0.0, 1.0), points)};
}

void Refine(const Lattice& coarse, std::span<const float> values, const Lattice& fine,
            std::span<float> refined, Points points) {
  const auto width = static_cast<std::size_t>(fine.columns);
  std::vector<Tap> taps;
  taps.reserve(width);
  for (int i = 0; i < fine.columns; ++i) {
    taps.push_back(TapAt((fine.X(i) - coarse.x0) / coarse.step, coarse.columns, points));
  }
  // Rows of the coarse lattice, refined along X, four of them at a time.
  std::array<std::vector<float>, 4> rows;
  std::array<int, 4> held = {-1, -1, -1, -1};
  for (std::vector<float>& row : rows) row.resize(width);
  for (int j = 0; j < fine.rows; ++j) {
    const Tap down = TapAt((coarse.y0 - fine.Y(j)) / coarse.step, coarse.rows, points);
    std::array<const float*, 4> used;
    for (int k = 0; k < 4; ++k) {
      const int number = down.first + k;
      const auto slot = static_cast<std::size_t>(number % 4);
      used[static_cast<std::size_t>(k)] = rows[slot].data();
      if (held[slot] == number) continue;
      held[slot] = number;
      const float* from = values.data() + static_cast<std::size_t>(number) *
                                              static_cast<std::size_t>(coarse.columns);
      RefineAcross(from, taps, rows[slot].data());
    }
    RefineDown(used, down.weights, refined.subspan(static_cast<std::size_t>(j) * width, width));
  }
}

}  // namespace discoplan::figures
