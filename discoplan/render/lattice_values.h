// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cmath>
#include <cstddef>
#include <limits>
#include <vector>

#include "discoplan/core/lattice_interpolation.h"
#include "discoplan/core/numbers.h"
#include "discoplan/core/wafer.h"

namespace discoplan {

/// In mm from the wafer's centre.
struct LatticePosition {
  double x;
  double y;
};

/// The interpolated values of a lattice that is walked line by line, computed a few lines ahead.
/// `Lattice` has `Position(i, j)` and `IsWanted(i, j)`; a point that isn't wanted may be asked for
/// all the same.
template <class Lattice>
class LatticeValues {
 public:
  LatticeValues(const wafer& source, const Lattice& lattice, int columns)
      : source_(source), lattice_(lattice), interpolation_(source), columns_(columns) {}

  /// `Overflow` for a position that isn't within 32-bit floats.
  float At(int i, int j) {
    const LatticePosition at = lattice_.Position(i, j);
    const float x = ToFloat(at.x);
    const float y = ToFloat(at.y);
    Strip& strip = strips_[static_cast<std::size_t>(j / kLines % 2)];
    if (strip.number != j / kLines) Fill(strip, j / kLines);
    const Site& point = strip.points[static_cast<std::size_t>(j % kLines * columns_ + i)];
    return std::isnan(point.x) ? source_.Interpolation(x, y) : point.z;
  }

 private:
  static constexpr int kLines = 4;

  struct Strip {
    int number = -1;
    std::vector<Site> points;
  };

  void Fill(Strip& strip, int number) {
    strip.number = number;
    strip.points.clear();
    for (int j = number * kLines; j < (number + 1) * kLines; ++j) {
      for (int i = 0; i < columns_; ++i) {
        const LatticePosition at = lattice_.Position(i, j);
        strip.points.push_back({.x = lattice_.IsWanted(i, j)
                                         ? static_cast<float>(at.x)
                                         : std::numeric_limits<float>::quiet_NaN(),
                                .y = static_cast<float>(at.y)});
      }
    }
    interpolation_.Evaluate(strip.points, static_cast<std::size_t>(columns_));
  }

  const wafer& source_;
  const Lattice& lattice_;
  const LatticeInterpolation interpolation_;
  const int columns_;
  std::array<Strip, 2> strips_;  // a cell has corners in two lines
};

}  // namespace discoplan
