// SPDX-License-Identifier: MIT
#pragma once

/// The nine kinds of plot as the command line names them.

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "discoplan/forms/node.h"

namespace discoplan::app {

struct PlotKind {
  std::string_view name;
  std::string_view class_name;
  std::string_view title;
  TwipsBox least;               ///< The least size that the control takes.
  std::size_t least_sites = 4;  ///< With less the plot stays empty.
  bool scales = true;  ///< Letters may grow; a kind whose margins are in pixels keeps them small.
};

std::span<const PlotKind> AllPlotKinds();

/// "2D, 2DS, ..."
std::string PlotKindNames();

/// In the order of the names; "all" stands for all. Raises `UsageError` for a name that is none.
std::vector<PlotKind> PlotKindsOf(const std::vector<std::string>& names);

}  // namespace discoplan::app
