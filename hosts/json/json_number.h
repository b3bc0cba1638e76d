// SPDX-License-Identifier: MIT
#pragma once

#include <nlohmann/json.hpp>
#include <optional>

namespace discoplan {

/// The float with the fewest digits that read back to it; what is not finite as a text.
nlohmann::json ToJson(float value);
nlohmann::json ToJson(double value);

/// The number, also of the text of one that is not finite; nothing for anything else.
std::optional<double> ToNumber(const nlohmann::json& value);

}  // namespace discoplan
