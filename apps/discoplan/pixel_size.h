// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace discoplan::app {

struct PixelSize {
  int width = 0;
  int height = 0;
};

/// "WIDTHxHEIGHT". Raises `UsageError` for anything else and for sizes out of bounds.
PixelSize ParseSize(const std::string& text);

}  // namespace discoplan::app
