// SPDX-License-Identifier: MIT
#include "hosts/headless/shape_cells.h"

#include <limits>

namespace discoplan {
namespace {

constexpr int kPart = 256;  // of a pixel

/// Rounded down, with what is left over.
template <class Number>
struct Quotient {
  Number whole;
  Number rest;

  Quotient(Number a, Number b) : whole(a / b), rest(a % b) {
    if (rest >= 0) return;
    --whole;
    rest += b;
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
    const bool is_whole = rest_ >= 0;
    if (is_whole) rest_ -= of_;
    return static_cast<int>(each_.whole) + (is_whole ? 1 : 0);
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
  return to > from ? Walk{1, kPart, kPart - inside} : Walk{-1, 0, inside};
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
  // One before the first of each row.
  cells_.assign(1, {.x = std::numeric_limits<std::int32_t>::min(), .cell = {}, .next = 0});
}

ShapeCells::Place ShapeCells::PlaceOf(figures::Point point) const {
  const int x = agg::ras_conv_int::upscale(point.x);
  const int y = agg::ras_conv_int::upscale(point.y);
  return {x, y, x >= 0 && y >= 0 && x <= width_ * kPart && y <= height_ * kPart};
}

void ShapeCells::MoveTo(figures::Point point) {
  Close();
  start_ = here_ = PlaceOf(point);
}

void ShapeCells::LineTo(figures::Point point) {
  GoTo(PlaceOf(point));
  is_open_ = true;
}

void ShapeCells::Close() {
  if (is_open_) GoTo(start_);
  is_open_ = false;
}

void ShapeCells::GoTo(const Place& place) {
  if (here_.is_inside && place.is_inside) {
    Add(here_.x, here_.y, place.x, place.y);
  } else {
    Lines lines{*this};
    clip_.move_to(here_.x, here_.y);
    clip_.line_to(lines, place.x, place.y);
  }
  here_ = place;
}

inline void ShapeCells::AddToCell(int row, int column, int height, int area) {
  std::uint32_t& last = last_[static_cast<std::size_t>(row - rows_.top)];
  PlacedCell& known = cells_[last];
  if (known.x == column) {
    known.cell.cover += height;
    known.cell.area += area;
    return;
  }
  const auto added = static_cast<std::uint32_t>(cells_.size());
  cells_.push_back({.x = column, .cell = {height, area}, .next = last});
  last = added;
}

void ShapeCells::Add(int x1, int y1, int x2, int y2) {
  int row = y1 >> 8;
  const int last = y2 >> 8;
  const auto [high, low] = std::minmax(row, last);
  if (low < rows_.top || high >= rows_.bottom) return;
  touched_.top = std::min(touched_.top, std::max(high, rows_.top));
  touched_.bottom = std::max(touched_.bottom, std::min(low + 1, rows_.bottom));
  if (row == last) return AddInRow(row, x1, y1 & (kPart - 1), x2, y2 & (kPart - 1));
  const Walk walk = WalkOf(y1, y2);
  const std::int64_t run = std::int64_t{x2} - x1;
  const std::int64_t height = std::abs(std::int64_t{y2} - y1);
  const Quotient first(walk.first * run, height);
  int x = x1 + static_cast<int>(first.whole);
  AddInRow(row, x1, y1 & (kPart - 1), x, walk.edge);
  row += walk.step;
  if (row != last) {
    EvenShares shares(kPart * run, height, first.rest);
    for (; row != last; row += walk.step) {
      const int next = x + shares.Next();
      AddInRow(row, x, kPart - walk.edge, next, walk.edge);
      x = next;
    }
  }
  AddInRow(row, x, kPart - walk.edge, x2, y2 & (kPart - 1));
}

/// Heights are those within the row.
void ShapeCells::AddInRow(int row, int x1, int y1, int x2, int y2) {
  int height = y2 - y1;
  if (height == 0 || row < rows_.top || row >= rows_.bottom) return;
  int column = x1 >> 8;
  const int last = x2 >> 8;
  const int in_first = x1 & (kPart - 1);
  const int in_last = x2 & (kPart - 1);
  if (column == last) return AddToCell(row, column, height, (in_first + in_last) * height);
  const Walk walk = WalkOf(x1, x2);
  const int run = std::abs(x2 - x1);
  const Quotient first(walk.first * height, run);
  AddToCell(row, column, first.whole, (in_first + walk.edge) * first.whole);
  column += walk.step;
  if (column != last) {
    EvenShares shares(kPart * height, run, first.rest);
    height -= first.whole;
    for (; column != last; column += walk.step) {
      const int share = shares.Next();
      AddToCell(row, column, share, kPart * share);
      height -= share;
    }
  } else {
    height -= first.whole;
  }
  AddToCell(row, column, height, (in_last + kPart - walk.edge) * height);
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
