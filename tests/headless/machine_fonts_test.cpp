// SPDX-License-Identifier: MIT
// Which fonts of a machine are taken, and what stands in for those that it lacks.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "tests/headless/painted_text.h"
#include "tests/temporary_folder.h"

namespace discoplan {
namespace {

namespace fs = std::filesystem;

/// Makes other fonts the machine's for texts that begin in its lifetime.
class OtherFonts {
 public:
  explicit OtherFonts(const std::vector<std::string>& files) {
    fs::create_directory(folder_ / "fonts");
    // fontconfig takes the first of two that serve equally well.
    for (std::size_t i = 0; i < files.size(); ++i) {
      fs::copy_file(files[i], folder_ / "fonts" / (std::to_string(i) + ".ttf"));
    }
    std::ofstream(folder_ / "fonts.conf")
        << "<fontconfig><dir>" << folder_.string() << "/fonts</dir><cachedir>" << folder_.string()
        << "/cache</cachedir></fontconfig>";
    if (const char* before = std::getenv(kVariable)) before_ = before;
    setenv(kVariable, (folder_ / "fonts.conf").c_str(), 1);
  }
  ~OtherFonts() { before_ ? setenv(kVariable, before_->c_str(), 1) : unsetenv(kVariable); }
  OtherFonts(const OtherFonts&) = delete;
  OtherFonts& operator=(const OtherFonts&) = delete;

 private:
  static constexpr const char* kVariable = "FONTCONFIG_FILE";

  const TemporaryFolder temporary_;
  const fs::path folder_ = temporary_.path();
  std::optional<std::string> before_;
};

TEST(MachineFonts, UsualPlacesHoldTheFontThatFontconfigFinds) {
  if (std::getenv("FONTCONFIG_FILE") != nullptr) GTEST_SKIP() << "other fonts are asked for";
  for (const bool bold : {false, true}) {
    const Canvas usual = Painted({.bold = bold}, "Wafer 7");
    setenv("FONTCONFIG_FILE", "/etc/fonts/fonts.conf", 1);
    const Canvas found = Painted({.bold = bold}, "Wafer 7");
    unsetenv("FONTCONFIG_FILE");
    EXPECT_TRUE(std::ranges::equal(usual.Pixels(), found.Pixels())) << "bold: " << bold;
  }
}

TEST(MachineFonts, BoldIsMadeWhereTheFamilyHasNone) {
  const std::string file = FileOf("Liberation Sans");
  if (file.empty()) GTEST_SKIP() << "needs Liberation Sans";
  const OtherFonts fonts({file});
  const Canvas plain = Painted({}, "HHH"), bold = Painted({.bold = true}, "HHH");
  EXPECT_GT(Weight(bold), 1.2 * Weight(plain));
  // To the sides only.
  EXPECT_EQ(Ink(bold)->top, Ink(plain)->top);
  EXPECT_EQ(Ink(bold)->bottom, Ink(plain)->bottom);
  // Each of three letters grows by 1/24 of 24 pixels.
  const FreeTypeText text;
  EXPECT_NEAR(text.Width({.bold = true}, 3, "HHH"), text.Width({}, 3, "HHH") + 3, 1e-9);
}

TEST(MachineFonts, FamiliesStandInForEachOther) {
  const std::string liberation = FileOf("Liberation Sans"), dejavu = FileOf("DejaVu Sans");
  const std::string others[] = {FileOf("Liberation Mono"), FileOf("Liberation Serif"),
                                FileOf("DejaVu Serif"), FileOf("DejaVu Sans Mono")};
  if (liberation.empty() || dejavu.empty() || std::ranges::count(others, "") > 0)
    GTEST_SKIP() << "needs Liberation and DejaVu";
  const auto width = [](const char* name) {
    return FreeTypeText().Width({.name = name}, 4, "Wafer");
  };
  const double of_liberation = width("Liberation Sans"), of_dejavu = width("DejaVu Sans");
  ASSERT_NE(of_liberation, of_dejavu);
  for (const char* name : {"Arial", "MS Sans Serif"}) {
    EXPECT_EQ(width(name), of_liberation) << name;
    for (const std::string& other : others) {
      const OtherFonts fonts({other, dejavu});
      EXPECT_EQ(width(name), of_dejavu) << name << " before " << other;
    }
  }
  const OtherFonts fonts({liberation});
  EXPECT_EQ(width("No Such Font"), of_liberation);
  EXPECT_EQ(width(""), of_liberation);
}

TEST(MachineFonts, OtherFontsLendTheGlyphsThatAreMissing) {
  const std::string liberation = FileOf("Liberation Sans"), dejavu = FileOf("DejaVu Sans");
  if (liberation.empty() || dejavu.empty()) GTEST_SKIP() << "needs Liberation and DejaVu";
  // A frowning face is in DejaVu Sans only, a private character in none.
  const std::string face = "\u2639", nowhere = "\U0010FFFD";
  const auto box = Copy(Painted({}, nowhere));
  EXPECT_NE(box, Copy(Painted({}, "")));
  {
    const OtherFonts fonts({liberation, dejavu});
    EXPECT_NE(Copy(Painted({}, face)), box);
    EXPECT_EQ(FreeTypeText().Width({}, 4, face),
              FreeTypeText().Width({.name = "DejaVu Sans"}, 4, face));
  }
  const OtherFonts fonts({liberation});
  EXPECT_EQ(Copy(Painted({}, face)), box);
}

TEST(MachineFonts, MachineWithoutFontsIsAnErrorThatSaysWhatToInstall) {
  const OtherFonts none({});
  const FreeTypeText text;
  Canvas canvas(50, 50, kPaper);
  EXPECT_THROW(text.Height({}, 1), FontError);
  EXPECT_THROW(text.Paint(canvas, {}, {}, "50"), FontError);
  try {
    text.Width({}, 1, "50");
    FAIL() << "no error";
  } catch (const FontError& error) {
    EXPECT_STREQ(error.what(),
                 "no scalable font was found; install one, such as the package fonts-liberation");
  }
}

std::string ContentOf(const fs::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

/// A font that is cut off, or has noise in its outlines, says that there is none, or shows less.
TEST(MachineFonts, BrokenFontsShowLessOrCountAsNone) {
  const std::string whole_file = FileOf("Liberation Sans");
  if (whole_file.empty()) GTEST_SKIP();
  const std::string whole = ContentOf(whole_file);
  const TemporaryFolder folder;
  const fs::path broken = folder.path() / "broken.ttf";
  std::mt19937 random(3);
  int none = 0;
  int shown = 0;
  for (std::size_t part = 0; part <= 10; ++part) {
    for (const bool noisy : {false, true}) {
      std::string content = whole.substr(0, noisy ? whole.size() : whole.size() * part / 10);
      for (std::size_t i = whole.size() * part / 11; noisy && i < content.size(); i += 7) {
        content[i] = static_cast<char>(random());
      }
      std::ofstream(broken, std::ios::binary) << content;
      const OtherFonts only({broken.string()});
      const FreeTypeText text;
      // Not one of the usual places: those hold whole fonts.
      const Font font{.name = "Serif of a machine", .size = 12};
      Canvas canvas(200, 60, kPaper);
      try {
        EXPECT_GE(text.Width(font, 1.5, "Wafer 50 \u03BC"), 0);
        text.Paint(canvas, font, {5, 5}, "Wafer 50 \u03BC");
        shown += Ink(canvas).has_value();
      } catch (const FontError&) {
        ++none;
      }
    }
  }
  EXPECT_GE(none, 2);  // nothing of it, and a tenth
  EXPECT_GT(shown, 0);
}

}  // namespace
}  // namespace discoplan
