// SPDX-License-Identifier: MIT
#pragma once

/// What the map plots share: the rectangle in pixels, and the rule that a failing step is dropped.
///
///     PlotFrame frame(surface, area);
///     frame.Open();
///     frame.MeasureRectangle();
///     frame([&] { cells = ToInt16(diameter / pitch); });
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

  /// Runs one step of the plot. One that fails is dropped after the rectangle fell back to 4.8
  /// twips per pixel, which is a device of 300 dots to the inch; the plot goes on.
  template <class Step>
  void operator()(Step&& step) {
    if (!Attempt(step)) FallBack();
  }

  /// How many steps were dropped. As long as it stays the same, so does a measured rectangle.
  unsigned Dropped() const { return dropped_; }

  void Refresh() {
    (*this)([&] { RefreshPicture(surface_); });
  }

  /// Moves `point` to where a place in mm from the wafer's centre lies, the centre in the middle of
  /// the rectangle. `scale` is in pixels per mm.
  void Place(SurfacePoint& point, double scale, double x, double y) {
    (*this)([&] { point.x = ToFloat(CentreX() + scale * x); });
    (*this)([&] { point.y = ToFloat(CentreY() - scale * y); });
  }

  double CentreX() const { return left + width / 2.0; }
  double CentreY() const { return top + height / 2.0; }

  float left = 0;
  float top = 0;
  float width = 0;
  float height = 0;

 private:
  void FallBack();
  float Side(double pixels, bool rounded) const;

  Surface& surface_;
  const PlotArea area_;
  const Rounding rounding_;
  unsigned dropped_ = 0;
};

}  // namespace discoplan
