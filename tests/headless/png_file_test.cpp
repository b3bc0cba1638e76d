// SPDX-License-Identifier: MIT
#include "hosts/headless/png_file.h"

#include <gtest/gtest.h>
#include <png.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstring>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "tests/temporary_folder.h"

namespace discoplan {
namespace {

namespace fs = std::filesystem;

using Bytes = std::vector<std::uint8_t>;

std::uint32_t Number(const Bytes& bytes, std::size_t at) {
  return static_cast<std::uint32_t>(bytes[at] << 24 | bytes[at + 1] << 16 | bytes[at + 2] << 8 |
                                    bytes[at + 3]);
}

/// Where a chunk's data begin, or 0 where there is none.
std::size_t FindChunk(const Bytes& bytes, const char* name) {
  for (std::size_t at = 8; at + 8 < bytes.size(); at += 12 + Number(bytes, at)) {
    if (std::memcmp(&bytes[at + 4], name, 4) == 0) return at + 8;
  }
  return 0;
}

std::vector<Pixel> Decode(const Bytes& bytes, int width, int height) {
  png_image image = {};
  image.version = PNG_IMAGE_VERSION;
  std::vector<Pixel> pixels;
  if (png_image_begin_read_from_memory(&image, bytes.data(), bytes.size()) == 0) return pixels;
  EXPECT_EQ(image.width, static_cast<png_uint_32>(width));
  EXPECT_EQ(image.height, static_cast<png_uint_32>(height));
  image.format = PNG_FORMAT_BGRA;  // little-endian 0xAARRGGBB
  pixels.resize(static_cast<std::size_t>(image.width) * image.height);
  EXPECT_NE(png_image_finish_read(&image, nullptr, pixels.data(), 0, nullptr), 0);
  EXPECT_EQ(image.warning_or_error, 0u) << image.message;
  return pixels;
}

/// Each of `colours` different ones, then any of them.
std::vector<Pixel> Noise(std::size_t size, std::size_t colours, unsigned seed) {
  std::mt19937 random(seed);
  const auto first = static_cast<Pixel>(random());
  std::vector<Pixel> pixels(size);
  for (std::size_t i = 0; i < size; ++i) {
    const auto number = static_cast<Pixel>(i < colours ? i : random() % colours);
    // An odd factor makes different numbers different colours.
    pixels[i] = 0xFF000000 | ((first + number * 0x9E3779B1u) & 0xFFFFFF);
  }
  return pixels;
}

Bytes Read(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return Bytes(std::istreambuf_iterator<char>(file), {});
}

/// A folder of its own for each test.
class PngFile : public ::testing::Test {
 protected:
  std::vector<std::string> Names() const {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder_)) {
      names.push_back(entry.path().filename().string());
    }
    return names;
  }

  static std::string ErrorOf(const fs::path& path, const PngPicture& picture) {
    try {
      WritePng(path, picture);
    } catch (const FileError& error) {
      return error.what();
    }
    return "no error";
  }

  const std::vector<Pixel> pixels_ = Noise(12, 3, 7);
  const PngPicture picture_ = {.pixels = pixels_, .width = 4, .height = 3};
  const TemporaryFolder temporary_;
  const fs::path folder_ = temporary_.path();
};

TEST_F(PngFile, ColoursDecideOnTypeAndDepth) {
  const struct {
    std::size_t colours;
    int depth, type;
  } kCases[] = {{1, 1, 3},  {2, 1, 3},  {3, 2, 3},   {4, 2, 3},   {5, 4, 3},   {15, 4, 3},
                {16, 4, 3}, {17, 8, 3}, {255, 8, 3}, {256, 8, 3}, {257, 8, 2}, {900, 8, 2}};
  for (const auto& row : kCases) {
    // 31 is odd, so that rows of less than 8 bits a pixel end within a byte.
    const std::vector<Pixel> pixels = Noise(31 * 33, row.colours, 1);
    const Bytes bytes = EncodePng({.pixels = pixels, .width = 31, .height = 33});
    ASSERT_EQ(FindChunk(bytes, "IHDR"), 16u);
    EXPECT_EQ(bytes[24], row.depth) << row.colours;
    EXPECT_EQ(bytes[25], row.type) << row.colours;
    const std::size_t palette = FindChunk(bytes, "PLTE");
    EXPECT_EQ(palette != 0, row.type == 3);
    if (palette != 0) {
      EXPECT_EQ(Number(bytes, palette - 8), 3 * row.colours);
    }
    EXPECT_EQ(FindChunk(bytes, "tRNS"), 0u);
    EXPECT_EQ(Decode(bytes, 31, 33), pixels) << row.colours;
  }
}

TEST_F(PngFile, RandomPicturesComeBack) {
  std::mt19937 random(42);
  for (unsigned seed = 0; seed < 300; ++seed) {
    const int width = static_cast<int>(random() % 70) + 1;
    const int height = static_cast<int>(random() % 70) + 1;
    const std::size_t size = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    const std::vector<Pixel> pixels = Noise(size, random() % 400 + 1, seed);
    EXPECT_EQ(
        Decode(EncodePng({.pixels = pixels, .width = width, .height = height}), width, height),
        pixels);
  }
}

TEST_F(PngFile, PicturesOfCellsComeBack) {
  // Cells are runs of a colour in rows that stand below themselves; 41 pixels end within a byte.
  constexpr int kWidth = 41;
  std::mt19937 random(8);
  for (const std::size_t colours : {1u, 2u, 4u, 16u, 200u, 400u}) {
    std::vector<Pixel> pixels;
    while (pixels.size() < kWidth * 200) {
      const std::vector<Pixel> cells = Noise(kWidth, colours, 5);
      const auto first = random() % 10;
      std::vector<Pixel> row;
      for (std::size_t x = 0; x < kWidth; ++x) row.push_back(cells[(x / 4 + first) % kWidth]);
      for (auto times = random() % 6; times > 0; --times) {
        pixels.insert(pixels.end(), row.begin(), row.end());
      }
    }
    const auto height = static_cast<int>(pixels.size() / kWidth);
    EXPECT_EQ(
        Decode(EncodePng({.pixels = pixels, .width = kWidth, .height = height}), kWidth, height),
        pixels)
        << colours << " colours";
  }
}

TEST_F(PngFile, ColoursThatShareAHashComeBack) {
  // Those of one step of the hash's high bits, which all want the same place.
  std::vector<Pixel> pixels;
  for (Pixel colour = 0; pixels.size() < 200; ++colour) {
    if (colour * 0x9E3779B1u >> 22 == 1023) pixels.push_back(0xFF000000 | colour);
  }
  EXPECT_EQ(Decode(EncodePng({.pixels = pixels, .width = 200, .height = 1}), 200, 1), pixels);
}

TEST_F(PngFile, AlphaIsIgnored) {
  const std::vector<Pixel> pixels = {0x00112233, 0xFF112233, 0x80112233, 0x00FFFFFF};
  const Bytes bytes = EncodePng({.pixels = pixels, .width = 4, .height = 1});
  EXPECT_EQ(bytes[24], 1);
  EXPECT_EQ(Decode(bytes, 4, 1),
            (std::vector<Pixel>{0xFF112233, 0xFF112233, 0xFF112233, 0xFFFFFFFF}));
}

TEST_F(PngFile, ResolutionIsToldWhenGiven) {
  // 96 pixels an inch are 3780 a metre; the unit 1 is the metre.
  const Bytes told =
      EncodePng({.pixels = pixels_, .width = 4, .height = 3, .pixels_per_metre = 3780});
  const std::size_t at = FindChunk(told, "pHYs");
  ASSERT_NE(at, 0u);
  EXPECT_EQ(Number(told, at), 3780u);
  EXPECT_EQ(Number(told, at + 4), 3780u);
  EXPECT_EQ(told[at + 8], 1);
  for (const int none : {0, -1}) {
    const Bytes bytes =
        EncodePng({.pixels = pixels_, .width = 4, .height = 3, .pixels_per_metre = none});
    EXPECT_EQ(FindChunk(bytes, "pHYs"), 0u);
  }
}

TEST_F(PngFile, PicturesWithoutPixelsOrWithOthersAreRefused) {
  const struct {
    int width, height;
    std::size_t size;
    const char* reason;
  } kCases[] = {
      {0, 5, 0, "a picture of 0 x 5 pixels is empty"},
      {5, 0, 0, "a picture of 5 x 0 pixels is empty"},
      {-4, -3, 12, "a picture of -4 x -3 pixels is empty"},
      {4, 3, 11, "a picture of 4 x 3 pixels can't have 11 of them"},
      {3, 3, 10, "a picture of 3 x 3 pixels can't have 10 of them"},
      {4, 3, 0, "a picture of 4 x 3 pixels can't have 0 of them"},
      {65536, 65536, 0, "a picture of 65536 x 65536 pixels can't have 0 of them"},
  };
  for (const auto& row : kCases) {
    const std::vector<Pixel> pixels(row.size, 0xFF000000);
    const PngPicture picture = {.pixels = pixels, .width = row.width, .height = row.height};
    try {
      EncodePng(picture);
      ADD_FAILURE() << "no error for " << row.reason;
    } catch (const std::runtime_error& error) {
      EXPECT_STREQ(error.what(), row.reason);
    }
    EXPECT_EQ(ErrorOf(folder_ / "map.png", picture),
              "cannot write '" + (folder_ / "map.png").string() + "': " + row.reason);
  }
  EXPECT_TRUE(Names().empty());
}

TEST_F(PngFile, StripsHaveTheBytesOfTheWhole) {
  constexpr int kHeight = 33;
  for (const unsigned colours : {1u, 2u, 5u, 17u, 256u, 257u, 900u}) {
    std::vector<Pixel> pixels = Noise(31 * kHeight, colours, 1);
    // Rows that repeat within a strip and across its end.
    for (const unsigned row : {7u, 8u, 9u, 20u}) {
      std::copy_n(&pixels[31 * 6], 31, &pixels[31 * row]);
    }
    const Bytes whole = EncodePng({.pixels = pixels, .width = 31, .height = kHeight});
    for (const int rows : {1, 2, 8, 32, 33, 40}) {
      std::vector<Pixel> strip;  // which the next one takes the place of
      const auto rows_from = [&](int top) {
        const auto first = pixels.begin() + 31 * top;
        strip.assign(first, first + 31 * std::min(rows, kHeight - top));
        return std::span<const Pixel>(strip);
      };
      EXPECT_EQ(EncodePng(PngStrips{.width = 31, .height = kHeight, .rows_from = rows_from}), whole)
          << colours << " colours in strips of " << rows;
    }
  }
}

TEST_F(PngFile, WhatTheFormatRefusesIsAnError) {
  // libpng takes at most a million pixels side by side.
  const std::vector<Pixel> pixels(1'000'001, 0xFF000000);
  EXPECT_NO_THROW(
      EncodePng({.pixels = std::span(pixels).first(1'000'000), .width = 1'000'000, .height = 1}));
  EXPECT_THROW(EncodePng({.pixels = pixels, .width = 1'000'001, .height = 1}), std::runtime_error);
}

TEST_F(PngFile, FileHoldsTheEncodedBytesAndNothingElseIsLeft) {
  const fs::path path = folder_ / "map.png";
  WritePng(path, pixels_, 4, 3);
  EXPECT_EQ(Read(path), EncodePng(picture_));
  EXPECT_EQ(Names(), std::vector<std::string>{"map.png"});
  // A second one takes its place.
  const std::vector<Pixel> other = Noise(6, 2, 9);
  WritePng(path, other, 2, 3);
  EXPECT_EQ(Decode(Read(path), 2, 3), other);
  EXPECT_EQ(Names(), std::vector<std::string>{"map.png"});
}

TEST_F(PngFile, NamesWithoutAFolderAreInTheCurrentOne) {
  const fs::path before = fs::current_path();
  fs::current_path(folder_);
  EXPECT_NO_THROW(WritePng("map.png", picture_));
  fs::current_path(before);
  EXPECT_EQ(Names(), std::vector<std::string>{"map.png"});
}

TEST_F(PngFile, LeftoversOfKilledProgramsAreNoObstacle) {
  std::ofstream(folder_ / ".discoplan-0.part") << "left";
  WritePng(folder_ / "map.png", picture_);
  EXPECT_EQ(Read(folder_ / "map.png"), EncodePng(picture_));
  EXPECT_EQ(Read(folder_ / ".discoplan-0.part"), (Bytes{'l', 'e', 'f', 't'}));
}

TEST_F(PngFile, ReplacedFileKeepsItsPermissionsAndItsLinks) {
  const fs::path path = folder_ / "map.png", link = folder_ / "link.png";
  std::ofstream(path) << "old";
  fs::permissions(path, fs::perms(0600));
  fs::create_symlink("map.png", link);
  WritePng(link, picture_);
  EXPECT_TRUE(fs::is_symlink(link));
  EXPECT_EQ(Read(path), EncodePng(picture_));
  EXPECT_EQ(fs::status(path).permissions(), fs::perms(0600));
}

TEST_F(PngFile, PipesAreWrittenToAsTheyAre) {
  const fs::path path = folder_ / "pipe";
  ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
  Bytes read;
  std::thread reader([&] { read = Read(path); });
  WritePng(path, picture_);
  reader.join();
  EXPECT_EQ(read, EncodePng(picture_));
  EXPECT_EQ(fs::status(path).type(), fs::file_type::fifo);
}

TEST_F(PngFile, FailureSaysWhyAndLeavesNothing) {
  fs::create_directory(folder_ / "folder");
  std::ofstream(folder_ / "file") << "old";
  const std::string long_name(300, 'm');
  const struct {
    std::string name, reason;
  } kCases[] = {
      {"none/map.png", "No such file or directory; create the folder first"},
      {"none/", "No such file or directory; create the folder first"},
      {"folder", "Is a directory; add a file name to the folder"},
      {"file/map.png", "Not a directory; choose a folder that exists"},
      {long_name, "File name too long"},
  };
  for (const auto& row : kCases) {
    const fs::path path = folder_ / row.name;
    EXPECT_EQ(ErrorOf(path, picture_), "cannot write '" + path.string() + "': " + row.reason);
  }
  EXPECT_EQ(Names().size(), 2u);
  EXPECT_TRUE(fs::is_empty(folder_ / "folder"));
  EXPECT_EQ(Read(folder_ / "file"), (Bytes{'o', 'l', 'd'}));
}

TEST_F(PngFile, FullDiskIsTold) {
  if (geteuid() == 0) GTEST_SKIP() << "a mistake of the superuser's would replace the device";
  EXPECT_EQ(ErrorOf("/dev/full", picture_),
            "cannot write '/dev/full': No space left on device; free some space or choose another "
            "disk");
}

TEST_F(PngFile, FilesAndFoldersThatArentWritableStayAsTheyWere) {
  if (geteuid() == 0) GTEST_SKIP() << "everything is writable to the superuser";
  const fs::path path = folder_ / "map.png";
  std::ofstream(path) << "old";
  fs::permissions(path, fs::perms(0400));
  const std::string denied = "Permission denied; choose a file and folder that you may write to";
  EXPECT_EQ(ErrorOf(path, picture_), "cannot write '" + path.string() + "': " + denied);
  fs::permissions(path, fs::perms(0600));
  fs::permissions(folder_, fs::perms(0500));
  const fs::path other = folder_ / "other.png";
  EXPECT_EQ(ErrorOf(path, picture_), "cannot write '" + path.string() + "': " + denied);
  EXPECT_EQ(ErrorOf(other, picture_), "cannot write '" + other.string() + "': " + denied);
  fs::permissions(folder_, fs::perms(0700));
  EXPECT_EQ(Read(path), (Bytes{'o', 'l', 'd'}));
  EXPECT_EQ(Names(), std::vector<std::string>{"map.png"});
}

TEST_F(PngFile, WriteThatFailsHalfwayLeavesTheOldFile) {
  // Files may grow to 4096 bytes, and the picture takes about 30000.
  const fs::path path = folder_ / "map.png", other = folder_ / "other.png";
  std::ofstream(path) << "old";
  std::mt19937 random(3);
  std::vector<Pixel> noise(10'000);
  for (Pixel& pixel : noise) pixel = static_cast<Pixel>(random());
  const PngPicture picture = {.pixels = noise, .width = 100, .height = 100};
  ASSERT_GT(EncodePng(picture).size(), 4096u);
  rlimit before = {};
  ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
  rlimit small = before;
  small.rlim_cur = 4096;
  const auto handler = std::signal(SIGXFSZ, SIG_IGN);
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
  const std::string error = ErrorOf(path, picture), new_error = ErrorOf(other, picture);
  setrlimit(RLIMIT_FSIZE, &before);
  std::signal(SIGXFSZ, handler);
  EXPECT_EQ(error, "cannot write '" + path.string() + "': File too large");
  EXPECT_EQ(new_error, "cannot write '" + other.string() + "': File too large");
  EXPECT_EQ(Read(path), (Bytes{'o', 'l', 'd'}));
  EXPECT_EQ(Names(), std::vector<std::string>{"map.png"});
}

}  // namespace
}  // namespace discoplan
