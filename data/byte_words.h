// SPDX-License-Identifier: MIT
#pragma once

/// Eight characters at a time, as the bytes of one number, the first one lowest.

#include <cstdint>

namespace discoplan::data {

/// `byte` in each place.
constexpr std::uint64_t InEachByte(char byte) {
  return 0x0101010101010101U * static_cast<unsigned char>(byte);
}

/// The 4 or 8 bytes from `text` on, whatever the order of bytes of the machine.
inline std::uint64_t FourBytes(const char* text) {
  const auto at = [text](int i) { return std::uint32_t{static_cast<unsigned char>(text[i])}; };
  return at(0) | at(1) << 8 | at(2) << 16 | at(3) << 24;
}
inline std::uint64_t EightBytes(const char* text) {
  return FourBytes(text) | FourBytes(text + 4) << 32;
}

/// The highest bit of each byte of `word` that is `byte`, and no other.
inline std::uint64_t PlacesOf(char byte, std::uint64_t word) {
  constexpr std::uint64_t kLow = InEachByte(0x7F);
  const std::uint64_t unlike = word ^ InEachByte(byte);
  return ~(((unlike & kLow) + kLow) | unlike | kLow);
}

/// The highest bit of the first byte of `word` that is `byte`, with any highest bits behind it.
inline std::uint64_t FirstPlaceOf(char byte, std::uint64_t word) {
  const std::uint64_t unlike = word ^ InEachByte(byte);
  return (unlike - InEachByte(1)) & ~unlike & InEachByte('\x80');
}

}  // namespace discoplan::data
