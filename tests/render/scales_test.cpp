// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>
#include <optional>

#include "discoplan/core/wafer.h"
#include "discoplan/render/label.h"
#include "discoplan/render/plots/value_scale.h"

namespace discoplan {
namespace {

struct PlainLabel final : Label {
  void caption(const std::string& new_text) override { text = new_text; }
  void Visible(bool new_visible) override { visible = new_visible; }
  void BackColor(Colour new_colour) override { colour = new_colour; }

  std::string text;
  bool visible = true;
  Colour colour = 0;
};

class Scales : public testing::Test {
 protected:
  Scales() {
    for (std::size_t i = 0; i < 10; ++i) {
      row_refs_[i] = &rows_[i];
      chip_refs_[i] = &chips_[i];
    }
  }

  static wafer Limited(float minimum, float maximum, float lower, float upper) {
    wafer target;
    target.Minimum = minimum;
    target.Maximum = maximum;
    target.setMaximalMinial(upper, lower);
    return target;
  }

  std::array<PlainLabel, 10> rows_;
  std::array<PlainLabel, 10> chips_;
  std::array<Label*, 10> row_refs_;
  std::array<Label*, 10> chip_refs_;
};

TEST_F(Scales, SplitTheDataIntoTenRows) {
  Limited(0, 10, 0, 10).scale_colored(chip_refs_, row_refs_);
  EXPECT_EQ(rows_[0].text, "9.0 - 10.0");
  EXPECT_EQ(rows_[4].text, "5.0 - 6.0");
  EXPECT_EQ(rows_[9].text, "0.0 - 1.0");
  EXPECT_EQ(chips_[0].colour, 0x000080U);
  EXPECT_EQ(chips_[9].colour, 0x800080U);
}

TEST_F(Scales, OpenTheirEndsUnderALimit) {
  // Limits 0 and 8 widen by 1 at each end: steps of 1 from 9 down to -1.
  Limited(-50, 50, 0, 8).scale_colored(chip_refs_, row_refs_);
  EXPECT_EQ(rows_[0].text, "8.0 > ");
  EXPECT_EQ(rows_[1].text, "7.0 - 8.0");
  EXPECT_EQ(rows_[9].text, " < 0.0");
}

TEST_F(Scales, WidenWhenOnlyOneLimitDiffers) {
  Limited(0, 8, 0, 4).scale_colored(chip_refs_, row_refs_);  // 4.5 down to -0.5
  EXPECT_EQ(rows_[0].text, "4.0 > ");
  EXPECT_EQ(rows_[9].text, " < 0.0");
}

TEST_F(Scales, RepeatAConstant) {
  Limited(3, 3, 3, 3).scale_colored(chip_refs_, row_refs_);
  for (const PlainLabel& row : rows_) EXPECT_EQ(row.text, "3.0 - 3.0");
}

TEST_F(Scales, OfSigmaUseEveryOtherRowOfFive) {
  wafer().scale_sigma(chip_refs_, row_refs_, 3);
  const std::array<std::string, 3> texts = {">   3.0", "+-  3.0", "< - 3.0"};
  const std::array<Colour, 3> colours = {0x000080, 0x008000, 0x800000};
  for (std::size_t i = 0; i < 10; ++i) {
    const bool used = i == 0 || i == 2 || i == 4;
    EXPECT_EQ(rows_[i].visible, used) << i;
    EXPECT_EQ(chips_[i].visible, used) << i;
    if (!used) continue;
    EXPECT_EQ(rows_[i].text, texts[i / 2]);
    EXPECT_EQ(chips_[i].colour, colours[i / 2]);
  }
  wafer().scale_sigma(chip_refs_, row_refs_, 0);
  EXPECT_EQ(rows_[0].text, ">   0.0");
  wafer().scale_sigma(chip_refs_, row_refs_, 0.004F);
  EXPECT_EQ(rows_[2].text, "+-  0.004");
}

TEST(IntervalClass, IsClosedBelowAndOpenAbove) {
  // Top 10, steps of 1: class k holds 9 - k <= height < 10 - k.
  const std::pair<double, std::size_t> rows[] = {{10, 0}, {99, 0},    {9, 0}, {8.999, 1},
                                                 {8, 1},  {7.999, 2}, {2, 7}, {1.5, 8},
                                                 {1, 8},  {0.999, 9}, {0, 9}, {-50, 9}};
  for (const auto& [height, due] : rows) EXPECT_EQ(IntervalClass(height, 10, 1), due) << height;
  EXPECT_EQ(IntervalClass(std::nan(""), 10, 1), std::nullopt);
}

TEST(IntervalClass, IsTheLastOneThatFits) {
  const double infinity = std::numeric_limits<double>::infinity();
  const auto plain = [](double height, double top, double step) {
    std::optional<std::size_t> found;
    const auto end = [&](int k) { return top - k * step; };
    if (height >= end(1)) found = 0;
    for (int k = 1; k < 9; ++k) {
      if (end(k + 1) <= height && height < end(k)) found = k;
    }
    if (height < end(9)) found = 9;
    return found;
  };
  // Classes upside down and without extent among them.
  for (const double step : {1.0, 0.1, 1e-300, 0.0, -0.0, -1e-300, -0.1, -1.0, 1e300, -1e300,
                            infinity, -infinity, std::nan("")}) {
    for (const double top : {0.0, 10.0, -3.3, 1e300, infinity, -infinity, std::nan("")}) {
      for (int k = -40; k < 160; ++k) {
        const double height = 10 - k * 0.125;
        EXPECT_EQ(IntervalClass(height, top, step), plain(height, top, step))
            << height << ' ' << top << ' ' << step;
      }
      for (const double height : {top, top - step, top - 9 * step, infinity, -infinity}) {
        EXPECT_EQ(IntervalClass(height, top, step), plain(height, top, step));
      }
    }
  }
}

}  // namespace
}  // namespace discoplan
