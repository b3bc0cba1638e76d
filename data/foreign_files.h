// SPDX-License-Identifier: MIT
#pragma once

/// Files that people take for measured data and that aren't read, told by their first bytes.

#include <string>
#include <string_view>

namespace discoplan::data {

/// What a file is and what to do with it, as in "this is an Excel workbook; save it as CSV". Empty
/// for a file that may be read.
std::string ForeignFile(std::string_view first_bytes);

}  // namespace discoplan::data
