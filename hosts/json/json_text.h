// SPDX-License-Identifier: MIT
#pragma once

/// JSON as every program writes it: each number with the fewest digits that read back to it, and
/// of those the nearest to it.

#include <nlohmann/json.hpp>
#include <string>

namespace discoplan {

/// On one line, or with `indent` spaces for each level where it isn't negative. What is no UTF-8
/// in a text is replaced; what is no number is null.
std::string JsonText(const nlohmann::json& value, int indent = -1);
/// The same with the keys in their own order.
std::string JsonText(const nlohmann::ordered_json& value, int indent = -1);

}  // namespace discoplan
