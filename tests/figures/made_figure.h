// SPDX-License-Identifier: MIT
#pragma once

/// What tests of figures measure texts by, and how they find shapes.

#include <string_view>
#include <variant>
#include <vector>

#include "discoplan/figures/wafer_figure.h"

namespace discoplan::figures {

/// All letters half as wide as they are high.
class EvenMeasure final : public TextMeasure {
 public:
  double Width(std::string_view text, double size, bool) const override {
    return 0.5 * size * static_cast<double>(text.size());
  }
};

/// The shapes of one kind, in the figure's order.
template <class Kind>
std::vector<Kind> Of(const Figure& figure) {
  std::vector<Kind> found;
  for (const Shape& shape : figure.shapes) {
    if (const auto* one = std::get_if<Kind>(&shape)) found.push_back(*one);
  }
  return found;
}

}  // namespace discoplan::figures
