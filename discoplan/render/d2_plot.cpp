// SPDX-License-Identifier: MIT
#include <algorithm>
#include <array>
#include <cmath>

#include "discoplan/core/numbers.h"
#include "discoplan/core/wafer.h"
#include "discoplan/render/cell_walk.h"
#include "discoplan/render/lattice_values.h"
#include "discoplan/render/plot_frame.h"
#include "discoplan/render/site_marks.h"
#include "discoplan/render/surface.h"
#include "discoplan/render/test_area.h"
#include "discoplan/render/value_scale.h"

namespace discoplan {
namespace {

constexpr std::int16_t kIntervalColours = 5;
constexpr std::int16_t kFewestCells = 4;
constexpr std::int16_t kMostCells = 100;

/// 2n x 2n square cells around the wafer's centre, `cell` mm wide.
struct Lattice {
  std::int16_t n = 0;
  double cell = 0;

  double At(int index) const { return (n - index) * cell; }
  double Side() const { return 2 * n * cell; }
};

template <class Step>
Lattice MakeLattice(Step&& step, double test_diameter, double diameter, double resolution) {
  Lattice lattice{.n = 0, .cell = resolution};
  step([&] { lattice.n = ToInt16(Divide(diameter / 2, resolution)); });
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
  MapPoints(const Lattice& lattice, const TestArea& area) : lattice_(lattice), area_(area) {}

  LatticePosition Position(int i, int j) const { return {lattice_.At(i), lattice_.At(j)}; }
  bool IsWanted(int i, int j) const {
    return area_.ContainsOrTouches(Inward(lattice_.At(i)), Inward(lattice_.At(j)));
  }

 private:
  double Inward(double at) const {
    return std::copysign(std::max(std::abs(at) - lattice_.cell, 0.0), at);
  }

  const Lattice& lattice_;
  const TestArea& area_;
};

/// Paints the cells of a map, row by row from the top, each row from the right edge to the left.
class MapPainter {
 public:
  struct Style {
    std::int16_t kind;
    float sigma_range;
  };

  MapPainter(const wafer& source, Surface& surface, PlotFrame& frame, const Lattice& lattice,
             double scale, const Style& style)
      : source_(source),
        surface_(surface),
        frame_(frame),
        lattice_(lattice),
        scale_(scale),
        style_(style),
        values_(ValueScale::Of(source)),
        area_(source, frame),
        points_(lattice_, area_),
        interpolated_(source, points_, 2 * lattice.n + 1, 2 * lattice.n + 1) {}

  void Paint() {
    const double floor = source_.ScaleFloor;
    step_ = values_.ClassStep(scale_, floor);
    sigma_low_ = HeightOf(source_.mean - style_.sigma_range * source_.StdDev);
    sigma_high_ = HeightOf(source_.mean + style_.sigma_range * source_.StdDev);
    PaintDisc();
    WalkCells(
        2 * lattice_.n, 2 * lattice_.n,
        [&](float& height, int i, int j) { Evaluate(height, i, j); },
        [&](const LatticeCell& cell) { PaintCell(cell); }, [&] { frame_.Refresh(); });
    frame_.Refresh();
  }

 private:
  double HeightOf(double value) const { return values_.Height(value, scale_, source_.ScaleFloor); }

  float InterpolatedHeight(int i, int j) { return ToFloat(HeightOf(interpolated_.At(i, j))); }

  void PaintDisc() {
    frame_([&] { surface_.FillColor(kWhite); });
    frame_([&] {
      surface_.Circle({.centre = {ToFloat(frame_.CentreX()), ToFloat(frame_.CentreY())},
                       .radius = ToFloat(scale_ * source_.TestDiameter / 2),
                       .colour = kWhite});
    });
  }

  /// Off the wafer the height is exactly zero, which stands for no data. The top line leaves out
  /// the test circle itself; all lines below take it in.
  void Evaluate(float& height, int i, int j) {
    const double x = lattice_.At(i);
    const double y = lattice_.At(j);
    frame_([&] {
      const bool inside = j == 0 ? area_.Contains(x, y) : area_.ContainsOrTouches(x, y);
      height = inside ? InterpolatedHeight(i, j) : 0.0F;
    });
  }

  void PaintCell(LatticeCell cell) {
    const auto off_wafer = cell.CornersOff();
    if (off_wafer == 1 || off_wafer == 2) Repair(cell);
    frame_([&] { height_ = ToFloat(cell.MeanHeight()); });
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
    for (const LatticeCell::Corner& corner : cell.Outline()) {
      float& height = cell.heights[corner.height];
      if (height != 0) continue;
      frame_([&] { height = InterpolatedHeight(corner.i, corner.j); });
    }
  }

  void PlaceCorners(const LatticeCell& cell) {
    PixelPoint* pixel = corners_.data();
    for (const LatticeCell::Corner& corner : cell.Outline()) {
      frame_([&] { pixel->x = ToInt32(frame_.CentreX() + scale_ * lattice_.At(corner.i)); });
      frame_([&] { pixel->y = ToInt32(frame_.CentreY() - scale_ * lattice_.At(corner.j)); });
      ++pixel;
    }
  }

  void ChooseColour() {
    if (style_.kind == kIntervalColours) {
      ChooseIntervalColour(source_, values_.IsFlat(), IntervalClass(height_, scale_, step_),
                           colour_);
    } else {
      colour_ =
          BandColour(source_, source_.Maximum == source_.Minimum, height_, sigma_low_, sigma_high_);
    }
  }

  const wafer& source_;
  Surface& surface_;
  PlotFrame& frame_;
  const Lattice lattice_;
  const double scale_;  // pixels per mm, and the height of the scale's upper end
  const Style style_;
  const ValueScale values_;
  const TestArea area_;
  const MapPoints points_;
  LatticeValues<MapPoints> interpolated_;
  double step_ = 0;
  double sigma_low_ = 0;
  double sigma_high_ = 0;
  // A failing step leaves these as the last cell had them.
  std::array<PixelPoint, 4> corners_{};
  float height_ = 0;
  float colour_ = kUnpainted;
};

}  // namespace

double wafer::D2PlotSide(double resolution) const {
  const auto attempt = [](auto&& step) { Attempt(step); };
  return MakeLattice(attempt, TestDiameter, TestDiameter, resolution).Side();
}

void wafer::D2Plot(Surface& surface, double resolution, std::int16_t kind, float sigma_range,
                   bool show_sites, const PlotArea& area) {
  PlotFrame frame(surface, area);
  frame.Open();
  frame([&] { ScaleFloor = ToFloat(ValueScale::Of(*this).MapFloor()); });
  const bool whole_wafer = kind == kIntervalColours && sigma_range != 0;
  const Lattice lattice =
      MakeLattice(frame, TestDiameter, whole_wafer ? WaferDiameter : TestDiameter, resolution);
  frame.MeasureRectangle();
  double scale = 0;
  frame([&] {
    scale = std::min(Divide(frame.width - 6.0, lattice.Side()),
                     Divide(frame.height - 6.0, lattice.Side()));
  });
  if (nop_ > 3) {
    MapPainter(*this, surface, frame, lattice, scale, {.kind = kind, .sigma_range = sigma_range})
        .Paint();
  }
  if (show_sites) DrawSiteMarks(*this, surface, frame, scale);
  frame([&] { setMaximalMinial(PlotMaximum, PlotMinimum); });
}

}  // namespace discoplan
