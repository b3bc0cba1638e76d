// SPDX-License-Identifier: MIT
#pragma once

#include <nlohmann/json.hpp>

namespace discoplan {

/// The float with the fewest digits that read back to it; what is not finite as a text.
nlohmann::json ToJson(float value);
nlohmann::json ToJson(double value);

}  // namespace discoplan
