// SPDX-License-Identifier: MIT
#pragma once

/// Lines of equal value over a lattice.

#include <functional>
#include <span>
#include <vector>

#include "discoplan/export.h"
#include "discoplan/figures/shapes.h"
#include "discoplan/figures/value_field.h"

namespace discoplan::figures {

/// Joined pieces in the lattice's millimetres, ends on its border or closed, by marching squares;
/// the middle of a saddle's cell tells which corners belong together.
DISCOPLAN_EXPORT std::vector<std::vector<Point>> Isolines(const Lattice& lattice,
                                                          std::span<const float> values,
                                                          double level);

/// The pieces of a line that lie inside, their ends on the border.
DISCOPLAN_EXPORT std::vector<std::vector<Point>> Clipped(
    const std::vector<Point>& line, const std::function<bool(Point)>& is_inside);

}  // namespace discoplan::figures
