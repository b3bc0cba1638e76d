// SPDX-License-Identifier: MIT
#pragma once

/// Fonts in their usual places, where no lookup is needed.

#include <span>
#include <string>

#include "hosts/headless/fonts.h"

namespace discoplan {

/// Whether the plots' own fonts stand in for that name.
bool IsSans(const std::string& name);

/// A folder with the names of its regular and its bold font.
struct UsualPlace {
  std::filesystem::path folder;
  const char* regular;
  const char* bold;
};

/// The first one that is there.
std::optional<FontFile> FirstOf(std::span<const UsualPlace> places, bool bold);
/// Liberation Sans, where distributions keep it: to start fontconfig takes longer than to draw a
/// map.
std::optional<FontFile> UsualSansFile(bool bold);

}  // namespace discoplan
