// SPDX-License-Identifier: MIT
#pragma once

/// A page of a lot's sheet in the classic look: maps in a grid, a colour bar, the trend of the
/// means and the table of figures.

#include <cstddef>
#include <functional>
#include <memory>

#include "apps/discoplan/lot_plot.h"
#include "apps/discoplan/lot_sheet.h"
#include "discoplan/render/surface.h"

namespace discoplan::app {

/// Twips of a page wider than high; A4.
inline constexpr float kSheetWidth = 16838;
inline constexpr float kSheetHeight = 11906;

struct LotPageOptions {
  const LotPlot* plot = nullptr;
  /// A control whose members the plot of a cell follows.
  std::function<std::unique_ptr<PlotControl>(const LotSheet&, const LotCell&)> look;
  float height = kSheetHeight;  ///< The width is always `kSheetWidth`.
};

/// Columns and rows that give `count` squares with two lines of text below each the largest size.
struct LotGrid {
  int columns = 1;
  int rows = 1;
  float side = 0;  ///< of a square, in twips

  static LotGrid For(std::size_t count, const SheetBox& area);
  /// The square of one plot, from the upper left.
  SheetBox Square(std::size_t number, const SheetBox& area) const;
};

/// On a white surface in twips, from its upper left corner. Raises `std::runtime_error` that names
/// the wafer whose sites or values can't be drawn.
void DrawLotPage(Surface& surface, const LotSheet& sheet, std::size_t page,
                 const LotPageOptions& options);

}  // namespace discoplan::app
