// SPDX-License-Identifier: MIT
#pragma once

/// Positions that come more than once: the rows of several wafers, taken for one.

#include <string>
#include <string_view>
#include <vector>

#include "data/fields.h"
#include "data/lot.h"

namespace discoplan::data {

/// Sites whose position came before.
std::size_t RepeatedSites(std::span<const float> x, std::span<const float> y);

/// Sites that lie within 0.1 mm of another one.
std::size_t SitesNearOthers(std::span<const float> x, std::span<const float> y);

/// "2 of 4 sites of wafer 'A' repeat a position"; `of` may be empty.
std::string RepeatText(std::size_t repeats, const Wafer& wafer, const std::string& of);

/// The first rows of a table as text, until it is known whether their positions repeat.
class KeptRows {
 public:
  void Add(std::string_view line);

  /// The columns, one or two, each by the texts of which the rows fall into wafers without
  /// repeated positions. `sites` are those of the rows in their order; `leave_out` are columns that
  /// aren't asked. Empty if there are none, or if not all rows were kept.
  std::vector<std::vector<std::size_t>> Tellers(const Wafer& sites, Dialect dialect,
                                                const std::vector<std::size_t>& leave_out) const;

 private:
  std::string text_;
  std::vector<std::size_t> ends_;
  bool full_ = false;
};

}  // namespace discoplan::data
