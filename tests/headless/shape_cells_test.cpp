// SPDX-License-Identifier: MIT
#include "hosts/headless/shape_cells.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wconversion"
#pragma GCC diagnostic ignored "-Wextra"
#include <agg2/agg_rasterizer_scanline_aa.h>
#include <agg2/agg_scanline_u.h>
#pragma GCC diagnostic pop

namespace discoplan {
namespace {

using figures::Point;
using Outline = std::vector<Point>;
using Coverage = std::vector<unsigned>;  // row by row

constexpr int kWidth = 130;
constexpr int kHeight = 90;

std::size_t IndexOf(int y, int x) { return static_cast<std::size_t>(y * kWidth + x); }

Coverage Swept(ShapeCells& cells, const std::vector<Outline>& outlines) {
  for (const Outline& outline : outlines) cells.Add(outline);
  Coverage coverage(kWidth * kHeight);
  std::size_t last = 0;
  cells.Sweep([&](int y, int x, int count, unsigned cover) {
    EXPECT_TRUE(y >= 0 && y < kHeight && x >= 0 && count > 0 && x + count <= kWidth);
    EXPECT_TRUE(cover >= 1 && cover <= 255);
    EXPECT_TRUE(last <= IndexOf(y, x)) << "from left to right and downward, each pixel once";
    last = IndexOf(y, x + count);
    for (int i = 0; i < count; ++i) coverage[IndexOf(y, x + i)] = cover;
  });
  return coverage;
}

Coverage SweptByAgg(const std::vector<Outline>& outlines) {
  agg::rasterizer_scanline_aa<> raster;
  raster.clip_box(0, 0, kWidth, kHeight);
  for (const Outline& outline : outlines) {
    raster.move_to_d(outline[0].x, outline[0].y);
    for (std::size_t i = 1; i < outline.size(); ++i) raster.line_to_d(outline[i].x, outline[i].y);
  }
  Coverage coverage(kWidth * kHeight);
  agg::scanline_u8 line;
  if (!raster.rewind_scanlines()) return coverage;
  line.reset(raster.min_x(), raster.max_x());
  while (raster.sweep_scanline(line)) {
    auto span = line.begin();
    for (unsigned k = 0; k < line.num_spans(); ++k, ++span) {
      for (int i = 0; i < span->len; ++i) {
        // What touches the lower or right edge comes with the pixel beyond.
        if (span->x + i >= kWidth || line.y() >= kHeight) continue;
        coverage[IndexOf(line.y(), span->x + i)] = span->covers[i];
      }
    }
  }
  return coverage;
}

TEST(ShapeCells, CoverWhatLiesInThePixel) {
  ShapeCells cells;
  cells.LookAt(kWidth, kHeight, {0, kHeight});
  const Coverage box = Swept(cells, {{{2.5, 1}, {5, 1}, {5, 2.25}, {2.5, 2.25}}});
  EXPECT_EQ(box[IndexOf(1, 1)], 0u);
  EXPECT_EQ(box[IndexOf(1, 2)], 128u);
  EXPECT_EQ(box[IndexOf(1, 3)], 255u);
  EXPECT_EQ(box[IndexOf(1, 4)], 255u);
  EXPECT_EQ(box[IndexOf(1, 5)], 0u);
  EXPECT_EQ(box[IndexOf(2, 2)], 32u);
  EXPECT_EQ(box[IndexOf(2, 3)], 64u);
  const Coverage triangle = Swept(cells, {{{8, 8}, {9, 8}, {8, 9}}});
  EXPECT_EQ(triangle[IndexOf(8, 8)], 128u);
  EXPECT_EQ(triangle[IndexOf(1, 3)], 0u) << "what was swept is forgotten";
}

class RandomOutlines {
 public:
  explicit RandomOutlines(unsigned seed) : engine_(seed) {}

  /// Small and large ones, on whole pixels too, beyond every edge of the picture.
  std::vector<Outline> Next() {
    std::vector<Outline> outlines(1 + engine_() % 4);
    const double size = std::pow(10, Uniform(-0.5, 2.3));
    const Point middle = {Uniform(-20, kWidth + 20), Uniform(-20, kHeight + 20)};
    for (Outline& outline : outlines) {
      for (std::size_t i = 0; i < 3 + engine_() % 9; ++i) {
        Point corner = {middle.x + Uniform(-size, size), middle.y + Uniform(-size, size)};
        if (engine_() % 4 == 0) corner = {std::round(corner.x), std::round(corner.y)};
        if (engine_() % 4 == 0 && !outline.empty()) corner.x = outline.back().x;
        if (engine_() % 4 == 0 && !outline.empty()) corner.y = outline.back().y;
        outline.push_back(corner);
      }
    }
    return outlines;
  }

 private:
  double Uniform(double low, double high) {
    return std::uniform_real_distribution(low, high)(engine_);
  }

  std::mt19937 engine_;
};

TEST(ShapeCells, CoverWhatAntiGrainGeometrySays) {
  RandomOutlines random(5);
  ShapeCells cells;
  cells.LookAt(kWidth, kHeight, {0, kHeight});
  for (int turn = 0; turn < 3000; ++turn) {
    const std::vector<Outline> outlines = random.Next();
    ASSERT_EQ(Swept(cells, outlines), SweptByAgg(outlines)) << turn;
  }
}

TEST(ShapeCells, ABandHasTheCoverageOfTheWhole) {
  RandomOutlines random(6);
  ShapeCells whole;
  whole.LookAt(kWidth, kHeight, {0, kHeight});
  ShapeCells part;
  for (int turn = 0; turn < 500; ++turn) {
    const std::vector<Outline> outlines = random.Next();
    Coverage expected = Swept(whole, outlines);
    const Band band = {turn % kHeight, std::min(turn % kHeight + 1 + turn % 31, kHeight)};
    std::fill_n(expected.begin(), IndexOf(band.top, 0), 0u);
    std::fill(expected.begin() + static_cast<std::ptrdiff_t>(IndexOf(band.bottom, 0)),
              expected.end(), 0u);
    part.LookAt(kWidth, kHeight, band);
    ASSERT_EQ(Swept(part, outlines), expected) << turn;
  }
}

}  // namespace
}  // namespace discoplan
