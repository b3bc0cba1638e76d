// SPDX-License-Identifier: MIT
#include "apps/discoplan/pixel_size.h"

#include <algorithm>
#include <cstdio>

#include "apps/discoplan/command.h"

namespace discoplan::app {

PixelSize ParseSize(const std::string& text) {
  constexpr int kSmallest = 50;
  constexpr int kLargest = 10000;
  PixelSize size;
  int used = 0;
  if (std::sscanf(text.c_str(), "%5dx%5d%n", &size.width, &size.height, &used) != 2 ||
      used != static_cast<int>(text.size()) || std::min(size.width, size.height) < kSmallest ||
      std::max(size.width, size.height) > kLargest) {
    throw UsageError("--size takes WIDTHxHEIGHT, 50 to 10000 pixels each, not '" + text + "'");
  }
  return size;
}

}  // namespace discoplan::app
