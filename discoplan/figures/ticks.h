// SPDX-License-Identifier: MIT
#pragma once

/// Round numbers along an axis, and numbers as people write them.

#include <string>
#include <vector>

#include "discoplan/export.h"

namespace discoplan::figures {

/// Multiples of 1, 2, 2.5 or 5 times a power of ten.
struct DISCOPLAN_EXPORT Ticks {
  std::vector<double> values = {};
  double step = 0;
  int decimals = 0;  ///< That tell neighbours apart.

  std::string Text(double value) const;
};

/// At most `most` of them (2 at least) from `low` to `high`, ends included; one value for an empty
/// or non-finite range.
DISCOPLAN_EXPORT Ticks RoundTicks(double low, double high, int most);

/// With so many significant figures, trailing zeros kept, and a true minus sign.
DISCOPLAN_EXPORT std::string NumberText(double value, int figures = 4);
/// With so many digits behind the point; "-0" is 0.
DISCOPLAN_EXPORT std::string FixedText(double value, int decimals);

}  // namespace discoplan::figures
