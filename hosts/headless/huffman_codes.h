// SPDX-License-Identifier: MIT
#pragma once

/// The codes of a deflated block's symbols: the more often one comes, the shorter its code.
///
/// Source: P. Deutsch, RFC 1951 (1996); D. Huffman, "A method for the construction of
/// minimum-redundancy codes" (1952).

#include <array>
#include <cstddef>
#include <cstdint>

namespace discoplan::huffman {

inline constexpr std::size_t kSymbols = 286;
inline constexpr unsigned kMostBits = 15;  ///< That a code may have.

using Counts = std::array<std::uint32_t, kSymbols>;
using Lengths = std::array<std::uint8_t, kSymbols>;  ///< In bits.
using Codes = std::array<std::uint16_t, kSymbols>;

/// Of codes no longer than that; 0 for what never comes. Something comes.
Lengths LengthsFor(const Counts& counts, unsigned longest);

/// Their first bit lowest.
Codes CodesFor(const Lengths& lengths);

}  // namespace discoplan::huffman
