// SPDX-License-Identifier: MIT
#include "discoplan/render/plots/site_marks.h"

namespace discoplan {
namespace {

/// Half sizes in pixels.
struct MarkSize {
  std::int16_t arm = 6;      // of the white ground, along the bar
  std::int16_t breadth = 2;  // of the white ground, across the bar
  std::int16_t stroke = 3;   // of the black stroke
};

/// On a printer a mark has the same size on paper, whatever the resolution.
void MeasureOnPrinter(Surface& surface, PlotFrame& frame, MarkSize& size) {
  const auto pixels = [](float twips, float twips_per_pixel) {
    return ToInt16(ToFloat(Divide(twips, twips_per_pixel)));
  };
  frame([&] { size.arm = pixels(90, surface.TwipsPerPixelX()); });
  frame([&] { size.breadth = pixels(30, surface.TwipsPerPixelY()); });
  frame([&] { size.stroke = pixels(45, surface.TwipsPerPixelX()); });
}

}  // namespace

void DrawSiteMarks(const WaferData& data, Surface& surface, PlotFrame& frame, double scale) {
  MarkSize size = surface.IsPrinter() ? MarkSize{0, 0, 0} : MarkSize{};
  float mean = 0;
  frame.Keep(mean, data.mean);
  SurfacePoint centre;
  const auto bar = [&](double half_width, double half_height, Colour colour) {
    frame([&] {
      surface.Line(Stroke(centre, half_width, half_height, colour, LineShape::FilledBox));
    });
  };
  for (const Site& site : data.sites) {
    frame.Place(centre, scale, site.x, site.y);
    if (surface.IsPrinter()) MeasureOnPrinter(surface, frame, size);
    const bool above_mean = site.z > mean;
    bar(size.arm, size.breadth, kWhite);
    if (above_mean) bar(size.breadth, size.arm, kWhite);
    bar(size.stroke, 0, kBlack);
    if (above_mean) bar(0, size.stroke, kBlack);
    frame.Refresh();
  }
}

}  // namespace discoplan
