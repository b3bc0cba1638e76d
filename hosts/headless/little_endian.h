// SPDX-License-Identifier: MIT
#pragma once

/// Numbers in files, their lowest byte first, in one store where the machine has them so too.

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

}  // namespace discoplan
