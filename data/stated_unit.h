// SPDX-License-Identifier: MIT
#pragma once

/// Units that stand above a table: "Units,cm", "Unit: cm", "# XY units = um".

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace discoplan::data {

struct StatedUnit {
  std::int64_t line = 0;
  std::string text;           ///< the line as it stands
  std::string unit;           ///< UTF-8
  bool of_positions = false;  ///< as the line says itself
};

/// The unit that a line states; nothing if it is of another kind, or states that of a value.
std::optional<StatedUnit> StatedUnitIn(std::string_view text, std::int64_t line);

/// What all of them together say about positions whose columns have no unit.
struct PositionUnit {
  std::string unit;     ///< empty if they don't tell
  std::string warning;  ///< or empty
};

/// Takes a unit that can mean nothing but positions, which micrometres do only if all values have
/// units of their own, and warns of another. Throws `DataError` for positions in a unit that isn't
/// known, or in two.
PositionUnit PositionUnitOf(const std::vector<StatedUnit>& stated, bool values_have_units,
                            const std::string& file);

}  // namespace discoplan::data
