// SPDX-License-Identifier: MIT
#pragma once

/// A thin-plate spline through or near some dozens of sites.

#include <span>
#include <vector>

#include "discoplan/export.h"
#include "discoplan/figures/shapes.h"

namespace discoplan::figures {

struct Sample {
  double x;
  double y;
  double value;
};

class DISCOPLAN_EXPORT ThinPlate {
 public:
  /// `scale` in mm is the length that counts as 1, `smoothing` the weight of smoothness against
  /// nearness; 0 goes through the sites.
  ThinPlate(std::span<const Sample> samples, Point centre, double scale, double smoothing);

  /// Adds `weight[i]` times the value at (x[i], y) to each of `sums`.
  void Add(std::span<const float> x, float y, std::span<const float> weights,
           std::span<float> sums) const;

  /// Sum of the squares of the leave-one-out errors for each smoothing.
  static std::vector<double> SquaredErrors(std::span<const Sample> samples, Point centre,
                                           double scale, std::span<const double> smoothings);

 private:
  Point centre_;
  double scale_;
  double mean_ = 0;
  std::vector<float> x_;
  std::vector<float> y_;
  std::vector<float> weights_;
  float plane_[3] = {0, 0, 0};
};

}  // namespace discoplan::figures
