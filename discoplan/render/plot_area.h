// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace discoplan {

/// Where a plot goes: in twips where the surface is a printer or the mode is 1, which stands for a
/// rectangle of a page that holds other things. Any other mode fills the whole picture.
struct PlotArea {
  float left = 0;
  float top = 0;
  float width = 0;
  float height = 0;
  std::int16_t mode = 0;

  bool IsPartOfPage() const { return mode == 1; }
};

}  // namespace discoplan
