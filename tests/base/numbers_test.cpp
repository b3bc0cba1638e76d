// SPDX-License-Identifier: MIT
#include "discoplan/base/numbers.h"

#include <gtest/gtest.h>

namespace discoplan {
namespace {

TEST(Numbers, RoundsHalfToEven) {
  const double rows[][2] = {{0.5, 0},   {1.5, 2},   {2.5, 2},       {-0.5, 0}, {-1.5, -2},
                            {-2.5, -2}, {0.49, 0},  {0.51, 1},      {3, 3},    {1e9 + 0.5, 1e9},
                            {7.5, 8},   {-7.5, -8}, {4095.5, 4096}, {-3.7, -4}};
  for (const auto& [value, rounded] : rows) EXPECT_EQ(RoundHalfEven(value), rounded) << value;
}

TEST(Numbers, NarrowsUpToTheLastValueThatRoundsIntoTheType) {
  EXPECT_EQ(ToInt16(32767.49), 32767);
  EXPECT_THROW(ToInt16(32767.5), RunTimeError);  // to the even 32768
  EXPECT_EQ(ToInt16(-32768.5), -32768);          // to the even -32768
  EXPECT_THROW(ToInt16(-32768.51), RunTimeError);
  EXPECT_EQ(ToInt32(2147483647.4), 2147483647);
  EXPECT_THROW(ToInt32(2147483647.5), RunTimeError);
  EXPECT_THROW(ToInt32(1e300), RunTimeError);
  EXPECT_THROW(ToInt16(std::nan("")), RunTimeError);
  EXPECT_THROW(ToFloat(1e39), RunTimeError);
  EXPECT_THROW(ToFloat(std::nan("")), RunTimeError);
  EXPECT_EQ(ToFloat(0.1), 0.1F);
}

TEST(Numbers, DividesByAnythingButZero) {
  EXPECT_EQ(Divide(1, 4), 0.25);
  EXPECT_THROW(Divide(1, 0), RunTimeError);
  EXPECT_THROW(Divide(0, -0.0), RunTimeError);
}

TEST(Numbers, DropsAFailingStepAndKeepsItsTarget) {
  std::int16_t kept = 7;
  EXPECT_FALSE(Attempt([&] { kept = ToInt16(1e6); }));
  EXPECT_EQ(kept, 7);
  EXPECT_TRUE(Attempt([&] { kept = ToInt16(8.2); }));
  EXPECT_EQ(kept, 8);
}

}  // namespace
}  // namespace discoplan
