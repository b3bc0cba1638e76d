// SPDX-License-Identifier: MIT
#pragma once

/// Where `FreeTypeText` takes its letters from: the machine's fonts, or those that a program brings
/// along.
///
///     HeadlessHost host({}, std::make_shared<GivenFonts>(FontFile{.path = "sans.ttf"}));
///
/// "Arial", "MS Sans Serif" and "Symbol" are the names that the plots use.

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "hosts/headless/export.h"

namespace discoplan {

/// A font of outlines, in a file or in memory.
struct FontFile {
  std::filesystem::path path = {};
  /// The file's content, which is read instead of `path` where there is one.
  std::shared_ptr<const std::vector<std::uint8_t>> content = {};
  int index = 0;      ///< Of a font among those of the file.
  bool bold = false;  ///< Else a bold one is made from it where it is asked for.
};

struct WantedFont {
  std::string name;
  bool bold = false;
  char32_t character = 0;  ///< That it should hold; any font of the name will do for 0.
};

/// An object belongs to one thread at a time.
class DISCOPLAN_HEADLESS_EXPORT FontFinder {
 public:
  virtual ~FontFinder() = default;
  /// What comes nearest; nothing where there is no font at all.
  virtual std::optional<FontFile> Find(const WantedFont& wanted) = 0;
};

/// The same font for every name, and one for bold letters where it is given.
class DISCOPLAN_HEADLESS_EXPORT GivenFonts final : public FontFinder {
 public:
  explicit GivenFonts(FontFile regular, std::optional<FontFile> bold = {});
  std::optional<FontFile> Find(const WantedFont& wanted) override;

 private:
  FontFile regular_;
  FontFile bold_;
};

/// "Arial", "MS Sans Serif" and "Symbol" are Liberation Sans, or else DejaVu Sans, or else what the
/// machine puts in their place. Other names are looked up by fontconfig; a system without it has
/// one sans serif font for all.
DISCOPLAN_HEADLESS_EXPORT std::unique_ptr<FontFinder> MachineFonts();

}  // namespace discoplan
