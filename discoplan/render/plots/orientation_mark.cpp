// SPDX-License-Identifier: MIT
#include "discoplan/render/plots/orientation_mark.h"
#include <algorithm>
#include <array>
#include <optional>
#include <span>
#include <vector>

#include "discoplan/base/algorithms.h"
#include "discoplan/base/angles.h"
#include "discoplan/base/numbers.h"
#include "discoplan/render/label.h"
#include "discoplan/render/plots/plot_frame.h"
#include "discoplan/render/surface.h"

namespace discoplan {
namespace {

/// A wafer's outline seen at a tilt; angle 0 lies at the bottom.
struct Outline {
  float x;
  float y;
  float radius;
  double upright_radius;

  SurfacePoint At(double degrees, double factor = 1) const {
    return {ToFloat(x + factor * radius * Sine(Radians(degrees))),
            ToFloat(y + factor * upright_radius * Cosine(Radians(degrees)))};
  }
};

PixelPoint Rounded(const SurfacePoint& point) { return {ToInt32(point.x), ToInt32(point.y)}; }

/// Paints over a piece of the outline.
template <std::size_t N>
void RubOut(Surface& surface, const std::array<SurfacePoint, N>& corners) {
  surface.ForeColor(surface.BackColor());
  surface.FillColor(surface.BackColor());
  surface.FillStyle(0);
  std::array<PixelPoint, N> pixels;
  Transform(corners, pixels.begin(), Rounded);
  surface.Polygon(pixels);
}

void DrawConnected(Surface& surface, std::span<const SurfacePoint> points,
                   std::optional<Colour> colour) {
  surface.Line({.from = points[0], .to = points[1], .colour = colour});
  for (const SurfacePoint& point : points.subspan(2)) {
    surface.Line({.from = {}, .to = point, .colour = colour});
  }
}

void MarkNotch(Surface& surface, const Outline& outline, double rotation) {
  const SurfacePoint right = outline.At(rotation + 10);
  const SurfacePoint left = outline.At(rotation - 10);
  const SurfacePoint tip = outline.At(rotation, 0.8);
  const SurfacePoint outside = outline.At(rotation, 1.05);
  RubOut<5>(surface, {right, tip, left, outside, right});
  DrawConnected(surface, std::array{right, tip, left}, kLightRed);
}

void MarkFlat(Surface& surface, const Outline& outline, double rotation) {
  constexpr double kBeyond = 1.0 / 3 + 1;
  const SurfacePoint right = outline.At(rotation + 35);
  const SurfacePoint left = outline.At(rotation - 35);
  RubOut<4>(surface,
            {right, left, outline.At(rotation - 35, kBeyond), outline.At(rotation + 35, kBeyond)});
  surface.Line({.from = right, .to = left, .colour = kLightRed});
}

/// The outline but for the gap of a mark that reaches so many degrees to each side.
void DrawOpenOutline(Surface& surface, const Outline& outline, double rotation, double reach,
                     double flattening) {
  const auto within_one_turn = [](double degrees) {
    return degrees > 360 ? degrees - 360 : degrees;
  };
  const double start = within_one_turn(ToInt16(rotation + reach + 270));
  const double end = within_one_turn(ToFloat(rotation - reach + 270));
  surface.Circle({.centre = {outline.x, outline.y},
                  .radius = outline.radius,
                  .colour = kBlack,
                  .start = ToFloat(Radians(start)),
                  .end = ToFloat(Radians(end)),
                  .aspect = ToFloat(flattening)});
}

}  // namespace

void DrawOpenOrientationMark(bool notch, Label* label, Surface& surface, const SurfacePoint& centre,
                             float radius, const MarkView& view) {
  const double rotation = view.rotation;
  const double flattening = Sine(Radians(view.inclination));
  const Outline outline{centre.x, centre.y, radius, radius * flattening};
  // The mark's ends lie a degree farther out than those of the arc and so close the outline.
  const double reach = notch ? 10 : 34;
  std::vector<SurfacePoint> mark = {outline.At(rotation + reach + 1)};
  if (notch) mark.push_back(outline.At(rotation, 0.8));
  mark.push_back(outline.At(rotation - reach - 1));

  surface.Cls();
  surface.DrawWidth(1);
  if (label != nullptr) label->caption(notch ? "Notch" : "Flat");
  DrawOpenOutline(surface, outline, rotation, reach, flattening);
  surface.DrawWidth(1);
  DrawConnected(surface, mark, {});
  surface.FloodFill(Rounded(centre), surface.ForeColor());
  DrawConnected(surface, mark, kLightRed);
  RefreshPicture(surface);
}

SurfacePoint DrawOrientationMark(bool notch, Label* label, Surface& surface, const MarkView& view) {
  const SurfacePoint centre{surface.ScaleWidth() / 2, surface.ScaleHeight() / 2};
  const float radius = ToFloat(std::min(centre.x, centre.y) - 7.0);
  const double flattening = Sine(Radians(view.inclination));
  const Outline outline{centre.x, centre.y, radius, radius * flattening};

  surface.ForeColor(kBlack);
  surface.FillColor(kWhite);
  surface.Cls();
  surface.Circle({.centre = centre, .radius = radius, .aspect = ToFloat(flattening)});
  if (notch) {
    if (label != nullptr) label->caption("Notch");
    MarkNotch(surface, outline, view.rotation);
  } else {
    MarkFlat(surface, outline, view.rotation);
  }
  RefreshPicture(surface);
  return centre;
}

}  // namespace discoplan
