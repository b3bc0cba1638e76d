// SPDX-License-Identifier: MIT
#pragma once

/// Colours for values, by the names under which the field knows them.
///
///     const ColourMap colours = *FindColourMap("cividis_r");
///     const Rgba middle = colours.At(0.5);
///
/// viridis, cividis, magma, inferno and plasma are by their authors' dedication in the public
/// domain (CC0). batlow, vik and roma are Fabio Crameri's (MIT; colour_tables.cpp keeps the
/// notice).

#include <array>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "discoplan/export.h"
#include "discoplan/figures/shapes.h"

namespace discoplan::figures {

inline constexpr std::string_view kDefaultColours = "viridis";

class DISCOPLAN_EXPORT ColourMap {
 public:
  ColourMap(std::span<const std::uint32_t> rrggbb, bool diverging, bool reversed)
      : table_(rrggbb), diverging_(diverging), reversed_(reversed) {}

  /// From 0 for the lowest to 1 for the highest; what lies outside counts as the nearer end.
  Rgba At(double part) const;
  /// The middle of the map stands for "no difference".
  bool IsDiverging() const { return diverging_; }
  /// A map of a few steps, such as the classic ten.
  bool IsStepped() const { return table_.size() > 2 && table_.size() <= 16; }
  int Steps() const { return static_cast<int>(table_.size()); }

 private:
  Rgba Entry(std::size_t number) const;

  std::span<const std::uint32_t> table_;
  bool diverging_;
  bool reversed_;
};

/// Nothing for a name that is none; "_r" behind a name reverses the map.
DISCOPLAN_EXPORT std::optional<ColourMap> FindColourMap(std::string_view name);

/// "viridis, cividis, ..."
DISCOPLAN_EXPORT std::string ColourMapNames();

/// One colour for each of `count` bands, the lowest first.
DISCOPLAN_EXPORT std::vector<Rgba> BandColours(const ColourMap& colours, int count);

}  // namespace discoplan::figures
