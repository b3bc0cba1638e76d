// SPDX-License-Identifier: MIT
#include "hosts/headless/shape_cells.h"

#include <cmath>
#include <limits>

namespace discoplan {
namespace {

constexpr int kPart = 256;  // of a pixel

// Lines go to all sides in turn, which no branch foretells: choices are made by masks.

/// All bits set, or none.
template <class Number>
Number MaskOf(bool all) {
  return -static_cast<Number>(all);
}

/// Rounded down, with what is left over.
template <class Number>
struct Quotient {
  Number whole;
  Number rest;

  Quotient(Number a, Number b) : whole(a / b), rest(a % b) {
    const auto below = MaskOf<Number>(rest < 0);
    whole += below;
    rest += below & b;
  }
};

/// Gives the same again and again, and one more whenever what was left over makes a whole.
template <class Number>
class EvenShares {
 public:
  EvenShares(Number each, Number of, Number rest_before)
      : each_(each, of), of_(of), rest_(rest_before - of) {}

  int Next() {
    rest_ += each_.rest;
    const auto is_whole = MaskOf<Number>(rest_ >= 0);
    rest_ -= is_whole & of_;
    return static_cast<int>(each_.whole - is_whole);
  }

 private:
  Quotient<Number> each_;
  Number of_;
  Number rest_;
};

/// Of a line that goes from one strip, of a pixel's width, to others.
struct Walk {
  int step;
  int edge;   // of a strip that it leaves
  int first;  // from its start to that edge
};
Walk WalkOf(int from, int to) {
  const int inside = from & (kPart - 1);
  const int up = MaskOf<int>(to > from);
  return {(up & 2) - 1, up & kPart, inside + (up & (kPart - 2 * inside))};
}

}  // namespace

void ShapeCells::LookAt(int width, int height, Band rows) {
  clip_.clip_box(0, 0, width * kPart, height * kPart);
  width_ = width;
  height_ = height;
  rows_ = rows;
  const auto columns = static_cast<std::size_t>(width) + 1;  // the right edge is in one beyond
  row_.assign(columns, {});
  used_.assign(columns / 64 + 1, 0);
  last_.assign(static_cast<std::size_t>(rows.bottom - rows.top), 0);
  Forget();
}

void ShapeCells::Forget() {
  for (int row = touched_.top; row < touched_.bottom; ++row) {
    last_[static_cast<std::size_t>(row - rows_.top)] = 0;
  }
  touched_ = {rows_.bottom, rows_.top};
  if (cells_.empty()) cells_.resize(1 << 10);
  // One before the first of each row.
  cells_[0] = {.x = std::numeric_limits<std::int32_t>::min(), .cell = {}, .next = 0};
  count_ = 1;
}

void ShapeCells::Add(std::span<const figures::Point> outline) {
  if (outline.empty()) return;
  // Rounded half away from zero, as `agg::iround` does, with no branch.
  const auto parts_of = [](double pixels) {
    return static_cast<int>(pixels * kPart + std::copysign(0.5, pixels));
  };
  corners_.resize(outline.size());
  for (std::size_t i = 0; i < outline.size(); ++i) {
    corners_[i] = {parts_of(outline[i].x), parts_of(outline[i].y)};
  }
  Place from = corners_.back();
  bool was_inside = IsInside(from);
  for (const Place to : corners_) {
    const bool is_inside = IsInside(to);
    if (was_inside && is_inside) {
      AddLine(from, to);
    } else {
      AddClipped(from, to);
    }
    from = to;
    was_inside = is_inside;
  }
}

bool ShapeCells::IsInside(Place place) const {
  // What is below 0 is beyond all others without its sign.
  const auto within = [](int part, int most) {
    return static_cast<unsigned>(part) <= static_cast<unsigned>(most);
  };
  return within(place.x, width_ * kPart) && within(place.y, height_ * kPart);
}

void ShapeCells::AddClipped(Place from, Place to) {
  Lines lines{*this};
  clip_.move_to(from.x, from.y);
  clip_.line_to(lines, to.x, to.y);
}

inline void ShapeCells::AddToCell(std::uint32_t& last, int column, int height, int area) {
  if (cells_[last].x != column) {
    cells_[count_] = {.x = column, .cell = {}, .next = last};
    last = count_++;
  }
  Cell& cell = cells_[last].cell;
  cell.cover += height;
  cell.area += area;
}

inline void ShapeCells::AddLine(Place from, Place to) {
  const int first = from.y >> 8;
  const int last = to.y >> 8;
  const auto [high, low] = std::minmax(first, last);
  if (low < rows_.top || high >= rows_.bottom || from.y == to.y) return;
  touched_.top = std::min(touched_.top, std::max(high, rows_.top));
  touched_.bottom = std::max(touched_.bottom, std::min(low + 1, rows_.bottom));
  const std::size_t most = static_cast<std::size_t>(low - high) +
                           static_cast<std::size_t>(std::abs((from.x >> 8) - (to.x >> 8))) + 2;
  if (count_ + most > cells_.size()) cells_.resize(2 * cells_.size() + most);
  int x = from.x;
  int y = from.y & (kPart - 1);
  int row = first;
  if (row != last) {
    const Walk walk = WalkOf(from.y, to.y);
    const std::int64_t run = std::int64_t{to.x} - from.x;
    const std::int64_t height = std::abs(std::int64_t{to.y} - from.y);
    const Quotient begin(walk.first * run, height);
    int next = from.x + static_cast<int>(begin.whole);
    AddInRow(row, x, y, next, walk.edge);
    x = next;
    y = kPart - walk.edge;
    row += walk.step;
    if (row != last) {
      EvenShares shares(kPart * run, height, begin.rest);
      for (; row != last; row += walk.step) {
        next = x + shares.Next();
        AddInRow(row, x, y, next, walk.edge);
        x = next;
      }
    }
  }
  AddInRow(row, x, y, to.x, to.y & (kPart - 1));
}

/// Heights are those within the row.
inline void ShapeCells::AddInRow(int row, int x1, int y1, int x2, int y2) {
  const auto index = static_cast<std::size_t>(row - rows_.top);
  if (index >= last_.size()) return;
  std::uint32_t& last_cell = last_[index];
  int height = y2 - y1;
  int column = x1 >> 8;
  const int last = x2 >> 8;
  const int in_first = x1 & (kPart - 1);
  const int in_last = x2 & (kPart - 1);
  if (column == last) return AddToCell(last_cell, column, height, (in_first + in_last) * height);
  if (height == 0) return;
  const Walk walk = WalkOf(x1, x2);
  const int run = std::abs(x2 - x1);
  const Quotient first(walk.first * height, run);
  AddToCell(last_cell, column, first.whole, (in_first + walk.edge) * first.whole);
  column += walk.step;
  if (column != last) {
    EvenShares shares(kPart * height, run, first.rest);
    height -= first.whole;
    for (; column != last; column += walk.step) {
      const int share = shares.Next();
      AddToCell(last_cell, column, share, kPart * share);
      height -= share;
    }
  } else {
    height -= first.whole;
  }
  AddToCell(last_cell, column, height, (in_last + kPart - walk.edge) * height);
}

bool ShapeCells::Gather(int row) {
  std::uint32_t at = last_[static_cast<std::size_t>(row - rows_.top)];
  if (at == 0) return false;
  first_word_ = used_.size();
  last_word_ = 0;
  for (; at != 0; at = cells_[at].next) {
    const PlacedCell& placed = cells_[at];
    const auto x = static_cast<std::size_t>(placed.x);
    row_[x].cover += placed.cell.cover;
    row_[x].area += placed.cell.area;
    used_[x / 64] |= std::uint64_t{1} << (x % 64);
    first_word_ = std::min(first_word_, x / 64);
    last_word_ = std::max(last_word_, x / 64);
  }
  return true;
}

}  // namespace discoplan
