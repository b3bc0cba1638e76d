// SPDX-License-Identifier: MIT
#include "hosts/headless/run_deflater.h"

#include <algorithm>
#include <cstring>
#include <numeric>
#include <utility>

#include "hosts/headless/little_endian.h"

namespace discoplan {
namespace {

constexpr std::size_t kBlock = 1 << 15;     // tokens
constexpr std::ptrdiff_t kPiece = 1 << 14;  // bytes
constexpr std::size_t kLeastRun = 3;
constexpr std::size_t kMostRun = 258;
constexpr std::size_t kEnd = 256;
constexpr std::uint16_t kFirstRun = 512;  // tokens of runs are their lengths from there on
constexpr std::size_t kTokens = kFirstRun + kMostRun + 1;
constexpr unsigned kLongestCode = 15;

/// How a run of a length is written.
struct RunCode {
  std::uint16_t symbol;
  std::uint8_t extra;
  std::uint8_t rest;  // the extra bits
};

constexpr std::array<RunCode, kMostRun + 1> MakeRunCodes() {
  std::array<RunCode, kMostRun + 1> codes = {};
  std::size_t length = kLeastRun;
  for (std::uint16_t symbol = 257; symbol <= 284; ++symbol) {
    const int extra = symbol < 265 ? 0 : (symbol - 261) / 4;
    for (int rest = 0; rest < 1 << extra && length < kMostRun; ++rest, ++length) {
      codes[length] = {symbol, static_cast<std::uint8_t>(extra), static_cast<std::uint8_t>(rest)};
    }
  }
  codes[kMostRun] = {285, 0, 0};
  return codes;
}
constexpr std::array<RunCode, kMostRun + 1> kRunCodes = MakeRunCodes();

/// Lengths of the shortest codes for such counts; 0 for what never comes.
template <std::size_t kCount>
std::array<std::uint8_t, kCount> LengthsFor(std::array<std::uint32_t, kCount> counts) {
  struct Node {
    std::uint64_t count;
    int left;
    int right;
  };
  while (true) {
    std::vector<Node> nodes;
    std::vector<std::size_t> symbols;
    for (std::size_t i = 0; i < kCount; ++i) {
      if (counts[i] > 0) symbols.push_back(i);
    }
    std::stable_sort(symbols.begin(), symbols.end(),
                     [&](std::size_t a, std::size_t b) { return counts[a] < counts[b]; });
    for (const std::size_t symbol : symbols) nodes.push_back({counts[symbol], -1, -1});
    const std::size_t leaves = nodes.size();
    // The two rarest are joined, again and again: joints come in the order of their counts.
    std::size_t leaf = 0;
    std::size_t joint = leaves;
    const auto rarest = [&] {
      const bool takes_leaf =
          leaf < leaves && (joint >= nodes.size() || nodes[leaf].count <= nodes[joint].count);
      return takes_leaf ? leaf++ : joint++;
    };
    for (std::size_t i = 1; i < leaves; ++i) {
      const std::size_t a = rarest();
      const std::size_t b = rarest();
      nodes.push_back({nodes[a].count + nodes[b].count, static_cast<int>(a), static_cast<int>(b)});
    }
    std::vector<unsigned> depth(nodes.size());
    for (std::size_t i = nodes.size(); i-- > leaves;) {
      for (const int child : {nodes[i].left, nodes[i].right}) {
        depth[static_cast<std::size_t>(child)] = depth[i] + 1;
      }
    }
    std::array<std::uint8_t, kCount> lengths = {};
    unsigned longest = 0;
    for (std::size_t i = 0; i < leaves; ++i) {
      const unsigned length = std::max(depth[i], 1u);
      lengths[symbols[i]] = static_cast<std::uint8_t>(length);
      longest = std::max(longest, length);
    }
    if (longest <= kLongestCode) return lengths;
    // Nearer to each other they get shorter codes.
    for (std::uint32_t& count : counts) count = count > 0 ? count / 2 + 1 : 0;
  }
}

/// The codes of such lengths, their first bit lowest.
template <std::size_t kCount>
std::array<std::uint16_t, kCount> CodesFor(const std::array<std::uint8_t, kCount>& lengths) {
  std::array<unsigned, kLongestCode + 1> of_length = {};
  for (const std::uint8_t length : lengths) ++of_length[length];
  of_length[0] = 0;
  std::array<unsigned, kLongestCode + 1> next = {};
  for (std::size_t i = 1; i < next.size(); ++i) next[i] = (next[i - 1] + of_length[i - 1]) << 1;
  std::array<std::uint16_t, kCount> codes = {};
  for (std::size_t i = 0; i < kCount; ++i) {
    unsigned code = next[lengths[i]]++;
    for (unsigned bit = 0; bit < lengths[i]; ++bit, code >>= 1) {
      codes[i] = static_cast<std::uint16_t>(2U * codes[i] | (code & 1));
    }
  }
  return codes;
}

}  // namespace

RunDeflater::RunDeflater(std::vector<std::uint8_t> before) : out_(std::move(before)) {
  out_.insert(out_.end(), {0x78, 0x01});
  tokens_.resize(kBlock + kPiece);
}

void RunDeflater::Put(std::uint64_t bits, unsigned count) {
  bits_ |= bits << bit_count_;
  bit_count_ += count;
  while (bit_count_ >= 8) {
    out_.push_back(static_cast<std::uint8_t>(bits_));
    bits_ >>= 8;
    bit_count_ -= 8;
  }
}

void RunDeflater::Add(std::span<const std::uint8_t> bytes) {
  constexpr std::uint64_t kAdlerBase = 65521;
  const std::uint8_t* at = bytes.data();
  const std::uint8_t* const end = at + bytes.size();
  while (at < end) {
    const std::uint8_t* const piece_end = at + std::min<std::ptrdiff_t>(end - at, kPiece);
    // There are no more tokens than bytes.
    Token* next = tokens_.data() + count_;
    // The check, whose sums of a piece stay far below 64 bits; of a run they are known at once.
    std::uint64_t sum = check_ & 0xFFFF;
    std::uint64_t sum_of_sums = check_ >> 16;
    while (at < piece_end) {
      const std::uint8_t byte = *at++;
      *next++ = byte;
      sum += byte;
      sum_of_sums += sum;
      if (at == piece_end || *at != byte) continue;
      const std::uint8_t* const start = at;
      std::uint64_t eight;
      const std::uint64_t same = byte * std::uint64_t{0x0101010101010101};
      while (piece_end - at >= 8 && (std::memcpy(&eight, at, 8), eight == same)) at += 8;
      while (at < piece_end && *at == byte) ++at;
      auto length = static_cast<std::size_t>(at - start);
      sum_of_sums += length * sum + byte * (length * (length + 1) / 2);
      sum += length * byte;
      for (; length >= kLeastRun; length -= std::min(length, kMostRun)) {
        *next++ = static_cast<Token>(kFirstRun + std::min(length, kMostRun));
      }
      for (; length > 0; --length) *next++ = byte;
    }
    check_ = static_cast<std::uint32_t>(sum_of_sums % kAdlerBase << 16 | sum % kAdlerBase);
    count_ = static_cast<std::size_t>(next - tokens_.data());
    if (count_ >= kBlock) EndBlock(false);
  }
}

void RunDeflater::EndBlock(bool last) {
  const std::span<const Token> tokens = std::span(tokens_).first(count_);
  std::array<std::uint32_t, kTokens> token_counts = {};
  for (const Token token : tokens) ++token_counts[token];
  std::array<std::uint32_t, kSymbols> counts = {};
  std::copy_n(token_counts.begin(), kEnd, counts.begin());
  for (std::size_t length = kLeastRun; length <= kMostRun; ++length) {
    counts[kRunCodes[length].symbol] += token_counts[kFirstRun + length];
  }
  counts[kEnd] = 1;
  const auto lengths = LengthsFor(counts);
  const auto codes = CodesFor(lengths);
  // A block with codes of its own: 286 symbols, one distance, and lengths of four bits each.
  Put((last ? 1u : 0u) | 2u << 1, 3);
  Put(kSymbols - 257, 5);
  Put(0, 5);
  Put(19 - 4, 4);
  // In the order of the format, lengths that repeat come first; they aren't used.
  for (unsigned i = 0; i < 19; ++i) Put(i < 3 ? 0 : 4, 3);
  const auto put_length = [this](unsigned length) {
    unsigned turned = 0;
    for (unsigned bit = 0; bit < 4; ++bit) turned |= (length >> bit & 1) << (3 - bit);
    Put(turned, 4);
  };
  for (const std::uint8_t length : lengths) put_length(length);
  put_length(1);
  // What is written for each token at once.
  struct Written {
    std::uint32_t bits;
    std::uint32_t count;
  };
  std::array<Written, kTokens> written = {};
  for (std::size_t i = 0; i < kEnd; ++i) written[i] = {codes[i], lengths[i]};
  for (std::size_t length = kLeastRun; length <= kMostRun; ++length) {
    const RunCode& run = kRunCodes[length];
    const unsigned own = lengths[run.symbol];
    // Behind the extra bits is the one distance, a zero.
    written[kFirstRun + length] = {codes[run.symbol] | static_cast<std::uint32_t>(run.rest) << own,
                                   own + run.extra + 1u};
  }
  const std::size_t start = out_.size();
  // As many bits as will be written, and those that wait.
  std::uint64_t whole = 64;
  for (std::size_t i = 0; i < kSymbols; ++i) {
    constexpr unsigned kMostExtra = 6;  // of a run, with its distance
    whole += counts[i] * std::uint64_t{lengths[i] + (i > kEnd ? kMostExtra : 0u)};
  }
  out_.resize(start + static_cast<std::size_t>(whole / 8) + 8);
  std::uint8_t* next = out_.data() + start;
  std::uint64_t bits = bits_;
  unsigned count = bit_count_;
  for (const Token token : tokens) {
    const Written& each = written[token];
    bits |= static_cast<std::uint64_t>(each.bits) << count;
    count += each.count;
    // Whole bytes go and less than one stays, with no branch to foretell.
    StoreLittleEndian(bits, next);
    next += count / 8;
    bits >>= count & ~7U;
    count %= 8;
  }
  out_.resize(static_cast<std::size_t>(next - out_.data()));
  bits_ = bits;
  bit_count_ = count;
  Put(0, 0);
  Put(codes[kEnd], lengths[kEnd]);
  count_ = 0;
}

std::vector<std::uint8_t> RunDeflater::Take() {
  EndBlock(true);
  if (bit_count_ > 0) Put(0, 8 - bit_count_);
  for (const int shift : {24, 16, 8, 0}) out_.push_back(static_cast<std::uint8_t>(check_ >> shift));
  return std::move(out_);
}

}  // namespace discoplan
