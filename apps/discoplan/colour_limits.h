// SPDX-License-Identifier: MIT
#pragma once

/// The ends of a colour scale, as they are asked for: numbers, or percentages of the values.

#include <CLI/CLI.hpp>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace discoplan::app {

struct ColourLimits {
  double low = 0;  ///< below `high`
  double high = 0;
  bool in_percent = false;
};

/// --limits LOW HIGH, as "9.5 10.5" or "1% 99%".
void AddLimitsOption(CLI::App& command, std::optional<ColourLimits>& limits,
                     const std::string& meaning);

/// The ends as numbers, lower one first. Raises `CommandError` at `source` if all values between
/// the percentages are the same. `values` aren't empty.
std::pair<float, float> EndsOf(const ColourLimits& limits, const std::string& source,
                               std::vector<float> values);

}  // namespace discoplan::app
