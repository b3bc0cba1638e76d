// SPDX-License-Identifier: MIT
#pragma once

/// One input for the readers, whatever it holds: it must end with sites or with an error of one
/// printable line.

#include <cstdlib>
#include <sstream>
#include <string>
#include <string_view>

#include "data/read.h"

namespace discoplan::fuzz {

/// The first byte chooses how to read the others. `begin` stands before them, to reach one reader.
inline void ReadOne(std::string_view input, std::string_view begin) {
  data::ReadRequest request;
  request.path = "a";
  const unsigned choice = input.empty() ? 0 : static_cast<unsigned char>(input.front());
  if (!input.empty()) input.remove_prefix(1);
  request.skip_invalid = (choice & 1U) != 0;
  if ((choice & 2U) != 0) request.parameters = {"all"};
  if ((choice & 4U) != 0) request.where = "X < 5 or not Value = 3";
  if ((choice & 8U) != 0) request.by = {"1"};
  if ((choice & 16U) != 0)
    request.outliers = data::OutlierRule{3.5, data::OutlierRule::Spread::Mad};
  if ((choice & 32U) != 0) request.edge_exclusion = 3;
  if ((choice & 64U) != 0) request.origin = data::Origin::Corner;
  if ((choice & 128U) != 0) request.most_sites = 3, request.thin = (choice & 1U) != 0;
  std::istringstream stream(std::string(begin) + std::string(input));
  try {
    const data::Lot lot = data::Read(request, stream);
    if (lot.wafers.empty() || lot.wafers[0].x.empty()) std::abort();
    for (const data::Wafer& wafer : lot.wafers) {
      if (wafer.x.size() != wafer.value.size() || wafer.y.size() != wafer.value.size())
        std::abort();
    }
  } catch (const data::DataError& error) {
    const std::string_view text = error.what();
    if (text.find_first_of("\n\r\t\x1B") != std::string_view::npos) std::abort();
  }
}

}  // namespace discoplan::fuzz
