// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "discoplan/render/plots/bar_plot.h"

namespace discoplan {

/// Bars over the sites of a wafer on paper.
struct BarPrint {
  BeamView view;
  std::string caption = {};
};

}  // namespace discoplan
