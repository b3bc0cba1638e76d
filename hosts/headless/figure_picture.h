// SPDX-License-Identifier: MIT
#pragma once

/// Figures as pixels, with smooth edges. Lines are widened and cut by Anti-Grain Geometry (2.4, BSD
/// licence), whose headers build wherever C++ does; `ShapeCells` tells what is covered.
///
///     FreeTypeText text;
///     const FigurePicture picture = PaintFigure(figure, 2, text);

#include <memory>
#include <vector>

#include "discoplan/figures/shapes.h"
#include "hosts/headless/export.h"
#include "hosts/headless/freetype_text.h"

namespace discoplan {

/// Rows from top to bottom.
struct FigurePicture {
  std::vector<Pixel> pixels;  ///< 0xAARRGGBB, not premultiplied.
  int width = 0;
  int height = 0;
  bool has_alpha = false;
};

/// At least one pixel wide and high.
DISCOPLAN_HEADLESS_EXPORT FigurePicture PaintFigure(const figures::Figure& figure,
                                                    double pixels_per_point,
                                                    const FreeTypeText& text);

/// The same picture as a PNG file, painted and compressed in bands, so that it is never in memory
/// as a whole.
DISCOPLAN_HEADLESS_EXPORT std::vector<std::uint8_t> EncodeFigurePicture(
    const figures::Figure& figure, double pixels_per_point, const FreeTypeText& text);

/// The same files, one after the other, in broader bands. Their memory, some megabytes at most, is
/// kept for the next picture: to have it from the system anew can take a third of a picture's time.
/// An object belongs to one thread at a time.
class DISCOPLAN_HEADLESS_EXPORT FigureEncoder {
 public:
  FigureEncoder();
  ~FigureEncoder();

  std::vector<std::uint8_t> Encode(const figures::Figure& figure, double pixels_per_point,
                                   const FreeTypeText& text);

 private:
  struct Memory;
  std::unique_ptr<Memory> memory_;
};

/// Text as the figures' devices set it.
class DISCOPLAN_HEADLESS_EXPORT FigureText final : public figures::TextMeasure {
 public:
  /// With the machine's fonts.
  explicit FigureText(std::string font) : font_(std::move(font)) {}
  FigureText(std::string font, std::shared_ptr<FontFinder> fonts)
      : text_(std::move(fonts)), font_(std::move(font)) {}
  double Width(std::string_view text, double size, bool bold) const override;
  const FreeTypeText& Letters() const { return text_; }

 private:
  FreeTypeText text_;
  std::string font_;
};

}  // namespace discoplan
