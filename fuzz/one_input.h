// SPDX-License-Identifier: MIT
#pragma once

/// One input for the readers, whatever it holds: it must end with sites or with an error of one
/// printable line.

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <sstream>
#include <string>
#include <string_view>

#include "data/read.h"

namespace discoplan::fuzz {

/// A reader that has a folder of inputs in `corpus/`.
struct Reader {
  std::string_view name;
  std::string_view begin;  ///< stands before each input, so that it reaches the reader
  bool has_columns = true;
};

inline constexpr Reader kReaders[] = {{"table", ""},
                                      {"lot_export", "WAFER ID,A\nSLOT,1\n"},
                                      {"klarf", "FileVersion 1 2;\n"},
                                      {"binary", "", false}};

inline const Reader& ReaderNamed(std::string_view name) {
  for (const Reader& reader : kReaders) {
    if (reader.name == name) return reader;
  }
  std::abort();
}

inline data::ReadRequest RequestOf(const Reader& reader, unsigned choice, std::size_t size) {
  data::ReadRequest request;
  request.path = "a";
  request.skip_invalid = (choice & 1U) != 0;
  if (reader.has_columns) {
    if ((choice & 2U) != 0) request.parameters = {"all"};
    if ((choice & 4U) != 0) request.where = "X < 5 or not Value = 3";
    if ((choice & 8U) != 0) request.by = {"1"};
  } else if ((choice & 2U) != 0) {
    request.sites = static_cast<std::int64_t>(size / 24);
  }
  if ((choice & 16U) != 0) {
    request.outliers = data::OutlierRule{3.5, data::OutlierRule::Spread::Mad};
  }
  if ((choice & 32U) != 0) request.edge_exclusion = 3;
  if ((choice & 64U) != 0) request.origin = data::Origin::Corner;
  if ((choice & 128U) != 0) {
    request.most_sites = 3;
    request.thin = (choice & 1U) != 0;
  }
  return request;
}

inline bool IsSound(const data::Wafer& wafer) {
  const auto is_finite = [](float number) { return std::isfinite(number); };
  return !wafer.x.empty() && wafer.x.size() == wafer.y.size() &&
         wafer.x.size() == wafer.value.size() &&
         std::all_of(wafer.x.begin(), wafer.x.end(), is_finite) &&
         std::all_of(wafer.y.begin(), wafer.y.end(), is_finite) &&
         std::all_of(wafer.value.begin(), wafer.value.end(), is_finite);
}

/// The first byte chooses how to read the others.
inline void ReadOne(const Reader& reader, std::string_view input) {
  const unsigned choice = input.empty() ? 0 : static_cast<unsigned char>(input.front());
  if (!input.empty()) input.remove_prefix(1);
  std::istringstream stream(std::string(reader.begin) + std::string(input));
  try {
    const data::Lot lot = data::Read(RequestOf(reader, choice, input.size()), stream);
    if (lot.wafers.empty() || !std::all_of(lot.wafers.begin(), lot.wafers.end(), IsSound)) {
      std::abort();
    }
  } catch (const data::DataError& error) {
    const std::string_view text = error.what();
    if (text.find_first_of("\n\r\t\x1B") != std::string_view::npos) std::abort();
  }
}

}  // namespace discoplan::fuzz
