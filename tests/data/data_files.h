// SPDX-License-Identifier: MIT
#pragma once

/// Files for the tests of data reading, and what comes of them as one text.

#include <bit>
#include <cstdint>
#include <iomanip>
#include <limits>
#include <locale>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "data/read.h"
#include "tests/temporary_folder.h"

namespace discoplan::data {

/// The numbers as little-endian 64-bit floats.
inline std::string Binary(const std::vector<double>& numbers) {
  std::string bytes;
  for (const double number : numbers) {
    const auto bits = std::bit_cast<std::uint64_t>(number);
    for (unsigned shift = 0; shift < 64; shift += 8)
      bytes += static_cast<char>(bits >> shift & 0xFF);
  }
  return bytes;
}

/// "x,y,value x,y,value", with all digits of the floats.
inline std::string Sites(const Wafer& wafer) {
  std::ostringstream text;
  text.imbue(std::locale::classic());
  text << std::setprecision(std::numeric_limits<float>::max_digits10);
  for (std::size_t i = 0; i < wafer.x.size(); ++i) {
    text << (i == 0 ? "" : " ") << wafer.x[i] << ',' << wafer.y[i] << ',' << wafer.value[i];
  }
  return text.str();
}

/// The sites of all wafers with " | " between wafers, or the error without the file's folder.
inline std::string Outcome(const ReadRequest& request) {
  try {
    std::string text;
    for (const Wafer& wafer : Read(request).wafers) {
      text += (text.empty() ? "" : " | ") + Sites(wafer);
    }
    return text;
  } catch (const DataError& error) {
    std::string what = error.what();
    const std::string folder = request.path.parent_path().string() + '/';
    if (what.starts_with(folder)) what.erase(0, folder.size());
    return what;
  }
}

}  // namespace discoplan::data
