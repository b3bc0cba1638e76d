// SPDX-License-Identifier: MIT
#pragma once

/// A lot of wafers as figures of today: a sheet of one page, or the pages of a report.
///
///     LotPlot lot;
///     lot.title = "Lot 4711";
///     for (const Wafer& wafer : wafers) lot.wafers.push_back(PlotOf(wafer));
///     lot.low = 9.4, lot.high = 10.3;
///     const Figure sheet = MakeLotSheet(PlotKind::Map, lot, {.width = 842, .height = 595}, text);
///
/// As in all figures, no text lies on another or is cut.

#include <cstddef>
#include <span>
#include <string>
#include <vector>

#include "discoplan/figures/wafer_figure.h"

namespace discoplan::figures {

struct LotTable {
  struct Row {
    std::vector<std::string> texts = {};  ///< As many as there are titles, or fewer.
    bool flagged = false;
    bool total = false;  ///< Set apart from those above.
  };
  std::vector<std::string> titles = {};
  std::vector<Row> rows = {};
};

struct LotPlot {
  std::string title;
  std::vector<std::string> facts;  ///< Below the title: "25 wafers", "1225 sites".
  /// The title of each is its name. All have sites.
  std::vector<WaferPlot> wafers;
  std::vector<std::string> labels;  ///< Of the wafers, short: their slots. As many as wafers.
  std::string label_title = "Wafer";
  double low = 0;  ///< Ends of the colour scale of all wafers.
  double high = 1;
  LotTable table;
  std::vector<std::string> notes;  ///< At the foot, the most important first.
};

/// As many as a cassette holds.
inline constexpr std::size_t kWafersOnPage = 25;

/// The wafers from `first` on in small plots of one scale, the charts of the whole lot, and the
/// table. A page wider than high.
DISCOPLAN_EXPORT Figure MakeLotSheet(PlotKind kind, const LotPlot& lot, std::size_t first,
                                     const Style& style, const TextMeasure& text);

/// Charts of the lot and its table, for a page of any shape.
DISCOPLAN_EXPORT Figure MakeLotCover(const LotPlot& lot, const Style& style,
                                     const TextMeasure& text);
/// The small plots alone.
DISCOPLAN_EXPORT Figure MakeLotGallery(PlotKind kind, const LotPlot& lot, std::size_t first,
                                       const Style& style, const TextMeasure& text);

/// What stands over and under the figures of a page.
struct PageHead {
  std::string title;
  std::vector<std::string> facts;
  std::string foot;  ///< "Page 3 of 27"
};
/// Figures of one wafer in a grid. A single one keeps its own title; several are headed by what
/// they show.
DISCOPLAN_EXPORT Figure MakeWaferPage(const PageHead& head, std::span<const PlotKind> kinds,
                                      const WaferPlot& plot, const Style& style,
                                      const TextMeasure& text);

}  // namespace discoplan::figures
