// SPDX-License-Identifier: MIT
#include "discoplan/raster/integer_math.h"

#include <gtest/gtest.h>

#include <random>

namespace discoplan {
namespace {

struct Sequence {
  std::int64_t start;
  std::int64_t step;
  std::int64_t divisor;
  std::int64_t first;
  std::int64_t count;
};

void PrintTo(const Sequence& s, std::ostream* out) {
  *out << s.count << " from (" << s.start << " + " << s.first << " * " << s.step << ") / "
       << s.divisor;
}

std::int64_t PlainCeil(std::int64_t numerator, std::int64_t divisor) {
  const std::int64_t quotient = numerator / divisor;
  return numerator % divisor > 0 ? quotient + 1 : quotient;
}

template <class Steps>
void ExpectPlainCeil(const Sequence& s) {
  Steps steps(s.start, s.step, s.divisor, s.first);
  steps += 7;
  for (std::int64_t i = s.first; i < s.first + s.count; ++i, steps.Advance()) {
    ASSERT_EQ(steps.Value(), PlainCeil(s.start + i * s.step, s.divisor) + 7)
        << "step " << i << " of " << testing::PrintToString(s);
  }
}

void ExpectPlainCeilOfBoth(const Sequence& s) {
  ExpectPlainCeil<CeilSteps>(s);
  ExpectPlainCeil<NearCeilSteps>(s);
}

TEST(IntegerMathTest, NearCoordinatesEndAt8192) {
  EXPECT_FALSE(IsNear(-8193));
  EXPECT_TRUE(IsNear(-8192));
  EXPECT_TRUE(IsNear(8191));
  EXPECT_FALSE(IsNear(8192));
}

/// Every whole quotient and tie is met by the whole length of the longest lines and sides.
TEST(IntegerMathTest, StepsAreExactToTheEndOfTheLongestLinesAndSides) {
  constexpr std::int64_t kLongest = 2 * 8192 - 1;
  for (const std::int64_t length : {kLongest, kLongest - 1, kLongest / 2, kLongest / 2 + 1}) {
    for (const std::int64_t rise : {0L, 1L, 2L, 3L, length / 3, length / 2, length - 1, length}) {
      for (const std::int64_t sign : {1, -1}) {
        // A line's as the raster asks for them, then a side's.
        ExpectPlainCeilOfBoth({-length, 2 * sign * rise, 2 * length, 0, length});
        ExpectPlainCeilOfBoth({0, sign * rise, length, 0, length});
        ExpectPlainCeilOfBoth({0, sign * kLongest, length, 0, length});
      }
    }
  }
}

TEST(IntegerMathTest, StepsAreExactFromWhereverTheyStart) {
  std::mt19937 engine(1);
  const auto random = [&](std::int64_t low, std::int64_t high) {
    return std::uniform_int_distribution<std::int64_t>(low, high)(engine);
  };
  for (int round = 0; round < 5000; ++round) {
    const std::int64_t most = 16383 >> random(0, 13);
    const std::int64_t length = random(1, most);
    const std::int64_t step = random(-16383, 16383);
    const std::int64_t first = random(0, length - 1);
    ExpectPlainCeilOfBoth({0, step, length, first, length - first});
    ExpectPlainCeilOfBoth({-length, 2 * step, 2 * length, first, length - first});
  }
}

}  // namespace
}  // namespace discoplan
