// SPDX-License-Identifier: MIT
#pragma once

/// The figures of merit of a measured wafer: one table that statistics, lots, documents and
/// bindings read.
///
///     for (const FigureOfMerit& figure : FiguresOfMerit()) {
///       const std::optional<double> value = figure.compute(sample);
///       Show(figure.title, value ? std::to_string(*value) : "n/a");
///     }
///
/// A figure that has no meaning for a sample is empty, never 0 or a huge number: sigma of a single
/// value; a percentage whose divisor is 0; and, for values of both signs, a percentage above 1000,
/// since the mean of such values is near zero and no measure for their spread.

#include <optional>
#include <span>
#include <string_view>

#include "discoplan/analysis/sample.h"
#include "discoplan/export.h"

namespace discoplan::analysis {

enum class UnitKind {
  Value,    ///< the unit of the values
  Percent,  ///< of whatever the formula divides by
  Slope,    ///< the unit of the values, for each mm
  Degrees,  ///< counter-clockwise from the positive X axis
};

struct FigureOfMerit {
  std::string_view key;      ///< in JSON and on the command line
  std::string_view title;    ///< of a column
  std::string_view formula;  ///< in ASCII; s is sigma
  std::string_view source;
  UnitKind unit;
  std::optional<double> (*compute)(const Sample& sample);
};

/// In the order of the documents.
DISCOPLAN_EXPORT std::span<const FigureOfMerit> FiguresOfMerit();

/// The figure of that key; null for none.
DISCOPLAN_EXPORT const FigureOfMerit* FindFigure(std::string_view key);

}  // namespace discoplan::analysis
