// SPDX-License-Identifier: MIT
#pragma once

/// The coloured map of a wafer.
///
///     DrawMap(data, picture, {.resolution = 2, .show_sites = true}, {});

#include <cstdint>

#include "discoplan/export.h"
#include "discoplan/render/plot_area.h"

namespace discoplan {

class Surface;
struct WaferData;

struct MapSettings {
  static constexpr std::int16_t kIntervalColours = 5;
  static constexpr std::int16_t kSigmaColours = 4;

  double resolution = 5;  ///< Cell side in mm; kept between 8 and 200 cells across.
  /// The interval colours, or any other number: those of the band around the mean.
  std::int16_t kind = kIntervalColours;
  float sigma_range = 0;  ///< Half the band's width, in standard deviations.
  bool show_sites = false;
};

/// Square cells, each in the colour of its mean value, within the test circle and above the flat;
/// the sites' marks over them. Three sites or less have marks alone. A step that fails is dropped.
/// The result is the value at which the scale of heights began.
DISCOPLAN_EXPORT float DrawMap(const WaferData& data, Surface& surface, const MapSettings& settings,
                               const PlotArea& area);

/// Side in mm of the square of cells that such a map of the test area fits into its surface, with a
/// margin of 3 pixels around it.
DISCOPLAN_EXPORT double MapSide(double test_diameter, double resolution);

}  // namespace discoplan
