// SPDX-License-Identifier: MIT
#include "discoplan/figures/colour_map.h"

#include <cmath>

#include "discoplan/figures/colour_tables.h"

namespace discoplan::figures {

Rgba ColourMap::Entry(std::size_t number) const {
  return Rgb(table_[reversed_ ? table_.size() - 1 - number : number]);
}

Rgba ColourMap::At(double part) const {
  const double inside = part > 0 ? std::min(part, 1.0) : 0;
  const auto size = static_cast<double>(table_.size());
  if (IsStepped()) return Entry(static_cast<std::size_t>(std::min(inside * size, size - 1)));
  const double place = inside * (size - 1);
  const auto below = static_cast<std::size_t>(place);
  if (below + 1 >= table_.size()) return Entry(below);
  return Mix(Entry(below), Entry(below + 1), place - std::floor(place));
}

std::optional<ColourMap> FindColourMap(std::string_view name) {
  const bool reversed = name.ends_with("_r");
  if (reversed) name.remove_suffix(2);
  for (const ColourTable& row : AllColourTables()) {
    if (row.name == name) return ColourMap(row.colours, row.diverging, reversed);
  }
  return {};
}

std::string ColourMapNames() {
  std::string names;
  for (const ColourTable& row : AllColourTables()) {
    names += (names.empty() ? "" : ", ") + std::string(row.name);
  }
  return names;
}

std::vector<Rgba> BandColours(const ColourMap& colours, int count) {
  std::vector<Rgba> bands;
  for (int i = 0; i < count; ++i) {
    bands.push_back(colours.At(count == 1 ? 0.5 : static_cast<double>(i) / (count - 1)));
  }
  return bands;
}

}  // namespace discoplan::figures
