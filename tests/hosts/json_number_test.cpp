// SPDX-License-Identifier: MIT
#include "hosts/json/json_number.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace discoplan {
namespace {

using nlohmann::json;

constexpr float kInfinity = std::numeric_limits<float>::infinity();

struct NumberCase {
  float value;
  const char* text;
};

TEST(ToJson, WritesAFloatWithTheFewestDigits) {
  for (const NumberCase& row : {
           NumberCase{0, "0"},
           NumberCase{-0.0F, "-0.0"},
           NumberCase{0.1F, "0.1"},
           NumberCase{1.0F / 3, "0.33333334"},
           NumberCase{-2.5F, "-2.5"},
           NumberCase{150, "150"},
           NumberCase{16777216, "16777216"},
           NumberCase{123456792, "123456790"},
           NumberCase{1e15F, "1000000000000000"},  // the float itself is 999999986991104
           NumberCase{1e30F, "1e+30"},
           NumberCase{1.1754944e-38F, "1.1754944e-38"},
           NumberCase{1e-45F, "1e-45"},
           NumberCase{3.4028235e38F, "3.4028235e+38"},
           NumberCase{kInfinity, "\"Infinity\""},
           NumberCase{-kInfinity, "\"-Infinity\""},
           NumberCase{std::nanf(""), "\"NaN\""},
       }) {
    EXPECT_EQ(ToJson(row.value).dump(), row.text);
    if (!std::isfinite(row.value)) continue;
    EXPECT_EQ(json::parse(row.text).get<float>(), row.value) << row.text;
  }
}

TEST(ToJson, WritesAWideFloatToItsLastDigit) {
  EXPECT_EQ(ToJson(0.1).dump(), "0.1");
  EXPECT_EQ(ToJson(1.0 / 3).dump(), "0.3333333333333333");
  EXPECT_EQ(ToJson(9007199254740991.0).dump(), "9007199254740991");
  EXPECT_EQ(ToJson(-std::numeric_limits<double>::infinity()).dump(), "\"-Infinity\"");
}

}  // namespace
}  // namespace discoplan
