// SPDX-License-Identifier: MIT
#pragma once

/// What of lines and areas lies in a box.

#include <optional>
#include <utility>
#include <vector>

#include "discoplan/figures/shapes.h"

namespace discoplan::figures {

/// The part of a line within the box, its edges among it (Liang and Barsky 1984); nothing for none.
std::optional<std::pair<Point, Point>> ClippedLine(Point from, Point to, const Box& box);

/// The outline of an area within the box (Sutherland and Hodgman 1974): empty for none. One of
/// several parts has them joined along the box's edges, which fills the same.
std::vector<Point> ClippedArea(std::vector<Point> outline, const Box& box);

/// Around the points; there is one at least.
Box BoxAround(const std::vector<Point>& points);

}  // namespace discoplan::figures
