// SPDX-License-Identifier: MIT
#pragma once

#include <nlohmann/json.hpp>

#include "discoplan/forms/node.h"

namespace discoplan {

/// The node with all below it.
nlohmann::json TreeToJson(const Node& node);

}  // namespace discoplan
