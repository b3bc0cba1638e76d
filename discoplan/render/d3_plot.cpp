// SPDX-License-Identifier: MIT
#include <algorithm>
#include <array>
#include <cmath>

#include "discoplan/core/numbers.h"
#include "discoplan/core/wafer.h"
#include "discoplan/render/cell_walk.h"
#include "discoplan/render/lattice_values.h"
#include "discoplan/render/plot_frame.h"
#include "discoplan/render/surface.h"
#include "discoplan/render/test_area.h"
#include "discoplan/render/value_scale.h"

namespace discoplan {
namespace {

// Kinds of plot. The names of the interface for these two read the other way round.
constexpr std::int16_t kLinesOnly = 2;
constexpr std::int16_t kWhiteFaces = 3;
constexpr std::int16_t kSigmaColours = 4;

constexpr std::int16_t kFewestCells = 6;
/// The system's colour of scroll bars.
constexpr Colour kPlateFromAbove = 0x80000000;

double Radians(double degrees) { return degrees * wafer::kPi / 180; }

struct Direction {
  explicit Direction(double radians) : cosine(std::cos(radians)), sine(std::sin(radians)) {}

  double cosine;
  double sine;
};

/// One axis of the grid: cells to each side of the centre, and their side in mm.
struct GridAxis {
  std::int16_t half_count = 0;
  double cell = 0;

  int Cells() const { return 2 * half_count; }
};

GridAxis MakeAxis(PlotFrame& frame, double test_diameter, double resolution) {
  GridAxis axis{.half_count = 0, .cell = resolution};
  frame([&] { axis.half_count = ToInt16(Divide(test_diameter / 2, resolution) + 2); });
  if (axis.half_count < kFewestCells) {
    axis = {.half_count = kFewestCells, .cell = test_diameter / 8};
  }
  return axis;
}

/// The grid of cells in its own rotated frame, corner (0, 0) at the back.
class Grid {
 public:
  Grid(const GridAxis& x_axis, const GridAxis& y_axis, const SurfaceView& view)
      : x_axis_(x_axis),
        y_axis_(y_axis),
        on_surface_(Radians(view.grid_rotation)),
        on_wafer_(Radians(view.wafer_rotation) - Radians(view.grid_rotation)),
        tilt_(Radians(view.grid_inclination)) {}

  int Columns() const { return x_axis_.Cells(); }
  int Rows() const { return y_axis_.Cells(); }

  LatticePosition OnWafer(int i, int j) const {
    const double a = x_axis_.half_count - i;
    const double b = y_axis_.half_count - j;
    return {a * (x_axis_.cell * on_wafer_.cosine) + b * (y_axis_.cell * on_wafer_.sine),
            b * (y_axis_.cell * on_wafer_.cosine) - a * (x_axis_.cell * on_wafer_.sine)};
  }

  /// In pixels, for the middle and the lower edge of the plot's rectangle.
  double X(double middle, int i, int j, double scale) const {
    return middle + scale * ((x_axis_.half_count - i) * (x_axis_.cell * on_surface_.cosine) -
                             (y_axis_.half_count - j) * (y_axis_.cell * on_surface_.sine));
  }
  double Y(double lower_edge, int i, int j, double scale, double height) const {
    const double back = (Columns() - i) * (x_axis_.cell * on_surface_.sine) +
                        (Rows() - j) * (y_axis_.cell * on_surface_.cosine);
    return lower_edge - scale * back * tilt_.sine - height * tilt_.cosine;
  }

  /// Pixels per mm that fit the grid and the height of the largest value into the rectangle.
  double Scale(PlotFrame& frame, double plot_scale) const {
    double by_width = 0;
    frame([&] {
      by_width = Divide((frame.width - 6.0) / 2,
                        std::abs(x_axis_.cell * on_surface_.cosine) * x_axis_.half_count +
                            std::abs(y_axis_.cell * on_surface_.sine) * y_axis_.half_count);
    });
    if (tilt_.sine == 0 && plot_scale == 0) return by_width;
    double by_height = 0;
    frame([&] {
      const double depth = std::abs(x_axis_.cell * on_surface_.sine) * x_axis_.half_count +
                           std::abs(y_axis_.cell * on_surface_.cosine) * y_axis_.half_count;
      by_height = Divide(frame.height - 6.0, 2 * tilt_.sine * depth + plot_scale * tilt_.cosine);
    });
    return std::min(by_width, by_height);
  }

 private:
  const GridAxis x_axis_;
  const GridAxis y_axis_;
  const Direction on_surface_;
  const Direction on_wafer_;
  const Direction tilt_;
};

/// The grid's points in the test area.
class SurfacePoints {
 public:
  SurfacePoints(const Grid& grid, const TestArea& area) : grid_(grid), area_(area) {}

  LatticePosition Position(int i, int j) const { return grid_.OnWafer(i, j); }
  bool IsWanted(int i, int j) const {
    const LatticePosition at = Position(i, j);
    return area_.Contains(at.x, at.y);
  }

 private:
  const Grid& grid_;
  const TestArea& area_;
};

/// Paints the faces from the back of the grid to the front, each over what lies behind it.
class SurfacePainter {
 public:
  struct Style {
    std::int16_t kind;
    float sigma_range;
    bool from_above;
  };

  SurfacePainter(const wafer& source, Surface& surface, PlotFrame& frame, const Grid& grid,
                 double scale, double plot_scale, const Style& style)
      : source_(source),
        surface_(surface),
        frame_(frame),
        grid_(grid),
        scale_(scale),
        full_height_(scale * plot_scale),
        style_(style),
        area_(source, frame),
        points_(grid, area_),
        interpolated_(source, points_, grid.Columns() + 1, grid.Rows() + 1) {
    const ValueScale values = ValueScale::Of(source);
    top_ = HeightOf(values.high);
    bottom_ = HeightOf(values.low);
    frame_([&] {
      sigma_low_ = ToFloat(HeightOf(source_.mean - style_.sigma_range * source_.StdDev));
    });
    frame_([&] {
      sigma_high_ = ToFloat(HeightOf(source_.mean + style_.sigma_range * source_.StdDev));
    });
  }

  void Paint() {
    WalkCells(
        grid_.Columns(), grid_.Rows(), [&](float& height, int i, int j) { Evaluate(height, i, j); },
        [&](const LatticeCell& cell) { PaintCell(cell); }, [&] { frame_.Refresh(); });
  }

 private:
  double HeightOf(double value) const {
    const double floor = source_.ScaleFloor;
    return (value - floor) * full_height_ / (source_.Maximum - floor);
  }

  /// Off the wafer the height is exactly zero: the plate.
  void Evaluate(float& height, int i, int j) {
    frame_([&] {
      height = points_.IsWanted(i, j) ? ToFloat(HeightOf(interpolated_.At(i, j))) : 0.0F;
    });
  }

  void PaintCell(const LatticeCell& cell) {
    frame_([&] { height_ = ToFloat(cell.MeanHeight()); });
    PlaceCorners(cell);
    frame_([&] { surface_.DrawStyle(0); });
    frame_([&] { surface_.FillColor(FillOf(cell)); });
    frame_([&] { surface_.FillStyle(style_.kind == kLinesOnly ? 1 : 0); });
    frame_([&] { surface_.Polygon(corners_); });
  }

  void PlaceCorners(const LatticeCell& cell) {
    PixelPoint* pixel = corners_.data();
    for (const LatticeCell::Corner& corner : cell.Outline()) {
      frame_([&] { pixel->x = ToInt32(grid_.X(frame_.CentreX(), corner.i, corner.j, scale_)); });
      frame_([&] {
        pixel->y = ToInt32(grid_.Y(static_cast<double>(frame_.top) + frame_.height, corner.i,
                                   corner.j, scale_, cell.heights[corner.height]));
      });
      ++pixel;
    }
  }

  Colour FillOf(const LatticeCell& cell) {
    if (style_.kind == kLinesOnly || style_.kind == kWhiteFaces) return kWhite;
    ChooseColour();
    if (height_ == 0 || cell.CornersOff() > 0) colour_ = kUnpainted;
    if (colour_ != kUnpainted) return ToColour(colour_);
    return style_.from_above ? kPlateFromAbove : kWhite;
  }

  void ChooseColour() {
    const bool flat = top_ == bottom_;
    if (style_.kind == kSigmaColours) {
      colour_ = BandColour(source_, flat, height_, sigma_low_, sigma_high_);
      return;
    }
    const double step = (top_ - bottom_) / 10;
    const auto end = [&](double k) { return static_cast<float>(top_ - k * step); };
    ChooseIntervalColour(source_, flat, ClassBetween(height_, end), colour_);
  }

  const wafer& source_;
  Surface& surface_;
  PlotFrame& frame_;
  const Grid& grid_;
  const double scale_;        // pixels per mm
  const double full_height_;  // of the largest value, in pixels
  const Style style_;
  const TestArea area_;
  const SurfacePoints points_;
  LatticeValues<SurfacePoints> interpolated_;
  double top_ = 0;  // of the classes
  double bottom_ = 0;
  float sigma_low_ = 0;
  float sigma_high_ = 0;
  // A failing step leaves these as the last cell had them.
  std::array<PixelPoint, 4> corners_{};
  float height_ = 0;
  float colour_ = kUnpainted;
};

}  // namespace

void wafer::D3Plot(Surface& surface, const SurfaceView& view, std::int16_t plot_kind,
                   float sigma_range, bool printed, const PlotArea& area) {
  PlotFrame frame(surface, area, PlotFrame::Rounding::All);
  frame.Open();
  frame([&] { ScaleFloor = ToFloat(ValueScale{.high = Maximum, .low = Minimum}.MapFloor()); });
  frame.MeasureRectangle();
  const Grid grid(MakeAxis(frame, TestDiameter, view.x_resolution),
                  MakeAxis(frame, TestDiameter, view.y_resolution), view);
  const bool from_above = view.grid_rotation == 0 && view.wafer_rotation == 0 &&
                          view.grid_inclination == 90 && !printed;
  const double scale = grid.Scale(frame, view.plot_scale);
  if (nop_ > 3) {
    SurfacePainter(*this, surface, frame, grid, scale, view.plot_scale,
                   {.kind = plot_kind, .sigma_range = sigma_range, .from_above = from_above})
        .Paint();
  }
  frame([&] { setMaximalMinial(PlotMaximum, PlotMinimum); });
}

}  // namespace discoplan
