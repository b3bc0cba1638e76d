// SPDX-License-Identifier: MIT
#include "hosts/headless/freetype_text.h"

#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_ADVANCES_H

#include <algorithm>
#include <array>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <span>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "discoplan/base/file_name.h"
#include "discoplan/base/numbers.h"
#include "discoplan/raster/picture.h"
#include "discoplan/raster/symbol_letters.h"
#include "hosts/headless/glyph.h"

namespace discoplan {
namespace {

constexpr double kSmallest = 1;  // letter sizes in pixels
constexpr double kLargest = 2000;
constexpr double kFarthest = 1e6;                   // pixels from the canvas's corner
constexpr std::size_t kMostGlyphBytes = 8'000'000;  // of cached coverage
constexpr std::size_t kMostOutlines = 1024;         // cached
constexpr std::size_t kMostTypefaces = 4096;        // cached choices
constexpr char32_t kReplacement = 0xFFFD;

template <auto Destroy>
struct Destroyer {
  template <class T>
  void operator()(T* object) const {
    Destroy(object);
  }
};
using LibraryPtr = std::unique_ptr<FT_LibraryRec_, Destroyer<FT_Done_FreeType>>;

/// The character that starts at `at`, which moves behind it.
char32_t NextCharacter(std::string_view text, std::size_t& at) {
  struct Form {
    unsigned mask, lead;
    int more;
    char32_t first;  // what is smaller has a shorter form
  };
  static constexpr std::array<Form, 4> kForms = {{{0x80, 0x00, 0, 0},
                                                  {0xE0, 0xC0, 1, 0x80},
                                                  {0xF0, 0xE0, 2, 0x800},
                                                  {0xF8, 0xF0, 3, 0x10000}}};
  const auto byte = static_cast<unsigned char>(text[at++]);
  const auto form = std::find_if(kForms.begin(), kForms.end(),
                                 [&](const Form& f) { return (byte & f.mask) == f.lead; });
  if (form == kForms.end()) return kReplacement;
  char32_t character = byte & ~form->mask;
  for (int i = 0; i < form->more; ++i) {
    if (at >= text.size() || (text[at] & 0xC0) != 0x80) return kReplacement;
    character = character << 6 | (static_cast<unsigned char>(text[at++]) & 0x3Fu);
  }
  const bool surrogate = character >= 0xD800 && character < 0xE000;
  return character < form->first || surrogate || character > 0x10FFFF ? kReplacement : character;
}

bool IsFigure(char32_t character) { return character >= '0' && character <= '9'; }

/// Pixels from the top of the line box to its base line.
int Ascent(FT_Face face, double size) {
  return ToInt32(std::ceil(face->ascender * Scale(face, size)));
}

/// Pixels from the base line to the bottom of the line box.
int Descent(FT_Face face, double size) {
  return ToInt32(std::ceil(-face->descender * Scale(face, size)));
}

double Size(const Font& font, double pixels_per_point) {
  const double size = font.size * pixels_per_point;
  return size > kSmallest ? std::min(size, kLargest) : kSmallest;
}

Pixel Blend(Pixel below, Pixel above, unsigned coverage) {
  Pixel blended = 0xFF000000;
  for (const int shift : {0, 8, 16}) {
    const unsigned from = below >> shift & 0xFF;
    const unsigned to = above >> shift & 0xFF;
    blended |= (to * coverage + from * (255 - coverage) + 127) / 255 << shift;
  }
  return blended;
}

void Stamp(Canvas& canvas, const Glyph& glyph, PixelPoint corner, Pixel colour) {
  const int first_row = std::max(0, -corner.y);
  const int last_row = std::min(glyph.rows, canvas.Height() - corner.y);
  const int first = std::max(0, -corner.x);
  const int last = std::min(glyph.width, canvas.Width() - corner.x);
  const std::span<Pixel> pixels = canvas.Pixels();
  for (int row = first_row; row < last_row; ++row) {
    for (int column = first; column < last; ++column) {
      const auto from = static_cast<std::size_t>(row) * static_cast<std::size_t>(glyph.width) +
                        static_cast<std::size_t>(column);
      const auto to =
          static_cast<std::size_t>(corner.y + row) * static_cast<std::size_t>(canvas.Width()) +
          static_cast<std::size_t>(corner.x + column);
      pixels[to] = Blend(pixels[to], colour, glyph.coverage[from]);
    }
  }
}

}  // namespace

/// Keeps the fonts and glyphs that were used.
class FreeTypeText::Typesetter {
 public:
  explicit Typesetter(std::shared_ptr<FontFinder> fonts) : fonts_(std::move(fonts)) {}

  /// The one for the font's name; raises `FontError` where there is none.
  Typeface TypefaceOf(const Font& font) {
    const Typeface typeface = Choose(font, 0);
    if (typeface.face == nullptr) {
      throw FontError(
          "no scalable font was found; install one, such as the package fonts-liberation");
    }
    return typeface;
  }

  /// Calls `visit(letter, x)` for each character, with pixels from the text's start,
  /// and returns the pixels to its end.
  template <class Visit>
  double SetType(const Font& font, double size, std::string_view text, Visit&& visit) {
    const Typeface own = TypefaceOf(font);
    double x = 0;
    char32_t previous_character = 0;
    Letter previous;
    for (std::size_t at = 0; at < text.size();) {
      char32_t character = NextCharacter(text, at);
      if (font.name == kSymbolFont) character = SymbolLetter(character);
      const Letter letter = LetterFor(font, own, character);
      const double scale = Scale(letter.typeface.face, size);
      const bool figures = IsFigure(previous_character) && IsFigure(character);
      if (!figures) x += Kerning(previous, letter) * scale;
      visit(letter, x);
      x += Advance(letter) * scale;
      if (letter.typeface.embolden) x += Emboldening(size);
      previous = letter;
      previous_character = character;
    }
    return x;
  }

  /// Calls `take(glyph, corner)` for each character, from `left` on, and returns where the text
  /// ends.
  template <class Take>
  double PlaceGlyphs(const Font& font, double size, double left, int base, std::string_view text,
                     const Take& take) {
    return left + SetType(font, size, text, [&](const Letter& letter, double x) {
             const double pen = std::floor((left + x) * kPhases + 0.5);
             if (!(std::abs(pen) <= kFarthest * kPhases)) return;
             const int steps = ToInt32(pen);
             const int phase = (steps % kPhases + kPhases) % kPhases;
             const Glyph& glyph = GlyphOf(letter, size, phase);
             take(glyph, PixelPoint{(steps - phase) / kPhases + glyph.left, base - glyph.above});
           });
  }

  /// Raises `FontError` where there is no font.
  std::pair<std::string, int> FileOf(const Font& font) {
    const FT_Face face = TypefaceOf(font).face;
    for (const auto& [file, open] : faces_) {
      if (open == face) return {Utf8Of(std::get<0>(file)), std::get<2>(file)};
    }
    return {};
  }

  void Trace(const Letter& letter, double x, OutlineSink& sink) {
    if (outlines_.size() >= kMostOutlines) outlines_.clear();
    const auto outline = outlines_.try_emplace(letter, library_.get(), letter).first;
    outline->second.Trace(Scale(letter.typeface.face, 1), x, sink);
  }

  /// Good until the next call.
  const Glyph& GlyphOf(const Letter& letter, double size, int phase) {
    const GlyphKey key(letter, To26Dot6(size), phase);
    if (const auto known = glyphs_.find(key); known != glyphs_.end()) return known->second;
    Glyph glyph = DrawGlyph(letter, size, phase);
    const std::size_t bytes = sizeof(GlyphKey) + sizeof(Glyph) + glyph.coverage.size();
    if (glyph_bytes_ + bytes > kMostGlyphBytes) {
      glyphs_.clear();
      glyph_bytes_ = 0;
    }
    glyph_bytes_ += bytes;
    return glyphs_[key] = std::move(glyph);
  }

 private:
  using Content = std::shared_ptr<const std::vector<std::uint8_t>>;
  using ChoiceKey = std::tuple<std::string, bool, char32_t>;
  using GlyphKey = std::tuple<Letter, FT_F26Dot6, int>;

  /// In font units; 0 between two fonts.
  static double Kerning(const Letter& left, const Letter& right) {
    FT_Vector kerning = {};
    if (left.typeface.face == right.typeface.face) {
      FT_Get_Kerning(left.typeface.face, left.index, right.index, FT_KERNING_UNSCALED, &kerning);
    }
    return static_cast<double>(kerning.x);
  }

  /// In font units.
  static double Advance(const Letter& letter) {
    FT_Fixed advance = 0;
    FT_Get_Advance(letter.typeface.face, letter.index, FT_LOAD_NO_SCALE, &advance);
    return static_cast<double>(advance);
  }

  /// From the font itself, or another that has the character, or else the box of the font itself.
  Letter LetterFor(const Font& font, const Typeface& own, char32_t character) {
    const FT_UInt index = FT_Get_Char_Index(own.face, character);
    if (index != 0) return {own, index};
    const Typeface other = Choose(font, character);
    const FT_UInt elsewhere = other.face != nullptr ? FT_Get_Char_Index(other.face, character) : 0;
    return elsewhere != 0 ? Letter{other, elsewhere} : Letter{own, 0};
  }

  /// The font, or the one that stands in for it where it lacks `needed`; no face where there is
  /// none.
  Typeface Choose(const Font& font, char32_t needed) {
    const ChoiceKey key(font.name, font.bold, needed);
    if (const auto known = choices_.find(key); known != choices_.end()) return known->second;
    if (choices_.size() >= kMostTypefaces) choices_.clear();
    Typeface typeface;
    if (const auto file =
            fonts_->Find({.name = font.name, .bold = font.bold, .character = needed})) {
      typeface = {.face = Open(*file), .embolden = font.bold && !file->bold};
    }
    return choices_[key] = typeface;
  }

  /// Nothing for a file that can't be read or has no outlines.
  FT_Face Open(const FontFile& file) {
    const auto [known, added] = faces_.try_emplace({file.path, file.content, file.index}, nullptr);
    if (!added) return known->second;
    if (!library_) {
      FT_Library library = nullptr;
      if (FT_Init_FreeType(&library) != 0) return nullptr;
      library_.reset(library);
    }
    FT_Face face = nullptr;
    if (NewFace(file, face) != 0) return nullptr;
    if (!FT_IS_SCALABLE(face)) return nullptr;
    return known->second = face;
  }

  /// FreeType opens files by the system's own narrow names: others are read for it.
  FT_Error NewFace(const FontFile& file, FT_Face& face) {
    const std::string name = Utf8Of(file.path);
    const auto is_ascii = [](char c) { return static_cast<unsigned char>(c) < 0x80; };
    if (!file.content && std::all_of(name.begin(), name.end(), is_ascii)) {
      return FT_New_Face(library_.get(), name.c_str(), file.index, &face);
    }
    const auto content = file.content ? file.content : ContentOf(file.path);
    kept_.push_back(content);
    return FT_New_Memory_Face(library_.get(), content->data(),
                              static_cast<FT_Long>(content->size()), file.index, &face);
  }

  static Content ContentOf(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return std::make_shared<const std::vector<std::uint8_t>>(std::istreambuf_iterator<char>(file),
                                                             std::istreambuf_iterator<char>());
  }

  std::shared_ptr<FontFinder> fonts_;
  std::vector<Content> kept_;  // what the faces read
  LibraryPtr library_;         // owns the faces
  std::map<std::tuple<std::filesystem::path, Content, int>, FT_Face> faces_;
  std::map<ChoiceKey, Typeface> choices_;
  std::map<Letter, GlyphOutline> outlines_;
  std::map<GlyphKey, Glyph> glyphs_;
  std::size_t glyph_bytes_ = 0;
};

FreeTypeText::FreeTypeText() : FreeTypeText(MachineFonts()) {}

FreeTypeText::FreeTypeText(std::shared_ptr<FontFinder> fonts)
    : typesetter_(std::make_unique<Typesetter>(std::move(fonts))) {}

FreeTypeText::~FreeTypeText() = default;

double FreeTypeText::Width(const Font& font, double pixels_per_point, std::string_view text) const {
  return typesetter_->SetType(font, Size(font, pixels_per_point), text,
                              [](const Letter&, double) {});
}

double FreeTypeText::Height(const Font& font, double pixels_per_point) const {
  const FT_Face face = typesetter_->TypefaceOf(font).face;
  const double size = Size(font, pixels_per_point);
  return Ascent(face, size) + Descent(face, size);
}

void FreeTypeText::ForEachGlyph(const Font& font, double pixels_per_point, double x, int base,
                                std::string_view text,
                                const std::function<void(const Glyph&, PixelPoint)>& take) const {
  typesetter_->PlaceGlyphs(font, Size(font, pixels_per_point), x, base, text, take);
}

void FreeTypeText::Outline(const Font& font, std::string_view text, OutlineSink& sink) const {
  typesetter_->SetType(
      font, 1, text, [&](const Letter& letter, double x) { typesetter_->Trace(letter, x, sink); });
}

std::pair<std::string, int> FreeTypeText::FileOf(const Font& font) const {
  return typesetter_->FileOf(font);
}

void FreeTypeText::Paint(Canvas& canvas, const Font& font, const TextPlacement& placement,
                         std::string_view text) const {
  const bool near = std::abs(placement.x) <= kFarthest && std::abs(placement.y) <= kFarthest;
  if (text.empty() || !near) return;
  const double size = Size(font, placement.pixels_per_point);
  const Pixel colour = PixelOf(placement.colour);
  const FT_Face face = typesetter_->TypefaceOf(font).face;
  const int base = ToInt32(placement.y) + Ascent(face, size) - placement.canvas_top;
  // No letter reaches farther than that, whatever font it comes from.
  const int reach = 4 * (Ascent(face, size) + Descent(face, size));
  if (base < -reach || base > canvas.Height() + reach) return;
  const double end = typesetter_->PlaceGlyphs(
      font, size, placement.x, base, text,
      [&](const Glyph& glyph, PixelPoint corner) { Stamp(canvas, glyph, corner, colour); });
  if (!font.underline) return;
  const double scale = Scale(face, size);
  const double thickness = std::max(1.0, RoundHalfEven(face->underline_thickness * scale));
  const double drop =
      std::max(1.0, RoundHalfEven(-face->underline_position * scale - thickness / 2));
  const int top = base + ToInt32(drop);
  const int left = ToInt32(placement.x);
  const int right = std::max(left, ToInt32(std::min(end, kFarthest)) - 1);
  canvas.FillBox({left, top, right, top + ToInt32(thickness) - 1}, colour);
}

}  // namespace discoplan
