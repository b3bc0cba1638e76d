// SPDX-License-Identifier: MIT
#pragma once

/// What all printed blocks and plots are made of: frames, texts that fit, and the wafer's outline.
///
/// Lengths are twips from the page's upper left corner, colours numbers of the palette. Each
/// operation sets what it needs of the printer's state. A failing member of the printer is a
/// `RunTimeError`, and so is a text that is still too wide once nothing is left of it.

#include <cstdint>
#include <string>

#include "discoplan/export.h"
#include "discoplan/render/surface.h"

namespace discoplan {

/// Where a text stands and how wide it may be. Kept as 32-bit floats; `Overflow` beyond them.
struct DISCOPLAN_EXPORT TextPlace {
  TextPlace(double x_in, double y_in, double width_in, int colour_in);

  float x;
  float y;
  float width;
  int colour;
};

/// How a wafer's outline is seen, in degrees.
struct GlyphView {
  float flat_ratio = 1;  ///< 1.0 is a notch.
  float rotation = 0;
  float inclination = 90;
};

class DISCOPLAN_EXPORT Page {
 public:
  /// The printer outlives the page.
  explicit Page(Surface& printer) : printer_(printer) {}

  Surface& printer() { return printer_; }
  /// A line's width on a printer, or on anything else.
  std::int16_t LineWidth(int on_printer, int otherwise) const;
  /// Of the printer, or of the screen for anything else.
  float TwipsPerPixelX() const;
  float TwipsPerPixelY() const;

  /// Arial 8, twips, and the usual state of drawing.
  void ResetPrinterObj();
  /// The upper edge lies one line of text below `top`, and the caption in its gap.
  void DrawTitledFrame(const std::string& caption, float left, float top, float width,
                       float height);

  // A text that is too wide is shortened, and stays so in the caller's variable.

  /// From `x`, cut at its right end.
  void PrintClippedText(std::string& text, const TextPlace& place);
  void PrintClippedText(std::string&& text, const TextPlace& place) {
    PrintClippedText(text, place);
  }
  /// Up to `x`, cut at its left end.
  void PrintRightText(std::string& text, const TextPlace& place);
  /// Around `x`, cut at both ends.
  void PrintCenteredText(std::string& text, const TextPlace& place);
  void PrintCenteredText(std::string&& text, const TextPlace& place) {
    PrintCenteredText(text, place);
  }
  void PrintSigmaGlyph(float x, float y, int colour);

  /// Small frame with the wafer's outline, named after its mark.
  void DrawStyleBlock(float x, float y, const GlyphView& view);
  void DrawFlatNotchGlyph(float x, float y, float radius, const GlyphView& view);

 private:
  void Print(const std::string& text, double x, double y);

  Surface& printer_;
};

/// The value in the picture, with as many more zeros at its end as it takes to tell it from zero.
DISCOPLAN_EXPORT std::string FormatNonZero(double value, const std::string& picture);

}  // namespace discoplan
