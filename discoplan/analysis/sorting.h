// SPDX-License-Identifier: MIT
#pragma once

/// Decimals in ascending order, found by the floats that they narrow to.
///
///     DecimalSorter sorter;
///     sorter.Sort(values, DecimalsOf(values), sorted);

#include <cstdint>
#include <span>
#include <vector>

namespace discoplan::analysis {

/// Keeps its memory from call to call.
class DecimalSorter {
 public:
  /// As many of each; different floats have decimals in the same order.
  void Sort(std::span<const float> values, std::span<const double> decimals,
            std::span<double> sorted);

 private:
  void SortByDigits(std::span<const float> values);

  std::vector<std::uint64_t> keys_;  // ranks of the values, and their numbers below
  std::vector<std::uint64_t> other_;
};

}  // namespace discoplan::analysis
