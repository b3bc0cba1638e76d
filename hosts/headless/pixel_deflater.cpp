// SPDX-License-Identifier: MIT
#include "hosts/headless/pixel_deflater.h"

#include <algorithm>
#include <array>
#include <utility>

#include "hosts/headless/little_endian.h"

namespace discoplan {
namespace {

constexpr std::size_t kBlock = 1 << 14;  // repeats
constexpr std::size_t kLeastRun = 3;
constexpr std::size_t kMostRun = 258;
/// Bytes as they are, then the end of a block, then runs of what came before.
constexpr std::size_t kSymbols = 286;
constexpr std::size_t kEnd = 256;
/// The code of each byte of a pixel, that of a run, and the bits that wait have room in 64.
constexpr unsigned LongestCode(unsigned bytes_per_pixel) { return bytes_per_pixel == 3 ? 12 : 10; }
constexpr std::uint64_t kCheckBase = 65521;

/// The byte that comes so many places behind a pixel's first.
std::uint32_t ByteOf(std::uint32_t pixel, unsigned place) {
  constexpr std::array<unsigned, 4> kShifts = {16, 8, 0, 24};
  return pixel >> kShifts[place] & 0xFF;
}

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

constexpr unsigned kMostBits = 15;  // that a code may have

using Counts = std::array<std::uint32_t, kSymbols>;
using Lengths = std::array<std::uint8_t, kSymbols>;

/// Lengths of short codes for such counts; 0 for what never comes. Something comes.
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

/// The codes of such lengths, their first bit lowest.
std::array<std::uint16_t, kSymbols> CodesFor(const Lengths& lengths) {
  std::array<unsigned, kMostBits + 1> of_length = {};
  for (const std::uint8_t length : lengths) ++of_length[length];
  of_length[0] = 0;
  std::array<unsigned, kMostBits + 1> next = {};
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
  std::uint64_t bits = 0;
  unsigned count = 0;

  void Append(const SomeBits& more) {
    bits |= more.bits << count;
    count += more.count;
  }
};

/// Bits on their way into bytes.
struct Pen {
  std::uint8_t* next;
  SomeBits waiting;

  /// Whole bytes go and less than one stays, with no branch to foretell.
  void Put(const SomeBits& more) {
    waiting.Append(more);
    StoreLittleEndian(waiting.bits, next);
    next += waiting.count / 8;
    waiting.bits >>= waiting.count & ~7U;
    waiting.count %= 8;
  }
};

/// How the pixels of a block are written: each by its bytes and a run of the rest of its repeats.
/// Zeros, which are most, are one byte and a run of it.
template <unsigned kBytes>
class Speller {
 public:
  void Count(std::uint32_t pixel, std::size_t times) {
    if (times == 0) return void(++lone_[pixel]);
    for (unsigned k = 0; k < kBytes; ++k) ++bytes_[k][ByteOf(pixel, k)];
    Runs& runs = runs_[pixel == 0];
    ++runs.first[std::min(times, kMostTimes)];
    for (; times > kMostTimes; times -= kMostTimes) {
      ++runs.more[std::min(times - kMostTimes, kMostTimes)];
    }
  }

  /// Of all that was counted, and of the end.
  Counts SymbolCounts() const {
    Counts counts = {};
    std::uint32_t zeros = 0;
    for (const bool is_zero : {false, true}) {
      const Runs& runs = runs_[is_zero];
      for (std::size_t times = 1; times <= kMostTimes; ++times) {
        const std::size_t rest = kBytes * times - (is_zero ? 1 : kBytes);
        if (is_zero) zeros += runs.first[times];
        if (rest >= kLeastRun) {
          counts[kRunCodes[rest].symbol] += runs.first[times];
        } else {
          counts[0] += static_cast<std::uint32_t>(rest) * runs.first[times];
        }
        counts[kRunCodes[kBytes * times].symbol] += runs.more[times];
      }
    }
    for (std::size_t i = 0; i < kEnd; ++i) {
      counts[i] += lone_[i];
      for (unsigned k = 0; k < kBytes; ++k) counts[i] += bytes_[k][i];
    }
    counts[0] -= (kBytes - 1) * zeros;
    counts[kEnd] = 1;
    return counts;
  }

  void TakeCodes(const Lengths& lengths) {
    const auto codes = CodesFor(lengths);
    for (std::size_t i = 0; i < kSymbols; ++i) symbols_[i] = {codes[i], lengths[i]};
    const auto run_of = [this](std::size_t length, bool is_zero) {
      if (length < kLeastRun) {
        SomeBits bytes;
        for (; length > 0; --length) bytes.Append(symbols_[0]);
        return bytes;
      }
      const RunCode& code = kRunCodes[length];
      SomeBits run = symbols_[code.symbol];
      run.Append({code.rest, code.extra});
      // Of the two distances, a byte and a pixel.
      run.Append({is_zero ? 0u : 1u, 1});
      return run;
    };
    for (const bool is_zero : {false, true}) {
      for (std::size_t times = 1; times <= kMostTimes; ++times) {
        SomeBits& first = first_[is_zero][times];
        if (is_zero) first = symbols_[0];
        first.Append(run_of(kBytes * times - (is_zero ? 1 : kBytes), is_zero));
        more_[is_zero][times] = run_of(kBytes * times, is_zero);
      }
    }
  }

  void Write(std::uint32_t pixel, std::size_t times, Pen& pen) const {
    if (times == 0) return pen.Put(symbols_[pixel]);
    const bool is_zero = pixel == 0;
    SomeBits all;
    for (unsigned k = 0; k < kBytes; ++k) all.Append(symbols_[ByteOf(pixel, k)]);
    all.bits = is_zero ? 0 : all.bits;
    all.count = is_zero ? 0 : all.count;
    all.Append(first_[is_zero][std::min(times, kMostTimes)]);
    pen.Put(all);
    for (; times > kMostTimes; times -= kMostTimes) {
      pen.Put(more_[is_zero][std::min(times - kMostTimes, kMostTimes)]);
    }
  }
  void WriteEnd(Pen& pen) const { pen.Put(symbols_[kEnd]); }

 private:
  static constexpr std::size_t kMostTimes = kMostRun / kBytes;
  using ByTimes = std::array<std::uint32_t, kMostTimes + 1>;
  struct Runs {
    ByTimes first = {};  // with the pixel itself
    ByTimes more = {};
  };
  using BitsByTimes = std::array<SomeBits, kMostTimes + 1>;

  std::array<std::uint32_t, kEnd> lone_ = {};
  std::array<std::array<std::uint32_t, kEnd>, kBytes> bytes_ = {};
  std::array<Runs, 2> runs_ = {};
  std::array<SomeBits, kSymbols> symbols_ = {};
  std::array<BitsByTimes, 2> first_ = {};
  std::array<BitsByTimes, 2> more_ = {};
};

/// Several pixels at a time.
template <std::size_t kCount>
bool AreEqual(const std::uint32_t* a, const std::uint32_t* b) {
  std::uint32_t differences = 0;
  for (std::size_t i = 0; i < kCount; ++i) differences |= a[i] ^ b[i];
  return differences == 0;
}

/// Of a block with codes of its own: 286 symbols, two distances, and lengths of four bits each.
constexpr std::size_t kHeadBytes = 160;
Pen PutHead(const Lengths& lengths, unsigned bytes_per_pixel, bool last, Pen pen) {
  // Distances up to four are symbols one less than they are.
  const unsigned distances = bytes_per_pixel;
  pen.Put({(last ? 1u : 0u) | 2u << 1, 3});
  pen.Put({kSymbols - 257, 5});
  pen.Put({distances - 1, 5});
  pen.Put({19 - 4, 4});
  // In the order of the format, lengths that repeat come first; they aren't used.
  for (unsigned i = 0; i < 19; ++i) pen.Put({i < 3 ? 0u : 4u, 3});
  const auto put_length = [&pen](unsigned length) {
    unsigned turned = 0;
    for (unsigned bit = 0; bit < 4; ++bit) turned |= (length >> bit & 1) << (3 - bit);
    pen.Put({turned, 4});
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
  ends_.resize(pixels.size() + 1);
  repeats_[count_++] = {byte, 0};
  sum_ += byte;
  sum_of_sums_ += sum_;
  bytes_per_pixel_ == 3 ? AddPixels<3>(pixels) : AddPixels<4>(pixels);
  sum_ %= kCheckBase;
  sum_of_sums_ %= kCheckBase;
}

template <unsigned kBytes>
void PixelDeflater::AddPixels(std::span<const std::uint32_t> pixels) {
  // Where the pixels change: a place is written for each and stays where the next one differs, with
  // no branch to foretell. Long stretches of one colour are passed in larger steps.
  constexpr std::size_t kStep = 64;
  std::uint32_t* end = ends_.data();
  for (std::size_t i = 1; i < pixels.size();) {
    const std::size_t stop = std::min(i + kStep, pixels.size());
    if (stop - i == kStep && AreEqual<kStep>(&pixels[i], &pixels[i - 1])) {
      i = stop;
      continue;
    }
    for (; i < stop; ++i) {
      *end = static_cast<std::uint32_t>(i);
      end += pixels[i] != pixels[i - 1] ? 1 : 0;
    }
  }
  *end++ = static_cast<std::uint32_t>(pixels.size());
  // The sums of the check stay far below 64 bits; of repeats they are known at once.
  std::uint64_t sum = sum_;
  std::uint64_t sum_of_sums = sum_of_sums_;
  std::uint32_t start = 0;
  Repeat* next = repeats_.data() + count_;
  for (const std::uint32_t stop : std::span(ends_.data(), end)) {
    const std::uint32_t pixel = pixels[start];
    const std::uint64_t times = stop - start;
    *next++ = {pixel, stop - start};
    start = stop;
    std::uint64_t bytes = 0;
    std::uint64_t weighted = 0;
    for (unsigned k = 0; k < kBytes; ++k) {
      const std::uint32_t byte = ByteOf(pixel, k);
      bytes += byte;
      weighted += (kBytes - k) * byte;
    }
    sum_of_sums += times * (kBytes * sum + weighted) + kBytes * bytes * (times * (times - 1) / 2);
    sum += times * bytes;
  }
  count_ = static_cast<std::size_t>(next - repeats_.data());
  sum_ = sum;
  sum_of_sums_ = sum_of_sums;
}

void PixelDeflater::EndBlock(bool last) {
  bytes_per_pixel_ == 3 ? WriteBlock<3>(last) : WriteBlock<4>(last);
}

template <unsigned kBytes>
void PixelDeflater::WriteBlock(bool last) {
  const std::span<const Repeat> repeats = std::span(repeats_).first(count_);
  Speller<kBytes> speller;
  for (const auto [pixel, times] : repeats) speller.Count(pixel, times);
  const Counts counts = speller.SymbolCounts();
  const Lengths lengths = LengthsFor(counts, LongestCode(kBytes));
  speller.TakeCodes(lengths);
  const std::size_t start = out_.size();
  out_.resize(start + kHeadBytes + MostBytes(counts, lengths) + sizeof(std::uint64_t));
  Pen pen = PutHead(lengths, kBytes, last, {out_.data() + start, {bits_, bit_count_}});
  for (const auto [pixel, times] : repeats) speller.Write(pixel, times, pen);
  speller.WriteEnd(pen);
  // What waits at the end is a byte of its own.
  if (last && pen.waiting.count > 0) pen.Put({0, 8 - pen.waiting.count});
  out_.resize(static_cast<std::size_t>(pen.next - out_.data()));
  bits_ = pen.waiting.bits;
  bit_count_ = pen.waiting.count;
  count_ = 0;
}

std::vector<std::uint8_t> PixelDeflater::Take() {
  EndBlock(true);
  const std::uint64_t check = sum_of_sums_ << 16 | sum_;
  for (const int shift : {24, 16, 8, 0}) out_.push_back(static_cast<std::uint8_t>(check >> shift));
  return std::move(out_);
}

}  // namespace discoplan
