// SPDX-License-Identifier: MIT
#include "hosts/headless/classic_look.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "discoplan/base/algorithms.h"
#include "discoplan/controls/lattice_control.h"
#include "discoplan/controls/plot3db.h"
#include "discoplan/controls/view_control.h"
#include "discoplan/figures/colour_map.h"

namespace discoplan {

Screen ScreenFor(const ControlClass& kind, int width, int height) {
  constexpr float kPlainSide = 300;
  const auto across = static_cast<float>(width);
  const auto down = static_cast<float>(height);
  const float grown =
      kTwipsPerPixel / std::sqrt(std::max(1.0F, std::min(across, down) / kPlainSide));
  const bool scales = kind.family != Family::Chart;  // whose margins are in pixels
  const float twips = std::max(
      {scales ? grown : kTwipsPerPixel, kind.least.width / across, kind.least.height / down});
  return {twips, twips};
}

void FitLook(PlotControl& control, std::span<const float> values) {
  constexpr float kFinestCells = 200;
  constexpr float kBarHeight = 0.2F;  // between the limits, in parts of the wafer's diameter
  control.BackColor(kWhite);
  if (auto* bars = dynamic_cast<Plot3DB*>(&control)) {
    const auto [low, high] = MinMax(values);
    if (low < high) bars->BeamScale(kBarHeight * control.WaferDiameter() / (high - low));
  }
  if (auto* map = dynamic_cast<LatticeControl*>(&control)) {
    map->Resolution(map->TestDiameter() / kFinestCells);
  }
  auto* surface = dynamic_cast<SurfaceControl*>(&control);
  const float finest = FinestSurface(control);
  if (surface != nullptr && surface->XResolution() < finest) {
    surface->XResolution(finest);
    surface->YResolution(finest);
  }
}

float FinestSurface(const PlotControl& control) { return control.WaferDiameter() / 1000; }

void TakeColours(PlotControl& control, std::string_view colours) {
  if (colours.empty()) return;
  std::vector<const Member*> intervals;  // from the highest class on
  for (int i = 0; i < wafer::kLegendRows; ++i) {
    const Member* member = control.Members().Find("IntervalColor" + std::to_string(i));
    if (member != nullptr) intervals.push_back(member);
  }
  const std::vector<figures::Rgba> bands =
      figures::BandColours(*figures::FindColourMap(colours), static_cast<int>(intervals.size()));
  for (std::size_t i = 0; i < bands.size(); ++i) {
    const figures::Rgba& band = bands[bands.size() - 1 - i];
    const auto packed = static_cast<Colour>(band.red | band.green << 8 | band.blue << 16);
    intervals[i]->Set(control, Variant(packed));
  }
}

}  // namespace discoplan
