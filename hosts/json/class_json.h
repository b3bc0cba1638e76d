// SPDX-License-Identifier: MIT
#pragma once

#include <nlohmann/json.hpp>

#include "discoplan/controls/control_class.h"

namespace discoplan {

/// The classes given with their members, events and all enumerations, as JSON, from their rows.
nlohmann::ordered_json DescribedClasses(std::span<const ControlClass* const> classes);

}  // namespace discoplan
