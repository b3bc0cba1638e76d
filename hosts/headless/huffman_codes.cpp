// SPDX-License-Identifier: MIT
#include "hosts/headless/huffman_codes.h"

#include <algorithm>

namespace discoplan::huffman {

Lengths LengthsFor(const Counts& counts, unsigned longest) {
  struct Node {
    std::uint32_t count;
    std::uint16_t parent;
    std::uint16_t depth;
  };
  std::array<Node, 2 * kSymbols> nodes;
  std::array<std::uint64_t, kSymbols> ranked;  // counts, and the symbols below them
  std::size_t leaves = 0;
  for (std::size_t i = 0; i < kSymbols; ++i) {
    if (counts[i] > 0) ranked[leaves++] = std::uint64_t{counts[i]} << 16 | i;
  }
  std::sort(ranked.data(), ranked.data() + leaves);
  for (std::size_t i = 0; i < leaves; ++i) {
    nodes[i].count = static_cast<std::uint32_t>(ranked[i] >> 16);
  }
  // The two rarest are joined, again and again: joints come in the order of their counts.
  std::size_t leaf = 0;
  std::size_t joint = leaves;
  std::size_t end = leaves;
  const auto take_rarest = [&] {
    const bool takes_leaf =
        leaf < leaves && (joint >= end || nodes[leaf].count <= nodes[joint].count);
    Node& rarest = nodes[takes_leaf ? leaf++ : joint++];
    rarest.parent = static_cast<std::uint16_t>(end);
    return rarest.count;
  };
  for (; end + 1 < 2 * leaves; ++end) {
    const std::uint32_t rarest = take_rarest();
    nodes[end].count = rarest + take_rarest();
  }
  nodes[end - 1].depth = leaves > 1 ? 0 : 1;
  for (std::size_t i = end - 1; i-- > 0;) {
    nodes[i].depth = static_cast<std::uint16_t>(nodes[nodes[i].parent].depth + 1);
  }
  std::array<std::size_t, kMostBits + 1> of_length = {};
  for (std::size_t i = 0; i < leaves; ++i) ++of_length[std::min<unsigned>(nodes[i].depth, longest)];
  // Where some were cut to the longest, there are more than have room: each time one of the longest
  // goes beside one that is shorter.
  std::size_t room = 0;
  for (unsigned i = 1; i <= longest; ++i) room += of_length[i] << (longest - i);
  for (; room > std::size_t{1} << longest; --room) {
    unsigned shorter = longest - 1;
    while (of_length[shorter] == 0) --shorter;
    --of_length[longest];
    --of_length[shorter];
    of_length[shorter + 1] += 2;
  }
  Lengths lengths = {};
  unsigned length = longest;
  for (std::size_t i = 0; i < leaves; ++i) {
    for (; of_length[length] == 0; --length) {
    }
    --of_length[length];
    lengths[ranked[i] & 0xFFFF] = static_cast<std::uint8_t>(length);
  }
  return lengths;
}

Codes CodesFor(const Lengths& lengths) {
  std::array<unsigned, kMostBits + 1> of_length = {};
  for (const std::uint8_t length : lengths) ++of_length[length];
  of_length[0] = 0;
  std::array<unsigned, kMostBits + 1> next = {};
  for (std::size_t i = 1; i < next.size(); ++i) next[i] = (next[i - 1] + of_length[i - 1]) << 1;
  Codes codes = {};
  for (std::size_t i = 0; i < kSymbols; ++i) {
    unsigned code = next[lengths[i]]++;
    for (unsigned bit = 0; bit < lengths[i]; ++bit, code >>= 1) {
      codes[i] = static_cast<std::uint16_t>(2U * codes[i] | (code & 1));
    }
  }
  return codes;
}

}  // namespace discoplan::huffman
