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

/// The equations of a spline at certain places, which are solved for any values there.
class DISCOPLAN_EXPORT PlateEquations {
 public:
  /// `scale` in mm is the length that counts as 1, `smoothing` the weight of smoothness against
  /// nearness; 0 goes through the sites. The values of `places` aren't read.
  PlateEquations(std::span<const Sample> places, double scale, double smoothing);

  double Scale() const { return scale_; }
  /// Weights of the sites, then the plane; none for places on one line, which leave it open.
  std::vector<double> Solve(std::span<const Sample> samples, double mean) const;
  /// Sum of the squares of the leave-one-out errors; infinite where there is no solution.
  double SquaredErrors(std::span<const Sample> samples) const;

 private:
  double scale_;
  std::size_t side_ = 0;
  std::vector<double> cells_;  // rows of the matrix, decomposed
  std::vector<std::size_t> order_;
  std::vector<double> own_weights_;  // of each site if it alone had a value, 1
};

class DISCOPLAN_EXPORT ThinPlate {
 public:
  /// Of the values of `samples` at the equations' places.
  ThinPlate(std::span<const Sample> samples, const PlateEquations& equations);

  std::size_t Sites() const { return x_.size(); }
  /// What each site has a part in at each (x[i], y), whatever its value is: a number for each x,
  /// site by site.
  void Kernels(std::span<const float> x, float y, std::span<float> kernels) const;
  /// Values at each (x[i], y), from the kernels there if somebody has them.
  void Evaluate(std::span<const float> x, float y, std::span<float> values,
                std::span<const float> kernels = {}) const;

 private:
  double scale_;
  double mean_ = 0;
  std::vector<float> x_;
  std::vector<float> y_;
  std::vector<float> weights_;
  float plane_[3] = {0, 0, 0};
};

}  // namespace discoplan::figures
