// SPDX-License-Identifier: MIT
#pragma once

/// What the information blocks on paper and under a picture say of a wafer.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "discoplan/core/wafer.h"

namespace discoplan {

struct InformationRow {
  std::string_view label;            ///< Empty for none.
  std::optional<std::string> value;  ///< Nothing where there is none to tell.
};

/// The first 15 characters, which are all that a block has room for.
std::string FirstCharacters(const std::string& text);

/// How a block writes its numbers.
using NumberFormat = std::string (*)(float value);

std::vector<InformationRow> StatisticsRows(const wafer& source, NumberFormat format);
std::vector<InformationRow> SizeRows(const wafer& source, NumberFormat format);
std::vector<InformationRow> RemarkRows(const wafer& source);

}  // namespace discoplan
