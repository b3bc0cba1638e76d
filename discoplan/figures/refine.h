// SPDX-License-Identifier: MIT
#pragma once

/// Smooth values in between the points of a square lattice, from the sixteen around each place.

#include <array>
#include <span>

#include "discoplan/export.h"
#include "discoplan/figures/value_field.h"

namespace discoplan::figures {

/// What the numbers at the points are: values that the surface goes through (cubic convolution, R.
/// G. Keys, 1981), or coefficients of cubic B-splines.
enum class Points { Values, Coefficients };

/// Four neighbouring points along one side, and what each counts.
struct Tap {
  int first;
  std::array<float, 4> weights;
};
/// Around a place in steps of the lattice, one of `count` points; beyond the border that of the
/// border.
Tap TapAt(double place, int count, Points points);

/// Values at the points of another lattice.
DISCOPLAN_EXPORT void Refine(const Lattice& coarse, std::span<const float> values,
                             const Lattice& fine, std::span<float> refined,
                             Points points = Points::Values);

}  // namespace discoplan::figures
