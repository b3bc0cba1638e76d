// SPDX-License-Identifier: MIT
#pragma once

/// Reports in the modern look.

#include <string>
#include <vector>

#include "apps/discoplan/derive.h"
#include "apps/discoplan/lot_figures.h"

namespace discoplan::app {

struct FigureReport {
  const ReadRequest& reading;
  const DeriveRequest& derive;
  const std::vector<std::string>& files;
  const PlotRequest& plot;
  const LookRequest& look;
  std::string output;
  double width = 595;  ///< Of the pages, in points.
  double height = 842;
  std::string title;
  std::string lot;
  std::string wafer;
  bool summary = false;    ///< A cover with table and charts, and all wafers side by side.
  bool no_wafers = false;  ///< Without the wafers' own pages.
};

/// Writes a PDF file.
void WriteFigureReport(const FigureReport& report);

}  // namespace discoplan::app
