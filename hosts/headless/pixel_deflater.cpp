// SPDX-License-Identifier: MIT
#include "hosts/headless/pixel_deflater.h"

#include <algorithm>
#include <array>
#include <bit>
#include <utility>

#include "discoplan/base/wide_loops.h"
#include "hosts/headless/huffman_codes.h"
#include "hosts/headless/little_endian.h"

namespace discoplan {
namespace {

using huffman::Counts;
using huffman::Lengths;

constexpr std::size_t kBlock = 1 << 13;  // pieces
constexpr std::size_t kLeastRun = 3;
constexpr std::size_t kMostRun = 258;
/// Bytes as they are, then the end of a block, then runs of what came before.
constexpr std::size_t kSymbols = huffman::kSymbols;
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
  static constexpr unsigned kMostBits = 63 - 7;  // at a time, behind those that wait

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

/// How what comes in a block is written: pixels by their bytes and a run of the rest of their
/// repeats, zeros by one byte and a run of it.
template <unsigned kBytes>
class Speller {
 public:
  void CountByte(std::uint32_t byte) { ++lone_[byte]; }
  void CountPixel(std::uint32_t pixel, std::size_t times) {
    for (unsigned k = 0; k < kBytes; ++k) ++bytes_[k][ByteOf(pixel, k)];
    if (times > 1) CountRuns(times, pixels_);
  }
  void CountZeros(std::size_t times) { CountRuns(times, zeros_); }

  /// Of all that was counted, and of the end.
  Counts SymbolCounts() const {
    Counts counts = {};
    const auto add_run = [&counts](std::size_t length, std::uint32_t times) {
      if (length >= kLeastRun) {
        counts[kRunCodes[length].symbol] += times;
      } else {
        counts[0] += static_cast<std::uint32_t>(length) * times;
      }
    };
    for (std::size_t times = 1; times <= kMostTimes; ++times) {
      add_run(kBytes * (times - 1), pixels_.first[times]);
      add_run(kBytes * times - 1, zeros_.first[times]);
      counts[0] += zeros_.first[times];
      add_run(kBytes * times, pixels_.more[times] + zeros_.more[times]);
    }
    for (std::size_t i = 0; i < kEnd; ++i) {
      counts[i] += lone_[i];
      for (unsigned k = 0; k < kBytes; ++k) counts[i] += bytes_[k][i];
    }
    counts[kEnd] = 1;
    return counts;
  }

  void TakeCodes(const Lengths& lengths) {
    const auto codes = huffman::CodesFor(lengths);
    for (std::size_t i = 0; i < kSymbols; ++i) symbols_[i] = {codes[i], lengths[i]};
    // The two distances are a byte and a pixel.
    const auto run_of = [this](std::size_t length, unsigned distance) {
      if (length < kLeastRun) {
        SomeBits bytes;
        for (; length > 0; --length) bytes.Append(symbols_[0]);
        return bytes;
      }
      const RunCode& code = kRunCodes[length];
      SomeBits run = symbols_[code.symbol];
      run.Append({code.rest, code.extra});
      run.Append({distance, 1});
      return run;
    };
    for (std::size_t times = 1; times <= kMostTimes; ++times) {
      pixel_bits_.first[times] = run_of(kBytes * (times - 1), 1);
      pixel_bits_.more[times] = run_of(kBytes * times, 1);
      zero_bits_.first[times] = symbols_[0];
      zero_bits_.first[times].Append(run_of(kBytes * times - 1, 0));
      zero_bits_.more[times] = run_of(kBytes * times, 0);
    }
  }

  void WriteByte(std::uint32_t byte, Pen& pen) const { pen.Put(symbols_[byte]); }
  /// A pixel, so often, and zeros.
  void WritePixel(std::uint32_t pixel, std::size_t times, std::size_t zeros, Pen& pen) const {
    SomeBits all;
    for (unsigned k = 0; k < kBytes; ++k) all.Append(symbols_[ByteOf(pixel, k)]);
    all.Append(pixel_bits_.first[std::min(times, kMostTimes)]);
    const SomeBits& behind = zero_bits_.first[std::min(zeros, kMostTimes)];
    if (times > kMostTimes || all.count + behind.count > Pen::kMostBits) {
      pen.Put(all);
      WriteMore(times, pixel_bits_, pen);
      all = {};
    }
    all.Append(behind);
    pen.Put(all);
    WriteMore(zeros, zero_bits_, pen);
  }
  void WriteZeros(std::size_t times, Pen& pen) const {
    pen.Put(zero_bits_.first[std::min(times, kMostTimes)]);
    WriteMore(times, zero_bits_, pen);
  }
  void WriteEnd(Pen& pen) const { pen.Put(symbols_[kEnd]); }

 private:
  static constexpr std::size_t kMostTimes = kMostRun / kBytes;
  /// By the times that something comes; of 0 times nothing is written.
  template <class Each>
  struct Runs {
    std::array<Each, kMostTimes + 1> first = {};
    std::array<Each, kMostTimes + 1> more = {};  // of what is longer than a run can be
  };
  using RunCounts = Runs<std::uint32_t>;
  using RunBits = Runs<SomeBits>;

  static void CountRuns(std::size_t times, RunCounts& runs) {
    ++runs.first[std::min(times, kMostTimes)];
    for (; times > kMostTimes; times -= kMostTimes) {
      ++runs.more[std::min(times - kMostTimes, kMostTimes)];
    }
  }
  static void WriteMore(std::size_t times, const RunBits& runs, Pen& pen) {
    for (; times > kMostTimes; times -= kMostTimes) {
      pen.Put(runs.more[std::min(times - kMostTimes, kMostTimes)]);
    }
  }

  std::array<std::uint32_t, kEnd> lone_ = {};
  std::array<std::array<std::uint32_t, kEnd>, kBytes> bytes_ = {};
  RunCounts pixels_;
  RunCounts zeros_;
  std::array<SomeBits, kSymbols> symbols_ = {};
  RunBits pixel_bits_;
  RunBits zero_bits_;
};

constexpr std::size_t kGroup = 64;  // pixels that are compared at a time

/// A bit for each pixel of a row that differs from the one above. Bytes first, which the compiler
/// takes many at once.
DISCOPLAN_WIDE_LOOPS void MarkChanged(std::span<const std::uint32_t> pixels,
                                      const std::uint32_t* above, std::uint32_t used,
                                      std::uint64_t* marks) {
  std::array<std::uint8_t, kGroup> changed = {};
  for (std::size_t start = 0; start < pixels.size(); start += kGroup) {
    const auto differs = [&](std::size_t i) {
      return ((pixels[start + i] ^ above[start + i]) & used) != 0;
    };
    const std::size_t rest = pixels.size() - start;
    if (rest >= kGroup) {
      for (std::size_t i = 0; i < kGroup; ++i) changed[i] = differs(i);
    } else {
      for (std::size_t i = 0; i < kGroup; ++i) changed[i] = i < rest && differs(i);
    }
    std::uint64_t bits = 0;
    for (unsigned i = 0; i < kGroup; i += 8) {
      // The product's highest byte has the lowest bits of all eight.
      bits |= (LoadLittleEndian<std::uint64_t>(&changed[i]) * 0x0102040810204080 >> 56) << i;
    }
    *marks++ = bits;
  }
}

/// Each byte less the one above it.
std::uint32_t Less(std::uint32_t pixel, std::uint32_t above) {
  constexpr std::uint32_t kHighest = 0x80808080;  // bits, through which nothing is borrowed
  return ((pixel | kHighest) - (above & ~kHighest)) ^ ((pixel ^ ~above) & kHighest);
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
    : bytes_per_pixel_(bytes_per_pixel), out_(std::move(before)), pieces_(kBlock) {
  out_.insert(out_.end(), {0x78, 0x01});
}

void PixelDeflater::Add(std::uint8_t byte, std::span<const std::uint32_t> pixels,
                        std::span<const std::uint32_t> above) {
  if (pieces_.size() - count_ <= pixels.size()) {
    EndBlock(false);
    pieces_.resize(std::max(pieces_.size(), pixels.size() + 1));
  }
  pieces_[count_] = {byte, 0, 0};
  sum_ += byte;
  sum_of_sums_ += sum_;
  bytes_per_pixel_ == 3 ? AddPixels<3>(pixels, above) : AddPixels<4>(pixels, above);
  sum_ %= kCheckBase;
  sum_of_sums_ %= kCheckBase;
}

template <unsigned kBytes>
void PixelDeflater::AddPixels(std::span<const std::uint32_t> pixels,
                              std::span<const std::uint32_t> above) {
  constexpr std::uint32_t kUsed = kBytes == 3 ? 0x00FFFFFF : 0xFFFFFFFF;
  const std::size_t width = pixels.size();
  Piece* piece = pieces_.data() + count_;
  std::size_t next = 0;    // pixel behind the piece
  std::uint32_t last = 0;  // difference, which can't come again
  // Each byte counts once for itself and each of those behind it; the sums stay far below 64 bits.
  sum_of_sums_ += kBytes * width * sum_;
  const auto take = [&](std::size_t place) {
    const std::uint32_t difference = Less(pixels[place], above[place]) & kUsed;
    const bool again = difference == last && place == next;
    piece->zeros = static_cast<std::uint32_t>(place - next);
    piece += again ? 0 : 1;
    piece->times = again ? piece->times + 1 : 1;
    piece->pixel = last = difference;
    next = place + 1;
    std::uint32_t bytes = 0;
    std::uint32_t before = 0;  // bytes of the pixel, times those before them in it
    for (unsigned k = 0; k < kBytes; ++k) {
      bytes += ByteOf(difference, k);
      before += k * ByteOf(difference, k);
    }
    sum_ += bytes;
    sum_of_sums_ += kBytes * (width - place) * bytes - before;
  };
  changed_.resize((width + kGroup - 1) / kGroup);
  MarkChanged(pixels, above.data(), kUsed, changed_.data());
  for (std::size_t i = 0; i < changed_.size(); ++i) {
    for (std::uint64_t bits = changed_[i]; bits != 0; bits &= bits - 1) {
      take(i * kGroup + static_cast<std::size_t>(std::countr_zero(bits)));
    }
  }
  piece->zeros = static_cast<std::uint32_t>(width - next);
  count_ = static_cast<std::size_t>(piece - pieces_.data()) + 1;
}

void PixelDeflater::EndBlock(bool last) {
  bytes_per_pixel_ == 3 ? WriteBlock<3>(last) : WriteBlock<4>(last);
}

template <unsigned kBytes>
void PixelDeflater::WriteBlock(bool last) {
  const std::span<const Piece> pieces = std::span(pieces_).first(count_);
  Speller<kBytes> speller;
  for (const auto& [pixel, times, zeros] : pieces) {
    times == 0 ? speller.CountByte(pixel) : speller.CountPixel(pixel, times);
    speller.CountZeros(zeros);
  }
  const Counts counts = speller.SymbolCounts();
  const Lengths lengths = huffman::LengthsFor(counts, LongestCode(kBytes));
  speller.TakeCodes(lengths);
  const std::size_t start = out_.size();
  out_.resize(start + kHeadBytes + MostBytes(counts, lengths) + sizeof(std::uint64_t));
  Pen pen = PutHead(lengths, kBytes, last, {out_.data() + start, {bits_, bit_count_}});
  for (const auto& [pixel, times, zeros] : pieces) {
    if (times > 0) {
      speller.WritePixel(pixel, times, zeros, pen);
    } else {
      speller.WriteByte(pixel, pen);
      speller.WriteZeros(zeros, pen);
    }
  }
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
