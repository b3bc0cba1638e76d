// SPDX-License-Identifier: MIT
#pragma once

/// Values as they were written, before they became 32-bit floats.

#include <span>

#include "discoplan/export.h"

namespace discoplan::analysis {

/// The number with the fewest decimals, 9 at most, that narrows to this float, where a float tells
/// decimals apart: for magnitudes from 1e-3 to 1e7. Any other float as it is.
DISCOPLAN_EXPORT double DecimalOf(float value);

/// The same of each value, in a fraction of the time. As many decimals as values, in other memory.
DISCOPLAN_EXPORT void DecimalsOf(std::span<const float> values, std::span<double> decimals);

}  // namespace discoplan::analysis
