// SPDX-License-Identifier: MIT
#pragma once

/// Compresses rows of pixels as their differences from the row above, which mostly are zeros, into
/// a zlib stream: a pixel with the times that it is repeated and the zeros behind, with Huffman
/// codes for each block, and no search for anything else. Pixels that equal those above cost next
/// to nothing.
///
/// Source: P. Deutsch, RFC 1950 and 1951 (1996).

#include <cstdint>
#include <span>
#include <vector>

#include "hosts/headless/export.h"

namespace discoplan {

class DISCOPLAN_HEADLESS_EXPORT PixelDeflater {
 public:
  /// Of 3 or 4 bytes a pixel, without alpha or with it. The stream stands behind what is in
  /// `before`.
  explicit PixelDeflater(unsigned bytes_per_pixel, std::vector<std::uint8_t> before = {});

  /// A byte, then one pixel or more, 0xAARRGGBB, as red, green, blue and alpha: each byte less that
  /// of the pixel above. There are as many above; an alpha that isn't written isn't looked at.
  void Add(std::uint8_t byte, std::span<const std::uint32_t> pixels,
           std::span<const std::uint32_t> above);
  /// Ends the stream and gives all; nothing can be added afterwards.
  std::vector<std::uint8_t> Take();

 private:
  /// A pixel and how often it comes, or a single byte for 0 times; then so many zeros.
  struct Piece {
    std::uint32_t pixel;
    std::uint32_t times;
    std::uint32_t zeros;
  };

  template <unsigned kBytes>
  void AddPixels(std::span<const std::uint32_t> pixels, std::span<const std::uint32_t> above);
  template <unsigned kBytes>
  void WriteBlock(bool last);
  void EndBlock(bool last);

  unsigned bytes_per_pixel_;
  std::vector<std::uint8_t> out_;
  std::vector<std::uint64_t> changed_;
  std::vector<Piece> pieces_;
  std::size_t count_ = 0;   // of them
  std::uint64_t bits_ = 0;  // that wait to be a byte
  unsigned bit_count_ = 0;
  // Adler's, of what was added.
  std::uint64_t sum_ = 1;
  std::uint64_t sum_of_sums_ = 0;
};

}  // namespace discoplan
