// SPDX-License-Identifier: MIT
#pragma once

/// Texts on white paper, what of it they ink, and the fonts that there are.

#include <fontconfig/fontconfig.h>

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "discoplan/raster/canvas.h"
#include "hosts/headless/freetype_text.h"

namespace discoplan {

inline constexpr Pixel kPaper = 0xFFFFFFFF;

inline std::vector<Pixel> Copy(const Canvas& canvas) {
  return {canvas.Pixels().begin(), canvas.Pixels().end()};
}

inline Pixel At(const Canvas& canvas, int x, int y) {
  return canvas.Pixels()[static_cast<std::size_t>(y * canvas.Width() + x)];
}

/// Both corners belong to it.
inline std::optional<PixelBox> Ink(const Canvas& canvas) {
  std::optional<PixelBox> ink;
  for (int y = 0; y < canvas.Height(); ++y) {
    for (int x = 0; x < canvas.Width(); ++x) {
      if (At(canvas, x, y) == kPaper) continue;
      if (!ink) ink = PixelBox{x, y, x, y};
      ink = PixelBox{std::min(ink->left, x), ink->top, std::max(ink->right, x), y};
    }
  }
  return ink;
}

/// Sum of 255 - green: that of black ink.
inline double Weight(const Canvas& canvas) {
  double weight = 0;
  for (const Pixel pixel : canvas.Pixels()) weight += 255 - (pixel >> 8 & 0xFF);
  return weight;
}

inline Canvas Painted(const Font& font, std::string_view text,
                      const TextPlacement& placement = {5, 5}) {
  Canvas canvas(200, 60, kPaper);
  FreeTypeText().Paint(canvas, font, placement, text);
  return canvas;
}

/// The file of a family's plain style, or nothing where the machine lacks the family.
inline std::string FileOf(const char* family) {
  FcConfig* config = FcInitLoadConfigAndFonts();
  FcPattern* wanted = FcPatternBuild(
      nullptr, FC_FAMILY, FcTypeString, family, FC_WEIGHT, FcTypeInteger, FC_WEIGHT_REGULAR,
      FC_SLANT, FcTypeInteger, FC_SLANT_ROMAN, FC_WIDTH, FcTypeInteger, FC_WIDTH_NORMAL, nullptr);
  FcObjectSet* objects = FcObjectSetBuild(FC_FILE, nullptr);
  FcFontSet* found = FcFontList(config, wanted, objects);
  FcChar8* path = nullptr;
  std::string file;
  if (found->nfont > 0 && FcPatternGetString(found->fonts[0], FC_FILE, 0, &path) == FcResultMatch) {
    file = reinterpret_cast<const char*>(path);
  }
  FcFontSetDestroy(found);
  FcObjectSetDestroy(objects);
  FcPatternDestroy(wanted);
  FcConfigDestroy(config);
  return file;
}

}  // namespace discoplan
