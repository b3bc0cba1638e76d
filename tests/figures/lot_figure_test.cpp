// SPDX-License-Identifier: MIT
#include "discoplan/figures/lot_figure.h"

#include <gtest/gtest.h>

#include <vector>

namespace discoplan::figures {
namespace {

class EvenMeasure final : public TextMeasure {
 public:
  double Width(std::string_view text, double size, bool) const override {
    return 0.5 * size * static_cast<double>(text.size());
  }
};

std::size_t Shapes(const std::vector<float>& first, const std::vector<float>& second) {
  static const std::vector<float> x = {0, 80, 0, -80, 0};
  static const std::vector<float> y = {0, 0, 80, 0, -80};
  LotPlot lot;
  lot.wafers.resize(2);
  lot.wafers[0].sites = {x, y, first};
  lot.wafers[1].sites = {x, y, second};
  lot.low = 1;
  lot.high = 5;
  Style style;
  style.width = 400;
  style.height = 300;
  return MakeLotGallery(PlotKind::Bars, lot, 0, style, EvenMeasure()).shapes.size();
}

// An arrow at an end of the colour bar says that values lie beyond it, whichever wafer has them.
TEST(LotFigure, TellsThatValuesOfAnyWaferLieBeyondTheColours) {
  const std::vector<float> within = {1, 2, 3, 4, 5};
  const std::vector<float> above = {1, 2, 3, 4, 6};
  const std::vector<float> below = {0, 2, 3, 4, 5};
  const std::size_t neither = Shapes(within, within);
  EXPECT_EQ(Shapes(above, within), neither + 1);
  EXPECT_EQ(Shapes(within, above), neither + 1);
  EXPECT_EQ(Shapes(within, below), neither + 1);
  EXPECT_EQ(Shapes(below, above), neither + 2);
}

}  // namespace
}  // namespace discoplan::figures
