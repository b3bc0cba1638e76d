// SPDX-License-Identifier: MIT
#include "hosts/headless/whole_file.h"

#include <array>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <string>
#include <system_error>

#include "discoplan/base/file_name.h"
#include "hosts/port/port.h"

namespace discoplan {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void Fail(const fs::path& path, int error) {
  struct Advice {
    int error;
    const char* text;
  };
  static constexpr std::array<Advice, 8> kAdvice = {{
      {EEXIST, ": the folder is full of .discoplan-*.part files; remove them"},
      {ENOENT, "; create the folder first"},
      {ENOTDIR, "; choose a folder that exists"},
      {EISDIR, "; add a file name to the folder"},
      {EACCES, "; choose a file and folder that you may write to"},
      {EROFS, "; choose a file and folder that you may write to"},
      {ELOOP, "; mend the links"},
      {ENOSPC, "; free some space or choose another disk"},
  }};
  std::string reason = std::generic_category().message(error);
  for (const Advice& advice : kAdvice) {
    if (advice.error == error) reason += advice.text;
  }
  throw FileError("cannot write '" + Utf8Of(path) + "': " + reason);
}

/// Writes all bytes and closes the file; 0 or the number of the error.
int WriteAndClose(std::FILE* file, std::span<const std::uint8_t> bytes) {
  if (std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size()) {
    return std::fclose(file) == 0 ? 0 : errno;
  }
  const int error = errno;
  std::fclose(file);
  return error;
}

constexpr int kMostAtOnce = 1000;

fs::path PartNumber(const fs::path& folder, int number) {
  return folder / (".discoplan-" + std::to_string(number) + ".part");
}

/// Removes what a program that was killed left behind; false if there is no such file. The bytes
/// are all there before a file is opened, so that nobody writes to it for long.
bool RemoveIfLeft(const fs::path& part) {
  constexpr auto kLongest = std::chrono::hours(1);
  std::error_code failure;
  const auto written = fs::last_write_time(part, failure);
  if (failure) return false;
  if (fs::file_time_type::clock::now() - written > kLongest) fs::remove(part, failure);
  return true;
}

/// A new file in the folder of `target`, with its `name`; null for an error, see errno.
std::FILE* OpenBeside(const fs::path& target, fs::path& name) {
  const fs::path folder = target.parent_path();
  std::FILE* file = nullptr;
  int number = 0;
  do {
    name = PartNumber(folder, number);
    RemoveIfLeft(name);
    file = port::OpenNew(name);
    ++number;
  } while (file == nullptr && errno == EEXIST && number < kMostAtOnce);
  // Those that follow would stay while this name is free.
  while (file != nullptr && RemoveIfLeft(PartNumber(folder, number))) ++number;
  return file;
}

/// Puts a new file in the place of `target`; 0 or the number of the error.
int Replace(const fs::path& target, std::span<const std::uint8_t> bytes, fs::perms permissions) {
  fs::path name;
  std::FILE* file = OpenBeside(target, name);
  if (file == nullptr) return errno;
  int error = WriteAndClose(file, bytes);
  std::error_code failure;
  if (error == 0 && permissions != fs::perms::unknown) fs::permissions(name, permissions, failure);
  if (error == 0 && !failure) fs::rename(name, target, failure);
  if (failure) error = failure.value();
  if (error != 0) fs::remove(name, failure);
  return error;
}

/// Where links lead that end in nothing yet.
fs::path EndOfLinks(fs::path path) {
  std::error_code ignored;
  while (fs::is_symlink(fs::symlink_status(path, ignored))) {
    path = path.parent_path() / fs::read_symlink(path, ignored);
  }
  return path;
}

/// 0 or the number of the error.
int WriteBytes(const fs::path& path, std::span<const std::uint8_t> bytes) {
  std::error_code ignored;
  std::error_code failure;
  const fs::file_status status = fs::status(path, failure);
  if (status.type() == fs::file_type::none) return failure.value();  // also links in a circle
  if (!fs::exists(status)) return Replace(EndOfLinks(path), bytes, fs::perms::unknown);
  // A folder or a write-protected file fails here, before anything is replaced.
  const bool regular = fs::is_regular_file(status);
  std::FILE* file = port::Open(path, regular ? "r+b" : "wb");
  if (file == nullptr) return errno;
  if (!regular) return WriteAndClose(file, bytes);
  std::fclose(file);
  return Replace(fs::canonical(path, ignored), bytes, status.permissions());
}

}  // namespace

void WriteWholeFile(const fs::path& path, std::span<const std::uint8_t> bytes) {
  if (const int error = WriteBytes(path, bytes)) Fail(path, error);
}

}  // namespace discoplan
