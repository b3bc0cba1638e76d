// SPDX-License-Identifier: MIT
#include <cmath>

#include "discoplan/base/numbers.h"
#include "discoplan/core/wafer.h"
#include "discoplan/core/wafer_data.h"

namespace discoplan {
namespace {

/// Half the spread over the middle in percent, of limits or extremes.
Variant HighLowPercent(float upper, float lower) {
  const float sum = ToFloat(static_cast<double>(upper) + lower);
  if (sum == 0) return Variant(std::int16_t{0});
  const double spread = static_cast<double>(upper) - lower;
  return Variant(ToFloat(std::abs(spread / (static_cast<double>(upper) + lower)) * 100));
}

/// Lower end of a value scale between the limits, never equal to the upper one.
float FloorOf(float upper, float lower) {
  return upper != lower ? lower : ToFloat(FloorUnderConstant(lower, lower < 0));
}

}  // namespace

void wafer::MaxMin() {
  if (sites_.empty()) throw RunTimeError(Fault::Subscript, "a wafer without sites");
  Maximum = Minimum = sites_.front().z;
  HiLoPercent = Variant(std::int16_t{0});
  ScaleFloor = -0.001F;
  mean = StdDev = 0;
  PlotRange = 0;
  if (nop_ >= kFewestSitesInCells) cells_.Build(sites_, WaferDiameter / 2.0, ToInt16(nop_));
  SumUp();
}

void wafer::SumUp() {
  float sum = 0;
  for (const Site& site : sites_) {
    sum = ToFloat(static_cast<double>(sum) + site.z);
    if (site.z > Maximum) Maximum = site.z;
    if (site.z < Minimum) Minimum = site.z;
  }
  PlotMaximum = Maximum;
  PlotMinimum = Minimum;
  ValueSum = sum;
  mean = Divide(sum, nop_);
  PlotRange = ToFloat(static_cast<double>(Maximum) - Minimum);
  HiLoPercent = HighLowPercent(Maximum, Minimum);
  ScaleFloor = FloorOf(Maximum, Minimum);
  if (nop_ < 2) return;
  float squares = 0;
  for (const Site& site : sites_) {
    const double off = site.z - mean;
    squares = ToFloat(squares + off * off);
  }
  StdDev = std::sqrt(squares / (static_cast<double>(nop_) - 1));
}

void wafer::setMaximalMinial(float upper, float lower) {
  PlotMaximum = upper;
  PlotRange = ToFloat(static_cast<double>(upper) - lower);
  PlotMinimum = lower;
  HiLoPercent = HighLowPercent(upper, lower);
  ScaleFloor = FloorOf(upper, lower);
}

}  // namespace discoplan
