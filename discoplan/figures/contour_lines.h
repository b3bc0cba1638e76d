// SPDX-License-Identifier: MIT
#pragma once

/// Isolines on a map, with their values written into gaps of the lines.

#include <functional>
#include <memory>

#include "discoplan/figures/map_frame.h"

namespace discoplan::figures {

struct ContourStyle {
  std::function<Rgba(double)> colour;  ///< Of the line of a level.
  std::function<Rgba(double)> label;   ///< Of its text.
  double width = 0.5;
  /// Side of the squares in which lines are looked for, in em, or 24ths of the map's radius where
  /// those are longer. Rings of a few squares get corners.
  double square = 0.16;
  double emphasised = 0;  ///< A level drawn thicker.
  bool has_emphasis = false;
  bool labels = true;
  double halo = 0;  ///< Around the labels.
  Rgba halo_colour = {};
  const BoxField* dots = nullptr;  ///< What the labels keep off where they can.
};

void AddContours(Page& page, const MapFrame& frame, const WaferPlot& plot, const ValueField& field,
                 const Coverage& coverage, const Ticks& levels, const ContourStyle& style);

}  // namespace discoplan::figures
