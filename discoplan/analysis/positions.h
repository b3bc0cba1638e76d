// SPDX-License-Identifier: MIT
#pragma once

/// The sites of a wafer that lies turned, or seen from its back.

#include <span>
#include <vector>

#include "discoplan/core/wafer.h"
#include "discoplan/export.h"

namespace discoplan::analysis {

/// The sites turned counter-clockwise around the wafer's centre by any finite angle in degrees.
/// Quarter turns only change places and signs of the coordinates, so that four of them give the
/// very same sites. `wafer::rotate` turns the other way, and in 32 bits.
DISCOPLAN_EXPORT std::vector<Site> Turned(std::span<const Site> sites, double degrees);

/// The axis across which a mirror image swaps the sides.
enum class MirrorAxis {
  X,  ///< left and right change places
  Y,  ///< top and bottom change places
};
DISCOPLAN_EXPORT std::vector<Site> Mirrored(std::span<const Site> sites, MirrorAxis axis);

}  // namespace discoplan::analysis
