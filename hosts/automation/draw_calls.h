// SPDX-License-Identifier: MIT
#pragma once

#include <nlohmann/json.hpp>

#include "discoplan/render/surface.h"

namespace discoplan {

/// Makes the calls of a trace on the surface. Raises `RequestError` at the first call that isn't
/// one; those before it have been made.
void DrawCalls(Surface& surface, const nlohmann::json& calls);

}  // namespace discoplan
