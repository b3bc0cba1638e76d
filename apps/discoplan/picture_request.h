// SPDX-License-Identifier: MIT
#pragma once

/// What is asked of a picture of one wafer, whichever format it is written in.

#include <array>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "apps/discoplan/derive.h"
#include "apps/discoplan/plot_request.h"

namespace discoplan::app {

struct PixelSize {
  int width = 800;
  int height = 600;
  double width_mm = 0;  ///< Above 0 if the size was given in millimetres.
  double height_mm = 0;
};

/// The four sides that a notch or flat may be at.
const std::array<std::string, 4>& NotchSides();

/// How the picture looks; all but the first two belong to the modern look.
struct LookRequest {
  bool classic = false;
  std::string colours;  ///< Name of a colour map; empty for the look's own.
  int bands = 0;
  std::string interpolation = "smooth";
  std::string notch = "bottom";
  std::string quantity;
  std::string font;
  bool dark = false;
  bool transparent = false;
  bool values = false;
  bool no_isolines = false;
  std::string uniformity;
  std::vector<double> view;  ///< Rotation and elevation in degrees; empty for the look's own.
  std::vector<double> cut;   ///< X and Y of its ends in mm; empty for one through the centre.
  std::vector<double> control_limits;  ///< Lower and upper; empty for none.
  int bins = 0;
  double sigma_range = 1;
};
/// Options of the modern look, and which look it is. What makes no sense is refused when all are
/// parsed; `then` is done after that.
void AddLookOptions(CLI::App& command, LookRequest& look, std::function<void()> then = {});

/// From "WIDTHxHEIGHT". Raises `UsageError`.
PixelSize ParseSize(const std::string& text);

struct PictureRequest {
  ReadRequest data;
  DeriveRequest derive;
  PlotRequest plot;
  std::string output;
  PixelSize size;  ///< of each plot
  std::optional<double> dpi;
  LookRequest look;
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
