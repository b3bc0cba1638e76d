// SPDX-License-Identifier: MIT
#pragma once

/// Paper on Qt's painter: PDF and SVG files, print previews and printers, all of them vectors.
///
///     QPdfWriter writer("plot.pdf");
///     QPainter painter(&writer);
///     QtPaper paper(painter, screen);
///     const PlotArea area{.left = 1440, .top = 1440, .width = 7200, .height = 7200};
///     measured.D2Plot(paper, 1, 5, 0, true, area);
///     paper.Finish();
///
/// One thread uses a paper with its painter; for a file it need not be that of the user interface.
/// Texts stay texts, cells become one shape for each colour. Lengths are twips until `ScaleMode`
/// is set to pixels, which are those of the painter's device.

#include <QPainter>
#include <string>
#include <vector>

#include "discoplan/platform/screen.h"
#include "discoplan/render/cell_regions.h"
#include "discoplan/render/vector_paper.h"
#include "hosts/qt/export.h"

namespace discoplan::qt {

class DISCOPLAN_QT_EXPORT QtPaper final : public VectorPaper {
 public:
  /// Painter and screen outlive the paper; the page is the painter's device.
  QtPaper(QPainter& painter, const Screen& screen);
  ~QtPaper() override { Finish(); }

  /// Paints what is still held back. A new page begins behind it.
  void Finish();
  void Origin(const SurfacePoint& twips, double scale = 1) override;
  void ClipTo(const PlotArea& twips) override;
  void Unclip() override;

  void Circle(const CircleCall& call) override;
  void Print(std::string_view text) override;
  void Polygon(std::span<const PixelPoint> points) override;
  float TextWidth(std::string_view text) const override;
  float TextHeight(std::string_view text) const override;
  float TwipsPerPixelX() const override { return resolution_.twips_per_pixel_x; }
  float TwipsPerPixelY() const override { return resolution_.twips_per_pixel_y; }
  float ScreenTwipsPerPixelX() const override { return screen_.twips_per_pixel_x; }
  float ScreenTwipsPerPixelY() const override { return screen_.twips_per_pixel_y; }

 protected:
  void StateWritten(SurfaceState which) override;
  void DrawLine(const LineCall& call) override;

 private:
  void TakeScale();
  bool InTwips() const { return state_.scale_mode == kTwips; }
  double PixelsPerUnitX() const { return InTwips() ? 1 / TwipsPerPixelX() : 1; }
  double PixelsPerUnitY() const { return InTwips() ? 1 / TwipsPerPixelY() : 1; }
  QPointF Pixel(const SurfacePoint& point) const;
  QPen PenOf(std::optional<Colour> colour) const;
  QBrush BrushOf() const;
  QFont FontOf() const;
  QString TextOf(std::string_view text) const;
  bool TakeCell(std::span<const PixelPoint> points);
  /// The painter, with all that came before on the page.
  QPainter& Painter();

  QPainter& painter_;
  const Screen& screen_;
  const Screen resolution_;
  std::vector<ColourCell> cells_;  // not yet painted
};

/// Opaque; system colours are neutral greys.
DISCOPLAN_QT_EXPORT QColor ColourOf(Colour colour);

/// The font with the machine's own in place of "Arial" and "MS Sans Serif", if need be.
DISCOPLAN_QT_EXPORT QFont ToQFont(const discoplan::Font& font);

/// UTF-8 in that font: Greek for the letters of a Symbol font.
DISCOPLAN_QT_EXPORT QString ToQString(std::string_view text, const discoplan::Font& font);

}  // namespace discoplan::qt
