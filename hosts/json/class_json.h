// SPDX-License-Identifier: MIT
#pragma once

#include <nlohmann/json.hpp>

#include "discoplan/controls/control_class.h"

namespace discoplan {

/// Whether enumerators whose name a language reserves have an "alias" beside it.
enum class Aliases { Untold, Told };

/// The classes given with their members, events and all enumerations, as JSON, from their rows.
nlohmann::ordered_json DescribedClasses(std::span<const ControlClass* const> classes,
                                        Aliases aliases = Aliases::Untold);

}  // namespace discoplan
