// SPDX-License-Identifier: MIT
#include "discoplan/base/wide_int.h"

#include <gtest/gtest.h>

#include <limits>
#include <random>
#include <vector>

namespace discoplan {
namespace {

using Wide = WideInt<true>;
using UnsignedWide = WideInt<false>;

TEST(WideIntTest, KeepsTheSignOfWhatItIsMadeFrom) {
  EXPECT_EQ(Wide(-1).High(), ~std::uint64_t{0});
  EXPECT_EQ(Wide(~std::uint64_t{0}).High(), 0u);
  EXPECT_EQ(static_cast<std::int64_t>(Wide(-7)), -7);
}

TEST(WideIntTest, ProductsPass64Bits) {
  const Wide ten_to_18 = 1'000'000'000'000'000'000;
  const Wide ten_to_36 = ten_to_18 * ten_to_18;  // 0xC097CE7BC90715 B34B9F1000000000
  EXPECT_EQ(ten_to_36.High(), 0xC097CE7BC90715u);
  EXPECT_EQ(ten_to_36.Low(), 0xB34B9F1000000000u);
  EXPECT_EQ(ten_to_36 / ten_to_18, ten_to_18);
  EXPECT_EQ(ten_to_36 % (ten_to_18 - 1), 1);  // (n + 1)^2 = (n + 2) n + 1
}

TEST(WideIntTest, DividesTowardsZero) {
  const Wide far = Wide(std::numeric_limits<std::int64_t>::max()) * 16;
  EXPECT_EQ(-far / (far - 1), -1);
  EXPECT_EQ(-far % (far - 1), -1);
  EXPECT_EQ(far % -(far - 1), 1);
}

#if defined(__SIZEOF_INT128__)
__extension__ typedef __int128 Native;
__extension__ typedef unsigned __int128 UnsignedNative;

template <class Number>
bool Same(const WideInt<true>& wide, Number native) {
  return wide.Low() == static_cast<std::uint64_t>(native) &&
         wide.High() == static_cast<std::uint64_t>(native >> 64);
}
template <class Number>
bool Same(const WideInt<false>& wide, Number native) {
  return Same(WideInt<true>(wide), native);
}

/// All operations that can't overflow the compiler's signed type.
template <class Mine, class Theirs>
void ExpectSame(const Mine& a, const Mine& b, Theirs x, Theirs y) {
  ASSERT_TRUE(Same(a, x) && Same(b, y));
  EXPECT_EQ(a == b, x == y);
  EXPECT_EQ(a < b, x < y);
  EXPECT_EQ(a <= b, x <= y);
  EXPECT_EQ(a > 0, x > 0);
  if (y == 0) return;
  EXPECT_TRUE(Same(a / b, static_cast<Theirs>(x / y)));
  EXPECT_TRUE(Same(a % b, static_cast<Theirs>(x % y)));
}

/// Numbers of every width, and those beside the ends of a half.
std::vector<UnsignedNative> Numbers() {
  std::mt19937_64 engine(1);
  std::vector<UnsignedNative> numbers = {0, 1, 2, 3};
  for (int width = 1; width <= 128; ++width) {
    const UnsignedNative top = UnsignedNative{1} << (width - 1);
    const UnsignedNative any = UnsignedNative{engine()} << 64 | engine();
    numbers.insert(numbers.end(), {top, top - 1, top + 1, top | (any & (top - 1))});
  }
  return numbers;
}

UnsignedWide ToWide(UnsignedNative x) {
  return UnsignedWide(static_cast<std::uint64_t>(x >> 64)) * UnsignedWide(1ull << 32) *
             UnsignedWide(1ull << 32) +
         UnsignedWide(static_cast<std::uint64_t>(x));
}

TEST(WideIntTest, IsTheCompilersOwnNumber) {
  const std::vector<UnsignedNative> numbers = Numbers();
  for (const UnsignedNative x : numbers) {
    for (const UnsignedNative y : numbers) {
      const UnsignedWide a = ToWide(x), b = ToWide(y);
      ExpectSame(a, b, x, y);
      EXPECT_TRUE(Same(a + b, x + y));
      EXPECT_TRUE(Same(a - b, x - y));
      EXPECT_TRUE(Same(a * b, x * y));
      const bool overflows = x == UnsignedNative{1} << 127 && y == ~UnsignedNative{0};
      if (overflows) continue;
      ExpectSame(Wide(a), Wide(b), static_cast<Native>(x), static_cast<Native>(y));
      if (HasFailure()) return;
    }
  }
}
#endif

}  // namespace
}  // namespace discoplan
