// SPDX-License-Identifier: MIT
#include <cmath>

#include "discoplan/base/numbers.h"
#include "discoplan/core/normal_curve.h"
#include "discoplan/core/wafer.h"

namespace discoplan {
namespace {

double Bell(double z) { return 1 / std::sqrt(2.0 * kPi) * std::exp(-0.5 * std::pow(z, 2.0)); }

}  // namespace

float StandardNormal(float z) { return ToFloat(Bell(z)); }

float NormalCurve(double mean, double deviation, float x) {
  return ToFloat(Bell(Divide(x - mean, deviation)));
}

float wafer::StandardNormal(float z) { return discoplan::StandardNormal(z); }

float wafer::Gauss(float x) const { return NormalCurve(mean, StdDev, x); }

void wafer::Points_OutCL(float lower, float upper) {
  CountBelowLCL = CountAboveUCL = 0;
  for (const Site& site : sites_) {
    if (site.z > upper) CountAboveUCL += 1;
    if (site.z < lower) CountBelowLCL += 1;
  }
}

float wafer::Globlal_Value_Sub_Mean(float m) const {
  float squares = 0;
  for (const Site& site : sites_) {
    const double off = static_cast<double>(site.z) - m;
    squares = ToFloat(squares + off * off);
  }
  return squares;
}

void wafer::radial_zone_average() {
  if (nop_ <= 3) return;
  const std::int16_t zones = ToInt16((std::sqrt(static_cast<double>(nop_)) + 1) / 2 + 0.4999);
  const double width = TestDiameter / (2.0 * zones - 1);
  std::vector<float> radii;
  radii.reserve(sites_.size());
  for (const Site& site : sites_) {
    const double x = site.x;
    const double y = site.y;
    radii.push_back(ToFloat(std::sqrt(x * x + y * y)));
  }
  std::vector<Site>& sites = ChangeSites();
  std::vector<Site*> ring;
  for (int k = 0; k < zones; ++k) {
    const float inner = ToFloat((k - 0.5) * width);
    const float outer = ToFloat((k + 0.5) * width);
    const bool is_last = k == zones - 1;
    ring.clear();
    float sum = 0;
    for (std::size_t i = 0; i < sites.size(); ++i) {
      if (!(inner < radii[i] && (is_last || radii[i] <= outer))) continue;
      ring.push_back(&sites[i]);
      sum = ToFloat(static_cast<double>(sum) + sites[i].z);
    }
    for (Site* site : ring) site->z = ToFloat(sum / static_cast<double>(ring.size()));
  }
}

}  // namespace discoplan
