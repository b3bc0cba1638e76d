// SPDX-License-Identifier: MIT
#pragma once

/// Where this checkout and this build lie. One unit knows, so that all others are compiled alike
/// in any folder.

#include <string>

namespace discoplan {

std::string TestData(const std::string& path);
std::string Example(const std::string& file);
std::string Program();

}  // namespace discoplan
