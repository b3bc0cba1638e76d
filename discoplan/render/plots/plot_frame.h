// SPDX-License-Identifier: MIT
#pragma once

/// What the map plots share: the rectangle in pixels, and the one way through a plot.
///
/// A step that fails is dropped after the rectangle fell back to 4.8 twips per pixel, which is a
/// device of 300 dots to the inch; the plot goes on. Only calls on the surface run as guarded
/// steps. A number is computed and then kept if it fits; whole lines are computed ahead, those that
/// don't fit marked as such, and taken in their turn.
///
///     PlotFrame frame(surface, area);
///     frame.Open();
///     frame.MeasureRectangle();
///     frame([&] { surface.FillColor(kWhite); });
///     frame.Keep(height, (upper + lower) / 2);
///     SurfacePoint point;
///     frame.Place(point, scale, site.x, site.y);

#include "discoplan/base/numbers.h"
#include "discoplan/render/plot_area.h"
#include "discoplan/render/surface.h"

namespace discoplan {

/// `Refresh` means something on a picture only.
inline void RefreshPicture(Surface& surface) {
  if (surface.IsPicture()) surface.Refresh();
}

class PlotFrame {
 public:
  /// Which sides of the rectangle a plot keeps as 16-bit integers.
  enum class Rounding { None, Height, All };

  PlotFrame(Surface& surface, const PlotArea& area, Rounding rounding = Rounding::None);

  /// Clears a surface that the plot has to itself.
  void Open();
  /// Fills the rectangle in pixels: from twips on a printer and in a part of a page, else the
  /// whole surface.
  void MeasureRectangle();

  /// Runs one step of the plot on its surface.
  template <class Step>
  void operator()(Step&& step) {
    if (!Attempt(step)) Drop();
  }

  // A number that doesn't fit and a divisor of zero drop the step: what was kept stays.

  template <class Number>
  void Keep(Number& kept, double value) {
    if (!Narrow(value, kept)) Drop();
  }
  void KeepQuotient(double& kept, double dividend, double divisor) {
    if (divisor == 0) return Drop();
    kept = dividend / divisor;
  }
  /// The factor at which `width` by `height` fits the rectangle with a margin of 3 pixels.
  void KeepScale(double& scale, double fitted_width, double fitted_height);

  /// Drops a step that has failed.
  void Drop();

  unsigned Dropped() const { return dropped_; }
  /// Changes when the rectangle does, once it is measured.
  unsigned Version() const { return version_; }

  void Refresh() {
    (*this)([&] { RefreshPicture(surface_); });
  }

  /// Moves `point` to where a place in mm from the wafer's centre lies, the centre in the middle of
  /// the rectangle. `scale` is in pixels per mm.
  void Place(SurfacePoint& point, double scale, double x, double y) {
    Keep(point.x, CentreX() + scale * x);
    Keep(point.y, CentreY() - scale * y);
  }

  double CentreX() const { return left + width / 2.0; }
  double CentreY() const { return top + height / 2.0; }

  float left = 0;
  float top = 0;
  float width = 0;
  float height = 0;

 private:
  struct Side;

  static const Side kSides[4];

  bool KeepSide(const Side& side, double pixels);

  Surface& surface_;
  const PlotArea area_;
  const Rounding rounding_;
  unsigned dropped_ = 0;
  unsigned version_ = 0;
};

}  // namespace discoplan
