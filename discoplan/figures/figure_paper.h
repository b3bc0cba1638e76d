// SPDX-License-Identifier: MIT
#pragma once

/// Paper whose drawing is a figure: classic plots into vector files, with no toolkit.
///
///     auto paper = std::make_shared<FigurePaper>(
///         FigurePaper::Setting{.width = 9000, .height = 6000, .screen = screen, .text = text});
///     control.PrinterObj(paper);
///     control.PrintPlot(0, 0, 9000, 5800);
///     Figure page = paper->Take();
///
/// A pixel is 1/300 inch: finer lines are hard to see on a screen. What is cut off by `ClipTo`
/// isn't in the figure; a text that reaches out of it is left out as a whole if it starts outside,
/// and stays whole otherwise. A figure has one font, and all texts are set in it: a Symbol font's
/// letters are Greek ones of it.

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "discoplan/figures/shapes.h"
#include "discoplan/platform/screen.h"
#include "discoplan/raster/text_painter.h"
#include "discoplan/render/cell_regions.h"
#include "discoplan/render/vector_paper.h"

namespace discoplan::figures {

class DISCOPLAN_EXPORT FigurePaper final : public VectorPaper {
 public:
  /// Screen and text outlive the paper.
  struct Setting {
    float width = 0;   ///< Twips.
    float height = 0;  ///< Twips.
    const Screen& screen;
    const TextPainter& text;
    std::string font = "Arial";
  };

  explicit FigurePaper(const Setting& setting);

  /// The page on white as it was drawn. A new one begins.
  Figure Take();

  void Origin(const SurfacePoint& twips, double scale = 1) override;
  void ClipTo(const PlotArea& twips) override;
  void Unclip() override;

  void Circle(const CircleCall& call) override;
  void Print(std::string_view text) override;
  void Polygon(std::span<const PixelPoint> points) override;
  float TextWidth(std::string_view text) const override;
  float TextHeight(std::string_view text) const override;
  float TwipsPerPixelX() const override;
  float TwipsPerPixelY() const override;
  float ScreenTwipsPerPixelX() const override { return setting_.screen.twips_per_pixel_x; }
  float ScreenTwipsPerPixelY() const override { return setting_.screen.twips_per_pixel_y; }

 protected:
  void StateWritten(SurfaceState which) override;
  void DrawLine(const LineCall& call) override;

 private:
  void TakeScale();
  Box Page() const { return {0, 0, figure_.width, figure_.height}; }
  double UnitsPerPixel() const;
  double PointsPerPixel() const;
  /// On the page.
  Point At(const SurfacePoint& units) const;
  Point At(const PixelPoint& pixel) const;
  discoplan::Font FontOf() const;
  std::optional<Rgba> FillOf() const;
  Stroke StrokeOf(std::optional<Colour> colour) const;
  void Area(std::vector<Point> outline, std::optional<Rgba> fill, const Stroke& stroke);
  void Piece(Point from, Point to, const Stroke& stroke);
  void FilledBox(const Box& box, Rgba fill);
  void PutCells();
  void Put(Shape shape);

  const Setting setting_;
  Figure figure_;
  Point origin_;
  double scale_ = 1;
  Box clip_;                       // on the page, in points
  std::vector<ColourCell> cells_;  // not yet among the shapes
  std::size_t boxes_end_ = 0;      // as many shapes as there are, if the last one is of boxes
};

}  // namespace discoplan::figures
