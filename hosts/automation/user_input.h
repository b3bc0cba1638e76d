// SPDX-License-Identifier: MIT
#pragma once

#include <nlohmann/json.hpp>

#include "discoplan/forms/node.h"

namespace discoplan {

/// The user acts on a child of the tree: one action such as ["type", "AngleValue", "90"]. Raises
/// `RequestError` for what is no action, and for a child that isn't there.
void ActOn(Node& root, const nlohmann::json& action);

}  // namespace discoplan
