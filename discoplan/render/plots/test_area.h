// SPDX-License-Identifier: MIT
#pragma once

#include "discoplan/core/wafer_data.h"
#include "discoplan/render/plots/plot_frame.h"

namespace discoplan {

/// Where a wafer has values to be drawn: within the test circle and above the flat. Lengths in mm.
class TestArea {
 public:
  TestArea(const WaferData& data, PlotFrame& frame)
      : radius_square_(data.test_diameter / 2.0 * (data.test_diameter / 2.0)) {
    frame.Keep(flat_y_, -(static_cast<double>(data.flat_ratio) - 0.5) * data.wafer_diameter);
  }

  bool Contains(double x, double y) const { return x * x + y * y < radius_square_ && y > flat_y_; }
  /// The same with the points on the circle itself.
  bool ContainsOrTouches(double x, double y) const {
    return x * x + y * y <= radius_square_ && y > flat_y_;
  }

 private:
  double radius_square_;
  float flat_y_ = 0;
};

}  // namespace discoplan
