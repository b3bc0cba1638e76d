// SPDX-License-Identifier: MIT
#include "hosts/headless/fonts.h"

#include <algorithm>
#include <array>
#include <utility>

#include "discoplan/raster/symbol_letters.h"
#include "hosts/headless/usual_fonts.h"

namespace discoplan {

bool IsSans(const std::string& name) {
  static constexpr std::array kSansNames = {"Arial", "MS Sans Serif", kSymbolFont};
  return std::find(kSansNames.begin(), kSansNames.end(), name) != kSansNames.end();
}

std::optional<FontFile> FirstOf(std::span<const UsualPlace> places, bool bold) {
  for (const UsualPlace& place : places) {
    std::error_code ignored;
    std::filesystem::path path = place.folder / (bold ? place.bold : place.regular);
    if (!std::filesystem::exists(path, ignored)) continue;
    return FontFile{.path = std::move(path), .content = {}, .index = 0, .bold = bold};
  }
  return {};
}

std::optional<FontFile> UsualSansFile(bool bold) {
  static constexpr const char* kRegular = "LiberationSans-Regular.ttf";
  static constexpr const char* kBold = "LiberationSans-Bold.ttf";
  static const std::array<UsualPlace, 4> kPlaces = {{
      {"/usr/share/fonts/truetype/liberation2", kRegular, kBold},
      {"/usr/share/fonts/truetype/liberation", kRegular, kBold},
      {"/usr/share/fonts/liberation-sans", kRegular, kBold},
      {"/usr/share/fonts/liberation", kRegular, kBold},
  }};
  return FirstOf(kPlaces, bold);
}

GivenFonts::GivenFonts(FontFile regular, std::optional<FontFile> bold)
    : regular_(regular), bold_(bold ? std::move(*bold) : std::move(regular)) {}

std::optional<FontFile> GivenFonts::Find(const WantedFont& wanted) {
  return wanted.bold ? bold_ : regular_;
}

}  // namespace discoplan
