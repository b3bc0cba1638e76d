// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <span>
#include <stdexcept>

#include "discoplan/export.h"
#include "discoplan/raster/canvas.h"

namespace discoplan {

/// A file that can't be written; what() names the file, the reason and what to do.
class DISCOPLAN_EXPORT FileError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Writes `width` x `height` pixels, rows from the top, as a PNG file: with a palette where at most
/// 256 colours occur, else in RGB. The file appears whole or not at all, and one that was there
/// before stays if this fails. Raises `FileError`, also for an empty picture.
DISCOPLAN_EXPORT void WritePng(const std::filesystem::path& file, std::span<const Pixel> pixels,
                               int width, int height);

}  // namespace discoplan
