// SPDX-License-Identifier: MIT
#pragma once

/// How measured data get into a wafer: arrays from the host, a binary data file, and the trimming
/// of the sites when the test diameter shrinks.
///
/// A plot limit in force (`limit_flag`) survives each of them, whether or not it fits the new data.

#include <cstdint>
#include <string>

#include "discoplan/core/wafer.h"
#include "discoplan/export.h"

namespace discoplan {

/// Result codes of the load methods.
enum class LoadResult : std::int16_t {
  Loaded = 0,
  UpperBoundsDiffer = 1,
  LowerBoundsDiffer = 2,
  Failed = 4,
};

/// Loads the sites x(i), y(i), z(i) from the lower to the upper bound of x. The bounds tests pass
/// as soon as y agrees with one of the others; what then doesn't fit raises `Subscript`. Raises
/// `Overflow` for bounds or a count beyond 16 bits. Positions in mm.
[[nodiscard]] DISCOPLAN_EXPORT LoadResult LoadArrays(wafer& target, bool limit_flag,
                                                     const ArrayView& x, const ArrayView& y,
                                                     const ArrayView& z);

/// Loads `count` sites from a headerless file of three blocks of little-endian 64-bit floats: all
/// X, all Y, all values. Bytes behind the third block are ignored. Any failure gives `Failed`.
[[nodiscard]] DISCOPLAN_EXPORT LoadResult LoadFile(wafer& target, bool limit_flag,
                                                   const std::string& path, float count);

/// Drops the sites outside the circle of that diameter, with a tolerance of one percent on the
/// square of its radius. Without any such site the wafer stays untouched.
DISCOPLAN_EXPORT void ClipToTestDiameter(wafer& target, bool limit_flag, float test_diameter);

/// Sets the plot limits if the lower one is below the upper one; tells whether it did.
[[nodiscard]] DISCOPLAN_EXPORT bool ApplyPlotLimit(wafer& target, float lower, float upper);

}  // namespace discoplan
