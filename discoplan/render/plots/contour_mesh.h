// SPDX-License-Identifier: MIT
#pragma once

/// The triangles that a contour map is drawn from: the test circle in rings of equal width around
/// its centre, ring k with 8k points.
///
///     const ContourMesh mesh = MakeContourMesh(data, ContourRings(resolution, sites));
///     for (const auto& [a, b, c] : mesh.triangles) Draw(mesh.points[a], mesh.points[b], ...);

#include <array>
#include <cstdint>
#include <vector>

#include "discoplan/core/wafer_data.h"

namespace discoplan {

struct ContourMesh {
  std::vector<Site> points;                           ///< (2R + 1)^2, with interpolated values.
  std::vector<std::array<std::size_t, 3>> triangles;  ///< 8R^2, each of three point indices.
};

/// The number R of rings: 5 for a resolution of 0, 10 for 1. For any other as few as give a point
/// for each site, from 2 to 10.
int ContourRings(std::int16_t resolution, float sites);

/// Raises `Overflow` for a wafer whose positions don't fit.
ContourMesh MakeContourMesh(const WaferData& data, int rings);

}  // namespace discoplan
