// SPDX-License-Identifier: MIT
#pragma once

/// Smooth text with the machine's own fonts, or those that a program brings along, drawn by
/// FreeType.
///
///     FreeTypeText text;
///     const double width = text.Width({.name = "Arial", .size = 8}, 96.0 / 72, "7530.693");
///     text.Paint(canvas, {.name = "Arial", .size = 8}, {.x = 10, .y = 20}, "7530.693");
///
/// `fonts.h` tells which fonts; "Symbol" has Greek letters for Latin ones. A character that the
/// font lacks comes from a font that has it. Letters are kerned, figures keep equal widths.
///
/// A letter's size is `size * pixels_per_point`, from 1 to 2000 pixels: what lies outside or is
/// no number counts as the nearer end, or as 1. Malformed UTF-8 shows as U+FFFD.
///
/// Fonts are looked up when the first text is measured or painted; to find others than Liberation
/// Sans in its usual places takes milliseconds once.
/// An object belongs to one thread at a time.

#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>

#include "discoplan/raster/canvas.h"
#include "discoplan/raster/text_painter.h"
#include "hosts/headless/export.h"
#include "hosts/headless/fonts.h"

namespace discoplan {

/// The machine has no font that can be drawn.
class DISCOPLAN_HEADLESS_EXPORT FontError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Receives the outlines of letters: closed loops of lines and curves.
class DISCOPLAN_HEADLESS_EXPORT OutlineSink {
 public:
  virtual ~OutlineSink() = default;
  virtual void MoveTo(double x, double y) = 0;
  virtual void LineTo(double x, double y) = 0;
  virtual void CurveTo(double control_x, double control_y, double x, double y) = 0;
  virtual void CubicTo(double x1, double y1, double x2, double y2, double x, double y) = 0;
};

struct Glyph;

/// Each operation raises `FontError` on a machine without fonts.
class DISCOPLAN_HEADLESS_EXPORT FreeTypeText final : public TextPainter {
 public:
  /// With the machine's fonts.
  FreeTypeText();
  explicit FreeTypeText(std::shared_ptr<FontFinder> fonts);
  ~FreeTypeText() override;

  /// Sum of the advances, not rounded; 0 for an empty text.
  double Width(const Font& font, double pixels_per_point, std::string_view text) const override;
  /// Whole pixels, from the tallest letter's top to the lowest one's bottom.
  double Height(const Font& font, double pixels_per_point) const override;
  /// Paints nothing for a placement that is no number or over a million pixels away.
  void Paint(Canvas& canvas, const Font& font, const TextPlacement& placement,
             std::string_view text) const override;

  /// The letters that `Paint` would paint from `x` on with their base line at row `base`:
  /// `take(glyph, corner)` for each, with the place of its upper left pixel. A glyph is good until
  /// the next one.
  void ForEachGlyph(const Font& font, double pixels_per_point, double x, int base,
                    std::string_view text,
                    const std::function<void(const Glyph&, PixelPoint)>& take) const;
  /// The text's outlines in parts of the letters' size, Y upward from the start of the base line,
  /// without the fitting to pixels that `Paint` does.
  void Outline(const Font& font, std::string_view text, OutlineSink& sink) const;
  /// The file and the number in it of the font that a name stands for.
  std::pair<std::string, int> FileOf(const Font& font) const;

 private:
  class Typesetter;
  std::unique_ptr<Typesetter> typesetter_;
};

}  // namespace discoplan
