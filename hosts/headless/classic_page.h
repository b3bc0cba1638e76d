// SPDX-License-Identifier: MIT
#pragma once

/// Classic plots on paper: as the controls print them, in their frames.
///
///     plot.SetWaferData(x, y, z);
///     figures::Figure page;
///     if (PrintPage(plot, {.width = 452, .height = 339, .text = text}, page) == PrintResult::Done)
///     {
///       WriteWholeFile("map.pdf", ToPdf({&page, 1}, kPagePixels, text.Letters()));
///     }
///
/// A printed plot that finds its page too small or too large for its numbers raises `RunTimeError`.

#include <memory>
#include <string>

#include "discoplan/controls/plot_control.h"
#include "discoplan/figures/shapes.h"
#include "discoplan/print/print_wafer.h"
#include "discoplan/raster/text_painter.h"
#include "discoplan/render/vector_paper.h"
#include "hosts/headless/export.h"

namespace discoplan {

/// The scale of a plot in an area in twips: 1, or less where it has no room for a plot's texts.
DISCOPLAN_HEADLESS_EXPORT float PrintScale(float width, float height);

/// Prints the plot in its frame into the area, and nothing beside it, in that scale. Positions
/// count from the corner of the page.
DISCOPLAN_HEADLESS_EXPORT void PrintFitted(PlotControl& control, VectorPaper& paper,
                                           const PageArea& area);

/// Prints the legend with its upper left corner there; false for a plot that has none.
DISCOPLAN_HEADLESS_EXPORT bool PrintLegendAt(PlotControl& control, float left, float top);

/// Prints the plot into the area with its legend at the right, if it shows one and there is room.
/// The control is at its own printer again afterwards.
DISCOPLAN_HEADLESS_EXPORT PrintResult PrintWithLegend(PlotControl& control,
                                                      const std::shared_ptr<VectorPaper>& paper,
                                                      const PageArea& area);

/// A page of one plot.
struct PageSetting {
  double width = 0;   ///< Points.
  double height = 0;  ///< Points.
  const TextPainter& text;
  std::string font = "Arial";
};

/// Prints the plot and its legend on a page of their own; in a smaller scale where it has no room
/// for their texts, and in a larger one on a page that is larger than their positions reach.
DISCOPLAN_HEADLESS_EXPORT PrintResult PrintPage(PlotControl& control, const PageSetting& setting,
                                                figures::Figure& page);

}  // namespace discoplan
