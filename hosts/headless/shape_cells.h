// SPDX-License-Identifier: MIT
#pragma once

/// How much of each pixel filled outlines cover, from their lines as they lie to 1/256 of a pixel.
/// Coverage is that of Anti-Grain Geometry's rasteriser to the bit, in a fraction of its time for
/// small shapes: nothing is sorted.
///
///     ShapeCells cells;
///     cells.LookAt(width, height, {0, height});
///     cells.Add(std::vector<figures::Point>{{10, 10}, {20, 10}, {15, 20}});
///     cells.Sweep([&](int y, int x, int count, unsigned cover) { ... });
///
/// Each line adds its height and the area beside it to the pixels that it crosses; the sums from
/// the left give what is covered (R. Levien's libart, 1998).

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstdlib>
#include <span>
#include <vector>

#include "discoplan/figures/shapes.h"
#include "hosts/headless/agg_headers.h"
#include "hosts/headless/export.h"

namespace discoplan {

/// Rows of a picture.
struct Band {
  int top = 0;
  int bottom = 0;
};

class DISCOPLAN_HEADLESS_EXPORT ShapeCells {
 public:
  /// Outlines are cut to a picture of that size; only those rows of it are swept.
  void LookAt(int width, int height, Band rows);

  /// The corners of an outline, in pixels. It is closed by itself; inside is by non-zero winding.
  void Add(std::span<const figures::Point> outline);

  /// Takes what is covered, and forgets it: `take(y, x, count, cover)` for `count` pixels from
  /// column `x` on, with a cover of 1 to 255, row by row and from left to right.
  template <class Take>
  void Sweep(const Take& take) {
    for (int y = touched_.top; y < touched_.bottom; ++y) {
      if (Gather(y)) SweepRow([&](int x, int count, unsigned cover) { take(y, x, count, cover); });
    }
    Forget();
  }

 private:
  static constexpr int kPart = 256;  // of a pixel
  /// Of the lines in a pixel: their height, and twice the area to their left.
  struct Cell {
    std::int32_t cover = 0;
    std::int32_t area = 0;
  };
  struct PlacedCell {
    std::int32_t x;
    Cell cell;
    std::uint32_t next;  // of the row
  };
  /// In parts of a pixel.
  struct Place {
    int x = 0;
    int y = 0;
  };
  /// What the clipper calls.
  struct Lines {
    ShapeCells& cells;
    void line(int x1, int y1, int x2, int y2) { cells.AddLine({x1, y1}, {x2, y2}); }
  };

  void AddLine(Place from, Place to);
  void AddInRow(int row, int x1, int y1, int x2, int y2);
  void AddToCell(std::uint32_t& last, int column, int height, int area);
  void AddClipped(Place from, Place to);
  bool IsInside(Place place) const;
  bool Gather(int row);
  void Forget();

  static unsigned CoverOf(int area) {
    return static_cast<unsigned>(std::min(std::abs(area >> 9), kPart - 1));
  }

  /// Of the row that was gathered.
  template <class Take>
  void SweepRow(const Take& take) {
    int cover = 0;
    int next = 0;  // column
    for (std::size_t word = first_word_; word <= last_word_; ++word) {
      for (std::uint64_t bits = used_[word]; bits != 0; bits &= bits - 1) {
        const int x = static_cast<int>(word) * 64 + std::countr_zero(bits);
        const unsigned between = CoverOf(cover * 2 * kPart);
        if (between > 0 && x > next) take(next, x - next, between);
        Cell& cell = row_[static_cast<std::size_t>(x)];
        cover += cell.cover;
        const unsigned own = CoverOf(cover * 2 * kPart - cell.area);
        if (own > 0 && x < width_) take(x, 1, own);
        cell = {};
        next = x + 1;
      }
      used_[word] = 0;
    }
  }

  agg::rasterizer_sl_clip<agg::ras_conv_int> clip_;
  int width_ = 0;
  int height_ = 0;
  Band rows_;
  Band touched_;
  std::vector<Place> corners_;
  std::vector<PlacedCell> cells_;    // with room for more
  std::uint32_t count_ = 0;          // of them
  std::vector<std::uint32_t> last_;  // cell of each row
  // Of one row, by column.
  std::vector<Cell> row_;
  std::vector<std::uint64_t> used_;  // a bit for each
  std::size_t first_word_ = 0;
  std::size_t last_word_ = 0;
};

}  // namespace discoplan
