// SPDX-License-Identifier: MIT
#pragma once

/// Numbers in bytes, the lowest one first, in one step where the machine has them so too.

#include <bit>
#include <cstdint>
#include <cstring>

namespace discoplan {

template <class Unsigned>
inline void StoreLittleEndian(Unsigned number, std::uint8_t* to) {
  if constexpr (std::endian::native == std::endian::little) {
    std::memcpy(to, &number, sizeof number);
  } else {
    for (unsigned k = 0; k < sizeof number; ++k) {
      to[k] = static_cast<std::uint8_t>(number >> 8 * k);
    }
  }
}

template <class Unsigned>
inline Unsigned LoadLittleEndian(const std::uint8_t* from) {
  Unsigned number = 0;
  if constexpr (std::endian::native == std::endian::little) {
    std::memcpy(&number, from, sizeof number);
  } else {
    for (unsigned k = 0; k < sizeof number; ++k) number |= Unsigned{from[k]} << 8 * k;
  }
  return number;
}

}  // namespace discoplan
