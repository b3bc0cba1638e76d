// SPDX-License-Identifier: MIT
#include "hosts/headless/pixel_deflater.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include <array>
#include <random>
#include <utility>

namespace discoplan {
namespace {

using Bytes = std::vector<std::uint8_t>;
using Row = std::vector<std::uint32_t>;

Bytes Inflated(const Bytes& stream, std::size_t size) {
  Bytes bytes(size + 1);
  auto length = static_cast<uLongf>(bytes.size());
  EXPECT_EQ(uncompress(bytes.data(), &length, stream.data(), static_cast<uLong>(stream.size())),
            Z_OK);
  bytes.resize(length);
  return bytes;
}

struct RowBelow {
  Row pixels;
  Row above;
};

/// Compressed and read by zlib, which looks at the check too.
void ExpectReadBack(const std::vector<RowBelow>& rows, unsigned bytes_per_pixel) {
  PixelDeflater deflater(bytes_per_pixel);
  Bytes bytes;
  std::uint8_t number = 0;
  for (const auto& [pixels, above] : rows) {
    deflater.Add(++number, pixels, above);
    bytes.push_back(number);
    for (std::size_t i = 0; i < pixels.size(); ++i) {
      for (unsigned k = 0; k < bytes_per_pixel; ++k) {
        constexpr std::array kRedGreenBlueAlpha = {16, 8, 0, 24};
        const int shift = kRedGreenBlueAlpha[k];
        bytes.push_back(static_cast<std::uint8_t>((pixels[i] >> shift) - (above[i] >> shift)));
      }
    }
  }
  EXPECT_EQ(Inflated(deflater.Take(), bytes.size()), bytes);
}

/// Below rows of zeros, from which they differ by themselves.
void ExpectReadBack(const std::vector<Row>& rows, unsigned bytes_per_pixel) {
  std::vector<RowBelow> below;
  for (const Row& row : rows) below.push_back({row, Row(row.size())});
  ExpectReadBack(below, bytes_per_pixel);
}

std::uint32_t Used(std::uint32_t pixel, unsigned bytes_per_pixel) {
  return bytes_per_pixel == 3 ? pixel & 0xFFFFFF : pixel;
}

TEST(PixelDeflater, GivesWhatZlibReads) {
  std::mt19937 random(2);
  for (unsigned round = 0; round < 60; ++round) {
    const unsigned bytes = 3 + round % 2;
    const auto kinds = static_cast<std::uint32_t>(1 + random() % (round % 3 == 0 ? 4000 : 6));
    std::vector<Row> rows(1 + random() % (round < 40 ? 9 : 200));
    for (Row& row : rows) {
      const std::size_t width = 1 + random() % 1000;
      while (row.size() < width) {
        const std::size_t times = random() % 4 == 0 ? random() % 700 : random() % 4;
        const std::uint32_t kind = static_cast<std::uint32_t>(random()) % kinds;
        row.insert(row.end(), times, Used(kind * 0x9E3779B1, bytes));
      }
    }
    SCOPED_TRACE(round);
    ExpectReadBack(rows, bytes);
  }
}

// Widths around the groups that are compared at once, and alpha where it isn't written.
TEST(PixelDeflater, TakesEachByteLessTheOneAbove) {
  std::mt19937 random(3);
  const auto next = [&random] { return static_cast<std::uint32_t>(random()); };
  for (std::size_t width = 1; width < 300; ++width) {
    std::vector<RowBelow> rows(4);
    for (auto& [pixels, above] : rows) {
      for (std::size_t i = 0; i < width; ++i) {
        above.push_back(next());
        const bool again = i > 0 && next() % 3 == 0;
        const std::uint32_t difference = again ? above[i - 1] ^ pixels[i - 1] : 1U << next() % 32;
        pixels.push_back(above[i] ^ (next() % 4 == 0 ? difference : 0));
      }
    }
    SCOPED_TRACE(width);
    for (const unsigned bytes : {3U, 4U}) ExpectReadBack(rows, bytes);
  }
}

TEST(PixelDeflater, WritesNothingAndRunsOfEachLength) {
  ExpectReadBack(std::vector<Row>(), 3);
  for (const unsigned bytes : {3U, 4U}) {
    for (const std::uint32_t pixel : {0U, 7U}) {
      for (std::size_t times = 1; times < 300; ++times) {
        Row row(times, pixel);
        row.push_back(1);
        SCOPED_TRACE(times);
        ExpectReadBack(std::vector<Row>{row, Row(times, pixel)}, bytes);
      }
    }
  }
}

TEST(PixelDeflater, TakesRowsLongerThanItsBlocks) {
  Row row;
  for (std::uint32_t i = 0; i < 100000; ++i) row.push_back(i);
  ExpectReadBack(std::vector<Row>{{1}, row, {2}, row}, 3);
}

// Counts in the proportions of the Fibonacci numbers have the longest codes that there are.
TEST(PixelDeflater, ShortensTheLongestCodes) {
  Row row;
  std::uint32_t count = 1;
  std::uint32_t next = 1;
  for (std::uint32_t value = 0; value < 19; ++value) {
    for (std::uint32_t i = 0; i < count; ++i) {
      row.push_back(value * 0x01010101);
      row.push_back(0xC8C8C8C8);  // between them, so that there are no runs
    }
    next += count;
    std::swap(count, next);
  }
  ExpectReadBack(std::vector<Row>{row}, 4);
}

}  // namespace
}  // namespace discoplan
