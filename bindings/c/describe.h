// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace discoplan::c {

/// All control classes as JSON on one line.
std::string DescribedClasses();

}  // namespace discoplan::c
