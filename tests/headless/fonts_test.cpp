// SPDX-License-Identifier: MIT
#include "hosts/headless/fonts.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

#include "hosts/headless/freetype_text.h"
#include "tests/temporary_folder.h"

namespace discoplan {
namespace {

constexpr double kScreen = 96.0 / 72;
const Font kRegular = {.name = "Arial", .size = 20};
const Font kBold = {.name = "Arial", .size = 20, .bold = true};

FontFile FileOf(bool bold) {
  return *MachineFonts()->Find({.name = "Arial", .bold = bold, .character = 0});
}

std::vector<std::uint8_t> ContentOf(const FontFile& file) {
  std::ifstream stream(file.path, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

std::vector<Pixel> Painted(const FreeTypeText& text, const Font& font) {
  Canvas canvas(120, 40, 0xFFFFFFFF);
  text.Paint(canvas, font, {.x = 3, .y = 4, .pixels_per_point = kScreen}, "7530.693 \xC2\xB5m");
  return {canvas.Pixels().begin(), canvas.Pixels().end()};
}

TEST(FontsTest, AFileThatIsGivenPaintsAsTheMachinesOwn) {
  const FreeTypeText machine;
  const FreeTypeText given(std::make_shared<GivenFonts>(FileOf(false), FileOf(true)));
  EXPECT_EQ(Painted(given, kRegular), Painted(machine, kRegular));
  EXPECT_EQ(Painted(given, kBold), Painted(machine, kBold));
  EXPECT_NE(Painted(machine, kBold), Painted(machine, kRegular));
}

TEST(FontsTest, SoDoesAFontInMemory) {
  const auto content = std::make_shared<const std::vector<std::uint8_t>>(ContentOf(FileOf(false)));
  const FreeTypeText given(std::make_shared<GivenFonts>(FontFile{.content = content}));
  EXPECT_EQ(Painted(given, kRegular), Painted(FreeTypeText(), kRegular));
}

TEST(FontsTest, AFontFileMayHaveAnyName) {
  const TemporaryFolder folder;
  const std::filesystem::path path =
      std::filesystem::path(folder.path()) / u8"schriftgr\u00F6\u00DFe.ttf";
  std::filesystem::copy_file(FileOf(false).path, path);
  const FreeTypeText given(std::make_shared<GivenFonts>(FontFile{.path = path}));
  EXPECT_EQ(Painted(given, kRegular), Painted(FreeTypeText(), kRegular));
}

TEST(FontsTest, OneFontIsMadeBoldWhereBoldIsAskedFor) {
  const FreeTypeText given(std::make_shared<GivenFonts>(FileOf(false)));
  EXPECT_GT(given.Width(kBold, kScreen, "Mean"), given.Width(kRegular, kScreen, "Mean"));
  EXPECT_NE(Painted(given, kBold), Painted(given, kRegular));
}

TEST(FontsTest, AFileThatIsNoFontIsNoFont) {
  const TemporaryFolder folder;
  const std::filesystem::path path = std::filesystem::path(folder.path()) / "none.ttf";
  std::ofstream(path) << "no font";
  const FreeTypeText given(std::make_shared<GivenFonts>(FontFile{.path = path}));
  EXPECT_THROW(given.Width(kRegular, kScreen, "x"), FontError);
}

}  // namespace
}  // namespace discoplan
