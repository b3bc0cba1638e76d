// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "discoplan/export.h"

namespace discoplan {

/// Major and minor version of the library, such as "1.4".
DISCOPLAN_EXPORT std::string LibraryVersion();

}  // namespace discoplan
