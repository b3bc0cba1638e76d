// SPDX-License-Identifier: MIT
// The machine's fonts where there is no fontconfig.
#include <array>
#include <cstdlib>

#include "hosts/headless/usual_fonts.h"

namespace discoplan {
namespace {

class FolderFonts final : public FontFinder {
 public:
  std::optional<FontFile> Find(const WantedFont& wanted) override {
    if (auto file = UsualSansFile(wanted.bold)) return file;
    const char* const windows = std::getenv("WINDIR");
    const std::filesystem::path folder = std::filesystem::path(windows ? windows : "") / "Fonts";
    const std::array<UsualPlace, 2> places = {
        {{folder, "LiberationSans-Regular.ttf", "LiberationSans-Bold.ttf"},
         {folder, "arial.ttf", "arialbd.ttf"}}};
    return FirstOf(places, wanted.bold);
  }
};

}  // namespace

std::unique_ptr<FontFinder> MachineFonts() { return std::make_unique<FolderFonts>(); }

}  // namespace discoplan
