// SPDX-License-Identifier: MIT
#pragma once

/// What a table calls its columns, for people who have to choose among them.

#include <string>
#include <vector>

#include "data/read.h"

namespace discoplan::data {

/// The names in the head of `request.path`, as `Read` finds it, in their order. Empty for a table
/// without a head, for other kinds of file, and for one that can't be read.
std::vector<std::string> ColumnNames(const ReadRequest& request);

}  // namespace discoplan::data
