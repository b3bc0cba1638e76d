// SPDX-License-Identifier: MIT
#pragma once

/// Pictures as PNG files: with a palette where at most 256 colours occur, else in RGB; with alpha
/// only if asked for, since a canvas is opaque.
///
///     WritePng("map.png", canvas.Pixels(), canvas.Width(), canvas.Height());

#include <cstdint>
#include <filesystem>
#include <functional>
#include <span>
#include <stdexcept>
#include <vector>

#include "discoplan/raster/canvas.h"
#include "hosts/headless/export.h"
#include "hosts/headless/whole_file.h"

namespace discoplan {

/// Rows from top to bottom, `width` pixels each.
struct PngPicture {
  std::span<const Pixel> pixels;
  int width = 0;
  int height = 0;
  int pixels_per_metre = 0;  ///< The file tells its resolution if this is positive.
  bool has_alpha = false;    ///< Pixels are 0xAARRGGBB, not premultiplied.
};

/// A picture that needn't be in memory as a whole.
struct PngStrips {
  int width = 0;
  int height = 0;
  /// Some whole rows from row `top` on, one at least; they are read until the next call. Rows are
  /// asked for once, from top to bottom.
  std::function<std::span<const Pixel>(int top)> rows_from;
  int pixels_per_metre = 0;
  bool has_alpha = false;
};

/// The bytes of the file. Raises `std::runtime_error` for a picture without pixels, or with other
/// than `width` * `height` of them.
DISCOPLAN_HEADLESS_EXPORT std::vector<std::uint8_t> EncodePng(const PngPicture& picture);
/// The same bytes for the same picture in strips, in memory that was used before, if there is some.
/// What `rows_from` raises goes through.
DISCOPLAN_HEADLESS_EXPORT std::vector<std::uint8_t> EncodePng(
    const PngStrips& picture, std::vector<std::uint8_t> memory = {});

/// The file appears whole or not at all, and one that was there before stays if this fails. What
/// is neither a file nor a folder, such as a pipe, is written to as it is. Raises `FileError`, also
/// for a picture that `EncodePng` refuses.
DISCOPLAN_HEADLESS_EXPORT void WritePng(const std::filesystem::path& path,
                                        const PngPicture& picture);
DISCOPLAN_HEADLESS_EXPORT void WritePng(const std::filesystem::path& path,
                                        const PngStrips& picture);

inline void WritePng(const std::filesystem::path& path, std::span<const Pixel> pixels, int width,
                     int height) {
  WritePng(path, {.pixels = pixels, .width = width, .height = height});
}

}  // namespace discoplan
