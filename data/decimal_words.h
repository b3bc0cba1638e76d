// SPDX-License-Identifier: MIT
#pragma once

/// Decimals of up to eight characters, read all at once from the bytes of one number.

#include <bit>
#include <cstddef>
#include <cstdint>

#include "data/byte_words.h"

namespace discoplan::data {

/// Digits that a 64-bit float holds, whatever they are.
inline constexpr std::size_t kMostDigits = 15;

/// The number that the bytes of `word` above its lowest `room` bits write, 1 to 8 digits; below
/// them it is 0. False if one of them is no digit.
inline bool ReadDigits(std::uint64_t word, unsigned room, std::uint64_t& digits) {
  word ^= InEachByte('0') << room;
  constexpr std::uint64_t kToHighest = InEachByte(0x80 - 10);
  if ((((word + kToHighest) | word) & InEachByte('\x80')) != 0) return false;
  // Each step joins neighbours: 2, then 4, then all 8 digits.
  word = (word * 10 + (word >> 8)) & 0x00FF00FF00FF00FFU;
  word = (word * 100 + (word >> 16)) & 0x0000FFFF0000FFFFU;
  digits = (word * 10000 + (word >> 32)) & 0xFFFFFFFFU;
  return true;
}

/// The same of digits that may have a decimal mark between them.
inline bool ReadDecimal(std::uint64_t word, unsigned room, char mark, std::uint64_t& digits,
                        unsigned& decimals) {
  const std::uint64_t marks = FirstPlaceOf(mark, word);
  decimals = 0;
  if (marks != 0) {
    const auto below = static_cast<unsigned>(std::countr_zero(marks)) - 7;
    decimals = 7 - below / 8;
    if (decimals == 0 || below == room) return false;
    // What stands before the mark moves up to what stands behind it.
    const std::uint64_t first = marks & (0 - marks);
    word = (word & (0 - (first << 1))) | (word & ((first >> 7) - 1)) << 8;
    room += 8;
  }
  return ReadDigits(word, room, digits);
}

/// And with a minus sign, which gives a zero its sign too.
inline constexpr double kPowersOfTen[][kMostDigits] = {
    {1, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14},
    {-1, -1e1, -1e2, -1e3, -1e4, -1e5, -1e6, -1e7, -1e8, -1e9, -1e10, -1e11, -1e12, -1e13, -1e14}};

/// Digits and power of ten are whole numbers below 2^53, so that one division gives the nearest
/// double.
inline double NearestDouble(std::uint64_t digits, unsigned decimals, unsigned minus) {
  return static_cast<double>(static_cast<std::int64_t>(digits)) / kPowersOfTen[minus][decimals];
}

}  // namespace discoplan::data
