// SPDX-License-Identifier: MIT
#include "discoplan/figures/isolines.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <limits>

#include "discoplan/base/wide_loops.h"

namespace discoplan::figures {
namespace {

constexpr std::uint32_t kNone = std::numeric_limits<std::uint32_t>::max();

DISCOPLAN_WIDE_LOOPS void MarkAbove(std::span<const float> values, float least,
                                    unsigned char* marks) {
  for (std::size_t i = 0; i < values.size(); ++i) marks[i] = values[i] >= least ? 1 : 0;
}

/// Passes cells that lie on one side, eight points of both rows at once: few cells are crossed.
std::size_t NextCrossed(std::span<const unsigned char> upper, std::span<const unsigned char> lower,
                        std::size_t column) {
  constexpr std::uint64_t kAllAbove = 0x0101010101010101;
  while (column + 8 <= upper.size()) {
    std::uint64_t over;
    std::uint64_t under;
    std::memcpy(&over, &upper[column], sizeof over);
    std::memcpy(&under, &lower[column], sizeof under);
    if (over != under || (over != 0 && over != kAllAbove)) break;
    column += 7;
  }
  return column;
}

}  // namespace

IsolineFinder::IsolineFinder(const Lattice& lattice, std::span<const float> values)
    : lattice_(lattice),
      values_(values),
      below_(static_cast<std::size_t>(std::max(lattice.columns, 0)), kNone) {}

std::vector<std::vector<Point>> IsolineFinder::Lines(double level) {
  level_ = level;
  const auto width = static_cast<std::size_t>(lattice_.columns);
  // Bits of which points of a row are above, for its cells and those of the next one.
  std::vector<unsigned char> upper(width);
  std::vector<unsigned char> lower(width);
  // The least float that is, for comparisons of many at once.
  auto least = static_cast<float>(level);
  if (least < level) least = std::nextafter(least, std::numeric_limits<float>::infinity());
  const auto take = [&](std::size_t row, std::vector<unsigned char>& above) {
    MarkAbove(values_.subspan(row * width, width), least, above.data());
  };
  if (lattice_.rows > 0) take(0, lower);
  for (std::size_t row = 0; row + 1 < static_cast<std::size_t>(lattice_.rows); ++row) {
    upper.swap(lower);
    take(row + 1, lower);
    for (std::size_t column = 0; column + 1 < width; ++column) {
      column = NextCrossed(upper, lower, column);
      if (column + 1 >= width) break;
      const auto mask = static_cast<unsigned>(upper[column] | upper[column + 1] << 1 |
                                              lower[column + 1] << 2 | lower[column] << 3);
      if (mask != 0 && mask != 15) Cross(row * width + column, column, mask);
    }
  }
  std::vector<std::vector<Point>> lines;
  for (const bool closed : {false, true}) {
    for (Number i = 0; i < crossings_.size(); ++i) {
      const auto& next = crossings_[i].next;
      const bool is_end = (next[0] == kNone) != (next[1] == kNone);
      const bool is_left = next[0] != kNone || next[1] != kNone;
      if (is_left && (closed || is_end)) lines.push_back(Follow(i));
    }
  }
  crossings_.clear();
  return lines;
}

void IsolineFinder::Cross(std::size_t at, std::size_t column, unsigned mask) {
  const auto width = static_cast<std::size_t>(lattice_.columns);
  const std::array<std::size_t, 4> corners = {at, at + 1, at + width + 1, at + width};
  // Above, to the right, below and to the left. The cells above and to the left came before and
  // have crossed the edges that they share with this one.
  const std::array<std::size_t, 4> edges = {2 * at, 2 * (at + 1) + 1, 2 * (at + width), 2 * at + 1};
  const Number above = at >= width ? below_[column] : kNone;
  const Number left = column > 0 ? right_ : kNone;
  const auto crossing_of = [&](unsigned side) {
    if (side == 0 && above != kNone) return above;
    if (side == 3 && left != kNone) return left;
    const auto added = static_cast<Number>(crossings_.size());
    crossings_.push_back({static_cast<Number>(edges[side]), {kNone, kNone}});
    if (side == 1) right_ = added;
    if (side == 2) below_[column] = added;
    return added;
  };
  const auto link = [&](unsigned a, unsigned b) {
    const Number first = crossing_of(a);
    Link(first, crossing_of(b));
  };
  if (mask == 5 || mask == 10) {
    double middle = 0;
    for (const std::size_t corner : corners) middle += values_[corner] / 4.0;
    const bool joins_first = (middle >= level_) == (mask == 5);
    link(0, joins_first ? 1 : 3);
    link(2, joins_first ? 3 : 1);
    return;
  }
  unsigned first = 4;
  for (unsigned k = 0; k < 4; ++k) {
    const bool crossed = (mask >> k & 1) != (mask >> (k + 1) % 4 & 1);
    if (!crossed) continue;
    if (first == 4) {
      first = k;
    } else {
      link(first, k);
    }
  }
}

void IsolineFinder::Link(Number a, Number b) {
  const auto join = [this](Number from, Number to) {
    auto& next = crossings_[from].next;
    next[next[0] == kNone ? 0 : 1] = to;
  };
  join(a, b);
  join(b, a);
}

void IsolineFinder::Unlink(Number from, Number to) {
  for (Number& end : crossings_[from].next) {
    if (end != to) continue;
    end = kNone;
    return;
  }
}

Point IsolineFinder::PointOf(Number edge) const {
  const auto width = static_cast<std::size_t>(lattice_.columns);
  const std::size_t a = edge / 2;
  const bool down = edge % 2 == 1;
  const std::size_t b = down ? a + width : a + 1;
  const double part = (level_ - values_[a]) / (static_cast<double>(values_[b]) - values_[a]);
  const double x = lattice_.X(static_cast<int>(a % width));
  const double y = lattice_.Y(static_cast<int>(a / width));
  return down ? Point{x, y - part * lattice_.step} : Point{x + part * lattice_.step, y};
}

std::vector<Point> IsolineFinder::Follow(Number crossing) {
  std::vector<Point> line = {PointOf(crossings_[crossing].edge)};
  while (true) {
    const auto& ends = crossings_[crossing].next;
    const Number next = ends[0] != kNone ? ends[0] : ends[1];
    if (next == kNone) return line;
    Unlink(crossing, next);
    Unlink(next, crossing);
    crossing = next;
    line.push_back(PointOf(crossings_[crossing].edge));
  }
}

namespace {

double Cross(Point a, Point b) { return a.x * b.y - a.y * b.x; }

/// The directions from a point in which a straight line passes others near enough.
class Sleeve {
 public:
  Sleeve(Point start, double tolerance) : start_(start), tolerance_(tolerance) {}

  /// Whether the line may end there; then it has to pass that point too.
  bool Takes(Point point) {
    const Point to = point - start_;
    const double length = std::sqrt(to.x * to.x + to.y * to.y);
    // A line that turns back would leave what it has passed.
    if (length < farthest_) return false;
    farthest_ = length;
    if (is_bounded_ && (Cross(right_, to) < 0 || Cross(to, left_) < 0)) return false;
    if (length <= tolerance_) return true;
    const double s = tolerance_ / length;
    const double c = std::sqrt(1 - s * s);
    const Point left = {c * to.x - s * to.y, c * to.y + s * to.x};
    const Point right = {c * to.x + s * to.y, c * to.y - s * to.x};
    if (!is_bounded_ || Cross(left_, left) < 0) left_ = left;
    if (!is_bounded_ || Cross(right_, right) > 0) right_ = right;
    is_bounded_ = true;
    return true;
  }

 private:
  Point start_;
  double tolerance_;
  double farthest_ = 0;
  bool is_bounded_ = false;
  Point left_;
  Point right_;
};

}  // namespace

std::vector<Point> Thinned(const std::vector<Point>& line, double tolerance) {
  if (line.size() < 3) return line;
  std::vector<Point> kept = {line.front()};
  Sleeve sleeve(line.front(), tolerance);
  for (std::size_t i = 1; i < line.size(); ++i) {
    if (sleeve.Takes(line[i])) continue;
    kept.push_back(line[i - 1]);
    sleeve = Sleeve(line[i - 1], tolerance);
    sleeve.Takes(line[i]);
  }
  kept.push_back(line.back());
  return kept;
}

std::vector<std::vector<Point>> Clipped(const std::vector<Point>& line,
                                        const std::function<bool(Point)>& is_inside) {
  std::vector<std::vector<Point>> pieces;
  bool inside = false;
  for (std::size_t i = 0; i < line.size(); ++i) {
    const bool now = is_inside(line[i]);
    if (i > 0 && now != inside) {
      Point in = now ? line[i] : line[i - 1];
      Point out = now ? line[i - 1] : line[i];
      for (int k = 0; k < 20; ++k) {
        const Point middle = (in + out) * 0.5;
        (is_inside(middle) ? in : out) = middle;
      }
      if (now) pieces.emplace_back();
      pieces.back().push_back(in);
    } else if (now && i == 0) {
      pieces.emplace_back();
    }
    if (now) pieces.back().push_back(line[i]);
    inside = now;
  }
  return pieces;
}

}  // namespace discoplan::figures
