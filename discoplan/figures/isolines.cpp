// SPDX-License-Identifier: MIT
#include "discoplan/figures/isolines.h"

#include <array>
#include <cmath>

namespace discoplan::figures {
namespace {

constexpr std::size_t kNone = static_cast<std::size_t>(-1);

/// The line crosses edges of the lattice, of which the one to the right of point i is 2 i and the
/// one below it 2 i + 1; each is linked with at most two others.
class Crossings {
 public:
  Crossings(const Lattice& lattice, std::span<const float> values, double level)
      : lattice_(lattice),
        values_(values),
        level_(level),
        links_(2 * lattice.Size(), {kNone, kNone}) {
    const auto width = static_cast<std::size_t>(lattice.columns);
    for (std::size_t row = 0; row + 1 < static_cast<std::size_t>(lattice.rows); ++row) {
      for (std::size_t column = 0; column + 1 < width; ++column) Cross(row * width + column, width);
    }
  }

  std::vector<std::vector<Point>> Lines() {
    std::vector<std::vector<Point>> lines;
    for (const bool closed : {false, true}) {
      for (const std::size_t edge : touched_) {
        const auto& link = links_[edge];
        const bool is_end = (link[0] == kNone) != (link[1] == kNone);
        const bool is_left = link[0] != kNone || link[1] != kNone;
        if (is_left && (closed || is_end)) lines.push_back(Follow(edge));
      }
    }
    return lines;
  }

 private:
  bool Above(std::size_t point) const { return values_[point] >= level_; }

  void Cross(std::size_t at, std::size_t width) {
    const std::array<std::size_t, 4> corners = {at, at + 1, at + width + 1, at + width};
    unsigned mask = 0;
    for (unsigned k = 0; k < 4; ++k) mask |= static_cast<unsigned>(Above(corners[k])) << k;
    if (mask == 0 || mask == 15) return;
    const std::array<std::size_t, 4> edges = {2 * at, 2 * (at + 1) + 1, 2 * (at + width),
                                              2 * at + 1};
    if (mask == 5 || mask == 10) {
      double middle = 0;
      for (const std::size_t corner : corners) middle += values_[corner] / 4.0;
      const bool joins_first = (middle >= level_) == (mask == 5);
      Link(edges[0], edges[joins_first ? 1 : 3]);
      Link(edges[2], edges[joins_first ? 3 : 1]);
      return;
    }
    std::size_t first = kNone;
    for (unsigned k = 0; k < 4; ++k) {
      const bool crossed = (mask >> k & 1) != (mask >> (k + 1) % 4 & 1);
      if (!crossed) continue;
      if (first == kNone) {
        first = edges[k];
      } else {
        Link(first, edges[k]);
      }
    }
  }

  void Link(std::size_t a, std::size_t b) {
    for (const auto& [from, to] : {std::pair(a, b), std::pair(b, a)}) {
      auto& link = links_[from];
      if (link[0] == kNone && link[1] == kNone) touched_.push_back(from);
      link[link[0] == kNone ? 0 : 1] = to;
    }
  }

  Point PointOf(std::size_t edge) const {
    const auto width = static_cast<std::size_t>(lattice_.columns);
    const std::size_t a = edge / 2;
    const bool down = edge % 2 == 1;
    const std::size_t b = down ? a + width : a + 1;
    const double part = (level_ - values_[a]) / (static_cast<double>(values_[b]) - values_[a]);
    const double x = lattice_.X(static_cast<int>(a % width));
    const double y = lattice_.Y(static_cast<int>(a / width));
    return down ? Point{x, y - part * lattice_.step} : Point{x + part * lattice_.step, y};
  }

  std::vector<Point> Follow(std::size_t edge) {
    std::vector<Point> line = {PointOf(edge)};
    while (true) {
      auto& link = links_[edge];
      const std::size_t next = link[0] != kNone ? link[0] : link[1];
      if (next == kNone) return line;
      Unlink(edge, next);
      Unlink(next, edge);
      edge = next;
      line.push_back(PointOf(edge));
    }
  }

  void Unlink(std::size_t from, std::size_t to) {
    for (std::size_t& end : links_[from]) {
      if (end != to) continue;
      end = kNone;
      return;
    }
  }

  const Lattice& lattice_;
  std::span<const float> values_;
  double level_;
  std::vector<std::array<std::size_t, 2>> links_;
  std::vector<std::size_t> touched_;
};

}  // namespace

std::vector<std::vector<Point>> Isolines(const Lattice& lattice, std::span<const float> values,
                                         double level) {
  return Crossings(lattice, values, level).Lines();
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
