// SPDX-License-Identifier: MIT
#pragma once

/// What the information blocks on paper and under a picture say of a wafer.

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "discoplan/core/wafer.h"

namespace discoplan {

/// How a block writes its numbers.
using NumberFormat = std::string (*)(float value);

struct InformationRow {
  std::string_view label;  ///< Empty for none.
  /// Nothing where there is none to tell. `Overflow` for a number beyond 32-bit floats.
  std::optional<std::string> (*value)(const wafer& source, NumberFormat format);
};

using InformationRows = std::span<const InformationRow>;

InformationRows StatisticsRows();
InformationRows SizeRows();
InformationRows RemarkRows();
/// The same and the name of the file.
InformationRows RemarkRowsWithFile();

}  // namespace discoplan
