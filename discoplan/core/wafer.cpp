// SPDX-License-Identifier: MIT
#include "discoplan/core/wafer.h"

#include <algorithm>

#include "discoplan/base/numbers.h"
#include "discoplan/core/default_colours.h"
#include "discoplan/core/interpolation/site_interpolator.h"
#include "discoplan/core/stored_value.h"
#include "discoplan/core/wafer_data.h"

namespace discoplan {
namespace {

/// A wafer holds its colours as 32-bit floats.
template <std::size_t N>
std::array<float, N> AsFloats(const std::array<Colour, N>& colours) {
  std::array<float, N> floats;
  std::transform(colours.begin(), colours.end(), floats.begin(),
                 [](Colour colour) { return static_cast<float>(colour); });
  return floats;
}

}  // namespace

wafer::wafer() : IntervalColor(AsFloats(kIntervalColours)), AuxColor(AsFloats(kRangeColours)) {}

void wafer::reset() {
  HasZeroValue = false;
  HasNegativeValue = false;
  write_index_ = 1;
  nop_ = 0;
  sites_.clear();
}

void wafer::SetNop(float count) {
  const std::int16_t sites = ToInt16(count);
  nop_ = count;
  cells_.Clear();
  sites_.clear();
  if (sites < 1) throw RunTimeError(Fault::Subscript, "a wafer needs at least one site");
  sites_.resize(static_cast<std::size_t>(sites));
}

void wafer::SetGridValue(float x, float y, float z) {
  if (write_index_ > nop_) return;
  Store(ToInt16(write_index_), x, y, z);
  write_index_ += 1;
}

void wafer::SetGridValueD(std::int16_t number, float x, float y, float z) {
  if (number <= nop_) Store(number, x, y, z);
}

void wafer::OverwriteGridValue(std::int16_t number, float x, float y, float z) {
  Store(number, x, y, z);
}

void wafer::Store(std::int16_t number, float x, float y, float z) {
  if (number < 1 || static_cast<std::size_t>(number) > sites_.size()) {
    throw RunTimeError(Fault::Subscript, "site " + std::to_string(number));
  }
  Site& site = ChangeSites()[static_cast<std::size_t>(number) - 1];
  site = {x, y, StoredValue(z)};
  if (site.z == 0) HasZeroValue = true;
  if (site.z < 0) HasNegativeValue = true;
}

std::vector<Site>& wafer::ChangeSites() {
  cells_.DropCopies();
  return sites_;
}

Site wafer::GetGridValue(std::int16_t number) const {
  if (number < 1 || static_cast<std::size_t>(number) > sites_.size()) {
    throw RunTimeError(Fault::Subscript, "site " + std::to_string(number));
  }
  return sites_[static_cast<std::size_t>(number) - 1];
}

MeasuredSites wafer::Measured() const {
  return {.sites = sites_,
          .count = nop_,
          .wafer_diameter = WaferDiameter,
          .test_diameter = TestDiameter,
          .cells = &cells_,
          .workers = workers_.get()};
}

WaferData wafer::Data() const {
  WaferData data{Measured()};
  data.flat_ratio = FlatRatio;
  data.mean = mean;
  data.deviation = StdDev;
  data.maximum = Maximum;
  data.minimum = Minimum;
  data.plot_maximum = PlotMaximum;
  data.plot_minimum = PlotMinimum;
  data.plot_range = PlotRange;
  data.scale_floor = ScaleFloor;
  data.interval_colours = IntervalColor;
  data.aux_colours = AuxColor;
  return data;
}

float wafer::Interpolation(float x, float y) const noexcept {
  return SiteInterpolator(Measured()).At(x, y);
}

}  // namespace discoplan
