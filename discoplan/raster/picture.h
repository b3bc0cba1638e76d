// SPDX-License-Identifier: MIT
#pragma once

/// A picture surface: a raster that keeps what was drawn, on every host with the same pixels.
///
///     Picture picture({.screen = screen, .resolution = screen, .text = painter}, 6000, 4500);
///     chart.D2Plot(picture, 5, 5, 0, true, {});
///     Show(picture.canvas());

#include <functional>
#include <memory>
#include <optional>

#include "discoplan/platform/screen.h"
#include "discoplan/raster/canvas.h"
#include "discoplan/raster/text_painter.h"
#include "discoplan/render/surface.h"

namespace discoplan {

/// The colour as a pixel; system colours, which have the highest bit set, become neutral greys.
DISCOPLAN_EXPORT Pixel PixelOf(Colour colour);

/// Whole pixels along one side: none for what isn't above 0, and 32767 at most.
DISCOPLAN_EXPORT int WholePixels(double pixels);

class DISCOPLAN_EXPORT Picture : public Surface {
 public:
  /// All three outlive the picture.
  struct Setting {
    const Screen& screen;      ///< In front of which it is shown.
    const Screen& resolution;  ///< Its own: the screen's, for a picture on the screen.
    const TextPainter& text;
  };

  /// Size in twips; the scale is in pixels.
  Picture(const Setting& setting, float width, float height);

  /// Takes a new size in twips, as from its container: what fits at the upper left stays.
  void Resize(float width, float height);

  const Canvas& canvas() const { return canvas_; }
  Canvas& canvas() { return canvas_; }

  /// Called by `Refresh`, for a host that shows the picture while it grows.
  void OnRefresh(std::function<void()> show) { show_ = std::move(show); }

  Kind kind() const override { return Kind::Picture; }
  void Cls() override;
  void Refresh() override;
  void Circle(const CircleCall& call) override;
  void Print(std::string_view text) override;
  void Polygon(std::span<const PixelPoint> points) override;
  void FloodFill(PixelPoint start, Colour boundary) override;
  void KeepImageAsPicture() override;
  /// Drops the persistent background again.
  void DropPicture() { background_.reset(); }
  float TextWidth(std::string_view text) const override;
  float TextHeight(std::string_view text) const override;
  float ScreenTwipsPerPixelX() const override { return setting_.screen.twips_per_pixel_x; }
  float ScreenTwipsPerPixelY() const override { return setting_.screen.twips_per_pixel_y; }

 protected:
  void StateWritten(SurfaceState which) override;
  void DrawLine(const LineCall& call) override;

 private:
  double PixelsAcross() const;
  double PixelsDown() const;
  double PixelsPerUnitX() const;
  double PixelsPerUnitY() const;
  double PixelsPerPoint() const;
  double PixelX(double x) const { return (x - state_.scale_left) * PixelsPerUnitX(); }
  double PixelY(double y) const { return (y - state_.scale_top) * PixelsPerUnitY(); }
  void TakeSize();
  void TakeScale();
  inline Pen PenOf(std::optional<Colour> colour) const;
  inline Brush BrushOf() const;

  const Setting setting_;
  Canvas canvas_;
  std::optional<Canvas> background_;
  std::function<void()> show_;
};

}  // namespace discoplan
