// SPDX-License-Identifier: MIT
#include "discoplan/render/number_text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <random>
#include <string>

#include "discoplan/core/wafer.h"
#include "tests/foreign_numbers.h"

namespace discoplan {
namespace {

struct Row {
  float value;
  const char* picture;
  const char* text;
};

TEST(NumberText, FollowsThePicture) {
  for (const Row& row : {
           Row{7530.6934F, "0.0######", "7530.693"},
           Row{0.475F, "0.00", "0.48"},
           Row{2, "0.0###", "2.0"},
           Row{0.25F, "0.0######", "0.25"},
           Row{16777216, "0.0#", "16777220.0"},
           Row{200000, "0.###E+#0", "2.E+5"},
           Row{0.00000001234567F, "0.###E+#0", "1.235E-8"},
           Row{-0.0004F, "0.00", "-0.00"},
           Row{5, "00.00", "05.00"},
           Row{1048576.5F, "0.0#", "1048577.0"},  // a tie at the seventh digit goes up
           Row{0.125F, "0.00", "0.13"},           // and one at the last decimal
           Row{-0.125F, "0.00", "-0.13"},
           Row{0.5F, "0", "1"},
           Row{9.9999F, "0.00", "10.00"},
           Row{0.996F, "0.00", "1.00"},
           Row{0.004F, "0.00", "0.00"},
           Row{99999.5F, "0.###E+#0", "1.E+5"},
           Row{123456.7F, "0.00E+0", "1.23E+5"},
           Row{1e-45F, "0.###E+#0", "1.401E-45"},
           Row{std::numeric_limits<float>::max(), "0.###E+#0", "3.403E+38"},
           Row{0, "0.00", "0.00"},
           Row{std::nanf(""), "0.00", "NaN"},
           Row{-std::numeric_limits<float>::infinity(), "0.00", "-Infinity"},
       }) {
    EXPECT_EQ(FormatPicture(row.value, row.picture), row.text) << row.value;
  }
}

struct LabelRow {
  float value;
  const char* text;
};

TEST(NumberText, OfALegendChoosesItsPicture) {
  const float above = std::nextafter(10000.0F, 20000.0F);
  for (const LabelRow& row : {
           LabelRow{0, "0.0"},
           LabelRow{-0.0F, "0.0"},
           LabelRow{1, "1.0"},
           LabelRow{0.25F, "0.25"},
           LabelRow{0.1234567F, "0.1234567"},
           LabelRow{1.23456F, "1.2346"},
           LabelRow{10000, "10000.0"},
           LabelRow{9999.9375F, "9999.938"},
           LabelRow{above, "10000.0"},
           LabelRow{12345.678F, "12345.68"},
           LabelRow{100000, "100000.0"},
           LabelRow{100001, "1.E+5"},
           LabelRow{-250000, "-2.5E+5"},
           LabelRow{1e-7F, "0.0000001"},
           LabelRow{9e-8F, "9.E-8"},
           LabelRow{-3.5F, "-3.5"},
       }) {
    EXPECT_EQ(wafer::FormatLbl(row.value), row.text) << row.value;
  }
}

TEST(NumberText, AddsDecimalsUntilAValueShows) {
  EXPECT_EQ(FormatToDigits(0.004F, "0.0"), "0.004");
  EXPECT_EQ(FormatToDigits(3, "0.0"), "3.0");
  EXPECT_EQ(FormatToDigits(0, "0.0"), "0.0");
  EXPECT_EQ(FormatToDigits(0, "0"), "0");
  EXPECT_EQ(FormatToDigits(0.06F, "0.0"), "0.1");
  EXPECT_EQ(FormatToDigits(0.00001F, "0.0"), "1.00E-5");  // just below the bound as a float
  EXPECT_EQ(FormatToDigits(0.0000101F, "0.0"), "0.00001");
  EXPECT_EQ(FormatToDigits(100000, "0.0"), "1.00E+5");
  EXPECT_EQ(FormatToDigits(-200000, "0.0"), "-200000.0");  // the bound is on the value
  EXPECT_EQ(FormatTrimmed(0.0000001F, "0.00"), "0.0000001");
  EXPECT_EQ(FormatTrimmed(0, "00.00"), "00.00");
  EXPECT_EQ(FormatTrimmed(0.3F, "0"), "0");  // more zeros would not help
  EXPECT_EQ(FormatTrimmed(std::nanf(""), "0.0"), "NaN");
}

TEST(NumberText, JoinedToATextIsShort) {
  EXPECT_EQ(PlainNumber(5), "5");
  EXPECT_EQ(PlainNumber(2.5F), "2.5");
  EXPECT_EQ(PlainNumber(0.1F), "0.1");
  EXPECT_EQ(PlainNumber(48.5F), "48.5");
  // Half away from zero in the seventh digit.
  EXPECT_EQ(PlainNumber(12345.125F), "12345.13");
  EXPECT_EQ(PlainNumber(-12345.125F), "-12345.13");
  EXPECT_EQ(PlainNumber(1234566.5F), "1234567");
  EXPECT_EQ(PlainNumber(0.00048828125F), "0.0004882813");
  EXPECT_EQ(PlainNumber(0), "0");
  EXPECT_EQ(PlainNumber(12345678), "1.234568E+07");
  EXPECT_EQ(PlainNumber(-1.0F / 3), "-0.3333333");
}

TEST(NumberText, DoesNotDependOnTheLocale) {
  const ForeignNumbers foreign;
  if (!foreign.IsSet()) GTEST_SKIP() << "no locale can be made here";
  ASSERT_EQ(std::strtod("1.5", nullptr), 1) << "numbers aren't foreign";
  EXPECT_EQ(FormatPicture(1234.5F, "0.00"), "1234.50");
  EXPECT_EQ(FormatLegendValue(0.25F), "0.25");
  EXPECT_EQ(FormatToDigits(1e6F, "0.0"), "1.00E+6");
  EXPECT_EQ(PlainNumber(48.5F), "48.5");
  EXPECT_EQ(PlainNumber(12345678), "1.234568E+07");
}

/// Any 32-bit float against what the C library makes of its 7 digits, ties moved away from zero.
TEST(NumberText, JoinsAnyNumberAsItsShortestForm) {
  std::mt19937 random(3);
  for (int i = 0; i < 20000; ++i) {
    const float value = std::bit_cast<float>(static_cast<std::uint32_t>(random()));
    if (!std::isfinite(value)) continue;
    char text[64];
    const double away = std::nextafter(static_cast<double>(value), 2.0 * value);
    std::snprintf(text, sizeof text, "%.7g", away);
    std::string due = text;
    std::ranges::replace(due, 'e', 'E');
    ASSERT_EQ(PlainNumber(value), due) << i;
  }
}

}  // namespace
}  // namespace discoplan
