// SPDX-License-Identifier: MIT
#include "discoplan/render/plots/bar_plot.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

#include "discoplan/base/algorithms.h"
#include "discoplan/base/angles.h"
#include "discoplan/base/numbers.h"
#include "discoplan/core/wafer_data.h"
#include "discoplan/render/plots/plot_frame.h"
#include "discoplan/render/plots/value_scale.h"
#include "discoplan/render/surface.h"

namespace discoplan {
namespace {

constexpr double kMargin = 10;  // pixels, both sides together

/// A site on the turned wafer.
struct Beam {
  float x = 0;
  float depth = 0;  // towards the back
  float value = 0;
};

std::vector<Beam> PrepareBeams(std::span<const Site> sites, double rotation) {
  const double cosine = Cosine(Radians(rotation));
  const double sine = Sine(Radians(rotation));
  std::vector<Beam> beams;
  beams.reserve(sites.size());
  for (const Site& site : sites) {
    beams.push_back({.x = ToFloat(cosine * site.x - sine * site.y),
                     .depth = ToFloat(cosine * site.y + sine * site.x),
                     .value = site.z});
  }
  return beams;
}

/// From the front to the back. The order of bars of one depth is that of this very partition.
void SortBeams(std::vector<Beam>& beams, std::ptrdiff_t first, std::ptrdiff_t last) {
  if (first >= last) return;
  const auto at = [&](std::ptrdiff_t i) -> Beam& { return beams[static_cast<std::size_t>(i)]; };
  const float pivot = at((first + last) / 2).depth;
  std::ptrdiff_t low = first;
  std::ptrdiff_t high = last;
  while (low <= high) {
    while (at(low).depth < pivot) ++low;
    while (at(high).depth > pivot) --high;
    if (low <= high) std::swap(at(low++), at(high--));
  }
  SortBeams(beams, first, high);
  SortBeams(beams, low, last);
}

struct ScreenPoint {
  double x = 0;
  double y = 0;
};

/// The four corners of a foot, from the front left one around, then those of the bar's top.
using BeamCorners = std::array<ScreenPoint, 8>;

/// The look at the wafer: half sides of a bar's foot on the screen, in mm until they are magnified.
class BeamProjection {
 public:
  explicit BeamProjection(const BeamView& view)
      : tilt_sine_(Sine(Radians(view.grid_inclination))),
        tilt_cosine_(Cosine(Radians(view.grid_inclination))),
        beam_scale_(view.beam_scale) {
    const double turn_sine = Sine(Radians(view.grid_rotation));
    const double turn_cosine = Cosine(Radians(view.grid_rotation));
    right = {view.beam_width * turn_cosine, view.beam_width * turn_sine * tilt_sine_};
    back = {-view.beam_height * turn_sine, view.beam_height * turn_cosine * tilt_sine_};
  }

  double Tilt() const { return tilt_sine_; }
  double Scale() const { return scale_; }
  double Height(double value) const { return value * beam_scale_ * tilt_cosine_ * scale_; }

  /// Keeps the pixels per mm at which the disc with its bars fits the rectangle. A side without
  /// extent leaves the decision to the other one.
  void FitInto(PlotFrame& frame, const WaferData& data, double& scale) const {
    const double floor = data.scale_floor;
    const double wide = 2 * (std::abs(right.x) + std::abs(back.x)) + data.wafer_diameter;
    double high = Tilt() * data.wafer_diameter + 2 * (std::abs(right.y) + std::abs(back.y));
    if (data.plot_maximum - floor > 0) high += Height(data.plot_maximum - floor);
    if (data.plot_minimum - floor < 0) high -= Height(data.plot_minimum - floor);
    if (wide == 0) return frame.KeepQuotient(scale, frame.height - kMargin, high);
    const double by_width = (frame.width - kMargin) / wide;
    scale = high == 0 ? by_width : std::min((frame.height - kMargin) / high, by_width);
  }

  void Magnify(double scale) {
    scale_ = scale;
    right = {right.x * scale, right.y * scale};
    back = {back.x * scale, back.y * scale};
  }

  /// In pixels, for the place of the disc's centre.
  BeamCorners CornersOf(const Beam& beam, const ScreenPoint& centre, double height) const {
    const double x = scale_ * beam.x;
    const double y = tilt_sine_ * beam.depth * scale_;
    const BeamCorners foot = {{{x - right.x - back.x, y - right.y - back.y},
                               {x + right.x - back.x, y + right.y - back.y},
                               {x + right.x + back.x, y + right.y + back.y},
                               {x - right.x + back.x, y - right.y + back.y}}};
    BeamCorners corners;
    for (std::size_t k = 0; k < 4; ++k) {
      corners[k] = {foot[k].x + centre.x, centre.y - foot[k].y};
      corners[k + 4] = {corners[k].x, corners[k].y - height};
    }
    return corners;
  }

  ScreenPoint right;
  ScreenPoint back;

 private:
  const double tilt_sine_;
  const double tilt_cosine_;
  const double beam_scale_;
  double scale_ = 1;
};

/// A face by its corners, and from which view it can be seen.
struct BeamFace {
  std::array<std::size_t, 4> corners;
  bool (*is_seen)(const BeamView& view);
};

constexpr std::array<BeamFace, 5> kFaces = {{
    {{4, 5, 6, 7}, [](const BeamView& view) { return view.grid_inclination != 0; }},
    {{0, 1, 5, 4},
     [](const BeamView& view) { return view.grid_rotation < 90 || view.grid_rotation > 270; }},
    {{0, 4, 7, 3},
     [](const BeamView& view) { return 0 < view.grid_rotation && view.grid_rotation < 180; }},
    {{3, 7, 6, 2},
     [](const BeamView& view) { return 90 < view.grid_rotation && view.grid_rotation < 270; }},
    {{2, 1, 5, 6},
     [](const BeamView& view) { return 180 < view.grid_rotation && view.grid_rotation < 360; }},
}};

void DrawBeamFace(Surface& surface, const BeamCorners& corners, const BeamFace& face,
                  Colour colour) {
  std::array<PixelPoint, 4> pixels;
  Transform(face.corners, pixels.begin(), [&](std::size_t k) {
    return PixelPoint{ToInt32(corners[k].x), ToInt32(corners[k].y)};
  });
  surface.FillColor(colour);
  surface.FillStyle(0);
  surface.Polygon(pixels);
}

/// Where the disc lies so that it and the bars' feet just clear the lower edge.
ScreenPoint CentreOf(const WaferData& data, const PlotFrame& frame,
                     const BeamProjection& projection) {
  const double below = data.wafer_diameter / 2.0 * projection.Tilt() * projection.Scale() +
                       std::abs(projection.right.y) + std::abs(projection.back.y);
  ScreenPoint centre = {frame.CentreX(), static_cast<double>(frame.top) + frame.height - below - 5};
  const double lowest = static_cast<double>(data.plot_minimum) - data.scale_floor;
  if (lowest < 0) centre.y -= projection.Height(lowest);
  return centre;
}

}  // namespace

void DrawBars(const WaferData& data, Surface& surface, const BeamView& view, const PlotArea& area) {
  PlotFrame frame(surface, area, PlotFrame::Rounding::Height);
  frame.Open();
  frame.MeasureRectangle();
  std::vector<Beam> beams;
  frame([&] { beams = PrepareBeams(data.sites, view.wafer_rotation); });
  SortBeams(beams, 0, std::ssize(beams) - 1);
  BeamProjection projection(view);
  double scale = 0;
  projection.FitInto(frame, data, scale);
  projection.Magnify(scale);
  const ValueScale values = ValueScale::Of(data);
  const double step = (values.high - values.low) / 10;

  frame([&] { surface.ForeColor(kBlack); });
  frame([&] { surface.FillColor(kWhite); });
  if (surface.IsPicture() && !area.IsPartOfPage()) frame([&] { surface.Cls(); });
  const ScreenPoint centre = CentreOf(data, frame, projection);
  frame([&] {
    surface.Circle({.centre = {ToFloat(centre.x), ToFloat(centre.y)},
                    .radius = ToFloat(scale * data.wafer_diameter / 2),
                    .aspect = ToFloat(projection.Tilt())});
  });
  float colour = 0;
  for (auto it = beams.rbegin(); it != beams.rend(); ++it) {
    const Beam& beam = *it;
    const double height = projection.Height(static_cast<double>(beam.value) - data.scale_floor);
    const BeamCorners corners = projection.CornersOf(beam, centre, height);
    ChooseIntervalColour(data, false, IntervalClass(beam.value, values.high, step), colour);
    for (const BeamFace& face : kFaces) {
      if (!face.is_seen(view)) continue;
      frame([&] { DrawBeamFace(surface, corners, face, ToColour(colour)); });
    }
    frame.Refresh();
  }
}

}  // namespace discoplan
