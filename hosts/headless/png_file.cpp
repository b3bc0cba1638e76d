// SPDX-License-Identifier: MIT
#include "hosts/headless/png_file.h"

#include <png.h>
#include <zlib.h>

#include <algorithm>
#include <array>
#include <csetjmp>
#include <cstdio>
#include <cstring>
#include <new>
#include <optional>
#include <string>
#include <utility>

#include "discoplan/base/file_name.h"
#include "hosts/headless/pixel_deflater.h"

namespace discoplan {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kMostColours = 256;

png_color ToPng(Pixel pixel) {
  return {static_cast<png_byte>(pixel >> 16 & 0xFF), static_cast<png_byte>(pixel >> 8 & 0xFF),
          static_cast<png_byte>(pixel & 0xFF)};
}

/// Calls `visit(row, above)` for each row from top to bottom; above the first are zeros.
template <class Visit>
void VisitRows(const PngStrips& picture, Visit visit) {
  const auto width = static_cast<std::size_t>(picture.width);
  std::vector<Pixel> last(width);  // of the strip before, whose memory is used anew
  for (int top = 0; top < picture.height;) {
    std::span<const Pixel> above = last;
    for (std::span<const Pixel> strip = picture.rows_from(top);
         strip.size() >= width && top < picture.height; strip = strip.subspan(width), ++top) {
      visit(strip.first(width), above);
      above = strip.first(width);
    }
    if (above.data() != last.data()) last.assign(above.begin(), above.end());
  }
}

/// Rows that differ from the one above; those of a map's cells repeat.
struct IndexedRows {
  std::vector<png_color> palette;
  std::vector<png_byte> indices;  // one a pixel
  std::vector<int> times;         // that each row stands below itself

  int BitDepth() const {
    const std::size_t colours = palette.size();
    return colours <= 2 ? 1 : colours <= 4 ? 2 : colours <= 16 ? 4 : 8;
  }
};

/// Colours in the order in which they came, in a hash table with open addressing.
class ColourTable {
 public:
  ColourTable() { slots_.fill(kFree); }

  std::size_t size() const { return size_; }

  /// Number of the colour, which is `size()` before the call for a new one.
  std::size_t Find(Pixel colour) {
    std::size_t slot = colour * 0x9E3779B1u >> 22;
    while (slots_[slot] != kFree && colours_[slots_[slot]] != colour) slot = (slot + 1) % kSlots;
    if (slots_[slot] == kFree) {
      colours_[size_] = colour;
      slots_[slot] = static_cast<std::uint16_t>(size_++);
    }
    return slots_[slot];
  }

 private:
  static constexpr std::size_t kSlots = 1024;
  static constexpr std::uint16_t kFree = 0xFFFF;

  std::array<std::uint16_t, kSlots> slots_;
  std::array<Pixel, kMostColours + 1> colours_ = {};
  std::size_t size_ = 0;
};

/// Takes rows as long as there are no more than 256 colours.
class RowIndexer {
 public:
  explicit RowIndexer(int width) : width_(static_cast<std::size_t>(width)) {}

  const IndexedRows& Rows() const { return rows_; }

  /// False, and nothing is taken, for a row that has colours too many.
  bool Add(std::span<const Pixel> row, std::span<const Pixel> above) {
    // By pointers, which are compared as memory.
    if (!rows_.times.empty() && std::equal(row.data(), row.data() + width_, above.data())) {
      ++rows_.times.back();
      return true;
    }
    const std::size_t start = rows_.indices.size();
    rows_.indices.resize(start + width_);
    png_byte* next = rows_.indices.data() + start;
    Pixel last = ~row.front();
    std::size_t index = 0;
    for (const Pixel pixel : row) {
      if (pixel != last) {
        last = pixel;
        index = table_.Find(pixel & 0xFFFFFF);
        if (index == kMostColours) return false;
        if (index == rows_.palette.size()) rows_.palette.push_back(ToPng(pixel));
      }
      *next++ = static_cast<png_byte>(index);
    }
    rows_.times.push_back(1);
    return true;
  }

  /// The rows that were taken, as they were: `visit(row, above)`.
  template <class Visit>
  void VisitRows(Visit visit) const {
    std::vector<Pixel> row(width_);
    std::vector<Pixel> above(width_);
    const png_byte* next = rows_.indices.data();
    for (const int times : rows_.times) {
      row.swap(above);
      for (Pixel& pixel : row) {
        const png_color& colour = rows_.palette[*next++];
        pixel = Pixel{0xFF000000} | static_cast<Pixel>(colour.red << 16 | colour.green << 8) |
                colour.blue;
      }
      for (int time = 0; time < times; ++time) visit(row, std::span(time == 0 ? above : row));
    }
  }

 private:
  std::size_t width_;
  IndexedRows rows_;
  ColourTable table_;
};

/// Pixels of less than 8 bits share a byte, the first one in the highest bits.
void PackRow(std::span<const png_byte> indices, int bit_depth, png_byte* row) {
  int free_bits = 8;
  unsigned bits = 0;
  for (const png_byte index : indices) {
    free_bits -= bit_depth;
    bits |= static_cast<unsigned>(index) << free_bits;
    if (free_bits > 0) continue;
    *row++ = static_cast<png_byte>(bits);
    free_bits = 8;
    bits = 0;
  }
  if (free_bits < 8) *row = static_cast<png_byte>(bits);
}

/// Compresses rows in RGB, with alpha or without. A map's rows repeat or nearly repeat the row
/// above, so that most differences are zeros.
class ColourDeflater {
 public:
  /// The stream stands behind what is in `before`.
  ColourDeflater(const PngStrips& picture, std::vector<std::uint8_t> before)
      : deflater_(picture.has_alpha ? 4 : 3, std::move(before)) {}

  void Add(std::span<const Pixel> pixels, std::span<const Pixel> above) {
    constexpr png_byte kUp = 2;  // the filter's number
    deflater_.Add(kUp, pixels, above);
  }
  std::vector<std::uint8_t> Take() { return deflater_.Take(); }

 private:
  PixelDeflater deflater_;
};

void AppendNumber(std::size_t number, std::vector<std::uint8_t>& bytes) {
  for (const int shift : {24, 16, 8, 0}) bytes.push_back(static_cast<png_byte>(number >> shift));
}

/// Begins a chunk; returns where.
std::size_t BeginChunk(std::string_view name, std::vector<std::uint8_t>& bytes) {
  const std::size_t start = bytes.size();
  AppendNumber(0, bytes);
  bytes.insert(bytes.end(), name.begin(), name.end());
  return start;
}

/// Ends it where it stands: a copy would take as much memory once more.
void EndChunk(std::size_t start, std::vector<std::uint8_t>& bytes) {
  const std::size_t size = bytes.size() - start - 8;
  for (std::size_t k = 0; k < 4; ++k) {
    bytes[start + k] = static_cast<png_byte>(size >> (24 - 8 * k));
  }
  AppendNumber(crc32(0, bytes.data() + start + 4, static_cast<unsigned>(size + 4)), bytes);
}

class PngError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// What libpng gave up for.
using Reason = std::array<char, 128>;

// libpng leaves by longjmp: no object with a destructor may live in a frame between here and there.
void GiveUp(png_structp png, png_const_charp text) {
  auto* reason = static_cast<Reason*>(png_get_error_ptr(png));
  std::snprintf(reason->data(), reason->size(), "%s", text);
  png_longjmp(png, 1);
}

void Ignore(png_structp, png_const_charp) {}

void Append(png_structp png, png_bytep data, std::size_t size) {
  auto* bytes = static_cast<std::vector<std::uint8_t>*>(png_get_io_ptr(png));
  bool done = true;
  try {
    bytes->insert(bytes->end(), data, data + size);
  } catch (const std::bad_alloc&) {
    done = false;
  }
  if (!done) png_error(png, "out of memory");
}

void Flush(png_structp) {}

class PngWriter {
 public:
  /// In memory whose content isn't wanted any more.
  explicit PngWriter(std::vector<std::uint8_t> memory)
      : bytes_(std::move(memory)),
        png_(png_create_write_struct(PNG_LIBPNG_VER_STRING, &reason_, GiveUp, Ignore)),
        info_(png_ != nullptr ? png_create_info_struct(png_) : nullptr) {
    bytes_.clear();
  }
  ~PngWriter() { png_destroy_write_struct(&png_, &info_); }
  PngWriter(const PngWriter&) = delete;
  PngWriter& operator=(const PngWriter&) = delete;

  /// `indexed` is null for a picture in RGB: then only what stands before the rows.
  std::vector<std::uint8_t> Encode(const PngStrips& picture, const IndexedRows* indexed) {
    std::vector<png_byte> row(static_cast<std::size_t>(picture.width));
    if (info_ == nullptr) throw std::bad_alloc();
    if (!Run(picture, indexed, row.data())) throw PngError(reason_.data());
    return std::move(bytes_);
  }

 private:
  bool Run(const PngStrips& picture, const IndexedRows* indexed, png_byte* row) {
    if (setjmp(png_jmpbuf(png_)) != 0) return false;
    png_set_write_fn(png_, &bytes_, Append, Flush);
    WriteHeader(picture, indexed);
    if (indexed != nullptr) {
      WriteIndexed(picture, *indexed, row);
      png_write_end(png_, nullptr);
    }
    return true;
  }

  void WriteIndexed(const PngStrips& picture, const IndexedRows& indexed, png_byte* row) {
    const auto width = static_cast<std::size_t>(picture.width);
    for (std::size_t i = 0; i < indexed.times.size(); ++i) {
      PackRow(std::span(indexed.indices).subspan(i * width, width), indexed.BitDepth(), row);
      for (int time = 0; time < indexed.times[i]; ++time) png_write_row(png_, row);
    }
  }

  void WriteHeader(const PngStrips& picture, const IndexedRows* indexed) {
    // A map's rows repeat or nearly repeat the row above, so that their differences are runs of
    // zeros: looking for anything else takes longer and gains nothing.
    png_set_filter(png_, PNG_FILTER_TYPE_BASE, PNG_FILTER_UP);
    png_set_compression_strategy(png_, Z_RLE);
    png_set_check_for_invalid_index(png_, 0);
    png_set_IHDR(png_, info_, static_cast<png_uint_32>(picture.width),
                 static_cast<png_uint_32>(picture.height),
                 indexed != nullptr ? indexed->BitDepth() : 8,
                 indexed != nullptr  ? PNG_COLOR_TYPE_PALETTE
                 : picture.has_alpha ? PNG_COLOR_TYPE_RGB_ALPHA
                                     : PNG_COLOR_TYPE_RGB,
                 PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    if (indexed != nullptr) {
      png_set_PLTE(png_, info_, indexed->palette.data(), static_cast<int>(indexed->palette.size()));
    }
    if (picture.pixels_per_metre > 0) {
      const auto resolution = static_cast<png_uint_32>(picture.pixels_per_metre);
      png_set_pHYs(png_, info_, resolution, resolution, PNG_RESOLUTION_METER);
    }
    png_write_info(png_, info_);
  }

  Reason reason_ = {};
  std::vector<std::uint8_t> bytes_;
  png_structp png_;
  png_infop info_;
};

std::string SizeOf(const auto& picture) {
  return std::to_string(picture.width) + " x " + std::to_string(picture.height) + " pixels";
}

/// The picture as one strip.
PngStrips AsStrips(const PngPicture& picture) {
  return {.width = picture.width,
          .height = picture.height,
          .rows_from =
              [&picture](int top) {
                return picture.pixels.subspan(static_cast<std::size_t>(top) *
                                              static_cast<std::size_t>(picture.width));
              },
          .pixels_per_metre = picture.pixels_per_metre,
          .has_alpha = picture.has_alpha};
}

void WriteEncoded(const fs::path& path, const auto& picture) {
  std::vector<std::uint8_t> bytes;
  try {
    bytes = EncodePng(picture);
  } catch (const PngError& error) {
    throw FileError("cannot write '" + Utf8Of(path) + "': " + error.what());
  }
  WriteWholeFile(path, bytes);
}

}  // namespace

std::vector<std::uint8_t> EncodePng(const PngPicture& picture) {
  if (picture.width > 0 && picture.height > 0 &&
      picture.pixels.size() !=
          static_cast<std::size_t>(picture.width) * static_cast<std::size_t>(picture.height)) {
    throw PngError("a picture of " + SizeOf(picture) + " can't have " +
                   std::to_string(picture.pixels.size()) + " of them");
  }
  return EncodePng(AsStrips(picture));
}

std::vector<std::uint8_t> EncodePng(const PngStrips& picture, std::vector<std::uint8_t> memory) {
  if (picture.width <= 0 || picture.height <= 0) {
    throw PngError("a picture of " + SizeOf(picture) + " is empty");
  }
  RowIndexer indexer(picture.width);
  std::optional<ColourDeflater> colours;
  std::size_t start = 0;
  const auto begin_colours = [&] {
    std::vector<std::uint8_t> bytes = PngWriter(std::move(memory)).Encode(picture, nullptr);
    // About as much as a map takes, so that there are seldom two of it for a while.
    bytes.reserve(static_cast<std::size_t>(picture.width) *
                  static_cast<std::size_t>(picture.height) / 8 * 5);
    start = BeginChunk("IDAT", bytes);
    colours.emplace(picture, std::move(bytes));
    indexer.VisitRows([&](std::span<const Pixel> row, std::span<const Pixel> above) {
      colours->Add(row, above);
    });
  };
  if (picture.has_alpha) begin_colours();
  VisitRows(picture, [&](std::span<const Pixel> row, std::span<const Pixel> above) {
    if (!colours && indexer.Add(row, above)) return;
    if (!colours) begin_colours();
    colours->Add(row, above);
  });
  if (!colours) return PngWriter(std::move(memory)).Encode(picture, &indexer.Rows());
  std::vector<std::uint8_t> bytes = colours->Take();
  EndChunk(start, bytes);
  EndChunk(BeginChunk("IEND", bytes), bytes);
  return bytes;
}

void WritePng(const fs::path& path, const PngPicture& picture) { WriteEncoded(path, picture); }

void WritePng(const fs::path& path, const PngStrips& picture) { WriteEncoded(path, picture); }

}  // namespace discoplan
