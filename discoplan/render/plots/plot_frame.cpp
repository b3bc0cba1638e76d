// SPDX-License-Identifier: MIT
#include "discoplan/render/plots/plot_frame.h"

#include <algorithm>

#include "discoplan/render/plots/twips.h"

namespace discoplan {
namespace {

constexpr double kFallBackTwipsPerPixel = 4.8;
constexpr double kMargin = 6;  // pixels, both sides together

}  // namespace

struct PlotFrame::Side {
  float PlotFrame::*pixels;
  float PlotArea::*twips;
  float (Surface::*of_surface)() const;
  double (*to_pixels)(const Surface& surface, double twips);
  Rounding rounded_from;  // the least rounding that makes a whole number of it
};

const PlotFrame::Side PlotFrame::kSides[4] = {
    {&PlotFrame::left, &PlotArea::left, &Surface::ScaleLeft, PixelsAcross, Rounding::All},
    {&PlotFrame::width, &PlotArea::width, &Surface::ScaleWidth, PixelsAcross, Rounding::All},
    {&PlotFrame::top, &PlotArea::top, &Surface::ScaleTop, PixelsDown, Rounding::All},
    {&PlotFrame::height, &PlotArea::height, &Surface::ScaleHeight, PixelsDown, Rounding::Height},
};

PlotFrame::PlotFrame(Surface& surface, const PlotArea& area, Rounding rounding)
    : surface_(surface), area_(area), rounding_(rounding) {}

void PlotFrame::Open() {
  if (area_.IsPartOfPage()) return;
  (*this)([&] { surface_.Cls(); });
  Refresh();
}

bool PlotFrame::KeepSide(const Side& side, double pixels) {
  float exact = 0;
  if (!Narrow(pixels, exact)) return false;
  if (rounding_ < side.rounded_from) {
    this->*side.pixels = exact;
    return true;
  }
  std::int16_t whole = 0;
  if (!Narrow(exact, whole)) return false;
  this->*side.pixels = whole;
  return true;
}

void PlotFrame::MeasureRectangle() {
  const bool in_twips = surface_.IsPrinter() || area_.IsPartOfPage();
  for (const Side& side : kSides) {
    double pixels = 0;
    const bool measured = Attempt([&] {
      pixels =
          in_twips ? side.to_pixels(surface_, area_.*side.twips) : (surface_.*side.of_surface)();
    });
    if (!measured || !KeepSide(side, pixels)) Drop();
  }
}

void PlotFrame::KeepScale(double& scale, double fitted_width, double fitted_height) {
  if (fitted_width == 0 || fitted_height == 0) {
    Drop();
  } else {
    scale = std::min((width - kMargin) / fitted_width, (height - kMargin) / fitted_height);
  }
}

void PlotFrame::Drop() {
  ++dropped_;
  for (const Side& side : kSides) {
    const float before = this->*side.pixels;
    if (KeepSide(side, area_.*side.twips / kFallBackTwipsPerPixel) &&
        this->*side.pixels != before) {
      ++version_;
    }
  }
}

}  // namespace discoplan
