// SPDX-License-Identifier: MIT
#pragma once

/// Units in the heads of columns: "X (cm)", "X [mm]", "X_um", "X(in)".

#include <optional>
#include <string>
#include <string_view>

#include "data/read.h"

namespace discoplan::data {

/// The head of a column, cut up. Views into the text that it was cut from.
struct Heading {
  std::string_view name;
  std::string_view unit;  ///< empty if there is none
};

/// What stands in brackets at the end is a unit, unless it begins with a digit; what stands behind
/// an underscore or a comma is one if it is known.
Heading SplitHeading(std::string_view text);

/// Millimetres in a unit of length as people write it; nothing for other words.
std::optional<double> MillimetresIn(std::string_view unit);
double MillimetresIn(LengthUnit unit);

/// Degrees in "deg", "rad" and the like; nothing for other words.
std::optional<double> DegreesIn(std::string_view unit);

/// Whether this is a unit that measurements are known to have, of length or other. Its case counts.
bool IsKnownUnit(std::string_view text);

/// "(nm)" without its brackets; other texts as they are.
std::string_view WithoutBrackets(std::string_view text);

}  // namespace discoplan::data
