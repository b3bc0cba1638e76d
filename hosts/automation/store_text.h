// SPDX-License-Identifier: MIT
#pragma once

/// A control's property store as JSON.

#include <nlohmann/json.hpp>

#include "discoplan/controls/plot_control.h"
#include "hosts/automation/values.h"

namespace discoplan {

/// The values that the control will read out of {KEY: VALUE}; other keys are left alone. Raises
/// `RequestError` for what is no object, or a form that no value has.
MemoryBag StoreFromJson(const nlohmann::json& store, const PlotControl& control,
                        const ObjectNames& names);

/// What the control writes, in order: {"key", "kind", "value", "default"} each.
nlohmann::json StoreToJson(PlotControl& control, const ObjectNames& names);

}  // namespace discoplan
