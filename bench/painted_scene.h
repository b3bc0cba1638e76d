// SPDX-License-Identifier: MIT
#pragma once

/// The polygons that a plot paints, kept so that raster and peer paint the same ones.

#include <array>
#include <vector>

#include "bench/bench_wafers.h"
#include "bench/discarding_surface.h"
#include "discoplan/raster/canvas.h"
#include "discoplan/render/plots/surface_plot.h"

namespace discoplan::bench {

inline constexpr int kSide = 900;  // pixels of the picture

struct PaintedCell {
  std::array<PixelPoint, 4> corners;
  Colour colour;
};

/// The cells of the maps and of the surfaces have four corners each.
class KeepingSurface final : public DiscardingSurface {
 public:
  using DiscardingSurface::DiscardingSurface;

  void Polygon(std::span<const PixelPoint> points) override {
    cells.push_back({{points[0], points[1], points[2], points[3]}, state_.fill_color});
  }

  std::vector<PaintedCell> cells;
};

/// 200 x 200 cells in a circle, four to five pixels wide and without an outline.
inline std::vector<PaintedCell> MapCells() {
  wafer source;
  Load(source, RandomSites(49));
  KeepingSurface surface(kSide);
  source.D2Plot(surface, source.TestDiameter / 200, 5, 0, false, {});
  return surface.cells;
}

/// Outlined faces, seen as a new 3D plot shows them, `resolution` mm wide.
inline std::vector<PaintedCell> SurfaceFaces(float resolution) {
  wafer source;
  Load(source, RandomSites(49));
  KeepingSurface surface(kSide);
  SurfaceView view;
  view.x_resolution = resolution;
  view.y_resolution = resolution;
  source.D3Plot(surface, view, 1, 0, false, {});
  return surface.cells;
}

}  // namespace discoplan::bench
