// SPDX-License-Identifier: MIT
#include "hosts/json/json_text.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <limits>
#include <random>

#include "hosts/json/json_number.h"

namespace discoplan {
namespace {

using nlohmann::json;
using nlohmann::ordered_json;

/// The fewest significant digits, by trial, with which the standard's printing reads back.
template <class Real, class Read>
std::size_t FewestDigits(Real value, Read&& read) {
  for (int digits = 1;; ++digits) {
    char text[64];
    std::snprintf(text, sizeof text, "%.*e", digits - 1, static_cast<double>(value));
    if (read(text) == value) return static_cast<std::size_t>(digits);
  }
}

/// Digits from the first that isn't 0 to the last that isn't.
std::size_t DigitsIn(std::string text) {
  text.erase(std::min(text.find('e'), text.size()));
  std::erase_if(text, [](char c) { return c < '0' || c > '9'; });
  const std::size_t first = text.find_first_not_of('0');
  return first == std::string::npos ? 1 : text.find_last_not_of('0') - first + 1;
}

TEST(JsonText, GivesEveryFloatItsFewestDigits) {
  EXPECT_EQ(JsonText(ToJson(0.31444743F)), "0.31444743");
  std::mt19937 random(5);
  for (int i = 0; i < 20000; ++i) {
    const float narrow = std::ldexp(static_cast<float>(random()), static_cast<int>(i % 200) - 130);
    const double wide =
        std::ldexp(static_cast<double>(random()) * static_cast<double>(random()), i % 1800 - 900);
    const std::string narrow_text = JsonText(ToJson(narrow));
    const std::string wide_text = JsonText(ToJson(-wide));
    ASSERT_EQ(std::strtof(narrow_text.c_str(), nullptr), narrow);
    ASSERT_EQ(std::strtod(wide_text.c_str(), nullptr), -wide);
    ASSERT_EQ(DigitsIn(narrow_text),
              FewestDigits(narrow, [](const char* text) { return std::strtof(text, nullptr); }))
        << narrow_text;
    ASSERT_EQ(DigitsIn(wide_text),
              FewestDigits(wide, [](const char* text) { return std::strtod(text, nullptr); }))
        << wide_text;
  }
}

TEST(JsonText, WritesNumbersPlainlyUnlessTheyAreLongSo) {
  const std::pair<double, const char*> rows[] = {
      {0.0, "0.0"},
      {-0.0, "-0.0"},
      {1.0, "1.0"},
      {-2.5, "-2.5"},
      {1234.0, "1234.0"},
      {120.0, "120.0"},
      {0.1, "0.1"},
      {0.00025, "0.00025"},
      {0.000025, "2.5e-05"},
      {123456789012345.0, "123456789012345.0"},
      {1234567890123456.0, "1.234567890123456e+15"},
      {1e300, "1e+300"},
      {5e-324, "5e-324"},
      {std::numeric_limits<double>::max(), "1.7976931348623157e+308"},
      {std::nan(""), "null"},
      {-std::numeric_limits<double>::infinity(), "null"},
  };
  for (const auto& [value, text] : rows) EXPECT_EQ(JsonText(json(value)), text);
}

TEST(JsonText, IsOtherwiseTheUsualOne) {
  const char* const kText =
      R"({"a":[1,-2,18446744073709551615,true,false,null],"b":{},"c":[],"d":{"e":[[0.5],"x\"\\\n\u0001"]},"z\t":"\u03bc"})";
  const json value = json::parse(kText);
  EXPECT_EQ(JsonText(value), value.dump());
  EXPECT_EQ(JsonText(value, 2), value.dump(2));
  EXPECT_EQ(JsonText(json("plain")), "\"plain\"");
  EXPECT_EQ(JsonText(json("\xFF")), "\"\uFFFD\"");
  EXPECT_EQ(JsonText(ordered_json{{"b", 1}, {"a", 0.25}}), "{\"b\":1,\"a\":0.25}");
}

}  // namespace
}  // namespace discoplan
