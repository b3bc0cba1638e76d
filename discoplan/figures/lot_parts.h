// SPDX-License-Identifier: MIT
#pragma once

/// The parts that the pages of a lot are made of, each in a box of a page.

#include "discoplan/figures/lot_figure.h"
#include "discoplan/figures/page.h"

namespace discoplan::figures {

/// Boxes of equal size in rows and columns, as large as plots of that shape can be.
struct PlotGrid {
  int columns = 1;
  int rows = 1;

  /// `above` is the height of the words over each plot, `shape` its width for a height of 1.
  static PlotGrid For(std::size_t count, const Box& area, double above, double shape = 1);
  Box Cell(std::size_t number, const Box& area, double gap) const;
};

/// Puts a figure of its own onto the page; no other text comes into its box.
void PlaceOn(Page& page, Figure figure, const Box& box);

/// How much all names begin with alike, up to a separator; 0 for a single one.
std::size_t CommonBeginning(const std::vector<std::string>& names);
/// With an ellipsis in its place.
std::string WithoutBeginning(const std::string& name, std::size_t common);

struct GalleryPart {
  PlotKind kind;
  std::size_t first;
  std::size_t end;
};
void DrawGallery(Page& page, const Box& box, const LotPlot& lot, const GalleryPart& part,
                 const TextMeasure& text);

/// Means with bars of one sigma, in the order of the wafers.
void DrawTrend(Page& page, const Box& box, const LotPlot& lot);
/// Quartiles, whiskers as far as 1.5 interquartile ranges beyond, and what lies farther off.
void DrawBoxes(Page& page, const Box& box, const LotPlot& lot);
/// Means over rings around the centre: all wafers, the flagged ones and the lot's own.
void DrawProfiles(Page& page, const Box& box, const LotPlot& lot);
/// In two halves beside one another where one would have small letters.
void DrawTable(Page& page, const Box& box, const LotPlot& lot, std::size_t first, std::size_t end);

}  // namespace discoplan::figures
