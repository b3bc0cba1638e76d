// SPDX-License-Identifier: MIT
#include "hosts/headless/pixel_deflater.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

#include "hosts/headless/little_endian.h"

namespace discoplan {
namespace {

constexpr std::size_t kBlock = 1 << 13;  // repeats
constexpr std::size_t kLeastRun = 3;
constexpr std::size_t kMostRun = 258;
/// Bytes as they are, then the end of a block, then runs of what came before.
constexpr std::size_t kSymbols = 286;
constexpr std::size_t kEnd = 256;
/// Four of them and the bits that wait have room in 64.
constexpr unsigned kLongestCode = 14;
constexpr std::uint64_t kCheckBase = 65521;

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

using Counts = std::array<std::uint32_t, kSymbols>;
using Lengths = std::array<std::uint8_t, kSymbols>;

/// Lengths of the shortest codes for such counts; 0 for what never comes. Something comes.
Lengths LengthsFor(Counts counts) {
  struct Node {
    std::uint32_t count;
    std::uint16_t parent;
    std::uint16_t depth;
  };
  std::array<Node, 2 * kSymbols> nodes;
  std::array<std::uint64_t, kSymbols> ranked;  // counts, and the symbols below them
  while (true) {
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
    nodes[end - 1].depth = 0;
    for (std::size_t i = end - 1; i-- > 0;) {
      nodes[i].depth = static_cast<std::uint16_t>(nodes[nodes[i].parent].depth + 1);
    }
    Lengths lengths = {};
    unsigned longest = 0;
    for (std::size_t i = 0; i < leaves; ++i) {
      const unsigned length = std::max<unsigned>(nodes[i].depth, 1);
      lengths[ranked[i] & 0xFFFF] = static_cast<std::uint8_t>(length);
      longest = std::max(longest, length);
    }
    if (longest <= kLongestCode) return lengths;
    // Nearer to each other they get shorter codes.
    for (std::uint32_t& count : counts) count = count > 0 ? count / 2 + 1 : 0;
  }
}

/// The codes of such lengths, their first bit lowest.
std::array<std::uint16_t, kSymbols> CodesFor(const Lengths& lengths) {
  std::array<unsigned, kLongestCode + 1> of_length = {};
  for (const std::uint8_t length : lengths) ++of_length[length];
  of_length[0] = 0;
  std::array<unsigned, kLongestCode + 1> next = {};
  for (std::size_t i = 1; i < next.size(); ++i) next[i] = (next[i - 1] + of_length[i - 1]) << 1;
  std::array<std::uint16_t, kSymbols> codes = {};
  for (std::size_t i = 0; i < kSymbols; ++i) {
    unsigned code = next[lengths[i]]++;
    for (unsigned bit = 0; bit < lengths[i]; ++bit, code >>= 1) {
      codes[i] = static_cast<std::uint16_t>(2U * codes[i] | (code & 1));
    }
  }
  return codes;
}

struct SomeBits {
  std::uint32_t bits = 0;
  std::uint32_t count = 0;
};

/// Bits on their way into bytes.
struct Pen {
  std::uint8_t* next;
  std::uint64_t bits;
  unsigned count;

  void Add(SomeBits more) {
    bits |= static_cast<std::uint64_t>(more.bits) << count;
    count += more.count;
  }
  /// Whole bytes go and less than one stays, with no branch to foretell.
  void Flush() {
    StoreLittleEndian(bits, next);
    next += count / 8;
    bits >>= count & ~7U;
    count %= 8;
  }
  void Put(std::uint32_t more, std::uint32_t more_count) {
    Add({more, more_count});
    Flush();
  }
};

/// What a run repeats.
enum Distance { kLastByte, kLastPixel };

/// The symbols for a pixel and its repeats. Zeros, which are most, are a byte and a run of it;
/// others are their bytes and a run of all of them. No more than four bytes, or one and a run, come
/// between two pauses.
template <unsigned kBytes, class Writer>
void Spell(std::uint32_t pixel, std::size_t times, Writer& writer) {
  if (times == 0) {
    writer.Byte(static_cast<std::uint8_t>(pixel));
    return writer.Pause();
  }
  const bool is_zero = pixel == 0;
  std::size_t left = kBytes * times;
  if (is_zero) {
    writer.Byte(0);
    left -= 1;
  } else {
    for (unsigned k = 0; k < kBytes; ++k) writer.Byte(static_cast<std::uint8_t>(pixel >> 8 * k));
    writer.Pause();
    left -= kBytes;
  }
  const std::size_t most = is_zero ? kMostRun : kMostRun / kBytes * kBytes;
  while (left >= kLeastRun) {
    const std::size_t run = std::min(left, most);
    writer.Run(run, is_zero ? kLastByte : kLastPixel);
    writer.Pause();
    left -= run;
  }
  for (; left > 0; --left) writer.Byte(0);
  writer.Pause();
}

class Counter {
 public:
  void Byte(std::uint8_t byte) { ++counts_[byte]; }
  void Run(std::size_t length, Distance) { ++runs_[length]; }
  void Pause() {}
  Counts Take() {
    for (std::size_t i = kLeastRun; i <= kMostRun; ++i) counts_[kRunCodes[i].symbol] += runs_[i];
    counts_[kEnd] = 1;
    return counts_;
  }

 private:
  Counts counts_ = {};
  std::array<std::uint32_t, kMostRun + 1> runs_ = {};
};

class Coder {
 public:
  Coder(const Lengths& lengths, Pen& pen) : pen_(pen) {
    const auto codes = CodesFor(lengths);
    for (std::size_t i = 0; i < kSymbols; ++i) symbols_[i] = {codes[i], lengths[i]};
    for (std::size_t i = kLeastRun; i <= kMostRun; ++i) {
      const RunCode& run = kRunCodes[i];
      const SomeBits own = symbols_[run.symbol];
      for (const Distance distance : {kLastByte, kLastPixel}) {
        // A bit behind the extra ones.
        const std::uint32_t rest = run.rest | static_cast<std::uint32_t>(distance) << run.extra;
        runs_[distance][i] = {own.bits | rest << own.count, own.count + run.extra + 1};
      }
    }
  }
  void Byte(std::uint8_t byte) { pen_.Add(symbols_[byte]); }
  void Run(std::size_t length, Distance distance) { pen_.Add(runs_[distance][length]); }
  void Pause() { pen_.Flush(); }
  void End() {
    pen_.Add(symbols_[kEnd]);
    pen_.Flush();
  }

 private:
  Pen& pen_;
  std::array<SomeBits, kSymbols> symbols_;
  std::array<std::array<SomeBits, kMostRun + 1>, 2> runs_ = {};
};

/// Of a block with codes of its own: 286 symbols, two distances, and lengths of four bits each.
constexpr std::size_t kHeadBytes = 160;
Pen PutHead(const Lengths& lengths, unsigned bytes_per_pixel, bool last, Pen pen) {
  // Distances up to four are symbols one less than they are.
  const unsigned distances = bytes_per_pixel;
  pen.Put((last ? 1u : 0u) | 2u << 1, 3);
  pen.Put(kSymbols - 257, 5);
  pen.Put(distances - 1, 5);
  pen.Put(19 - 4, 4);
  // In the order of the format, lengths that repeat come first; they aren't used.
  for (unsigned i = 0; i < 19; ++i) pen.Put(i < 3 ? 0 : 4, 3);
  const auto put_length = [&pen](unsigned length) {
    unsigned turned = 0;
    for (unsigned bit = 0; bit < 4; ++bit) turned |= (length >> bit & 1) << (3 - bit);
    pen.Put(turned, 4);
  };
  for (const std::uint8_t length : lengths) put_length(length);
  for (unsigned i = 0; i < distances; ++i) put_length(i == 0 || i + 1 == distances ? 1 : 0);
  return pen;
}

/// As many bytes as the symbols will take at most.
std::size_t MostBytes(const Counts& counts, const Lengths& lengths) {
  constexpr unsigned kMostExtra = 6;  // bits of a run, with its distance
  std::size_t bits = 0;
  for (std::size_t i = 0; i < kSymbols; ++i) {
    bits += counts[i] * std::size_t{lengths[i] + (i > kEnd ? kMostExtra : 0u)};
  }
  return bits / 8 + 1;
}

const std::uint32_t* EndOfRun(const std::uint32_t* at, const std::uint32_t* end,
                              std::uint32_t pixel) {
  if (at == end || *at != pixel) return at;
  const std::uint64_t same = pixel * std::uint64_t{0x1'0000'0001};
  std::array<std::uint64_t, 4> pairs;
  for (; end - at >= 8; at += 8) {
    std::memcpy(pairs.data(), at, sizeof pairs);
    if (((pairs[0] ^ same) | (pairs[1] ^ same) | (pairs[2] ^ same) | (pairs[3] ^ same)) != 0) break;
  }
  while (at < end && *at == pixel) ++at;
  return at;
}

}  // namespace

PixelDeflater::PixelDeflater(unsigned bytes_per_pixel, std::vector<std::uint8_t> before)
    : bytes_per_pixel_(bytes_per_pixel), out_(std::move(before)), repeats_(kBlock) {
  out_.insert(out_.end(), {0x78, 0x01});
}

void PixelDeflater::Add(std::uint8_t byte, std::span<const std::uint32_t> pixels) {
  if (repeats_.size() - count_ <= pixels.size()) {
    EndBlock(false);
    repeats_.resize(std::max(repeats_.size(), pixels.size() + 1));
  }
  repeats_[count_++] = {byte, 0};
  sum_ += byte;
  sum_of_sums_ += sum_;
  bytes_per_pixel_ == 3 ? AddPixels<3>(pixels) : AddPixels<4>(pixels);
  sum_ %= kCheckBase;
  sum_of_sums_ %= kCheckBase;
}

template <unsigned kBytes>
void PixelDeflater::AddPixels(std::span<const std::uint32_t> pixels) {
  Repeat* next = repeats_.data() + count_;
  // The sums of the check stay far below 64 bits; of repeats they are known at once.
  std::uint64_t sum = sum_;
  std::uint64_t sum_of_sums = sum_of_sums_;
  const std::uint32_t* const end = pixels.data() + pixels.size();
  for (const std::uint32_t* at = pixels.data(); at < end;) {
    const std::uint32_t pixel = *at;
    const std::uint32_t* const start = at;
    at = EndOfRun(at + 1, end, pixel);
    const auto times = static_cast<std::uint64_t>(at - start);
    *next++ = {pixel, static_cast<std::uint32_t>(times)};
    sum_of_sums += kBytes * times * sum;
    if (pixel == 0) continue;
    std::uint64_t bytes = 0;
    std::uint64_t weighted = 0;
    for (unsigned k = 0; k < kBytes; ++k) {
      const std::uint32_t byte = pixel >> 8 * k & 0xFF;
      bytes += byte;
      weighted += (kBytes - k) * byte;
    }
    sum_of_sums += times * weighted + kBytes * bytes * (times * (times - 1) / 2);
    sum += times * bytes;
  }
  sum_ = sum;
  sum_of_sums_ = sum_of_sums;
  count_ = static_cast<std::size_t>(next - repeats_.data());
}

void PixelDeflater::EndBlock(bool last) {
  bytes_per_pixel_ == 3 ? WriteBlock<3>(last) : WriteBlock<4>(last);
}

template <unsigned kBytes>
void PixelDeflater::WriteBlock(bool last) {
  const std::span<const Repeat> repeats = std::span(repeats_).first(count_);
  Counter counter;
  for (const auto [pixel, times] : repeats) Spell<kBytes>(pixel, times, counter);
  const Counts counts = counter.Take();
  const Lengths lengths = LengthsFor(counts);
  const std::size_t start = out_.size();
  out_.resize(start + kHeadBytes + MostBytes(counts, lengths) + sizeof(std::uint64_t));
  Pen pen = PutHead(lengths, kBytes, last, {out_.data() + start, bits_, bit_count_});
  Coder coder(lengths, pen);
  for (const auto [pixel, times] : repeats) Spell<kBytes>(pixel, times, coder);
  coder.End();
  // What waits at the end is a byte of its own.
  if (last && pen.count > 0) pen.Put(0, 8 - pen.count);
  out_.resize(static_cast<std::size_t>(pen.next - out_.data()));
  bits_ = pen.bits;
  bit_count_ = pen.count;
  count_ = 0;
}

std::vector<std::uint8_t> PixelDeflater::Take() {
  EndBlock(true);
  const std::uint64_t check = sum_of_sums_ << 16 | sum_;
  for (const int shift : {24, 16, 8, 0}) out_.push_back(static_cast<std::uint8_t>(check >> shift));
  return std::move(out_);
}

}  // namespace discoplan
