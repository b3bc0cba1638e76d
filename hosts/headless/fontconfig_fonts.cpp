// SPDX-License-Identifier: MIT
#include <fontconfig/fontconfig.h>

#include <algorithm>
#include <array>
#include <cstdlib>

#include "hosts/headless/usual_fonts.h"

namespace discoplan {
namespace {

template <auto Destroy>
struct Destroyer {
  template <class T>
  void operator()(T* object) const {
    Destroy(object);
  }
};
using ConfigPtr = std::unique_ptr<FcConfig, Destroyer<FcConfigDestroy>>;
using PatternPtr = std::unique_ptr<FcPattern, Destroyer<FcPatternDestroy>>;
using CharSetPtr = std::unique_ptr<FcCharSet, Destroyer<FcCharSetDestroy>>;

bool EnvironmentChooses() {
  static constexpr std::array kVariables = {"FONTCONFIG_FILE", "FONTCONFIG_PATH",
                                            "FONTCONFIG_SYSROOT"};
  return std::any_of(kVariables.begin(), kVariables.end(),
                     [](const char* name) { return std::getenv(name) != nullptr; });
}

/// Families to try in turn, weight, and a character that the font should hold unless it is 0.
PatternPtr PatternOf(const WantedFont& font) {
  PatternPtr wanted(FcPatternCreate());
  const auto add_family = [&](const char* family) {
    FcPatternAddString(wanted.get(), FC_FAMILY, reinterpret_cast<const FcChar8*>(family));
  };
  if (IsSans(font.name)) {
    add_family("Liberation Sans");
    add_family("DejaVu Sans");
  } else {
    add_family(font.name.c_str());
  }
  FcPatternAddInteger(wanted.get(), FC_WEIGHT, font.bold ? FC_WEIGHT_BOLD : FC_WEIGHT_REGULAR);
  FcPatternAddBool(wanted.get(), FC_SCALABLE, FcTrue);
  if (font.character != 0) {
    const CharSetPtr characters(FcCharSetCreate());
    FcCharSetAddChar(characters.get(), font.character);
    FcPatternAddCharSet(wanted.get(), FC_CHARSET, characters.get());
  }
  return wanted;
}

class FontconfigFonts final : public FontFinder {
 public:
  std::optional<FontFile> Find(const WantedFont& wanted) override {
    if (wanted.character == 0 && IsSans(wanted.name) && !EnvironmentChooses()) {
      if (auto file = UsualSansFile(wanted.bold)) return file;
    }
    if (!config_) config_.reset(FcInitLoadConfigAndFonts());
    return Match(PatternOf(wanted));
  }

 private:
  /// What the machine has that comes nearest.
  std::optional<FontFile> Match(const PatternPtr& wanted) {
    FcConfigSubstitute(config_.get(), wanted.get(), FcMatchPattern);
    FcDefaultSubstitute(wanted.get());
    FcResult result = FcResultNoMatch;
    const PatternPtr found(FcFontMatch(config_.get(), wanted.get(), &result));
    FcChar8* path = nullptr;
    if (!found || FcPatternGetString(found.get(), FC_FILE, 0, &path) != FcResultMatch) return {};
    FontFile file{.path = reinterpret_cast<const char*>(path)};
    int weight = FC_WEIGHT_REGULAR;
    FcPatternGetInteger(found.get(), FC_INDEX, 0, &file.index);
    FcPatternGetInteger(found.get(), FC_WEIGHT, 0, &weight);
    file.bold = weight >= FC_WEIGHT_DEMIBOLD;
    return file;
  }

  ConfigPtr config_;
};

}  // namespace

std::unique_ptr<FontFinder> MachineFonts() { return std::make_unique<FontconfigFonts>(); }

}  // namespace discoplan
