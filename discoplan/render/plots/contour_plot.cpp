// SPDX-License-Identifier: MIT
#include "discoplan/render/plots/contour_plot.h"

#include <algorithm>
#include <cmath>
#include <span>

#include "discoplan/base/numbers.h"
#include "discoplan/core/wafer_data.h"
#include "discoplan/render/plots/contour_mesh.h"
#include "discoplan/render/plots/plot_frame.h"
#include "discoplan/render/plots/site_marks.h"
#include "discoplan/render/surface.h"

namespace discoplan {
namespace {

constexpr std::int16_t kMarkSites = 1;
constexpr std::int16_t kMarkPoints = 2;
constexpr std::int16_t kColoured = -1;

/// The levels would lie closer than a ten-thousandth of the range.
bool TooClose(const WaferData& data, float spacing) { return data.plot_range / 10000.0 > spacing; }

/// Distance of the levels: a percentage of the mean, of the range if the mean is close to zero, and
/// of the extreme of largest magnitude where that exceeds the mean.
float Spacing(const WaferData& data, double interval) {
  const double mean = std::abs(data.mean);
  const float spacing = ToFloat(mean * interval / 100);
  if (TooClose(data, spacing)) return ToFloat(interval / 100 * data.plot_range);
  for (const double extreme : {std::abs(data.maximum), std::abs(data.minimum)}) {
    if (mean < extreme) return ToFloat(extreme * interval / 100);
  }
  return spacing;
}

class ContourPainter {
 public:
  ContourPainter(const WaferData& data, Surface& surface, const ContourSettings& settings,
                 const PlotArea& area)
      : data_(data), surface_(surface), settings_(settings), own_surface_(!area.IsPartOfPage()) {
    if (own_surface_) Open();
    const float left = own_surface_ ? 0 : area.left;
    const float top = own_surface_ ? 0 : area.top;
    const float width = own_surface_ ? surface.ScaleWidth() : area.width;
    bottom_ = own_surface_ ? surface.ScaleHeight() : area.height;
    centre_x_ = ToInt16(left + width / 2.0);
    centre_y_ = ToInt16(top + bottom_ / 2.0);
    mesh_ = MakeContourMesh(data, ContourRings(settings.resolution, data.count));
    scale_ = Divide(settings.radius, data.wafer_diameter / 2.0);
  }

  void PaintOutline() {
    surface_.FillColor(kWhite);
    surface_.DrawStyle(0);
    surface_.Circle(
        {.centre = At(0, 0), .radius = static_cast<float>(settings_.radius), .colour = kBlack});
    surface_.ForeColor(kBlack);
    if (!data_.HasNotch() && !surface_.IsPicture()) PaintFlat();
    if (own_surface_) RefreshPicture(surface_);
  }

  void PaintCurves(double spacing) {
    TakeColour(1);
    surface_.DrawWidth(2);
    PaintCurve(data_.mean);
    RefreshPicture(surface_);
    surface_.DrawWidth(1);
    PaintFamily(0, spacing, +1, data_.plot_maximum, true);
    PaintFamily(2, spacing, -1, data_.minimum, own_surface_);
  }

  void PaintMarks() {
    surface_.ForeColor(kBlack);
    surface_.DrawWidth(1);
    if (settings_.mark_sites == kMarkPoints) Mark(mesh_.points);
    if (settings_.mark_sites == kMarkSites) Mark(data_.sites);
  }

 private:
  void Open() {
    surface_.Cls();
    RefreshPicture(surface_);
  }

  SurfacePoint At(double x, double y) const {
    return {ToFloat(x * scale_ + centre_x_), ToFloat(centre_y_ - y * scale_)};
  }

  /// Paints over what the flat cuts off, down to the bottom of the surface.
  void PaintFlat() {
    const double radius = settings_.radius;
    const double f = 2.0 * data_.flat_ratio - 1;
    const double half_chord = radius * std::sqrt(1 - f * f);
    const float y = ToFloat(centre_y_ + f * radius);
    const SurfacePoint left{ToFloat(centre_x_ - half_chord), y};
    const float right = ToFloat(centre_x_ + half_chord);
    surface_.Line({.from = left,
                   .to = {right, bottom_},
                   .colour = surface_.BackColor(),
                   .shape = LineShape::FilledBox});
    surface_.Line({.from = left, .to = {right, y}, .colour = kLightRed});
  }

  void TakeColour(std::size_t family) {
    if (settings_.plot_colored == kColoured) {
      surface_.ForeColor(ToColour(data_.aux_colours[family]));
    }
  }

  /// From the mean up or down to an end, as long as the levels move toward it.
  void PaintFamily(std::size_t colour, double spacing, double direction, double end, bool refresh) {
    TakeColour(colour);
    double level = data_.mean + direction * spacing;
    while (direction * level < direction * end) {
      PaintCurve(level);
      if (refresh) RefreshPicture(surface_);
      const double next = level + direction * spacing;
      if (!(direction * next > direction * level)) break;
      level = next;
    }
  }

  void PaintCurve(double level) {
    for (const auto& [a, b, c] : mesh_.triangles) {
      PaintSegment(level, mesh_.points[a], mesh_.points[b], mesh_.points[c]);
    }
  }

  /// The third edge, where crossed, is always the segment's end: a level through the first point
  /// crosses both edges there and the one opposite.
  void PaintSegment(double level, const Site& a, const Site& b, const Site& c) {
    const auto crossed = [&](const Site& from, const Site& to) {
      const auto [low, high] = std::minmax(from.z, to.z);
      return low != high && low <= level && level <= high;
    };
    const auto crossing = [&](const Site& from, const Site& to) {
      const double rise = static_cast<double>(to.z) - from.z;
      const auto along = [&](double start, double stop) {
        return stop - (stop - start) * (to.z - level) / rise;
      };
      return At(along(from.x, to.x), along(from.y, to.y));
    };
    const bool ab = crossed(a, b);
    const bool ac = crossed(a, c);
    const bool bc = crossed(b, c);
    if (ab + ac + bc < 2) return;
    surface_.Line({.from = ab ? crossing(a, b) : crossing(a, c),
                   .to = bc ? crossing(b, c) : crossing(a, c),
                   .colour = surface_.ForeColor()});
  }

  /// A minus on each point, or a plus where its value is above the mean.
  void Mark(std::span<const Site> points) {
    const double half = own_surface_ ? 3 : 45;
    for (const Site& point : points) {
      const SurfacePoint centre{static_cast<float>(ToInt16(scale_ * point.x + centre_x_)),
                                static_cast<float>(ToInt16(centre_y_ - scale_ * point.y))};
      surface_.Line(Stroke(centre, half, 0, kBlack, LineShape::Line));
      if (point.z > data_.mean) surface_.Line(Stroke(centre, 0, half, kBlack, LineShape::Line));
    }
  }

  const WaferData& data_;
  Surface& surface_;
  const ContourSettings& settings_;
  const bool own_surface_;
  float bottom_ = 0;
  std::int16_t centre_x_ = 0;
  std::int16_t centre_y_ = 0;
  ContourMesh mesh_;
  double scale_ = 0;  // surface units per mm
};

}  // namespace

bool DrawContours(const WaferData& data, Surface& surface, const ContourSettings& settings,
                  const PlotArea& area) {
  ContourPainter painter(data, surface, settings, area);
  painter.PaintOutline();
  if (!data.IsDrawn()) return true;
  const float spacing = Spacing(data, settings.interval);
  if (TooClose(data, spacing)) return false;
  painter.PaintCurves(spacing);
  painter.PaintMarks();
  return true;
}

}  // namespace discoplan
