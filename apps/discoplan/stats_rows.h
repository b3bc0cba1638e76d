// SPDX-License-Identifier: MIT
#pragma once

/// The lines of a table of figures, whichever form it has.

#include <optional>
#include <string>
#include <vector>

#include "apps/discoplan/stats_group.h"
#include "apps/discoplan/stats_table.h"
#include "discoplan/analysis/zones.h"

namespace discoplan::app {

using Figures = std::vector<std::optional<double>>;

Figures FiguresOf(const FigureList& columns, const analysis::Sample& sample);

/// Figures of a wafer, or of a zone of it.
struct StatsRow {
  const Wafer* wafer = nullptr;  ///< none for all wafers together
  std::string name;
  std::optional<analysis::Zone> zone;
  std::size_t sites = 0;
  Figures figures;
};

/// Wafer by wafer, and then all sites of those if there are several.
std::vector<StatsRow> RowsOf(const StatsGroup& group, const StatsOptions& options);

}  // namespace discoplan::app
