// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <limits>
#include <span>
#include <vector>

#include "discoplan/base/numbers.h"
#include "discoplan/base/points.h"
#include "discoplan/core/interpolation/site_interpolator.h"
#include "discoplan/core/wafer_data.h"

namespace discoplan {

/// The interpolated values of a lattice that is walked line by line, computed a few lines ahead, or
/// many if workers share them. `Lattice` has `Position(i, j)` and `IsWanted(i, j)`, which is true
/// only of positions within 32-bit floats.
template <class Lattice>
class LatticeValues {
 public:
  LatticeValues(const WaferData& data, const Lattice& lattice, int columns, int lines)
      : lattice_(lattice),
        interpolator_(data),
        columns_(columns),
        lines_(lines),
        lines_ahead_(data.workers == nullptr ? kLines : std::max(kLines, kSharedPoints / columns)) {
  }

  /// The values along a line, with an `x` that is not a number at points that aren't wanted.
  std::span<const Site> Line(int j) {
    const int number = j / lines_ahead_;
    Strip& strip = strips_[static_cast<std::size_t>(number % 2)];
    if (strip.number != number) Fill(strip, number);
    return std::span(strip.points)
        .subspan(static_cast<std::size_t>(j % lines_ahead_ * columns_),
                 static_cast<std::size_t>(columns_));
  }

  /// The value anywhere, given its line. Not a number for a position beyond 32-bit floats.
  float At(std::span<const Site> line, int i, int j) const {
    const Site& point = line[static_cast<std::size_t>(i)];
    if (!std::isnan(point.x)) return point.z;
    const WaferPoint at = lattice_.Position(i, j);
    float x = 0;
    float y = 0;
    if (!Narrow(at.x, x) || !Narrow(at.y, y)) return std::numeric_limits<float>::quiet_NaN();
    return interpolator_.At(x, y);
  }

 private:
  static constexpr int kLines = 4;
  /// Enough to keep several threads busy, in a few megabytes.
  static constexpr int kSharedPoints = 1 << 17;

  struct Strip {
    int number = -1;
    std::vector<Site> points;
  };

  void Fill(Strip& strip, int number) {
    const int first = number * lines_ahead_;
    const int end = std::min(first + lines_ahead_, lines_);
    strip.number = number;
    strip.points.resize(static_cast<std::size_t>((end - first) * columns_));
    Site* point = strip.points.data();
    for (int j = first; j < end; ++j) {
      for (int i = 0; i < columns_; ++i) {
        const WaferPoint at = lattice_.Position(i, j);
        *point++ = {.x = lattice_.IsWanted(i, j) ? static_cast<float>(at.x)
                                                 : std::numeric_limits<float>::quiet_NaN(),
                    .y = static_cast<float>(at.y)};
      }
    }
    interpolator_.Evaluate(strip.points, static_cast<std::size_t>(columns_));
  }

  const Lattice& lattice_;
  const SiteInterpolator interpolator_;
  const int columns_;
  const int lines_;
  const int lines_ahead_;
  std::array<Strip, 2> strips_;  // a cell has corners in two lines
};

}  // namespace discoplan
