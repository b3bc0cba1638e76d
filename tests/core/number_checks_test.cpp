// SPDX-License-Identifier: MIT
#include "discoplan/core/number_checks.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <optional>

#include "tests/foreign_numbers.h"

namespace discoplan {
namespace {

const struct {
  const char* text;
  double number;
} kNumbers[] = {
    {"0", 0},
    {"5", 5},
    {"-1", -1},
    {"+1", 1},
    {"1-", -1},
    {"1+", 1},
    {"- 1", -1},
    {"1 -", -1},
    {"  7\t", 7},
    {"\u00A0"
     "3\u00A0",
     3},
    {"(1)", -1},
    {"( 2 )", -2},
    {"$5", 5},
    {"5$", 5},
    {"$ 5", 5},
    {"-$5", -5},
    {"1,5", 15},
    {"1,,2", 12},
    {"1.5,5", 1.55},
    {"1,234.5", 1234.5},
    {"5.", 5},
    {".5", 0.5},
    {"-.5", -0.5},
    {"1e3", 1000},
    {"1E3", 1000},
    {"1d3", 1000},
    {"1D-3", 0.001},
    {"1e+3", 1000},
    {"5.e2", 500},
    {"&H10", 16},
    {"&h1F", 31},
    {"&O17", 15},
    {"&o7", 7},
    {"1e-400", 0},
    {"1.7976e308", 1.7976e308},
};

constexpr const char* kNoNumbers[] = {
    "",      " ",   "-",   ".",   ",1",   "1e",  "1e 5",  "5 .", "1%", "\uFF15", "1..2",
    "1.2.3", "abc", "1a",  "--1", "-1-",  "(1",  "1)",    "$$1", "&H", "&O8",    "&G1",
    "1e400", "e5",  "nan", "inf", "0x10", "1 2", "1e5.5", "()",  "+",  "$",
};

TEST(NumberChecks, ReadWhatIsANumber) {
  for (const auto& row : kNumbers) {
    const std::optional<double> number = ParseNumber(row.text);
    ASSERT_TRUE(number.has_value()) << row.text;
    EXPECT_DOUBLE_EQ(*number, row.number) << row.text;
  }
}

TEST(NumberChecks, RefuseWhatIsNone) {
  for (const char* text : kNoNumbers) EXPECT_EQ(ParseNumber(text), std::nullopt) << text;
}

TEST(NumberChecks, TellTooLargeFromTooSmall) {
  const std::string nines(400, '9'), zeros(400, '0');
  const struct {
    std::string text;
    std::optional<double> number;
  } rows[] = {{nines, {}},
              {"0" + nines, {}},
              {"1" + zeros + "e-5", {}},
              {"1" + zeros + "e-399", 10},
              {"1e" + nines, {}},
              {"1e-" + nines, 0},
              {"0e" + nines, 0},
              {"." + zeros + "1", 0},
              {"0." + zeros + "1e5", 0},
              {"0." + zeros + "1e401", 1}};
  for (const auto& row : rows) EXPECT_EQ(ParseNumber(row.text), row.number) << row.text;
}

TEST(NumberChecks, DontDependOnTheLocale) {
  const ForeignNumbers foreign;
  if (!foreign.IsSet()) GTEST_SKIP() << "no locale can be made here";
  ASSERT_EQ(std::strtod("1.5", nullptr), 1) << "numbers aren't foreign";
  EXPECT_EQ(ParseNumber("1.5"), 1.5);
  EXPECT_EQ(ParseNumber("1,5"), 15);
}

TEST(NumberChecks, AtOkTimeSayWhatIsWrong) {
  const struct {
    const char* text;
    const char* error;
  } rows[] = {{"", "Width can not be empty\n"},
              {"x", "Width must be numeric\n"},
              {"-", "Width must be numeric\n"},
              {" ", "Width must be numeric\n"},
              {"0", "Width not valid\n"},
              {"5", "Width not valid\n"},
              {"-1", "Width not valid\n"},
              {"6", "Width not valid\n"},
              {"0.0001", ""},
              {"4.9999", ""},
              {"1e0", ""},
              {"(1)", "Width not valid\n"}};
  for (const auto& row : rows) {
    std::string error;
    EXPECT_EQ(CheckRangeOk(row.text, 0, 5, error, "Width "), *row.error == '\0') << row.text;
    EXPECT_EQ(error, row.error) << row.text;
  }
}

TEST(NumberChecks, CollectOneLineForEachField) {
  std::string error = "before\n";
  EXPECT_FALSE(CheckRangeOk("", 0, 5, error, "A "));
  EXPECT_TRUE(CheckRangeOk("1", 0, 5, error, "B "));
  EXPECT_FALSE(CheckRangeOk("9", 0, 5, error, "C "));
  EXPECT_EQ(error, "before\nA can not be empty\nC not valid\n");
}

TEST(NumberChecks, WhileTypingRefuseOnlyNumbersOutside) {
  const struct {
    const char* text;
    bool passes;
  } rows[] = {{"", true},     {"-", true},   {"x", true},    {"0", true},      {"359", true},
              {"360", false}, {"-1", false}, {"-0.9", true}, {"359.99", true}, {"1e5", false}};
  for (const auto& row : rows)
    EXPECT_EQ(CheckRangeTyping(row.text, -1, 360), row.passes) << row.text;
}

TEST(NumberChecks, FilterWholeAndDecimalNumbers) {
  const struct {
    const char* text;
    bool whole, decimal, positive;
  } rows[] = {
      {"", true, true, true},       {"5", true, true, true},      {"-5", true, true, true},
      {"-", false, true, false},    {"+", false, false, false},   {"--", false, false, false},
      {"1.5", false, true, true},   {"1,5", false, true, true},   {"5.", false, true, true},
      {"1e3", false, false, false}, {"1D3", false, false, false}, {"x", false, false, false},
      {" 7 ", true, true, true},    {".", false, false, false},   {"&HD", false, false, false},
      {"&H1", true, true, true},    {" -", false, false, false},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(CheckIntegerText(row.text), row.whole) << row.text;
    EXPECT_EQ(CheckDecimalText(row.text, false), row.decimal) << row.text;
    EXPECT_EQ(CheckDecimalText(row.text, true), row.positive) << row.text;
  }
}

}  // namespace
}  // namespace discoplan
