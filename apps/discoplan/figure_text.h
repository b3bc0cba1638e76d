// SPDX-License-Identifier: MIT
#pragma once

/// Figures of merit as texts: as many digits as are asked for, no zeros that say nothing, and
/// "n/a" for a figure that has no meaning.

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "discoplan/analysis/figures_of_merit.h"

namespace discoplan::app {

inline constexpr int kMostDigits = 15;

/// With that many significant digits, but never without the digits before the point: "0.8548",
/// "123457", "1.2e-09". A decimal point, whatever the locale.
std::string NumberText(double value, int digits);

/// The same for numbers below each other: all with the decimals of the middle one in size. One that
/// would lose all its digits by that is written on its own, with two.
std::vector<std::string> ColumnTexts(std::span<const std::optional<double>> values, int digits);

/// The number with that many significant digits, for files that other programs read.
double Rounded(double value, int digits);

using FigureList = std::vector<const analysis::FigureOfMerit*>;

/// From keys with commas between them, or "all". Raises `UsageError` that names the keys there are.
FigureList FiguresNamed(const std::string& keys);

/// "Range: max - min" for each, one on a line; by their keys for those who have to name them.
std::string FormulasByTitle(const FigureList& figures);
std::string FormulasByKey(const FigureList& figures);

/// The figure, but 0 for what is no more than the rounding of the values, and so has no digits.
std::optional<double> FigureOf(const analysis::FigureOfMerit& figure,
                               const analysis::Sample& sample);

}  // namespace discoplan::app
