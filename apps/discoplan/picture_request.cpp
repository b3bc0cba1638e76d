// SPDX-License-Identifier: MIT
#include "apps/discoplan/picture_request.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "apps/discoplan/checks.h"

namespace discoplan::app {
namespace {

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

}  // namespace

void AddPictureOptions(CLI::App& command, PictureRequest& request) {
  AddDataOptions(command, request.data);
  command
      .add_option("-o,--output", request.output,
                  "File to write; its ending tells the format: .png, .pdf or .svg")
      ->required()
      ->check(FileName());
  AddPlotOptions(command, request.plot);
  command
      .add_option_function<std::string>(
          "--size", [&request](const std::string& text) { request.size = ParseSize(text); },
          "Size of each plot in pixels, 96 to the inch on paper")
      ->default_str("800x600");
}

SheetGrid SheetGrid::For(std::size_t count) {
  const int columns = static_cast<int>(std::ceil(std::sqrt(static_cast<double>(count))));
  return {columns, (static_cast<int>(count) + columns - 1) / columns};
}

}  // namespace discoplan::app
