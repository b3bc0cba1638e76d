// SPDX-License-Identifier: MIT
#include "hosts/headless/run_deflater.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include <random>

namespace discoplan {
namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes Inflated(const Bytes& stream, std::size_t size) {
  Bytes bytes(size + 1);
  auto length = static_cast<uLongf>(bytes.size());
  EXPECT_EQ(uncompress(bytes.data(), &length, stream.data(), static_cast<uLong>(stream.size())),
            Z_OK);
  bytes.resize(length);
  return bytes;
}

Bytes Deflated(const Bytes& bytes, std::size_t piece) {
  RunDeflater deflater;
  for (std::size_t start = 0; start < bytes.size(); start += piece) {
    deflater.Add(std::span(bytes).subspan(start, std::min(piece, bytes.size() - start)));
  }
  return deflater.Take();
}

TEST(RunDeflater, GivesWhatZlibReads) {
  std::mt19937 random(2);
  for (int round = 0; round < 60; ++round) {
    Bytes bytes;
    const std::size_t size = random() % (round < 40 ? 2000 : 300000);
    const auto values = static_cast<unsigned>(1 + random() % (round % 3 == 0 ? 256 : 6));
    while (bytes.size() < size) {
      const std::size_t run = random() % 4 == 0 ? random() % 700 : random() % 4;
      bytes.insert(bytes.end(), run, static_cast<std::uint8_t>(random() % values));
    }
    EXPECT_EQ(Inflated(Deflated(bytes, 1 + random() % 5000), bytes.size()), bytes) << round;
  }
}

TEST(RunDeflater, WritesNothingAndRunsOfEachLength) {
  EXPECT_EQ(Inflated(RunDeflater().Take(), 0), Bytes());
  for (std::size_t length = 1; length < 800; ++length) {
    Bytes bytes(length, 0);
    bytes.push_back(7);
    EXPECT_EQ(Inflated(Deflated(bytes, bytes.size()), bytes.size()), bytes) << length;
  }
}

// Counts in the proportions of the Fibonacci numbers have the longest codes that there are.
TEST(RunDeflater, KeepsCodesWithinFifteenBits) {
  Bytes bytes;
  std::size_t count = 1;
  std::size_t next = 1;
  for (std::uint8_t value = 0; value < 22; ++value) {
    for (std::size_t i = 0; i < count; ++i) {
      bytes.push_back(value);
      bytes.push_back(200);  // between them, so that there are no runs
    }
    next += count;
    std::swap(count, next);
  }
  EXPECT_EQ(Inflated(Deflated(bytes, bytes.size()), bytes.size()), bytes);
}

}  // namespace
}  // namespace discoplan
