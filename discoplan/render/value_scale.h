// SPDX-License-Identifier: MIT
#pragma once

/// The range of values that a plot's colours cover, and the ten classes in it.

#include <optional>

#include "discoplan/core/wafer.h"

namespace discoplan {

/// With a plot limit in force the range reaches an eighth of the limits' distance beyond each.
struct ValueScale {
  double high;
  double low;

  static ValueScale Of(const wafer& source) {
    const double upper = source.PlotMaximum;
    const double lower = source.PlotMinimum;
    if (!source.HasPlotLimit()) return {upper, lower};
    const double widening = (upper - lower) / 8;
    return {upper + widening, lower - widening};
  }

  bool IsFlat() const { return high == low; }

  /// Where a map's heights begin: a tenth of the range below it.
  double MapFloor() const {
    return IsFlat() ? FloorUnderConstant(low, low < 0) : low - 0.1 * (high - low);
  }

  /// Height of one class where `high` stands at the height `top` and `floor` at zero.
  double ClassStep(double top, double floor) const {
    return top * (1 - 0.1 * (high - low) / (high - floor)) / 10;
  }
};

/// The class, from 0 for the highest to 9, of a height under `top`; nothing for what is no number.
/// The first class is open above and the last one below.
inline std::optional<std::size_t> IntervalClass(double height, double top, double step) {
  std::optional<std::size_t> found;
  if (height >= top - step) found = 0;
  for (std::size_t k = 1; k < 9; ++k) {
    const double above = static_cast<double>(k);
    if (top - (above + 1) * step <= height && height < top - above * step) found = k;
  }
  if (height < top - 9 * step) found = 9;
  return found;
}

}  // namespace discoplan
