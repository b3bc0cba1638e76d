// SPDX-License-Identifier: MIT
#include "discoplan/render/plots/surface_plot.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <span>
#include <vector>

#include "discoplan/base/angles.h"
#include "discoplan/base/numbers.h"
#include "discoplan/core/wafer_data.h"
#include "discoplan/render/plots/cell_walk.h"
#include "discoplan/render/plots/lattice_values.h"
#include "discoplan/render/plots/plot_frame.h"
#include "discoplan/render/plots/test_area.h"
#include "discoplan/render/plots/value_scale.h"
#include "discoplan/render/surface.h"

namespace discoplan {
namespace {

constexpr std::int16_t kFewestCells = 6;
/// The system's colour of scroll bars.
constexpr Colour kPlateFromAbove = 0x80000000;

struct Direction {
  explicit Direction(double radians) : cosine(Cosine(radians)), sine(Sine(radians)) {}

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
  if (resolution == 0 || !Narrow(test_diameter / 2 / resolution + 2, axis.half_count)) frame.Drop();
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

  WaferPoint OnWafer(int i, int j) const {
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
    frame.KeepQuotient(by_width, (frame.width - 6.0) / 2,
                       std::abs(x_axis_.cell * on_surface_.cosine) * x_axis_.half_count +
                           std::abs(y_axis_.cell * on_surface_.sine) * y_axis_.half_count);
    if (tilt_.sine == 0 && plot_scale == 0) return by_width;
    const double depth = std::abs(x_axis_.cell * on_surface_.sine) * x_axis_.half_count +
                         std::abs(y_axis_.cell * on_surface_.cosine) * y_axis_.half_count;
    double by_height = 0;
    frame.KeepQuotient(by_height, frame.height - 6.0,
                       2 * tilt_.sine * depth + plot_scale * tilt_.cosine);
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

  WaferPoint Position(int i, int j) const { return grid_.OnWafer(i, j); }
  bool IsWanted(int i, int j) const {
    const WaferPoint at = Position(i, j);
    return area_.Contains(at.x, at.y);
  }

 private:
  const Grid& grid_;
  const TestArea& area_;
};

bool SeenFromAbove(const SurfaceSettings& settings) {
  const SurfaceView& view = settings.view;
  return view.grid_rotation == 0 && view.wafer_rotation == 0 && view.grid_inclination == 90 &&
         !settings.printed;
}

/// Paints the faces from the back of the grid to the front, each over what lies behind it.
class SurfacePainter {
 public:
  SurfacePainter(const WaferData& data, Surface& surface, PlotFrame& frame, const Grid& grid,
                 double scale, float floor, const SurfaceSettings& settings)
      : data_(data),
        surface_(surface),
        frame_(frame),
        grid_(grid),
        scale_(scale),
        full_height_(scale * settings.view.plot_scale),
        floor_(floor),
        settings_(settings),
        area_(data, frame),
        points_(grid, area_),
        interpolated_(data, points_, grid.Columns() + 1, grid.Rows() + 1),
        line_(static_cast<std::size_t>(grid.Columns())) {
    const ValueScale values = ValueScale::Of(data);
    const double top = HeightOf(values.high);
    const double bottom = HeightOf(values.low);
    flat_ = top == bottom;
    const double step = (top - bottom) / 10;
    for (std::size_t k = 0; k < ends_.size(); ++k) {
      ends_[k] = static_cast<float>(top - static_cast<double>(k) * step);
    }
    frame_.Keep(sigma_low_, HeightOf(data_.mean - settings_.sigma_range * data_.deviation));
    frame_.Keep(sigma_high_, HeightOf(data_.mean + settings_.sigma_range * data_.deviation));
  }

  void Paint() {
    WalkCells(
        frame_, grid_.Columns(), grid_.Rows(),
        [&](int j, std::span<float> heights) { FillLine(j, heights); },
        [&](const LatticeCell& cell) { PaintCell(cell); });
  }

 private:
  /// A corner of the grid in pixels, in one rectangle.
  struct PlacedCorner {
    PixelPoint pixel;
    unsigned version;
    bool is_whole;  // both axes fit

    bool Stands(unsigned now) const { return is_whole && version == now; }
  };

  /// Off the wafer the height is exactly zero: the plate.
  void FillLine(int j, std::span<float> heights) {
    const Site* point = interpolated_.Line(j).data();
    for (float& height : heights) {
      height = std::isnan(point->x) ? 0.0F : HeightOrFailed(HeightOf(point->z));
      ++point;
    }
  }

  double HeightOf(double value) const {
    return (value - floor_) * full_height_ / (data_.maximum - double{floor_});
  }

  void PaintCell(const LatticeCell& cell) {
    frame_.Keep(height_, cell.MeanHeight());
    PlaceCorners(cell);
    frame_([&] { surface_.DrawStyle(0); });
    frame_([&] { surface_.FillColor(FillOf(cell)); });
    frame_([&] { surface_.FillStyle(settings_.kind == SurfaceSettings::kLinesOnly ? 1 : 0); });
    frame_([&] { surface_.Polygon(corners_); });
  }

  /// The cell before and the one above have placed three of the corners, unless one of them failed
  /// or the rectangle has changed since.
  void PlaceCorners(const LatticeCell& cell) {
    PlacedCorner& below = line_[static_cast<std::size_t>(cell.i)];
    const PlacedCorner before = cell.i > 0 ? placed_[1] : kUnplaced;
    const PlacedCorner before_below = cell.i > 0 ? placed_[2] : kUnplaced;
    const PlacedCorner above = cell.j > 0 ? below : kUnplaced;
    PlaceCorner(cell, 0, before);
    PlaceCorner(cell, 1, above);
    PlaceCorner(cell, 2, kUnplaced);
    PlaceCorner(cell, 3, before_below);
    below = placed_[2];
  }

  void PlaceCorner(const LatticeCell& cell, std::size_t k, const PlacedCorner& known) {
    if (known.Stands(frame_.Version())) {
      placed_[k] = known;
      corners_[k] = known.pixel;
      return;
    }
    const LatticeCell::Corner& corner = LatticeCell::kOutline[k];
    const int i = cell.i + corner.across;
    const int j = cell.j + corner.down;
    const bool has_x = Narrow(grid_.X(frame_.CentreX(), i, j, scale_), corners_[k].x);
    if (!has_x) frame_.Drop();
    const unsigned version = frame_.Version();
    const double lower_edge = static_cast<double>(frame_.top) + frame_.height;
    const bool has_y =
        Narrow(grid_.Y(lower_edge, i, j, scale_, cell.heights[corner.height]), corners_[k].y);
    if (!has_y) frame_.Drop();
    placed_[k] = {corners_[k], version, has_x && has_y};
  }

  Colour FillOf(const LatticeCell& cell) {
    if (settings_.kind == SurfaceSettings::kLinesOnly ||
        settings_.kind == SurfaceSettings::kWhiteFaces)
      return kWhite;
    ChooseColour();
    if (height_ == 0 || !cell.IsWhole()) colour_ = kUnpainted;
    if (colour_ != kUnpainted) return ToColour(colour_);
    return SeenFromAbove(settings_) ? kPlateFromAbove : kWhite;
  }

  void ChooseColour() {
    if (settings_.kind == SurfaceSettings::kSigmaColours) {
      colour_ = BandColour(data_, flat_, height_, sigma_low_, sigma_high_);
      return;
    }
    const auto end = [&](std::size_t k) { return ends_[k]; };
    ChooseIntervalColour(data_, flat_, ClassBetween(height_, end), colour_);
  }

  const WaferData& data_;
  Surface& surface_;
  PlotFrame& frame_;
  const Grid& grid_;
  const double scale_;        // pixels per mm
  const double full_height_;  // of the largest value, in pixels
  const float floor_;         // value at height zero
  const SurfaceSettings& settings_;
  const TestArea area_;
  const SurfacePoints points_;
  LatticeValues<SurfacePoints> interpolated_;
  bool flat_ = false;
  std::array<float, 10> ends_;  // of the classes, from the top
  float sigma_low_ = 0;
  float sigma_high_ = 0;
  static constexpr PlacedCorner kUnplaced = {{}, 0, false};
  std::array<PlacedCorner, 4> placed_{};  // of the last cell
  std::vector<PlacedCorner> line_;        // below the last cells, of all columns
  // A failing step leaves these as the last cell had them.
  std::array<PixelPoint, 4> corners_{};
  float height_ = 0;
  float colour_ = kUnpainted;
};

}  // namespace

float DrawSurface(const WaferData& data, Surface& surface, const SurfaceSettings& settings,
                  const PlotArea& area) {
  const SurfaceView& view = settings.view;
  PlotFrame frame(surface, area, PlotFrame::Rounding::All);
  frame.Open();
  float floor = data.scale_floor;
  frame.Keep(floor, ValueScale{.high = data.maximum, .low = data.minimum}.MapFloor());
  frame.MeasureRectangle();
  const Grid grid(MakeAxis(frame, data.test_diameter, view.x_resolution),
                  MakeAxis(frame, data.test_diameter, view.y_resolution), view);
  const double scale = grid.Scale(frame, view.plot_scale);
  if (data.IsDrawn()) {
    SurfacePainter(data, surface, frame, grid, scale, floor, settings).Paint();
  }
  return floor;
}

}  // namespace discoplan
