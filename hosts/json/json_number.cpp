// SPDX-License-Identifier: MIT
#include "hosts/json/json_number.h"

#include <array>
#include <charconv>
#include <cmath>
#include <limits>

#include "discoplan/base/charconv.h"

namespace discoplan {
namespace {

using nlohmann::json;

template <class Real>
json Shortest(Real value) {
  if (std::isnan(value)) return "NaN";
  if (std::isinf(value)) return value < 0 ? "-Infinity" : "Infinity";
  // A short decimal reads back as the 64-bit float that is written with the same digits.
  std::array<char, 64> text;
  const auto end = ToShortest(text.data(), text.data() + text.size(), value).ptr;
  double shortest = 0;
  FromChars(text.data(), end, shortest);
  constexpr double kExactIntegers = 9007199254740992.0;
  const bool negative_zero = shortest == 0 && std::signbit(shortest);
  if (shortest == std::trunc(shortest) && std::abs(shortest) < kExactIntegers && !negative_zero) {
    return static_cast<std::int64_t>(shortest);
  }
  return shortest;
}

}  // namespace

json ToJson(float value) { return Shortest(value); }
json ToJson(double value) { return Shortest(value); }

std::optional<double> ToNumber(const json& value) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  if (value.is_number()) return value.get<double>();
  if (value == "NaN") return std::numeric_limits<double>::quiet_NaN();
  if (value == "Infinity") return kInfinity;
  if (value == "-Infinity") return -kInfinity;
  return {};
}

}  // namespace discoplan
