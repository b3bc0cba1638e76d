// SPDX-License-Identifier: MIT
#include "hosts/qt/designer/sample_wafer.h"

#include <cmath>
#include <numbers>
#include <vector>

namespace discoplan::qt {

void PlotSample(PlotWidget& plot) {
  constexpr int kRings = 3;
  constexpr double kFill = 0.99;  // of the test radius
  const double radius = plot.Control().Wafer().TestDiameter / 2.0 * kFill;
  std::vector<float> x, y, value;
  const auto add = [&](double along, double across) {
    x.push_back(static_cast<float>(along * radius));
    y.push_back(static_cast<float>(across * radius));
    const double bowl = along * along + across * across;
    value.push_back(static_cast<float>(1000 + 30 * bowl + 12 * along - 8 * across));
  };
  add(0, 0);
  for (int ring = 1; ring <= kRings; ++ring) {
    const int sites = 8 * ring;
    for (int i = 0; i < sites; ++i) {
      const double angle = 2 * std::numbers::pi * i / sites;
      const double share = static_cast<double>(ring) / kRings;
      add(share * std::cos(angle), share * std::sin(angle));
    }
  }
  if (plot.SetWaferData(x, y, value) == LoadResult::Loaded) plot.Plot();
}

}  // namespace discoplan::qt
