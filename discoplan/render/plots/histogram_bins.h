// SPDX-License-Identifier: MIT
#pragma once

/// How many sites lie in each of the bins between the plot limits.

#include <cstdint>
#include <vector>

#include "discoplan/core/wafer_data.h"
#include "discoplan/export.h"

namespace discoplan {

struct DISCOPLAN_EXPORT HistogramBins {
  /// Fewer sites make no bars.
  static constexpr float kFewestSites = 3;

  float lower = 0;  ///< Low end of the value axis.
  float width = 0;  ///< Of one bin; 0 where it can't be told.
  /// By bin, from 1. Empty for too few sites and for a number of bins that no array can have.
  std::vector<std::int16_t> counts;

  /// A site outside the limits isn't counted, nor is one whose bin can't be told.
  static HistogramBins Of(const WaferData& data, float bins);

  /// Highest count, 0 without bins.
  std::int16_t Peak() const;

 private:
  void Count(const WaferData& data);
};

}  // namespace discoplan
