// SPDX-License-Identifier: MIT
#pragma once

/// Values as they were written, before they became 32-bit floats.

#include "discoplan/export.h"

namespace discoplan::analysis {

/// The number with the fewest decimals, 9 at most, that narrows to this float, where a float tells
/// decimals apart: for magnitudes from 1e-3 to 1e7. Any other float as it is.
DISCOPLAN_EXPORT double DecimalOf(float value);

}  // namespace discoplan::analysis
