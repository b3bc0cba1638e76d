// SPDX-License-Identifier: MIT
#include "discoplan/figures/ticks.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

namespace discoplan::figures {
namespace {

constexpr int kMostDecimals = 12;

std::string WithMinus(const char* digits) {
  std::string text = digits;
  if (text.front() != '-') return text;
  const bool is_zero = text.find_first_not_of("-0.") == std::string::npos;
  return is_zero ? text.substr(1) : std::string("\u2212").append(text, 1);
}

/// Beyond these plain digits are longer than they are clear.
bool WantsExponent(double size) { return size != 0 && (size < 1e-4 || size >= 1e7); }

std::string ExponentText(double value, int figures) {
  std::array<char, 64> text;
  std::snprintf(text.data(), text.size(), "%.*e", std::max(0, figures - 1), value);
  const std::string all = text.data();
  const auto at = all.find('e');
  if (at == std::string::npos) return all;
  std::string mantissa = all.substr(0, at);
  return WithMinus(mantissa.c_str()) + "e" + std::to_string(std::stoi(all.substr(at + 1)));
}

}  // namespace

std::string FixedText(double value, int decimals) {
  std::array<char, 400> text;
  std::snprintf(text.data(), text.size(), "%.*f", std::clamp(decimals, 0, kMostDecimals), value);
  return WithMinus(text.data());
}

std::string NumberText(double value, int figures) {
  const double size = std::abs(value);
  if (WantsExponent(size)) return ExponentText(value, figures);
  const int before = size >= 1  ? static_cast<int>(std::floor(std::log10(size))) + 1
                     : size > 0 ? static_cast<int>(std::floor(std::log10(size))) + 1
                                : 1;
  return FixedText(value, figures - before);
}

std::string Ticks::Text(double value) const {
  double largest = 0;
  for (const double v : values) largest = std::max(largest, std::abs(v));
  if (!WantsExponent(largest)) return FixedText(value, decimals);
  // All with one exponent and as many decimals as tell the steps.
  if (std::abs(value) < 1e-6 * step) return "0";
  const int exponent = static_cast<int>(std::floor(std::log10(largest) + 1e-9));
  const double unit = std::pow(10.0, exponent);
  int behind = std::max(0, static_cast<int>(std::ceil(std::log10(unit / step) - 1e-9)));
  const double steps = step / unit * std::pow(10.0, behind);
  if (std::abs(steps - std::round(steps)) > 1e-6 * steps) ++behind;
  return FixedText(value / unit, behind) + "e" + std::to_string(exponent);
}

Ticks RoundTicks(double low, double high, int most) {
  Ticks ticks;
  const double range = high - low;
  if (!(range > 0) || !std::isfinite(range)) {
    ticks.values = {std::isfinite(low) ? low : 0};
    ticks.decimals = 3;
    return ticks;
  }
  const auto count = [&](double step) {
    return std::floor(high / step + 1e-9) - std::ceil(low / step - 1e-9) + 1;
  };
  const double power = std::floor(std::log10(range / std::max(most, 2)));
  for (int exponent = static_cast<int>(power); ticks.step == 0; ++exponent) {
    for (const double factor : {1.0, 2.0, 2.5, 5.0}) {
      const double step = factor * std::pow(10.0, exponent);
      if (count(step) > std::max(most, 2)) continue;
      ticks.step = step;
      ticks.decimals = std::clamp((factor == 2.5 ? 1 : 0) - exponent, 0, kMostDecimals);
      break;
    }
  }
  const double first = std::ceil(low / ticks.step - 1e-9);
  for (int i = 0; i < static_cast<int>(count(ticks.step)); ++i) {
    ticks.values.push_back((first + i) * ticks.step);
  }
  return ticks;
}

}  // namespace discoplan::figures
