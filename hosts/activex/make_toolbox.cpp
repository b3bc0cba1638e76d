// SPDX-License-Identifier: MIT
// Draws the pictures by which a designer's toolbox shows the controls, 16 by 16 pixels in the
// system's 16 colours: make_toolbox FOLDER writes toolbox_1.bmp and so on, by the classes' numbers.

#include <array>
#include <cstdint>
#include <fstream>
#include <iostream>
#include <string>
#include <string_view>

#include "discoplan/controls/control_class.h"

namespace {

constexpr int kSide = 16;

struct Drawing {
  std::string_view plot;
  std::array<std::string_view, kSide> rows;
};

// Letters are colours; a dot is the toolbox's own grey.
constexpr Drawing kDrawings[] = {
    {"Plot2D",
     {"................", ".....kkkkkk.....", "...kkrrryyykk...", "..krrrryyyyygk..",
      "..krrryyyyyggk..", ".krrryyyyygggck.", ".krryyyyygggcck.", ".kryyyyygggccck.",
      ".kyyyyygggcccbk.", ".kyyyygggcccbbk.", ".kyyygggcccbbbk.", "..kygggcccbbbk..",
      "..kgggcccbbbbk..", "...kkcccbbbkk...", ".....kkkkkk.....", "................"}},
    {"Plot2DS",
     {"................", ".....kkkkkk.....", "...kkggggggkk...", "..kggrrrrggggk..",
      "..kgrrrrrrgggk..", ".kggrrrrrrggggk.", ".kggrrrrrrggggk.", ".kgggrrrrgggggk.",
      ".kgggggggggbbgk.", ".kggggggggbbbbk.", ".kggggggggbbbbk.", "..kgggggggbbbk..",
      "..kgggggggbbgk..", "...kkggggggkk...", ".....kkkkkk.....", "................"}},
    {"Plot2DC",
     {"................", ".....kkkkkk.....", "...kkwwwwwgkk...", "..kwwwrrrwwgwk..",
      "..kwwrwwwrwgwk..", ".kwwrwwwwwrwgwk.", ".kwwrwrrwwrwgwk.", ".kwwrwrrwrwwgwk.",
      ".kwwwrwwwrwgwwk.", ".kgwwwrrrwwgwwk.", ".kwgwwwwwwgwbwk.", "..kwggwwwgwbwk..",
      "..kwwwgggwbwwk..", "...kkwwwwbwkk...", ".....kkkkkk.....", "................"}},
    {"Plot2DN",
     {"................", ".....kkkkkk.....", "...kkwwwwwwkk...", "..kwwrwwwbbbwk..",
      "..kwrrwwwwwbwk..", ".kwwwrwwwwbbwwk.", ".kwwwrwwwwwbwwk.", ".kwwrrrwwbbbwwk.",
      ".kwwwwwwwwwwwwk.", ".kwwwgggwwwwwwk.", ".kwwwwwgwwwrwwk.", "..kwwgggwwrrwk..",
      "..kwwgwwwwwrwk..", "...kkgggwwwkk...", ".....kkkkkk.....", "................"}},
    {"Plot3D",
     {"................", "................", "......rr........", ".....ryyr.......",
      "....ryyyyrkk....", "...kyygggyykk...", "..kyggggggyyck..", ".kygggccccggcck.",
      "kgggcccbbccccbbk", "kkgccbbbbbbcbbkk", ".kkccbbbbbbbbkk.", "...kkcbbbbbkk...",
      ".....kkbbkk.....", ".......kk.......", "................", "................"}},
    {"Plot3DS",
     {"................", "................", "......rr........", ".....rrrr.......",
      "....rrrrrrkk....", "...krrrrrrggk...", "..kggrrrrggggk..", ".kggggggggggggk.",
      "kggggggggggbbbbk", "kkggggggggbbbbkk", ".kkggggggbbbbkk.", "...kkggggbbkk...",
      ".....kkggkk.....", ".......kk.......", "................", "................"}},
    {"Plot3DB",
     {"................", "......kkkk......", ".....kwwkk......", ".....kkkrk......",
      ".....krkrk......", ".kkkkkrkrk......", "kwwkkkrkrk......", "kkkykkrkrk.kkkk.",
      "kykykkrkrkkwwkk.", "kykykkrkrkkkkgk.", "kykykkrkrkkgkgk.", "kykykkrkrkkgkgk.",
      "kykykkrkrkkgkgk.", "kykk.krkk.kgkk..", "kkk..kkk..kkk...", "................"}},
    {"Histo",
     {"................", ".k.....rr.......", ".k....rkkr......", ".k....kggkr.....",
      ".k...rkggk.r....", ".k..rkkggk.r....", ".k..rgkggkkkr...", ".k.rkgkggkgkr...",
      ".k.rkgkggkgkr...", ".krkkgkggkgkkr..", ".krgkgkggkgkgkr.", ".krgkgkggkgkgkr.",
      ".kkgkgkggkgkgkr.", ".kkgkgkggkgkgkk.", ".kkkkkkkkkkkkkk.", "................"}},
    {"LineScan",
     {"................", ".k..............", ".k...bb.........", ".k..b..b........",
      ".k..b..b........", ".k.b....b.......", ".k.b....b....b..", ".kgggggggggggbg.",
      ".k.b.....b..b...", ".kb......b..b...", ".kb......b.b....", ".kb.......b.....",
      ".k..............", ".k..............", ".kkkkkkkkkkkkkk.", "................"}},
};

struct Ink {
  char letter;
  std::uint8_t blue, green, red;  // as files have them
};
constexpr std::array<Ink, 8> kInks = {{{'.', 192, 192, 192},
                                       {'k', 0, 0, 0},
                                       {'r', 0, 0, 255},
                                       {'y', 0, 255, 255},
                                       {'g', 0, 192, 0},
                                       {'c', 255, 255, 0},
                                       {'b', 255, 0, 0},
                                       {'w', 255, 255, 255}}};

/// Unused colours of the palette are black.
constexpr std::size_t kColours = 16;

std::uint8_t NumberOf(char letter) {
  std::uint8_t number = 0;
  while (number < kInks.size() && kInks[number].letter != letter) ++number;
  return number;
}

void Append(std::string& file, std::uint32_t number, int bytes) {
  for (; bytes > 0; --bytes, number >>= 8) file += static_cast<char>(number & 0xFF);
}

/// A file of a bitmap with 4 bits a pixel and the lowest row first; empty for a wrong drawing.
std::string Bitmap(const Drawing& drawing) {
  constexpr std::uint32_t kHeaders = 14 + 40;
  constexpr std::uint32_t kStart = kHeaders + 4 * kColours;
  constexpr std::uint32_t kBytes = kSide * kSide / 2;
  std::string file = "BM";
  Append(file, kStart + kBytes, 4);
  Append(file, 0, 4);
  Append(file, kStart, 4);
  Append(file, 40, 4);
  Append(file, kSide, 4);
  Append(file, kSide, 4);
  Append(file, 1, 2);
  Append(file, 4, 2);
  Append(file, 0, 4);
  Append(file, kBytes, 4);
  Append(file, 0, 16);
  for (std::size_t i = 0; i < kColours; ++i) {
    const Ink ink = i < kInks.size() ? kInks[i] : Ink{};
    for (const std::uint8_t part : {ink.blue, ink.green, ink.red, std::uint8_t{0}}) {
      Append(file, part, 1);
    }
  }
  for (std::size_t y = kSide; y-- > 0;) {
    const std::string_view row = drawing.rows[y];
    if (row.size() != kSide) return {};
    for (std::size_t x = 0; x < kSide; x += 2) {
      const std::uint8_t left = NumberOf(row[x]);
      const std::uint8_t right = NumberOf(row[x + 1]);
      if (left == kInks.size() || right == kInks.size()) return {};
      Append(file, static_cast<std::uint32_t>(left << 4 | right), 1);
    }
  }
  return file;
}

/// Nothing for a control that hasn't one.
const Drawing* DrawingOf(std::string_view plot) {
  for (const Drawing& drawing : kDrawings) {
    if (drawing.plot == plot) return &drawing;
  }
  return nullptr;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "usage: make_toolbox FOLDER\n";
    return 2;
  }
  for (const discoplan::ControlClass* row : discoplan::ControlClasses()) {
    const Drawing* drawing = DrawingOf(row->name);
    const std::string bitmap = drawing != nullptr ? Bitmap(*drawing) : "";
    const std::string name =
        std::string(argv[1]) + "/toolbox_" + std::to_string(row->about_number) + ".bmp";
    std::ofstream file(name, std::ios::binary);
    file << bitmap;
    file.close();
    if (bitmap.empty() || !file) {
      std::cerr << "make_toolbox: " << name << " can't be "
                << (bitmap.empty() ? "drawn\n" : "written\n");
      return 1;
    }
  }
  return 0;
}
