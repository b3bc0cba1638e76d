// SPDX-License-Identifier: MIT
#include "discoplan/render/plots/contour_mesh.h"

#include "discoplan/base/angles.h"
#include "discoplan/base/numbers.h"
#include "discoplan/core/interpolation/site_interpolator.h"

namespace discoplan {
namespace {

constexpr int kSectors = 8;
constexpr std::int16_t kLowQuality = 0;
constexpr std::int16_t kHighQuality = 1;
constexpr int kFewestRings = 2;
constexpr int kMostRings = 10;

int PointsWithin(int rings) { return (2 * rings + 1) * (2 * rings + 1); }

/// The ring's point of that number, counted around from its first one.
std::size_t PointIndex(int ring, int number) {
  if (ring == 0) return 0;
  return static_cast<std::size_t>(PointsWithin(ring - 1) + number % (kSectors * ring));
}

/// A zigzag from the sector's start to its end, outer and inner edges in turn.
void AddStrip(ContourMesh& mesh, int ring, int sector) {
  const int outer = sector * ring;
  const int inner = sector * (ring - 1);
  for (int m = 0; m < ring; ++m) {
    const std::size_t from = PointIndex(ring - 1, inner + m);
    const std::size_t next = PointIndex(ring, outer + m + 1);
    mesh.triangles.push_back({from, PointIndex(ring, outer + m), next});
    if (m < ring - 1) mesh.triangles.push_back({from, next, PointIndex(ring - 1, inner + m + 1)});
  }
}

}  // namespace

int ContourRings(std::int16_t resolution, float sites) {
  if (resolution == kLowQuality) return 5;
  if (resolution == kHighQuality) return 10;
  int rings = kFewestRings;
  while (rings < kMostRings && static_cast<float>(PointsWithin(rings)) < sites) ++rings;
  return rings;
}

ContourMesh MakeContourMesh(const WaferData& data, int rings) {
  ContourMesh mesh;
  mesh.points.reserve(static_cast<std::size_t>(PointsWithin(rings)));
  const auto add_point = [&](double x, double y) {
    mesh.points.push_back({.x = ToFloat(x), .y = ToFloat(y)});
  };
  add_point(0, 0);
  for (int ring = 1; ring <= rings; ++ring) {
    const double radius = static_cast<double>(data.test_diameter) * ring / (2 * rings);
    const double step = static_cast<double>(kPi) / (4 * ring);
    for (int m = 0; m < kSectors * ring; ++m) {
      add_point(radius * Cosine(m * step), -radius * Sine(m * step));
    }
    for (int sector = 0; sector < kSectors; ++sector) AddStrip(mesh, ring, sector);
  }
  SiteInterpolator(data).Evaluate(mesh.points, mesh.points.size());
  return mesh;
}

}  // namespace discoplan
