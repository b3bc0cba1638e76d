// SPDX-License-Identifier: MIT
#pragma once

/// Judges what a person types where a number is due: strictly at OK time, leniently while typing.

#include <optional>
#include <string>
#include <string_view>

#include "discoplan/export.h"

namespace discoplan {

/// The number that a text stands for, or nothing. English conventions whatever the process's
/// locale: blanks around it, a sign before or after, parentheses for a negative, a "$", commas
/// behind the first digit, an exponent with e, E, d or D, and "&H10" and "&O17".
DISCOPLAN_EXPORT std::optional<double> ParseNumber(std::string_view text);

/// True for a number strictly between the bounds. Otherwise a line is appended to `error`: the
/// field's name, what is wrong, and a line feed.
DISCOPLAN_EXPORT bool CheckRangeOk(std::string_view text, double lower, double upper,
                                   std::string& error, std::string_view field);

/// False only for a number that isn't strictly between the bounds: anything else may still grow
/// into a number.
DISCOPLAN_EXPORT bool CheckRangeTyping(std::string_view text, double lower, double upper);

/// True for an empty text and for a whole number without exponent or separator.
DISCOPLAN_EXPORT bool CheckIntegerText(std::string_view text);

/// True for an empty text, for a number without exponent, and for "-" unless minus is rejected.
DISCOPLAN_EXPORT bool CheckDecimalText(std::string_view text, bool reject_minus);

}  // namespace discoplan
