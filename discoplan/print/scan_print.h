// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "discoplan/render/plots/scan_plot.h"

namespace discoplan {

/// A line scan on paper.
struct ScanPrint {
  ScanLine cut;
  std::string caption = {};
};

}  // namespace discoplan
