// SPDX-License-Identifier: MIT
#include "hosts/headless/glyph.h"

#include <cstddef>

namespace discoplan {
namespace {

/// Hands the outline of a glyph in font units to a sink.
struct Tracing {
  OutlineSink& sink;
  double scale;
  double shift;

  static Tracing& Of(void* user) { return *static_cast<Tracing*>(user); }
  double X(const FT_Vector* p) const { return shift + static_cast<double>(p->x) * scale; }
  double Y(const FT_Vector* p) const { return static_cast<double>(p->y) * scale; }

  static int Move(const FT_Vector* to, void* user) {
    const Tracing& t = Of(user);
    t.sink.MoveTo(t.X(to), t.Y(to));
    return 0;
  }
  static int Line(const FT_Vector* to, void* user) {
    const Tracing& t = Of(user);
    t.sink.LineTo(t.X(to), t.Y(to));
    return 0;
  }
  static int Curve(const FT_Vector* control, const FT_Vector* to, void* user) {
    const Tracing& t = Of(user);
    t.sink.CurveTo(t.X(control), t.Y(control), t.X(to), t.Y(to));
    return 0;
  }
  static int Cubic(const FT_Vector* a, const FT_Vector* b, const FT_Vector* to, void* user) {
    const Tracing& t = Of(user);
    t.sink.CubicTo(t.X(a), t.Y(a), t.X(b), t.Y(b), t.X(to), t.Y(to));
    return 0;
  }
};

}  // namespace

Glyph DrawGlyph(const Letter& letter, double size, int phase) {
  Glyph glyph;
  FT_Face face = letter.typeface.face;
  FT_GlyphSlot slot = face->glyph;
  if (FT_Set_Char_Size(face, 0, To26Dot6(size), 72, 72) != 0 ||
      FT_Load_Glyph(face, letter.index, FT_LOAD_TARGET_LIGHT | FT_LOAD_NO_BITMAP) != 0 ||
      slot->format != FT_GLYPH_FORMAT_OUTLINE) {
    return glyph;
  }
  // To the sides only: the hinted heights stay.
  if (letter.typeface.embolden)
    FT_Outline_EmboldenXY(&slot->outline, To26Dot6(Emboldening(size)), 0);
  FT_Outline_Translate(&slot->outline, phase * 64 / kPhases, 0);
  if (FT_Render_Glyph(slot, FT_RENDER_MODE_NORMAL) != 0) return glyph;
  const FT_Bitmap& bitmap = slot->bitmap;
  glyph.width = static_cast<int>(bitmap.width);
  glyph.rows = static_cast<int>(bitmap.rows);
  glyph.left = slot->bitmap_left;
  glyph.above = slot->bitmap_top;
  for (int row = 0; row < glyph.rows; ++row) {
    const std::uint8_t* from = bitmap.buffer + static_cast<std::ptrdiff_t>(row) * bitmap.pitch;
    glyph.coverage.insert(glyph.coverage.end(), from, from + glyph.width);
  }
  return glyph;
}

GlyphOutline::GlyphOutline(FT_Library library, const Letter& letter) : library_(library) {
  FT_Face face = letter.typeface.face;
  if (FT_Load_Glyph(face, letter.index, FT_LOAD_NO_SCALE) != 0 ||
      face->glyph->format != FT_GLYPH_FORMAT_OUTLINE) {
    return;
  }
  FT_Outline& outline = face->glyph->outline;
  if (letter.typeface.embolden) {
    FT_Outline_EmboldenXY(&outline, ToInt32(Emboldening(face->units_per_EM)), 0);
  }
  const auto points = static_cast<FT_UInt>(outline.n_points);
  if (FT_Outline_New(library, points, outline.n_contours, &outline_) != 0) return;
  FT_Outline_Copy(&outline, &outline_);
}

GlyphOutline::~GlyphOutline() { FT_Outline_Done(library_, &outline_); }

void GlyphOutline::Trace(double scale, double shift, OutlineSink& sink) {
  Tracing tracing{sink, scale, shift};
  static constexpr FT_Outline_Funcs kFunctions = {
      Tracing::Move, Tracing::Line, Tracing::Curve, Tracing::Cubic, 0, 0};
  FT_Outline_Decompose(&outline_, &kFunctions, &tracing);
}

}  // namespace discoplan
