// SPDX-License-Identifier: MIT
#include "data/utf16.h"

#include <algorithm>

#include "data/plain_text.h"

namespace discoplan::data {
namespace {

constexpr unsigned kReplacement = 0xFFFD;

void AppendCode(unsigned code, std::string& utf8) {
  const auto append = [&](unsigned byte) { utf8 += static_cast<char>(byte); };
  const auto tail = [&](unsigned shift) { append(0x80U | (code >> shift & 0x3FU)); };
  if (code < 0x80) return append(code);
  if (code < 0x800) {
    append(0xC0U | code >> 6);
  } else {
    if (code < 0x10000) {
      append(0xE0U | code >> 12);
    } else {
      append(0xF0U | code >> 18);
      tail(12);
    }
    tail(6);
  }
  tail(0);
}

bool IsUtf8(std::string_view text) {
  while (!text.empty()) {
    const bool ascii = static_cast<unsigned char>(text.front()) < 0x80;
    const std::size_t length = ascii ? 1 : PrintableLength(text);
    if (length == 0) return false;
    text.remove_prefix(length);
  }
  return true;
}

}  // namespace

void Utf16Decoder::Append(std::string_view bytes, std::string& utf8) {
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    if (!has_half_) {
      half_ = byte;
      has_half_ = true;
      continue;
    }
    has_half_ = false;
    Take(order_ == ByteOrder::Little ? half_ | static_cast<unsigned>(byte) << 8
                                     : static_cast<unsigned>(half_) << 8 | byte,
         utf8);
  }
}

void Utf16Decoder::Take(unsigned unit, std::string& utf8) {
  const bool is_low = unit >= 0xDC00 && unit <= 0xDFFF;
  if (high_ != 0) {
    AppendCode(is_low ? 0x10000 + ((high_ - 0xD800) << 10) + (unit - 0xDC00) : kReplacement, utf8);
    high_ = 0;
    if (is_low) return;
  }
  if (unit >= 0xD800 && unit <= 0xDBFF) {
    high_ = unit;
  } else {
    AppendCode(is_low ? kReplacement : unit, utf8);
  }
}

std::string Utf8(std::string_view text) {
  if (IsUtf8(text)) return std::string(text);
  std::string utf8;
  for (const char c : text) AppendCode(static_cast<unsigned char>(c), utf8);
  return utf8;
}

}  // namespace discoplan::data
