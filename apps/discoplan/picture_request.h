// SPDX-License-Identifier: MIT
#pragma once

/// What is asked of a picture of one wafer, whichever format it is written in.

#include <string>
#include <vector>

#include "apps/discoplan/plot_request.h"

namespace discoplan::app {

struct PixelSize {
  int width = 800;
  int height = 600;
};

struct PictureRequest {
  ReadRequest data;
  PlotRequest plot;
  std::string output;
  PixelSize size;  ///< of each plot
};

void AddPictureOptions(CLI::App& command, PictureRequest& request);

/// Plots of one size in rows and columns, as many of the one as of the other or a row less.
struct SheetGrid {
  int columns = 1;
  int rows = 1;

  static SheetGrid For(std::size_t count);
  int ColumnOf(std::size_t number) const { return static_cast<int>(number) % columns; }
  int RowOf(std::size_t number) const { return static_cast<int>(number) / columns; }
};

}  // namespace discoplan::app
