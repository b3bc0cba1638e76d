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

/// The interpolated values of a lattice that is walked line by line, computed a few lines ahead, or
/// all at once if workers share them. `Lattice` has `Position(i, j)` and `IsWanted(i, j)`; a point
/// that isn't wanted may be asked for all the same.
template <class Lattice>
class LatticeValues {
 public:
  LatticeValues(const wafer& source, const Lattice& lattice, int columns, int lines)
      : source_(source),
        lattice_(lattice),
        interpolation_(source),
        columns_(columns),
        lines_ahead_(source.Workers() == nullptr ? 4 : lines) {}

  /// `Overflow` for a position that isn't within 32-bit floats.
  float At(int i, int j) {
    const LatticePosition at = lattice_.Position(i, j);
    const float x = ToFloat(at.x);
    const float y = ToFloat(at.y);
    const int number = j / lines_ahead_;
    Strip& strip = strips_[static_cast<std::size_t>(number % 2)];
    if (strip.number != number) Fill(strip, number);
    const Site& point = strip.points[static_cast<std::size_t>(j % lines_ahead_ * columns_ + i)];
    return std::isnan(point.x) ? source_.Interpolation(x, y) : point.z;
  }

 private:
  struct Strip {
    int number = -1;
    std::vector<Site> points;
  };

  void Fill(Strip& strip, int number) {
    strip.number = number;
    strip.points.clear();
    for (int j = number * lines_ahead_; j < (number + 1) * lines_ahead_; ++j) {
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
  const int lines_ahead_;
  std::array<Strip, 2> strips_;  // a cell has corners in two lines
};

}  // namespace discoplan
