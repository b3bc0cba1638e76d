// SPDX-License-Identifier: MIT
#include "hosts/headless/freetype_text.h"

#include <fontconfig/fontconfig.h>
#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_OUTLINE_H

#include <algorithm>
#include <cmath>
#include <map>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

namespace discoplan {
namespace {

constexpr double kSmallest = 1;  // pixels
constexpr double kLargest = 2000;
constexpr double kFarthest = 1e6;  // pixels from the canvas's corner
constexpr std::size_t kMostGlyphs = 4096;
constexpr char32_t kMalformed = 0xFFFD;

/// One character of UTF-8 text from `at` on, which moves behind it.
char32_t NextCharacter(std::string_view text, std::size_t& at) {
  const auto byte = static_cast<unsigned char>(text[at++]);
  if (byte < 0x80) return byte;
  const int more = byte >= 0xF0 ? 3 : byte >= 0xE0 ? 2 : byte >= 0xC2 ? 1 : 0;
  if (more == 0 || byte > 0xF4) return kMalformed;
  char32_t character = byte & (0x3Fu >> more);
  for (int i = 0; i < more; ++i) {
    if (at >= text.size() || (text[at] & 0xC0) != 0x80) return kMalformed;
    character = character << 6 | (static_cast<unsigned char>(text[at++]) & 0x3Fu);
  }
  return character;
}

/// The letters of the Symbol encoding.
char32_t Greek(char32_t character) {
  static constexpr char32_t kCapitals[] = U"ΑΒΧΔΕΦΓΗΙϑΚΛΜΝΟΠΘΡΣΤΥςΩΞΨΖ";
  static constexpr char32_t kSmall[] = U"αβχδεφγηιϕκλμνοπθρστυϖωξψζ";
  if (character >= 'A' && character <= 'Z') return kCapitals[character - 'A'];
  if (character >= 'a' && character <= 'z') return kSmall[character - 'a'];
  return character;
}

struct FontFile {
  std::string path;
  int index = 0;
};

std::optional<FontFile> Match(const std::string& family, bool bold, char32_t needed) {
  FcPattern* pattern = FcPatternCreate();
  FcPatternAddString(pattern, FC_FAMILY, reinterpret_cast<const FcChar8*>(family.c_str()));
  FcPatternAddInteger(pattern, FC_WEIGHT, bold ? FC_WEIGHT_BOLD : FC_WEIGHT_REGULAR);
  FcPatternAddBool(pattern, FC_SCALABLE, FcTrue);
  if (needed != 0) {
    FcCharSet* characters = FcCharSetCreate();
    FcCharSetAddChar(characters, needed);
    FcPatternAddCharSet(pattern, FC_CHARSET, characters);
    FcCharSetDestroy(characters);
  }
  FcConfigSubstitute(nullptr, pattern, FcMatchPattern);
  FcDefaultSubstitute(pattern);
  FcResult result = FcResultNoMatch;
  FcPattern* found = FcFontMatch(nullptr, pattern, &result);
  FcPatternDestroy(pattern);
  if (found == nullptr) return {};
  FontFile file;
  FcChar8* path = nullptr;
  const bool has_path = FcPatternGetString(found, FC_FILE, 0, &path) == FcResultMatch;
  if (has_path) file.path = reinterpret_cast<const char*>(path);
  FcPatternGetInteger(found, FC_INDEX, 0, &file.index);
  FcPatternDestroy(found);
  if (!has_path) return {};
  return file;
}

struct Glyph {
  std::vector<std::uint8_t> coverage;
  int width = 0;
  int rows = 0;
  int left = 0;   // from the pen to the first column
  int above = 0;  // from the base line to the first row
  double advance = 0;
};

double Sized(const Font& font, double pixels_per_point) {
  const double size = font.size * pixels_per_point;
  return size > kSmallest ? std::min(size, kLargest) : kSmallest;
}

Pixel Blend(Pixel below, Pixel above, unsigned coverage) {
  Pixel blended = 0xFF000000;
  for (const int shift : {0, 8, 16}) {
    const unsigned b = below >> shift & 0xFF;
    const unsigned a = above >> shift & 0xFF;
    blended |= (a * coverage + b * (255 - coverage) + 127) / 255 << shift;
  }
  return blended;
}

void Stamp(Canvas& canvas, const Glyph& glyph, int left, int top, Pixel colour) {
  for (int row = std::max(0, -top); row < glyph.rows && top + row < canvas.Height(); ++row) {
    for (int column = std::max(0, -left); column < glyph.width && left + column < canvas.Width();
         ++column) {
      Pixel& pixel = canvas.Pixels()[static_cast<std::size_t>(top + row) *
                                         static_cast<std::size_t>(canvas.Width()) +
                                     static_cast<std::size_t>(left + column)];
      pixel = Blend(pixel, colour,
                    glyph.coverage[static_cast<std::size_t>(row * glyph.width + column)]);
    }
  }
}

}  // namespace

class FreeTypeText::Library {
 public:
  ~Library() {
    for (auto& [key, face] : faces_) FT_Done_Face(face);
    if (library_ != nullptr) FT_Done_FreeType(library_);
  }

  /// Calls `place(glyph, pen_x)` for each character and returns the advance of all.
  template <class Place>
  double Walk(const Font& font, double size, std::string_view text, Place&& place) {
    double pen = 0;
    for (std::size_t at = 0; at < text.size();) {
      char32_t character = NextCharacter(text, at);
      if (font.name == "Symbol") character = Greek(character);
      const Glyph& glyph = GlyphOf(font, size, character);
      place(glyph, pen);
      pen += glyph.advance;
    }
    return pen;
  }

  /// Pixels from the top of the line box to the base line, and to its bottom.
  struct LineBox {
    double ascent;
    double height;
  };
  LineBox LineOf(const Font& font, double size) {
    FT_Face face = FaceOf(font, 0);
    SetSize(face, size);
    const auto& metrics = face->size->metrics;
    const double ascent = std::ceil(static_cast<double>(metrics.ascender) / 64);
    return {ascent, ascent + std::ceil(-static_cast<double>(metrics.descender) / 64)};
  }

 private:
  using FaceKey = std::tuple<std::string, bool>;
  using GlyphKey = std::tuple<FT_Face, FT_F26Dot6, char32_t, bool>;

  FT_Face FaceOf(const Font& font, char32_t needed) {
    // The families that Windows programs name, in the metric equivalent that most machines have.
    const bool known =
        font.name == "Arial" || font.name == "MS Sans Serif" || font.name == "Symbol";
    const std::string family = known ? "Liberation Sans" : font.name;
    const FaceKey key(needed != 0 ? family + '\n' + std::to_string(needed) : family, font.bold);
    if (const auto face = faces_.find(key); face != faces_.end()) return face->second;
    if (library_ == nullptr) FT_Init_FreeType(&library_);
    const auto file = Match(family, font.bold, needed);
    FT_Face face = nullptr;
    if (!file || FT_New_Face(library_, file->path.c_str(), file->index, &face) != 0) {
      throw FontError("there is no font on this machine; install one, such as fonts-liberation");
    }
    return faces_[key] = face;
  }

  static void SetSize(FT_Face face, double size) {
    FT_Set_Char_Size(face, 0, static_cast<FT_F26Dot6>(std::lround(size * 64)), 72, 72);
  }

  const Glyph& GlyphOf(const Font& font, double size, char32_t character) {
    FT_Face face = FaceOf(font, 0);
    if (FT_Get_Char_Index(face, character) == 0) face = FaceOf(font, character);
    const GlyphKey key(face, static_cast<FT_F26Dot6>(std::lround(size * 64)), character, font.bold);
    if (const auto glyph = glyphs_.find(key); glyph != glyphs_.end()) return glyph->second;
    if (glyphs_.size() >= kMostGlyphs) glyphs_.clear();
    return glyphs_[key] = Render(face, size, character, font.bold);
  }

  static Glyph Render(FT_Face face, double size, char32_t character, bool bold) {
    SetSize(face, size);
    Glyph glyph;
    if (FT_Load_Char(face, character, FT_LOAD_TARGET_LIGHT) != 0) return glyph;
    glyph.advance = static_cast<double>(face->glyph->advance.x) / 64;
    if (bold && (face->style_flags & FT_STYLE_FLAG_BOLD) == 0) {
      FT_Outline_Embolden(&face->glyph->outline, static_cast<FT_Pos>(size * 64 / 24));
    }
    if (FT_Render_Glyph(face->glyph, FT_RENDER_MODE_NORMAL) != 0) return glyph;
    const FT_Bitmap& bitmap = face->glyph->bitmap;
    glyph.width = static_cast<int>(bitmap.width);
    glyph.rows = static_cast<int>(bitmap.rows);
    glyph.left = face->glyph->bitmap_left;
    glyph.above = face->glyph->bitmap_top;
    for (int row = 0; row < glyph.rows; ++row) {
      const std::uint8_t* from = bitmap.buffer + static_cast<std::ptrdiff_t>(row) * bitmap.pitch;
      glyph.coverage.insert(glyph.coverage.end(), from, from + glyph.width);
    }
    return glyph;
  }

  FT_Library library_ = nullptr;
  std::map<FaceKey, FT_Face> faces_;
  std::map<GlyphKey, Glyph> glyphs_;
};

FreeTypeText::FreeTypeText() : library_(std::make_unique<Library>()) {}

FreeTypeText::~FreeTypeText() = default;

double FreeTypeText::Width(const Font& font, double pixels_per_point, std::string_view text) const {
  return std::ceil(
      library_->Walk(font, Sized(font, pixels_per_point), text, [](const Glyph&, double) {}));
}

double FreeTypeText::Height(const Font& font, double pixels_per_point) const {
  return library_->LineOf(font, Sized(font, pixels_per_point)).height;
}

void FreeTypeText::Paint(Canvas& canvas, const Font& font, const TextPlacement& placement,
                         std::string_view text) const {
  if (!(std::abs(placement.x) < kFarthest) || !(std::abs(placement.y) < kFarthest)) return;
  const double size = Sized(font, placement.pixels_per_point);
  const Pixel colour = 0xFF000000 | (placement.colour & 0xFF) << 16 | (placement.colour & 0xFF00) |
                       (placement.colour >> 16 & 0xFF);
  const int base = static_cast<int>(std::lround(placement.y + library_->LineOf(font, size).ascent));
  const double end = library_->Walk(font, size, text, [&](const Glyph& glyph, double pen) {
    if (placement.x + pen > kFarthest) return;
    const int left = static_cast<int>(std::lround(placement.x + pen)) + glyph.left;
    Stamp(canvas, glyph, left, base - glyph.above, colour);
  });
  if (!font.underline) return;
  const int thickness = std::max(1, static_cast<int>(size / 14));
  const int below = base + std::max(1, static_cast<int>(size / 10));
  canvas.FillBox({static_cast<int>(std::lround(placement.x)), below,
                  static_cast<int>(std::lround(std::min(placement.x + end, kFarthest))) - 1,
                  below + thickness - 1},
                 colour);
}

}  // namespace discoplan
