// SPDX-License-Identifier: MIT
#pragma once

/// Degrees, and the functions of an angle that plots are turned by.
///
/// C libraries differ in the last bit of these, and a difference of one bit can move a corner by a
/// pixel. So they are computed here, the same on every system: about one result in a hundred
/// thousand isn't the double nearest to the true value, but the one beside it.

#include "discoplan/export.h"

namespace discoplan {

/// The only value of pi in use.
inline constexpr float kPi = 3.14159274F;

inline double Radians(double degrees) { return degrees * kPi / 180; }

/// Of radians; beyond a million of them, or for what isn't a number, as the C library has it.
DISCOPLAN_EXPORT double Sine(double radians);
DISCOPLAN_EXPORT double Cosine(double radians);
/// Between -pi/2 and pi/2.
DISCOPLAN_EXPORT double ArcTangent(double slope);

}  // namespace discoplan
