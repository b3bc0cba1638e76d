// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>

#include "discoplan/render/plots/contour_plot.h"

namespace discoplan {

struct Message;

/// A contour map on paper.
struct ContourPrint {
  ContourSettings settings;  ///< The radius follows from the area.
  std::string caption = {};
  /// For the box that the plot may raise.
  std::function<void(const Message&)> show = [](const Message&) {};
};

}  // namespace discoplan
