// SPDX-License-Identifier: MIT
#pragma once

/// The single letter of a font, by FreeType: its pixels and its outline.

#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_OUTLINE_H

#include <compare>
#include <cstdint>
#include <vector>

#include "discoplan/base/numbers.h"
#include "hosts/headless/freetype_text.h"

namespace discoplan {

inline constexpr int kPhases = 4;  // starts of a glyph within a pixel

struct Typeface {
  FT_Face face = nullptr;
  bool embolden = false;  // a bold one that the family lacks

  auto operator<=>(const Typeface&) const = default;
};

struct Letter {
  Typeface typeface;
  FT_UInt index = 0;

  auto operator<=>(const Letter&) const = default;
};

/// Pixels for a font unit.
inline double Scale(FT_Face face, double size) { return size / face->units_per_EM; }

/// Pixels that a bold letter is wider than the plain one that it is made from.
inline double Emboldening(double size) { return size / 24; }

inline FT_F26Dot6 To26Dot6(double pixels) { return ToInt32(pixels * 64); }

/// Coverage from 0 to 255, row by row from the top.
struct Glyph {
  std::vector<std::uint8_t> coverage;
  int width = 0;
  int rows = 0;
  int left = 0;   // from the pen to the first column
  int above = 0;  // from the first row's top to the base line
};

/// Of that size in pixels, begun in that phase; without coverage where the font has no outline.
Glyph DrawGlyph(const Letter& letter, double size, int phase);

/// Of a glyph in font units; it is empty for one without.
class GlyphOutline {
 public:
  GlyphOutline(FT_Library library, const Letter& letter);
  ~GlyphOutline();
  GlyphOutline(const GlyphOutline&) = delete;
  GlyphOutline& operator=(const GlyphOutline&) = delete;

  /// Hands it to the sink, scaled and then moved to the right.
  void Trace(double scale, double shift, OutlineSink& sink);

 private:
  FT_Library library_;
  FT_Outline outline_ = {};
};

}  // namespace discoplan
