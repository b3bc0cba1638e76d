// SPDX-License-Identifier: MIT
#include "hosts/headless/png_file.h"

#include <png.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace discoplan {
namespace {

struct Palette {
  std::vector<png_color> colours;
  std::vector<png_byte> indices;  // one a pixel

  int BitDepth() const {
    return colours.size() <= 2 ? 1 : colours.size() <= 4 ? 2 : colours.size() <= 16 ? 4 : 8;
  }
};

png_color ToPng(Pixel pixel) {
  return {static_cast<png_byte>(pixel >> 16), static_cast<png_byte>(pixel >> 8),
          static_cast<png_byte>(pixel)};
}

/// Nothing for more than 256 colours.
std::optional<Palette> FindPalette(std::span<const Pixel> pixels) {
  constexpr std::size_t kMostColours = 256;
  Palette palette;
  palette.indices.reserve(pixels.size());
  std::unordered_map<Pixel, png_byte> known;
  Pixel last = ~pixels.front();
  png_byte index = 0;
  for (const Pixel pixel : pixels) {
    if (pixel != last) {
      const auto [entry, added] = known.try_emplace(pixel, static_cast<png_byte>(known.size()));
      if (added && known.size() > kMostColours) return {};
      if (added) palette.colours.push_back(ToPng(pixel));
      index = entry->second;
      last = pixel;
    }
    palette.indices.push_back(index);
  }
  return palette;
}

/// A file under a temporary name that becomes `target` once it is whole.
class PendingFile {
 public:
  explicit PendingFile(const std::filesystem::path& target)
      : target_(target), name_(target.string() + ".part-" + std::to_string(getpid())) {
    if (std::filesystem::is_directory(target)) Fail(EISDIR);
    stream_ = std::fopen(name_.c_str(), "wb");
    if (stream_ == nullptr) Fail(errno);
  }
  ~PendingFile() { Discard(); }
  PendingFile(const PendingFile&) = delete;
  PendingFile& operator=(const PendingFile&) = delete;

  std::FILE* stream() const { return stream_; }

  void Finish() {
    errno = 0;
    const bool written = std::ferror(stream_) == 0 && std::fflush(stream_) == 0;
    const int reason = errno;
    if (!written) Fail(reason);
    std::fclose(std::exchange(stream_, nullptr));
    if (std::rename(name_.c_str(), target_.c_str()) != 0) Fail(errno);
    name_.clear();
  }

  [[noreturn]] void Fail(int reason) const {
    throw FileError("cannot write '" + target_.string() + "': " + std::strerror(reason) +
                    "; choose a folder that exists and can be written");
  }

 private:
  void Discard() {
    if (stream_ != nullptr) std::fclose(stream_);
    if (!name_.empty()) std::remove(name_.c_str());
  }

  const std::filesystem::path target_;
  std::string name_;
  std::FILE* stream_ = nullptr;
};

struct PngImage {
  std::span<const Pixel> pixels;
  const Palette* palette;
  int width;
  int height;
};

void PackRow(const PngImage& image, int y, png_byte* row) {
  const std::size_t first = static_cast<std::size_t>(y) * static_cast<std::size_t>(image.width);
  for (int x = 0; x < image.width; ++x) {
    const std::size_t at = first + static_cast<std::size_t>(x);
    if (image.palette != nullptr) {
      row[x] = image.palette->indices[at];
    } else {
      const png_color colour = ToPng(image.pixels[at]);
      std::memcpy(row + 3 * x, &colour, 3);
    }
  }
}

/// False if libpng gave up. Only what needs no destructor lives here, as libpng leaves by longjmp.
bool Encode(png_structp png, png_infop info, std::FILE* stream, const PngImage& image,
            png_byte* row) {
  if (setjmp(png_jmpbuf(png)) != 0) return false;
  png_init_io(png, stream);
  // Maps are large areas of one colour: without filters the fastest level is also a small one.
  png_set_compression_level(png, 3);
  png_set_filter(png, 0, PNG_FILTER_NONE);
  const bool indexed = image.palette != nullptr;
  png_set_IHDR(png, info, static_cast<png_uint_32>(image.width),
               static_cast<png_uint_32>(image.height), indexed ? image.palette->BitDepth() : 8,
               indexed ? PNG_COLOR_TYPE_PALETTE : PNG_COLOR_TYPE_RGB, PNG_INTERLACE_NONE,
               PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
  if (indexed) {
    png_set_PLTE(png, info, image.palette->colours.data(),
                 static_cast<int>(image.palette->colours.size()));
  }
  png_write_info(png, info);
  png_set_packing(png);
  for (int y = 0; y < image.height; ++y) {
    PackRow(image, y, row);
    png_write_row(png, row);
  }
  png_write_end(png, nullptr);
  return true;
}

void GiveUp(png_structp png, png_const_charp) { png_longjmp(png, 1); }
void Ignore(png_structp, png_const_charp) {}

}  // namespace

void WritePng(const std::filesystem::path& file, std::span<const Pixel> pixels, int width,
              int height) {
  if (width <= 0 || height <= 0) {
    throw FileError("cannot write '" + file.string() + "': the picture is empty");
  }
  PendingFile pending(file);
  const std::optional<Palette> palette = FindPalette(pixels);
  std::vector<png_byte> row(3 * static_cast<std::size_t>(width));
  png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, GiveUp, Ignore);
  png_infop info = png != nullptr ? png_create_info_struct(png) : nullptr;
  const PngImage image{pixels, palette ? &*palette : nullptr, width, height};
  errno = 0;
  const bool encoded = info != nullptr && Encode(png, info, pending.stream(), image, row.data());
  const int reason = errno != 0 ? errno : EIO;
  png_destroy_write_struct(&png, &info);
  if (!encoded) pending.Fail(reason);
  pending.Finish();
}

}  // namespace discoplan
