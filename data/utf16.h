// SPDX-License-Identifier: MIT
#pragma once

/// Texts in other codings than UTF-8.

#include <string>
#include <string_view>

namespace discoplan::data {

enum class ByteOrder { Little, Big };

/// UTF-16 to UTF-8, in pieces that may end anywhere. What is half a pair becomes U+FFFD.
class Utf16Decoder {
 public:
  explicit Utf16Decoder(ByteOrder order) : order_(order) {}

  void Append(std::string_view bytes, std::string& utf8);
  /// Whether a character has begun and not ended.
  bool IsInside() const { return has_half_ || high_ != 0; }

 private:
  void Take(unsigned unit, std::string& utf8);

  ByteOrder order_;
  bool has_half_ = false;  // of a unit
  unsigned char half_ = 0;
  unsigned high_ = 0;  // surrogate that waits for the low one
};

/// `text` if it is UTF-8, or else the same taken for Latin-1.
std::string Utf8(std::string_view text);

}  // namespace discoplan::data
