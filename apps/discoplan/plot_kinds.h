// SPDX-License-Identifier: MIT
#pragma once

/// The kinds of plot as the command line names them.

#include <string>
#include <vector>

#include "discoplan/controls/control_class.h"

namespace discoplan::app {

using PlotKinds = std::vector<const ControlClass*>;

/// "2D, 2DS, ..."
std::string PlotKindNames();

/// In the order of the names; "all" stands for all. Raises `UsageError` for a name that is none.
PlotKinds PlotKindsOf(const std::vector<std::string>& names);

}  // namespace discoplan::app
