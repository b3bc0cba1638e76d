// SPDX-License-Identifier: MIT
#pragma once

#include <nlohmann/json.hpp>

#include "discoplan/forms/node.h"

namespace discoplan {

/// The node with all below it.
nlohmann::json TreeToJson(const Node& node);

/// What stands in the fields of a form: {NAME: text, or number of a box or a group}.
nlohmann::json FieldsToJson(const Node& form);

}  // namespace discoplan
