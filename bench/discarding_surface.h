// SPDX-License-Identifier: MIT
#pragma once

#include "discoplan/render/surface.h"

namespace discoplan::bench {

/// A picture of a size that keeps nothing: what a plot costs without its pixels.
class DiscardingSurface : public Surface {
 public:
  explicit DiscardingSurface(float pixels) {
    state_.scale_width = pixels;
    state_.scale_height = pixels;
  }

  Kind kind() const override { return Kind::Picture; }
  void Cls() override {}
  void Refresh() override {}
  void Circle(const CircleCall&) override {}
  void Print(std::string_view) override {}
  void Polygon(std::span<const PixelPoint>) override {}
  void FloodFill(PixelPoint, Colour) override {}
  float TextWidth(std::string_view text) const override {
    return 6 * static_cast<float>(text.size());
  }
  float TextHeight(std::string_view) const override { return 13; }
  float ScreenTwipsPerPixelX() const override { return 15; }
  float ScreenTwipsPerPixelY() const override { return 15; }

 protected:
  void DrawLine(const LineCall&) override {}
};

}  // namespace discoplan::bench
