// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string_view>

#include "discoplan/controls/plot_control.h"

namespace discoplan {

/// A control by its class name, such as "Plot2D"; nothing for a name that none has. Platform and
/// container outlive it.
DISCOPLAN_EXPORT std::unique_ptr<PlotControl> NewControl(std::string_view class_name,
                                                         Platform& platform, Container* container);

}  // namespace discoplan
