// SPDX-License-Identifier: MIT
#pragma once

/// What the programs write: which format a file's name asks for, where the bytes go, and what must
/// not be overwritten. "-" stands for standard output.

#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <string_view>

namespace discoplan::app {

enum class FileFormat { Png, Pdf, Svg };

/// By the name's ending, in any case; PNG without one. Raises `UsageError` for other endings.
FileFormat FormatOf(const std::filesystem::path& path);

/// Raises `CommandError` with the reason in `errno`.
[[noreturn]] void FailStandardOutput();

/// Raises `CommandError` if not all of it arrives.
void WriteStandardOutput(std::string_view text);

/// The file appears whole or not at all. Raises `FileError`, or `CommandError` for standard output.
void WriteOutput(const std::string& path, std::span<const std::uint8_t> bytes);

/// A file and the argument that names it; an empty path for one that isn't given.
struct NamedFile {
  std::string argument;
  std::string path;
};

/// Raises `UsageError` if the output is one of the other files, by whatever name.
void RefuseOverwriting(const NamedFile& output, std::span<const NamedFile> others);

}  // namespace discoplan::app
