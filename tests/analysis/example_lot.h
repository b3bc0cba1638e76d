// SPDX-License-Identifier: MIT
#pragma once

#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "discoplan/core/wafer.h"
#include "tests/places.h"

namespace discoplan::analysis {

/// The first values of the native oxide lot, wafer by wafer in the order of their slots.
inline std::vector<std::vector<Site>> NativeOxideLot() {
  std::vector<std::vector<Site>> wafers;
  std::ifstream file(Example("native_oxide_lot.csv"));
  bool in_sites = false;
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with("WAFER ID")) wafers.emplace_back();
    std::istringstream fields(line);
    std::string number, value, other, x, y;
    for (std::string* field : {&number, &value, &other, &x, &y}) std::getline(fields, *field, ',');
    if (in_sites && number.empty()) in_sites = false;
    if (in_sites) wafers.back().push_back({std::stof(x), std::stof(y), std::stof(value)});
    if (number.starts_with("Site #")) in_sites = true;
  }
  return wafers;
}

inline std::vector<Site> Slot7() { return NativeOxideLot().at(6); }

/// Sites of the values, all at the centre.
inline std::vector<Site> AtCentre(const std::vector<float>& values) {
  std::vector<Site> sites;
  for (const float value : values) sites.push_back({0, 0, value});
  return sites;
}

}  // namespace discoplan::analysis
