// SPDX-License-Identifier: MIT
#pragma once

/// The tables behind the colour maps.

#include <cstdint>
#include <span>
#include <string_view>

namespace discoplan::figures {

struct ColourTable {
  std::string_view name;
  bool diverging;
  std::span<const std::uint32_t> colours;  ///< 0xRRGGBB, the lowest value first.
};

std::span<const ColourTable> AllColourTables();

}  // namespace discoplan::figures
