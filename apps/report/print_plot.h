// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "discoplan/controls/plot_control.h"
#include "discoplan/print/print_wafer.h"
#include "hosts/qt/qt_paper.h"

namespace discoplan::app {

/// Columns and rows that give `count` plots the largest maps in an area.
struct Grid {
  int columns = 1;
  int rows = 1;

  static Grid For(std::size_t count, const PageArea& area);
  /// The place of one plot, from the upper left.
  PageArea Cell(std::size_t number, const PageArea& area) const;
};

/// Prints the plot in its frame into the area, and nothing beside it; in a smaller scale where the
/// area has no room for the texts of a plot. Positions count from the corner of the page.
void PrintFitted(PlotControl& control, qt::QtPaper& paper, const PageArea& area);

/// The same in its own scale, whatever the room.
void PrintFramed(PlotControl& control, qt::QtPaper& paper, const PageArea& area);

/// Prints the plot into the area with its legend at the right, if it shows one and there is room.
/// The control forgets the paper again.
void PrintWithLegend(PlotControl& control, const std::shared_ptr<qt::QtPaper>& paper,
                     const PageArea& area);

/// Prints the legend with its upper left corner there; false for a plot that has none.
bool PrintLegendAt(PlotControl& control, float left, float top);

}  // namespace discoplan::app
