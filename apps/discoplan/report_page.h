// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "apps/discoplan/vector_file.h"
#include "discoplan/controls/plot_control.h"
#include "discoplan/render/vector_paper.h"

namespace discoplan::app {

struct ReportHead {
  std::string title;
  std::string line;  ///< What identifies the wafer.
  std::string units;
};

/// A page that is filed: head, one wafer's plots, and below them its statistics, its size and the
/// legends. The controls have their data and their captions; they forget the paper again.
void PrintReportPage(const std::shared_ptr<VectorPaper>& paper, const PageSize& size,
                     const ReportHead& head, const std::vector<PlotControl*>& plots);

}  // namespace discoplan::app
