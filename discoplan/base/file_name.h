// SPDX-License-Identifier: MIT
#pragma once

/// File names in texts are UTF-8 on every system, whatever its own code page is.

#include <filesystem>
#include <string>
#include <string_view>

namespace discoplan {

inline std::filesystem::path PathOf(std::string_view utf8) {
  return std::filesystem::path(std::u8string(utf8.begin(), utf8.end()));
}

inline std::string Utf8Of(const std::filesystem::path& path) {
  const std::u8string text = path.u8string();
  return std::string(text.begin(), text.end());
}

}  // namespace discoplan
