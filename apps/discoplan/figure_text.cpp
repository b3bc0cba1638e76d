// SPDX-License-Identifier: MIT
#include "apps/discoplan/figure_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <initializer_list>
#include <sstream>

#include "apps/discoplan/command.h"
#include "discoplan/base/charconv.h"

namespace discoplan::app {
namespace {

constexpr double kSmallest = 1e-4;
constexpr double kLargest = 1e15;

bool IsPlain(double value) {
  return value == 0 || (std::abs(value) >= kSmallest && std::abs(value) < kLargest);
}

std::string Formatted(double value, std::chars_format format, int decimals) {
  std::array<char, 400> text{};
  const auto end = ToChars(text.data(), text.data() + text.size(), value, format, decimals);
  return {text.data(), end.ptr};
}

/// The digits behind the point that say something, of at most so many.
int DecimalsOf(double value, int most) {
  const std::string text = Formatted(value, std::chars_format::fixed, most);
  const std::size_t point = text.find('.');
  if (point == std::string::npos) return 0;
  return static_cast<int>(text.find_last_not_of('0') - point);
}

int MostDecimals(double value, int digits) {
  const int before = static_cast<int>(std::floor(std::log10(std::abs(value)))) + 1;
  return std::clamp(digits - before, 0, 20);
}

int DecimalsFor(double value, int digits) {
  return value == 0 ? 0 : DecimalsOf(value, MostDecimals(value, digits));
}

std::string WithDecimals(double value, int decimals) {
  const std::string text = Formatted(value, std::chars_format::fixed, decimals);
  const bool is_zero = text.find_first_not_of("-0.") == std::string::npos;
  return is_zero && text.front() == '-' ? text.substr(1) : text;
}

std::string Exponential(double value, int digits) {
  std::string text = Formatted(value, std::chars_format::scientific, digits - 1);
  const std::size_t exponent = text.find('e');
  const std::size_t point = text.find('.');
  if (point == std::string::npos) return text;
  const std::size_t last = text.find_last_not_of('0', exponent - 1);
  return text.erase(last == point ? point : last + 1,
                    exponent - (last == point ? point : last + 1));
}

std::string Formulas(const FigureList& figures, std::string_view analysis::FigureOfMerit::*name) {
  std::string text;
  for (const auto* figure : figures) {
    text += std::string(figure->*name) + ": " + std::string(figure->formula) + '\n';
  }
  return text;
}

/// Of numbers below each other: those of the middle one in size, so that a large one doesn't cost
/// the others their digits, nor a small one give them some that say nothing.
int ColumnDecimals(std::span<const std::optional<double>> values, int digits) {
  std::vector<double> sizes;
  for (const std::optional<double>& value : values) {
    if (value && *value != 0 && IsPlain(*value)) sizes.push_back(std::abs(*value));
  }
  if (sizes.empty()) return 0;
  std::sort(sizes.begin(), sizes.end());
  return MostDecimals(sizes[(sizes.size() - 1) / 2], digits);
}

/// On its own where it would lose all its digits.
std::string InColumn(double value, int decimals, int digits) {
  if (std::abs(value) >= kLargest) return Exponential(value, digits);
  const bool is_lost = value != 0 && std::abs(value) < 0.5 * std::pow(10, -decimals);
  return is_lost ? NumberText(value, std::min(digits, 2)) : WithDecimals(value, decimals);
}

}  // namespace

std::string NumberText(double value, int digits) {
  if (!IsPlain(value)) return Exponential(value, digits);
  return WithDecimals(value, DecimalsFor(value, digits));
}

std::vector<std::string> ColumnTexts(std::span<const std::optional<double>> values, int digits) {
  const int most = ColumnDecimals(values, digits);
  int decimals = 0;
  for (const std::optional<double>& value : values) {
    if (value && std::abs(*value) < kLargest) {
      decimals = std::max(decimals, DecimalsOf(*value, most));
    }
  }
  std::vector<std::string> texts;
  for (const std::optional<double>& value : values) {
    texts.push_back(value ? InColumn(*value, decimals, digits) : "n/a");
  }
  return texts;
}

double Rounded(double value, int digits) {
  const std::string text = Formatted(value, std::chars_format::scientific, digits - 1);
  double rounded = value;
  FromChars(text.data(), text.data() + text.size(), rounded);
  return rounded;
}

FigureList FiguresNamed(const std::string& keys) {
  FigureList figures;
  std::istringstream list(keys);
  for (std::string key; std::getline(list, key, ',');) {
    if (key == "all") {
      for (const auto& figure : analysis::FiguresOfMerit()) figures.push_back(&figure);
      continue;
    }
    const analysis::FigureOfMerit* figure = analysis::FindFigure(key);
    if (figure == nullptr) {
      std::string known;
      for (const auto& row : analysis::FiguresOfMerit()) known += std::string(row.key) + ", ";
      throw UsageError("--figures: " + Shown(key) + " is none of " + known + "all");
    }
    figures.push_back(figure);
  }
  if (figures.empty()) throw UsageError("--figures takes names with commas between them, or 'all'");
  return figures;
}

std::string FormulasByTitle(const FigureList& figures) {
  return Formulas(figures, &analysis::FigureOfMerit::title);
}

std::string FormulasByKey(const FigureList& figures) {
  return Formulas(figures, &analysis::FigureOfMerit::key);
}

std::optional<double> FigureOf(const analysis::FigureOfMerit& figure,
                               const analysis::Sample& sample) {
  constexpr double kRounding = 1e-7;  // of a 32-bit float
  const auto is_among = [&](std::initializer_list<std::string_view> keys) {
    return std::find(keys.begin(), keys.end(), figure.key) != keys.end();
  };
  const std::optional<double> value = figure.compute(sample);
  if (figure.unit != analysis::UnitKind::Value || is_among({"minimum", "maximum"})) return value;
  // What is made of the middle values alone rounds as they do, however far off others are.
  const bool is_of_middle =
      is_among({"median", "quartile_1", "quartile_3", "iqr", "mad", "robust_sigma"});
  const double low = is_of_middle ? sample.Quantile(0.25) : sample.Minimum();
  const double high = is_of_middle ? sample.Quantile(0.75) : sample.Maximum();
  const double size = std::max(std::abs(low), std::abs(high));
  return value && std::abs(*value) <= kRounding * size ? 0 : value;
}

}  // namespace discoplan::app
