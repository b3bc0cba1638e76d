// SPDX-License-Identifier: MIT
#include "data/lot.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "data/left_out.h"

namespace discoplan::data {
namespace {

constexpr std::array kStandardDiameters = {50.0F,  75.0F,  100.0F, 125.0F,
                                           150.0F, 200.0F, 300.0F, 450.0F};

}  // namespace

std::string Parameter::Caption() const { return unit.empty() ? name : name + " (" + unit + ')'; }

std::string Wafer::Title() const { return derived.empty() ? name : name + ", " + derived; }

std::int64_t Wafer::Measured() const {
  auto measured = static_cast<std::int64_t>(x.size());
  for (const LeftOut& part : left_out) measured += part.count;
  return measured;
}

std::string Wafer::SitesText() const { return SitesSentence(*this); }

std::span<const Wafer> Lot::Of(std::size_t parameter) const {
  const auto is_of = [&](const Wafer& wafer) { return wafer.parameter == parameter; };
  const auto first = std::find_if(wafers.begin(), wafers.end(), is_of);
  const auto last = std::find_if_not(first, wafers.end(), is_of);
  return {wafers.data() + (first - wafers.begin()), static_cast<std::size_t>(last - first)};
}

std::span<const float> StandardDiameters() { return kStandardDiameters; }

double FarthestSite(std::span<const float> x, std::span<const float> y) {
  double farthest = 0;
  double near = 0;  // the square of a distance that is surely no more than the farthest one
  for (std::size_t i = 0; i < x.size(); ++i) {
    const double across = x[i];
    const double up = y[i];
    if (across * across + up * up < near) continue;
    farthest = std::max(farthest, std::hypot(across, up));
    near = farthest * farthest * (1 - 1e-9);
  }
  return farthest;
}

WaferSize SizeFor(std::span<const float> x, std::span<const float> y) {
  constexpr float kEdge = 6;
  constexpr double kLargest = std::numeric_limits<float>::max();
  const double across = std::min(2 * FarthestSite(x, y), kLargest);
  const auto fitting = std::find_if(kStandardDiameters.begin(), kStandardDiameters.end(),
                                    [&](float diameter) { return across <= diameter; });
  const float diameter =
      fitting != kStandardDiameters.end() ? *fitting : static_cast<float>(std::ceil(across));
  return {diameter, std::max(diameter - kEdge, std::min(diameter, static_cast<float>(across)))};
}

}  // namespace discoplan::data
