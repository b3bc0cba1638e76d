// SPDX-License-Identifier: MIT
#pragma once

/// What the sheet of a lot shows, in any look and on any device: texts, values and flags, but no
/// places and no pixels.
///
///     for (const LotSheet& sheet : SheetsOf(derived, options)) {
///       for (std::size_t page = 0; page < sheet.Pages(); ++page) DrawLotPage(surface, sheet,
///       page);
///     }

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "apps/discoplan/colour_limits.h"
#include "apps/discoplan/figure_text.h"
#include "data/lot.h"
#include "discoplan/analysis/lot_summary.h"

namespace discoplan::app {

struct LotSheetOptions {
  FigureList figures = FiguresNamed("mean,std_dev,std_dev_percent,range");
  int digits = 4;
  std::optional<ColourLimits> limits;  ///< of the colours, in place of robust ones
  std::optional<std::string> caption;  ///< in place of the file's name
  bool by_scale = true;                ///< colours of the plots go by it, which a note tells then
};

/// A wafer's place in the grid, with the two lines below its map.
struct LotCell {
  std::string name;
  std::string statistics;  ///< "9.747 ± 0.2161"
  std::string flag;        ///< what is outlying about it: "mean", "sigma"; nothing for ""
  float diameter = 0;
  float test_diameter = 0;
  std::vector<Site> sites;
};

struct TrendPoint {
  double mean = 0;
  double sigma = 0;  ///< half the height of its bar; 0 for a wafer of one site
  bool outlying = false;
};

/// Values that are round numbers, for an axis that spans `low` to `high`.
struct Axis {
  double low = 0;
  double high = 0;
  std::vector<double> ticks;
  std::vector<std::string> labels;
};
Axis AxisOver(double low, double high, int most_ticks);

/// Means with bars of one sigma, in the order of the wafers.
struct LotTrend {
  std::string title;
  std::vector<TrendPoint> points;
  std::vector<std::string> labels;  ///< slots, or places in the order from 1
  std::string label_title;          ///< "Slot" or "Wafer"
  double mean = 0;                  ///< of all sites
  Axis axis;
};

struct LotTableRow {
  std::vector<std::string> texts;
  bool outlying = false;
};

struct LotSheet {
  /// A cassette holds as many.
  static constexpr std::size_t kWafersOnPage = 25;

  std::string title;
  std::string subtitle;
  analysis::RobustRange scale;            ///< of all maps
  std::vector<std::string> scale_labels;  ///< of the ends of the ten classes, from the lowest
  analysis::RobustRange extent;           ///< of all values
  std::vector<LotCell> cells;
  LotTrend trend;
  std::vector<std::string> table_titles;
  std::vector<LotTableRow> table;                        ///< one for each cell
  LotTableRow all_sites;                                 ///< below them
  std::vector<std::pair<std::string, std::string>> lot;  ///< name and value, below those
  std::vector<std::string> notes;                        ///< at the foot

  std::size_t Pages() const { return (cells.size() + kWafersOnPage - 1) / kWafersOnPage; }
};

/// One for each parameter that was measured. Raises as `EndsOf` does.
std::vector<LotSheet> SheetsOf(const data::Lot& lot, const LotSheetOptions& options);

}  // namespace discoplan::app
