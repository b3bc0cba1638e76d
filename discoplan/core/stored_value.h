// SPDX-License-Identifier: MIT
#pragma once

/// What a wafer keeps of a measured value.

#include <cmath>

namespace discoplan {

/// Lesser magnitudes are taken for zero.
inline constexpr float kSmallestValue = 1e-15F;

/// The value, or zero for one that is taken for it or is not a number.
inline float StoredValue(float z) { return std::abs(z) >= kSmallestValue ? z : 0; }

/// Up to this magnitude no sum over the values of a wafer overflows, nor one of their squares: for
/// sites within the wafer's radius `wafer::MaxMin` raises nothing then.
inline constexpr float kSurelySummedValue = 1e16F;

}  // namespace discoplan
