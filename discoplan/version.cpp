// SPDX-License-Identifier: MIT
#include "discoplan/version.h"

namespace discoplan {

std::string LibraryVersion() { return DISCOPLAN_VERSION; }

}  // namespace discoplan
