// SPDX-License-Identifier: MIT
#include <algorithm>
#include <array>
#include <vector>

#include "discoplan/core/numbers.h"
#include "discoplan/core/wafer.h"
#include "discoplan/render/plot_frame.h"
#include "discoplan/render/site_marks.h"
#include "discoplan/render/surface.h"
#include "discoplan/render/value_scale.h"

namespace discoplan {
namespace {

constexpr std::int16_t kIntervalColours = 5;
constexpr std::int16_t kFewestCells = 4;
constexpr std::int16_t kMostCells = 100;
/// A cell whose colour is this number stays unpainted.
constexpr float kUnpainted = 15;

/// 2n x 2n square cells around the wafer's centre, `cell` mm wide.
struct Lattice {
  std::int16_t n = 0;
  double cell = 0;

  double At(int index) const { return (n - index) * cell; }
};

Lattice MakeLattice(PlotFrame& frame, double test_diameter, double diameter, double resolution) {
  Lattice lattice{.n = 0, .cell = resolution};
  frame([&] { lattice.n = ToInt16(Divide(diameter / 2, resolution)); });
  if (lattice.n < kFewestCells) {
    lattice = {.n = kFewestCells, .cell = test_diameter / (2 * kFewestCells)};
  } else if (lattice.n > kMostCells) {
    lattice = {.n = kMostCells, .cell = diameter / (2 * kMostCells)};
  }
  return lattice;
}

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
        test_radius_square_(source.TestDiameter / 2.0 * (source.TestDiameter / 2.0)),
        row_(static_cast<std::size_t>(2 * lattice.n + 1)) {}

  void Paint() {
    const double floor = source_.ScaleFloor;
    step_ = values_.ClassStep(scale_, floor);
    frame_([&] {
      flat_y_ = ToFloat(-(static_cast<double>(source_.FlatRatio) - 0.5) * source_.WaferDiameter);
    });
    sigma_low_ = HeightOf(source_.mean - style_.sigma_range * source_.StdDev);
    sigma_high_ = HeightOf(source_.mean + style_.sigma_range * source_.StdDev);
    PaintDisc();
    FillTopLine();
    for (int j = 0; j < 2 * lattice_.n; ++j) PaintRow(j);
    frame_.Refresh();
  }

 private:
  struct Cell {
    std::array<float, 4> heights;  // A, B, C, D
    int i;
    int j;
  };

  double HeightOf(double value) const {
    return (value - source_.ScaleFloor) * scale_ / (values_.high - source_.ScaleFloor);
  }

  float InterpolatedHeight(double x, double y) const {
    return ToFloat(HeightOf(source_.Interpolation(ToFloat(x), ToFloat(y))));
  }

  void PaintDisc() {
    frame_([&] { surface_.FillColor(kWhite); });
    frame_([&] {
      surface_.Circle({.centre = {ToFloat(frame_.CentreX()), ToFloat(frame_.CentreY())},
                       .radius = ToFloat(scale_ * source_.TestDiameter / 2),
                       .colour = kWhite});
    });
  }

  /// Off the wafer the height is exactly zero, which stands for no data.
  template <class Inside>
  void Evaluate(float& height, int i, int j, Inside&& inside) {
    const double x = lattice_.At(i);
    const double y = lattice_.At(j);
    frame_(
        [&] { height = inside(x * x + y * y) && y > flat_y_ ? InterpolatedHeight(x, y) : 0.0F; });
  }

  /// The top line leaves out the test circle itself; all lines below take it in.
  void FillTopLine() {
    for (int i = 0; i <= 2 * lattice_.n; ++i) {
      Evaluate(row_[static_cast<std::size_t>(i)], i, 0,
               [&](double square) { return square < test_radius_square_; });
    }
  }

  void PaintRow(int j) {
    const auto on_wafer = [&](double square) { return square <= test_radius_square_; };
    const int last = 2 * lattice_.n - 1;
    float c = 0;
    float d = 0;
    for (int i = 0; i <= last; ++i) {
      float& above = row_[static_cast<std::size_t>(i)];
      float& above_next = row_[static_cast<std::size_t>(i) + 1];
      if (i == 0) {
        Evaluate(c, i, j + 1, on_wafer);
      } else {
        c = d;
      }
      Evaluate(d, i + 1, j + 1, on_wafer);
      const Cell cell{.heights = {above, above_next, c, d}, .i = i, .j = j};
      above = c;
      if (i == last) above_next = d;
      PaintCell(cell);
    }
    frame_.Refresh();
  }

  void PaintCell(Cell cell) {
    const auto off_wafer = std::ranges::count(cell.heights, 0.0F);
    if (off_wafer == 1 || off_wafer == 2) Repair(cell);
    frame_([&] {
      const auto& z = cell.heights;
      height_ = ToFloat((static_cast<double>(z[0]) + z[1] + z[2] + z[3]) / 4);
    });
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
  void Repair(Cell& cell) {
    for (std::size_t corner = 0; corner < 4; ++corner) {
      if (cell.heights[corner] != 0) continue;
      frame_([&] {
        cell.heights[corner] =
            InterpolatedHeight(lattice_.At(cell.i + static_cast<int>(corner % 2)),
                               lattice_.At(cell.j + static_cast<int>(corner / 2)));
      });
    }
  }

  void PlaceCorners(const Cell& cell) {
    constexpr std::array<PixelPoint, 4> kAround = {{{0, 0}, {1, 0}, {1, 1}, {0, 1}}};
    for (std::size_t k = 0; k < kAround.size(); ++k) {
      frame_([&] {
        corners_[k].x = ToInt32(frame_.CentreX() + scale_ * lattice_.At(cell.i + kAround[k].x));
      });
      frame_([&] {
        corners_[k].y = ToInt32(frame_.CentreY() - scale_ * lattice_.At(cell.j + kAround[k].y));
      });
    }
  }

  void ChooseColour() {
    if (style_.kind == kIntervalColours) {
      if (const auto k = IntervalClass(height_, scale_, step_)) colour_ = source_.IntervalColor[*k];
      if (values_.IsFlat()) colour_ = source_.IntervalColor[5];
      return;
    }
    const bool varies = source_.Maximum != source_.Minimum;
    colour_ = varies && height_ < sigma_low_    ? source_.AuxColor[2]
              : varies && height_ > sigma_high_ ? source_.AuxColor[0]
                                                : source_.AuxColor[1];
  }

  const wafer& source_;
  Surface& surface_;
  PlotFrame& frame_;
  const Lattice lattice_;
  const double scale_;  // pixels per mm, and the height of the scale's upper end
  const Style style_;
  const ValueScale values_;
  const double test_radius_square_;
  double step_ = 0;
  double sigma_low_ = 0;
  double sigma_high_ = 0;
  float flat_y_ = 0;
  std::vector<float> row_;  // heights along the lattice line above
  // A failing step leaves these as the last cell had them.
  std::array<PixelPoint, 4> corners_{};
  float height_ = 0;
  float colour_ = kUnpainted;
};

}  // namespace

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
    const double side = 2 * lattice.n * lattice.cell;
    scale = std::min(Divide(frame.width - 6.0, side), Divide(frame.height - 6.0, side));
  });
  if (nop_ > 3) {
    MapPainter(*this, surface, frame, lattice, scale, {.kind = kind, .sigma_range = sigma_range})
        .Paint();
  }
  if (show_sites) DrawSiteMarks(*this, surface, frame, scale);
  frame([&] { setMaximalMinial(PlotMaximum, PlotMinimum); });
}

}  // namespace discoplan
