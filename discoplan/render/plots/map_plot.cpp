// SPDX-License-Identifier: MIT
#include "discoplan/render/plots/map_plot.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <span>
#include <vector>

#include "discoplan/base/numbers.h"
#include "discoplan/core/wafer_data.h"
#include "discoplan/render/plots/cell_walk.h"
#include "discoplan/render/plots/lattice_values.h"
#include "discoplan/render/plots/plot_frame.h"
#include "discoplan/render/plots/site_marks.h"
#include "discoplan/render/plots/test_area.h"
#include "discoplan/render/plots/value_scale.h"
#include "discoplan/render/surface.h"

namespace discoplan {
namespace {

constexpr std::int16_t kFewestCells = 4;
constexpr std::int16_t kMostCells = 100;

/// 2n x 2n square cells around the wafer's centre, `cell` mm wide.
struct Lattice {
  std::int16_t n = 0;
  double cell = 0;

  int Cells() const { return 2 * n; }
  int Lines() const { return 2 * n + 1; }
  double At(int line) const { return (n - line) * cell; }
  double Side() const { return 2 * n * cell; }
};

/// Clears `counted` where the number of cells doesn't fit.
Lattice MakeLattice(double test_diameter, double diameter, double resolution, bool& counted) {
  Lattice lattice{.n = 0, .cell = resolution};
  counted = resolution != 0 && Narrow(diameter / 2 / resolution, lattice.n);
  if (lattice.n < kFewestCells) {
    lattice = {.n = kFewestCells, .cell = test_diameter / (2 * kFewestCells)};
  } else if (lattice.n > kMostCells) {
    lattice = {.n = kMostCells, .cell = diameter / (2 * kMostCells)};
  }
  return lattice;
}

/// The lattice points of a map: those in the test area and their neighbours, by which the cells at
/// its edge are repaired.
class MapPoints {
 public:
  MapPoints(const Lattice& lattice, const TestArea& area) : lattice_(lattice), area_(area) {
    for (int k = 0; k < lattice.Lines(); ++k) {
      const double at = lattice.At(k);
      inward_.push_back(std::copysign(std::max(std::abs(at) - lattice.cell, 0.0), at));
    }
  }

  WaferPoint Position(int i, int j) const { return {lattice_.At(i), lattice_.At(j)}; }
  bool IsWanted(int i, int j) const {
    return area_.ContainsOrTouches(inward_[static_cast<std::size_t>(i)],
                                   inward_[static_cast<std::size_t>(j)]);
  }

 private:
  const Lattice& lattice_;
  const TestArea& area_;
  std::vector<double> inward_;  // by line: the next one towards the middle
};

/// Paints the cells of a map, row by row from the top, each row from the right edge to the left.
class MapPainter {
 public:
  MapPainter(const WaferData& data, Surface& surface, PlotFrame& frame, const Lattice& lattice,
             double scale, float floor, const MapSettings& settings)
      : data_(data),
        surface_(surface),
        frame_(frame),
        lattice_(lattice),
        scale_(scale),
        floor_(floor),
        settings_(settings),
        values_(ValueScale::Of(data)),
        area_(data, frame),
        points_(lattice_, area_),
        interpolated_(data, points_, lattice.Lines(), lattice.Lines()),
        lines_(static_cast<std::size_t>(lattice.Lines())) {}

  void Paint() {
    step_ = values_.ClassStep(scale_, floor_);
    sigma_low_ = HeightOf(data_.mean - settings_.sigma_range * data_.deviation);
    sigma_high_ = HeightOf(data_.mean + settings_.sigma_range * data_.deviation);
    PaintDisc();
    PlaceLines();
    WalkCells(
        frame_, lattice_.Cells(), lattice_.Cells(),
        [&](int j, std::span<float> heights) { FillLine(j, heights); },
        [&](const LatticeCell& cell) { PaintCell(cell); });
    frame_.Refresh();
  }

 private:
  /// A line of the lattice as a column and as a row, in pixels.
  struct PlacedLine {
    std::int32_t x = 0;
    std::int32_t y = 0;
    bool fits = false;
  };

  /// Off the wafer the height is exactly zero, which stands for no data. The top line leaves out
  /// the test circle itself; all lines below take it in.
  void FillLine(int j, std::span<float> heights) {
    const std::span<const Site> values = interpolated_.Line(j);
    const double y = lattice_.At(j);
    int i = 0;
    for (float& height : heights) {
      const double x = lattice_.At(i);
      const bool inside = j == 0 ? area_.Contains(x, y) : area_.ContainsOrTouches(x, y);
      height = inside ? HeightOrFailed(HeightOf(interpolated_.At(values, i, j))) : 0.0F;
      ++i;
    }
  }

  double HeightOf(double value) const { return values_.Height(value, scale_, floor_); }

  void PaintDisc() {
    frame_([&] { surface_.FillColor(kWhite); });
    frame_([&] {
      surface_.Circle({.centre = {ToFloat(frame_.CentreX()), ToFloat(frame_.CentreY())},
                       .radius = ToFloat(scale_ * data_.test_diameter / 2),
                       .colour = kWhite});
    });
  }

  void PaintCell(LatticeCell cell) {
    const auto off_wafer = cell.CornersOff();
    if (off_wafer == 1 || off_wafer == 2) Repair(cell);
    frame_.Keep(height_, cell.MeanHeight());
    PlaceCorners(cell);
    frame_([&] { surface_.DrawStyle(5); });
    if (height_ == 0 || off_wafer > 2) return;
    ChooseColour();
    if (colour_ == kUnpainted) return;
    frame_([&] { surface_.FillColor(ToColour(colour_)); });
    frame_([&] { surface_.FillStyle(0); });
    frame_([&] { surface_.Polygon(corners_); });
  }

  /// Extends a cell at the edge past the circle instead of pulling its mean down.
  void Repair(LatticeCell& cell) {
    for (const LatticeCell::Corner& corner : LatticeCell::kOutline) {
      float& height = cell.heights[corner.height];
      if (height != 0) continue;
      const int i = cell.i + corner.across;
      const int j = cell.j + corner.down;
      frame_.Keep(height, HeightOf(interpolated_.At(interpolated_.Line(j), i, j)));
    }
  }

  void PlaceCorners(const LatticeCell& cell) {
    if (frame_.Version() != version_) PlaceLines();
    const PlacedLine* const lines = lines_.data();
    const PlacedLine& right = lines[cell.i];
    const PlacedLine& left = lines[cell.i + 1];
    const PlacedLine& upper = lines[cell.j];
    const PlacedLine& lower = lines[cell.j + 1];
    if (right.fits && left.fits && upper.fits && lower.fits) {
      corners_ = {{{right.x, upper.y}, {left.x, upper.y}, {left.x, lower.y}, {right.x, lower.y}}};
      return;
    }
    PixelPoint* pixel = corners_.data();
    for (const LatticeCell::Corner& corner : LatticeCell::kOutline) {
      frame_.Keep(pixel->x, frame_.CentreX() + scale_ * lattice_.At(cell.i + corner.across));
      frame_.Keep(pixel->y, frame_.CentreY() - scale_ * lattice_.At(cell.j + corner.down));
      ++pixel;
    }
  }

  void PlaceLines() {
    version_ = frame_.Version();
    for (int k = 0; k < lattice_.Lines(); ++k) {
      PlacedLine& line = lines_[static_cast<std::size_t>(k)];
      const bool has_x = Narrow(frame_.CentreX() + scale_ * lattice_.At(k), line.x);
      const bool has_y = Narrow(frame_.CentreY() - scale_ * lattice_.At(k), line.y);
      line.fits = has_x && has_y;
    }
  }

  void ChooseColour() {
    if (settings_.kind == MapSettings::kIntervalColours) {
      ChooseIntervalColour(data_, values_.IsFlat(), IntervalClass(height_, scale_, step_), colour_);
    } else {
      colour_ = BandColour(data_, data_.maximum == data_.minimum, height_, sigma_low_, sigma_high_);
    }
  }

  const WaferData& data_;
  Surface& surface_;
  PlotFrame& frame_;
  const Lattice lattice_;
  const double scale_;  // pixels per mm, and the height of the scale's upper end
  const float floor_;   // value at height zero
  const MapSettings& settings_;
  const ValueScale values_;
  const TestArea area_;
  const MapPoints points_;
  LatticeValues<MapPoints> interpolated_;
  std::vector<PlacedLine> lines_;
  unsigned version_ = 0;  // of the rectangle that they are placed in
  double step_ = 0;
  double sigma_low_ = 0;
  double sigma_high_ = 0;
  // A failing step leaves these as the last cell had them.
  std::array<PixelPoint, 4> corners_{};
  float height_ = 0;
  float colour_ = kUnpainted;
};

}  // namespace

double MapSide(double test_diameter, double resolution) {
  bool counted = false;
  return MakeLattice(test_diameter, test_diameter, resolution, counted).Side();
}

float DrawMap(const WaferData& data, Surface& surface, const MapSettings& settings,
              const PlotArea& area) {
  PlotFrame frame(surface, area);
  frame.Open();
  float floor = data.scale_floor;
  frame.Keep(floor, ValueScale::Of(data).MapFloor());
  const bool whole_wafer =
      settings.kind == MapSettings::kIntervalColours && settings.sigma_range != 0;
  bool counted = false;
  const Lattice lattice =
      MakeLattice(data.test_diameter, whole_wafer ? data.wafer_diameter : data.test_diameter,
                  settings.resolution, counted);
  if (!counted) frame.Drop();
  frame.MeasureRectangle();
  double scale = 0;
  frame.KeepScale(scale, lattice.Side(), lattice.Side());
  if (data.IsDrawn()) {
    MapPainter(data, surface, frame, lattice, scale, floor, settings).Paint();
  }
  if (settings.show_sites) DrawSiteMarks(data, surface, frame, scale);
  return floor;
}

}  // namespace discoplan
