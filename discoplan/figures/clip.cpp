// SPDX-License-Identifier: MIT
#include "discoplan/figures/clip.h"

#include <array>

namespace discoplan::figures {
namespace {

/// How far a point lies within one edge of a box; below 0 beyond it.
using Inset = double (*)(Point, const Box&);
constexpr std::array<Inset, 4> kInsets = {
    [](Point p, const Box& box) { return p.x - box.left; },
    [](Point p, const Box& box) { return box.right - p.x; },
    [](Point p, const Box& box) { return p.y - box.top; },
    [](Point p, const Box& box) { return box.bottom - p.y; },
};

}  // namespace

std::optional<std::pair<Point, Point>> ClippedLine(Point from, Point to, const Box& box) {
  double begin = 0, end = 1;
  for (const Inset inset : kInsets) {
    const double a = inset(from, box);
    const double b = inset(to, box);
    if (a < 0 && b < 0) return {};
    if (a < 0) begin = std::max(begin, a / (a - b));
    if (b < 0) end = std::min(end, a / (a - b));
  }
  if (begin > end) return {};
  const Point along = to - from;
  return std::pair{begin > 0 ? from + along * begin : from, end < 1 ? from + along * end : to};
}

std::vector<Point> ClippedArea(std::vector<Point> outline, const Box& box) {
  for (const Inset inset : kInsets) {
    std::vector<Point> kept;
    for (std::size_t i = 0; i < outline.size(); ++i) {
      const Point from = outline[i];
      const Point to = outline[(i + 1) % outline.size()];
      const double a = inset(from, box);
      const double b = inset(to, box);
      if (a >= 0) kept.push_back(from);
      if ((a < 0) != (b < 0)) kept.push_back(from + (to - from) * (a / (a - b)));
    }
    outline = std::move(kept);
  }
  return outline;
}

Box BoxAround(const std::vector<Point>& points) {
  Box box{points[0].x, points[0].y, points[0].x, points[0].y};
  for (const Point p : points) {
    box = {std::min(box.left, p.x), std::min(box.top, p.y), std::max(box.right, p.x),
           std::max(box.bottom, p.y)};
  }
  return box;
}

}  // namespace discoplan::figures
