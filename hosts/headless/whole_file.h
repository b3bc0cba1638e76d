// SPDX-License-Identifier: MIT
#pragma once

/// Files that appear whole or not at all to every program that looks: the bytes go to a file
/// `.discoplan-N.part` beside it, which then takes its name. A program that is killed meanwhile
/// leaves that one; it is removed by a later one after an hour. Nothing waits for the disk: a
/// picture is soon drawn again after a power cut, and a thousand of them had better be drawn fast.

#include <cstdint>
#include <filesystem>
#include <span>
#include <stdexcept>

#include "hosts/headless/export.h"

namespace discoplan {

/// A file that can't be read or written; what() names the file, the reason and what to do, in one
/// line.
class DISCOPLAN_HEADLESS_EXPORT FileError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// A file that was there before stays if this fails. What is neither a file nor a folder, such as
/// a pipe, is written to as it is. Raises `FileError`.
DISCOPLAN_HEADLESS_EXPORT void WriteWholeFile(const std::filesystem::path& path,
                                              std::span<const std::uint8_t> bytes);

}  // namespace discoplan
