// SPDX-License-Identifier: MIT
#pragma once

#include "discoplan/export.h"

namespace discoplan {

/// Density of the standard normal distribution.
DISCOPLAN_EXPORT float StandardNormal(float z);

/// The normal curve over a mean and a deviation, without the factor 1 / deviation: about 0.4 at the
/// mean. `DivisionByZero` for a deviation of 0.
DISCOPLAN_EXPORT float NormalCurve(double mean, double deviation, float x);

}  // namespace discoplan
