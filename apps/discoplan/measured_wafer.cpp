// SPDX-License-Identifier: MIT
#include "apps/discoplan/measured_wafer.h"

#include "discoplan/render/number_text.h"

namespace discoplan::app {
namespace {

/// A site on the edge may lie beyond it by the precision of its position.
constexpr double kTolerance = 1.005;

std::string Millimetres(double length) { return PlainNumber(static_cast<float>(length)) + " mm"; }

}  // namespace

std::string SourceOf(const std::string& file, const Wafer& measured) {
  if (!measured.keys.empty()) return file + ": wafer " + Shown(measured.name);
  return measured.slot ? file + ": slot " + std::to_string(*measured.slot) : file;
}

void RefuseFarSites(const std::string& source, const Wafer& measured, double diameter) {
  const double distance = data::FarthestSite(measured.x, measured.y);
  if (distance <= kTolerance * diameter / 2) return;
  throw CommandError(source + ": a site is " + Millimetres(distance) +
                     " from the centre, outside a wafer of " + Millimetres(diameter) +
                     " across; give a larger --diameter");
}

void RefuseOtherUnits(const std::string& source, const Wafer& measured) {
  constexpr double kFarthest = 1000;
  const double farthest = data::FarthestSite(measured.x, measured.y);
  if (farthest <= kFarthest) return;
  throw CommandError(source + ": a site is " + Millimetres(farthest) +
                     " from the centre; positions are millimetres, scale them, or give --diameter "
                     "if they are");
}

void LoadSites(PlotControl& control, const std::string& source, const Wafer& measured) {
  const double diameter = control.WaferDiameter();
  RefuseFarSites(source, measured, diameter);
  if (control.SetWaferData(measured.x, measured.y, measured.value) == LoadResult::Loaded) return;
  throw CommandError(source +
                     ": the values are too large, so that sums of them don't fit 32-bit floats; "
                     "scale the values down");
}

void WarnOfTinyValues(const std::string& file, const std::vector<Wafer>& wafers) {
  wafer store;
  store.SetNop(1);
  const auto is_lost = [&](float value) {
    store.OverwriteGridValue(1, 0, 0, value);
    return value != 0 && store.GetGridValue(1).z == 0;
  };
  std::size_t count = 0;
  float first = 0;
  for (const Wafer& measured : wafers) {
    for (const float value : measured.value) {
      if (is_lost(value) && count++ == 0) first = value;
    }
  }
  if (count == 0) return;
  Warn(file + ": " + Counted(count, "value") + " too small to be told from 0 (first " +
       PlainNumber(first) + "), plotted as 0; scale the values up");
}

}  // namespace discoplan::app
