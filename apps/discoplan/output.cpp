// SPDX-License-Identifier: MIT
#include "apps/discoplan/output.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <system_error>

#include "apps/discoplan/command.h"
#include "data/plain_text.h"
#include "hosts/headless/whole_file.h"

namespace discoplan::app {
namespace {

namespace fs = std::filesystem;

struct Ending {
  std::string_view text;
  FileFormat format;
};
constexpr std::array<Ending, 3> kEndings = {
    {{".png", FileFormat::Png}, {".pdf", FileFormat::Pdf}, {".svg", FileFormat::Svg}}};

/// What is no regular file, such as a terminal, can be written to by several.
bool IsSameFile(const fs::path& a, const fs::path& b) {
  std::error_code ignored;
  if (fs::exists(a, ignored) && fs::exists(b, ignored)) {
    return fs::is_regular_file(a, ignored) && fs::equivalent(a, b, ignored);
  }
  return fs::weakly_canonical(fs::absolute(a), ignored) ==
         fs::weakly_canonical(fs::absolute(b), ignored);
}

}  // namespace

FileFormat FormatOf(const fs::path& path) {
  const std::string ending = path.extension().string();
  if (ending.empty()) return FileFormat::Png;
  std::string known;
  for (const Ending& row : kEndings) {
    if (data::SameName(ending, row.text)) return row.format;
    known += (known.empty() ? "" : ", ") + std::string(row.text);
  }
  throw UsageError("cannot write '" + path.string() + "': the ending is none of " + known);
}

void FailStandardOutput() {
  throw CommandError("cannot write standard output: " + std::generic_category().message(errno));
}

void WriteStandardOutput(std::string_view text) {
  const bool written = std::fwrite(text.data(), 1, text.size(), stdout) == text.size();
  if (!written || std::fflush(stdout) != 0) FailStandardOutput();
}

void WriteOutput(const std::string& path, std::span<const std::uint8_t> bytes) {
  if (path != "-") return WriteWholeFile(path, bytes);
  WriteStandardOutput({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
}

void RefuseOverwriting(const NamedFile& output, std::span<const NamedFile> others) {
  if (output.path.empty() || output.path == "-") return;
  for (const NamedFile& other : others) {
    if (other.path.empty() || !IsSameFile(output.path, other.path)) continue;
    throw UsageError(output.argument + " and " + other.argument + " are the same file, '" +
                     output.path + "'; give " + output.argument + " another name");
  }
}

}  // namespace discoplan::app
