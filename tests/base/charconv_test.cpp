// SPDX-License-Identifier: MIT
#include "discoplan/base/charconv.h"

#include <gtest/gtest.h>

#include <array>
#include <clocale>
#include <cmath>
#include <cstring>
#include <limits>
#include <random>
#include <string>

#include "discoplan/base/bits.h"

namespace discoplan {
namespace {

template <class Write>
std::string Text(Write write) {
  std::array<char, 400> buffer;
  const auto [end, error] = write(buffer.data(), buffer.data() + buffer.size());
  return error == std::errc() ? std::string(buffer.data(), end) : "error";
}

template <class Real>
std::string PlainShortest(Real value) {
  return Text([&](char* first, char* last) { return plain::ToShortest(first, last, value); });
}

TEST(CharconvTest, TheFewestDigitsThatReadBack) {
  EXPECT_EQ(PlainShortest(0.1F), "1e-01");
  EXPECT_EQ(PlainShortest(0.1), "1e-01");
  EXPECT_EQ(PlainShortest(1.0 / 3), "3.333333333333333e-01");
  EXPECT_EQ(PlainShortest(16777216.0F), "1.6777216e+07");
  // 4.94...e-324: of the digits that read back, 3 to 7, the nearest one.
  EXPECT_EQ(PlainShortest(std::numeric_limits<double>::denorm_min()), "5e-324");
  // 2^-44 = 5.684341886080801486...e-14: the numbers below it are closer than those above.
  EXPECT_EQ(PlainShortest(std::ldexp(1.0, -44)), "5.684341886080802e-14");
}

TEST(CharconvTest, ReadsAsMuchAsIsANumber) {
  const std::string text = "-12.5e+x";
  double value = 0;
  const auto [end, error] = plain::FromChars(text.data(), text.data() + text.size(), value);
  EXPECT_EQ(error, std::errc());
  EXPECT_EQ(end - text.data(), 5);
  EXPECT_EQ(value, -12.5);
}

#if defined(__cpp_lib_to_chars)
template <class Real>
void ExpectSameText(Real value) {
  EXPECT_EQ(PlainShortest(value), Text([&](char* first, char* last) {
              return std::to_chars(first, last, value, std::chars_format::scientific);
            }));
  for (const auto format :
       {std::chars_format::general, std::chars_format::fixed, std::chars_format::scientific}) {
    for (const int precision : {0, 1, 7, 17}) {
      const auto number = static_cast<double>(value);
      EXPECT_EQ(Text([&](char* first, char* last) {
                  return plain::ToChars(first, last, number, format, precision);
                }),
                Text([&](char* first, char* last) {
                  return std::to_chars(first, last, number, format, precision);
                }));
    }
  }
}

TEST(CharconvTest, WritesAsTheStandardLibraryDoes) {
  std::mt19937_64 engine(1);
  for (int i = 0; i < 20000 && !testing::Test::HasFailure(); ++i) {
    const double any = BitCast<double>(engine());
    const auto small = BitCast<float>(static_cast<std::uint32_t>(engine()));
    if (std::isfinite(any)) ExpectSameText(any);
    if (std::isfinite(small)) ExpectSameText(small);
    ExpectSameText(static_cast<double>(engine() % 100000) / 1000);
    ExpectSameText(static_cast<float>(engine() % 100000) / 1000);
  }
}

TEST(CharconvTest, WritesPowersOfTwoAndZerosAsTheStandardLibraryDoes) {
  for (int power = -1074; power < 1024; ++power) ExpectSameText(std::ldexp(1.0, power));
  for (int power = -149; power < 128; ++power) ExpectSameText(std::ldexp(1.0F, power));
  ExpectSameText(0.0);
  ExpectSameText(-0.0);
}

void ExpectSameNumber(const std::string& text) {
  double mine = 42, theirs = 42;
  const char* const last = text.data() + text.size();
  const auto plain = plain::FromChars(text.data(), last, mine);
  const auto standard = std::from_chars(text.data(), last, theirs);
  EXPECT_EQ(plain.ptr - text.data(), standard.ptr - text.data()) << text;
  EXPECT_EQ(plain.ec, standard.ec) << text;
  const bool same = BitCast<std::uint64_t>(mine) == BitCast<std::uint64_t>(theirs);
  EXPECT_TRUE(same || (std::isnan(mine) && std::isnan(theirs))) << text;
}

TEST(CharconvTest, ReadsAsTheStandardLibraryDoes) {
  for (const char* text :
       {"",
        "-",
        ".",
        "-.",
        "e5",
        ".e5",
        "1",
        "+1",
        " 1",
        "1.",
        ".5",
        "-.5",
        "1e",
        "1e+",
        "1e+5x",
        "1E5",
        "1,5",
        "0x10",
        "inf",
        "-INF",
        "infinity",
        "infinit",
        "nan",
        "NaN(1a_)",
        "nan(",
        "nan(-)",
        "nano",
        "1e400",
        "-1e400",
        "1e-400",
        "0e999",
        "0.0e-999",
        "4.9e-324",
        "2e-324",
        "1e-320",
        "1.7976931348623157e308",
        "1.7976931348623159e308",
        "9007199254740993",
        "0.1000000000000000055511151231257827021181583404541015625000000000000000000001"}) {
    ExpectSameNumber(text);
  }
  std::mt19937_64 engine(2);
  for (int i = 0; i < 20000 && !testing::Test::HasFailure(); ++i) {
    std::string text = std::to_string(engine());
    text.insert(engine() % text.size(), ".");
    text += "e" + std::to_string(static_cast<int>(engine() % 700) - 350);
    ExpectSameNumber(text);
  }
}
#endif

TEST(CharconvTest, TheLocaleHasNoSay) {
  if (std::setlocale(LC_NUMERIC, "de_DE.UTF-8") == nullptr) {
    GTEST_SKIP() << "there is no locale with another decimal point";
  }
  const std::string text = "1.5";
  double value = 0;
  plain::FromChars(text.data(), text.data() + text.size(), value);
  const std::string written = PlainShortest(1.5);
  std::setlocale(LC_NUMERIC, "C");
  EXPECT_EQ(value, 1.5);
  EXPECT_EQ(written, "1.5e+00");
}

}  // namespace
}  // namespace discoplan
