// SPDX-License-Identifier: MIT
#pragma once

/// The searches that define what is interpolated, told step by step. All others give their bits.

#include "discoplan/core/interpolation/measured_sites.h"

namespace discoplan {

/// What the slots of a search over the cells hold before a site takes them: square millimetres
/// against plain distances, far enough that any site replaces it.
float StartDistance(const MeasuredSites& measured);
/// The distance at which the first site met stands in for those that aren't met yet.
double ReplacementDistance(const MeasuredSites& measured);

/// The cells around the point, ring by ring, until the fourth slot is near enough. The search may
/// end before it has met the four nearest, and that is part of what is defined.
float InterpolateFromCells(const MeasuredSites& measured, float x, float y) noexcept;

/// A pass over all sites; 0 where fewer than four are in reach.
float InterpolateFromAll(const MeasuredSites& measured, float x, float y) noexcept;

}  // namespace discoplan
