// SPDX-License-Identifier: MIT
#pragma once

/// The figures of merit of all wafers of a lot, in the forms that `stats` prints.

#include <optional>
#include <string>

#include "apps/discoplan/command.h"
#include "apps/discoplan/figure_text.h"
#include "discoplan/analysis/zones.h"

namespace discoplan::app {

inline constexpr const char* kDefaultFigures =
    "mean,std_dev,std_dev_percent,minimum,maximum,range,hi_lo_percent";

/// Parts of a wafer whose figures stand on lines of their own.
struct ZoneRule {
  bool quadrants = false;  ///< rings otherwise
  analysis::RingOptions rings;
};

struct StatsOptions {
  FigureList figures = FiguresNamed(kDefaultFigures);
  std::optional<ZoneRule> zones;
  bool formulas = false;  ///< below the table
  int digits = 0;         ///< significant ones; 0 for 5 in a table and 10 in the other forms
};

/// For people: a row for each wafer; where there are several, below them what is said of the lot.
std::string StatsTable(const Lot& lot, const StatsOptions& options);

/// A line for each wafer, with empty fields for figures that have no meaning.
std::string StatsCsv(const Lot& lot, const StatsOptions& options);

/// A list of the wafers, with null for figures that have no meaning.
std::string StatsJson(const Lot& lot, const StatsOptions& options);

/// The same forms of what is said of the lot as a whole, for each parameter: figures of all sites
/// alike, sigma within and between wafers, the worst wafer and the outlying ones.
std::string LotCsv(const Lot& lot, const StatsOptions& options);
std::string LotJson(const Lot& lot, const StatsOptions& options);

}  // namespace discoplan::app
