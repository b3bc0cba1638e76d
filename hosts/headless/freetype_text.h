// SPDX-License-Identifier: MIT
#pragma once

/// Smooth text with the machine's own fonts: found through fontconfig, drawn by FreeType.
///
/// "Arial" and "MS Sans Serif" become Liberation Sans, or what the machine has in its place;
/// "Symbol" gives Greek letters. Fonts are looked up when the first text is measured. One thread
/// uses an object of this class.

#include <memory>
#include <stdexcept>

#include "discoplan/raster/canvas.h"
#include "discoplan/raster/text_painter.h"

namespace discoplan {

/// The machine has no font at all.
class DISCOPLAN_EXPORT FontError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

class DISCOPLAN_EXPORT FreeTypeText final : public TextPainter {
 public:
  FreeTypeText();
  ~FreeTypeText() override;

  /// Each raises `FontError` on a machine without fonts.
  double Width(const Font& font, double pixels_per_point, std::string_view text) const override;
  double Height(const Font& font, double pixels_per_point) const override;
  void Paint(Canvas& canvas, const Font& font, const TextPlacement& placement,
             std::string_view text) const override;

 private:
  class Library;
  std::unique_ptr<Library> library_;
};

}  // namespace discoplan
