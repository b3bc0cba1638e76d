// SPDX-License-Identifier: MIT
#include "tests/places.h"

namespace discoplan {

std::string TestData(const std::string& path) { return DISCOPLAN_TEST_DATA "/" + path; }
std::string Example(const std::string& file) { return DISCOPLAN_EXAMPLES "/" + file; }
std::string Program() { return DISCOPLAN_PROGRAM; }

}  // namespace discoplan
