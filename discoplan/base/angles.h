// SPDX-License-Identifier: MIT
#pragma once

namespace discoplan {

/// The only value of pi in use.
inline constexpr float kPi = 3.14159274F;

inline double Radians(double degrees) { return degrees * kPi / 180; }

}  // namespace discoplan
