// SPDX-License-Identifier: MIT
#pragma once

/// The range of values that a plot's colours cover, and the ten classes in it.

#include <optional>

#include "discoplan/core/wafer_data.h"

namespace discoplan {

/// With a plot limit in force the range reaches an eighth of the limits' distance beyond each.
struct ValueScale {
  double high;
  double low;

  static ValueScale Of(const WaferData& data) {
    const double upper = data.plot_maximum;
    const double lower = data.plot_minimum;
    if (!data.HasPlotLimit()) return {upper, lower};
    const double widening = (upper - lower) / 8;
    return {upper + widening, lower - widening};
  }

  bool IsFlat() const { return high == low; }

  /// Where a map's heights begin: a tenth of the range below it.
  double MapFloor() const {
    return IsFlat() ? FloorUnderConstant(low, low < 0) : low - 0.1 * (high - low);
  }

  /// Height of a value where `high` stands at the height `top` and `floor` at zero.
  double Height(double value, double top, double floor) const {
    return (value - floor) * top / (high - floor);
  }

  /// Height of one class where `high` stands at the height `top` and `floor` at zero.
  double ClassStep(double top, double floor) const {
    return top * (1 - 0.1 * (high - low) / (high - floor)) / 10;
  }
};

/// The class, from 0 for the highest to 9, of a height; nothing for what is no number. Class k lies
/// between `end(k)` and `end(k + 1)`; the first is open above and the last one below. Where the
/// ends rise, all else than the last class is the first one.
template <class End>
std::optional<std::size_t> ClassBetween(double height, End&& end) {
  for (std::size_t k = 9; k > 0; --k) {
    if (height < end(k)) return k;
  }
  if (height >= end(1)) return 0;
  return {};
}

/// The same where the classes are `step` high and the first begins at `top`.
inline std::optional<std::size_t> IntervalClass(double height, double top, double step) {
  return ClassBetween(height, [&](std::size_t k) { return top - static_cast<double>(k) * step; });
}

/// A cell whose colour is this number stays unpainted.
inline constexpr float kUnpainted = 15;

/// Colour of a class. A scale without extent has one colour; what has no class keeps the old one.
inline void ChooseIntervalColour(const WaferData& data, bool flat, std::optional<std::size_t> k,
                                 float& colour) {
  if (flat) k = 5;
  if (k) colour = data.interval_colours[*k];
}

/// Colour above, within and below a band of heights; without extent all is within.
inline float BandColour(const WaferData& data, bool flat, float height, double low, double high) {
  return !flat && height < low    ? data.aux_colours[2]
         : !flat && height > high ? data.aux_colours[0]
                                  : data.aux_colours[1];
}

}  // namespace discoplan
