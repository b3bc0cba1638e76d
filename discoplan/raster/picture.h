// SPDX-License-Identifier: MIT
#pragma once

/// A picture surface: a raster that keeps what was drawn, on every host with the same pixels.
///
///     Picture picture({.screen = screen, .resolution = screen, .text = painter}, 6000, 4500);
///     chart.D2Plot(picture, 5, 5, 0, true, {});
///     Show(picture.canvas());
///
/// A picture belongs to one thread.

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

enum class PictureNews {
  Drawn,    ///< The pixels are others than those that were shown.
  Refresh,  ///< What was drawn so far wants to be seen.
};

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

  /// Takes a new size in twips, as from its container: what fits at the upper left stays. Without
  /// the memory for it the picture stays as it is, and `std::bad_alloc` goes out.
  void Resize(float width, float height);

  const Canvas& canvas() const { return canvas_; }
  Canvas& canvas() {
    Touch();
    return canvas_;
  }

  /// Who shows the picture, or nobody. `Drawn` is told once, at the first drawing, and once more
  /// for what is drawn after `MarkShown`.
  void Watch(std::function<void(PictureNews)> watcher);
  void MarkShown() { is_told_ = !watcher_; }

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
  double PixelsAcross(float width) const;
  double PixelsDown(float height) const;
  double PixelsPerUnitX() const;
  double PixelsPerUnitY() const;
  double PixelsPerPoint() const;
  double PixelX(double x) const { return (x - state_.scale_left) * PixelsPerUnitX(); }
  double PixelY(double y) const { return (y - state_.scale_top) * PixelsPerUnitY(); }
  void Touch() {
    if (!is_told_) Tell();
  }
  void Tell();
  void TakeSize(float width, float height);
  void TakeScale();
  inline Pen PenOf(std::optional<Colour> colour) const;
  inline Brush BrushOf() const;

  const Setting setting_;
  Canvas canvas_;
  float canvas_width_ = 0;  // twips
  float canvas_height_ = 0;
  std::optional<Canvas> background_;
  std::function<void(PictureNews)> watcher_;
  bool is_told_ = true;
};

}  // namespace discoplan
