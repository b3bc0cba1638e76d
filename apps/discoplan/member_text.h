// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "discoplan/platform/object.h"

namespace discoplan::app {

/// Sets a member from "NAME=VALUE". Numbers are decimal, colours also "#RRGGBB", booleans also
/// "true" and "false". Throws `UsageError` that names the members there are.
void SetMember(Object& object, const std::string& assignment);

}  // namespace discoplan::app
