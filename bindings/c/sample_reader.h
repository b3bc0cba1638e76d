// SPDX-License-Identifier: MIT
#pragma once

/// What figures of merit are computed from, of one wafer after the other in the same memory, with
/// no wafer made of each.

#include <cstdint>
#include <optional>
#include <vector>

#include "bindings/c/arguments.h"
#include "discoplan/analysis/sample.h"

namespace discoplan::c {

class SampleReader {
 public:
  SampleReader(const discoplan_sites& sites, const discoplan_wafer_options& options);

  /// Of sites `first` to below `last`, until the next call. Null unless it is plain that `NewWafer`
  /// takes all of them; what it does otherwise is its own to tell.
  const analysis::Sample* Read(std::int64_t first, std::int64_t last);

 private:
  struct Columns {
    Numbers x;
    Numbers y;
    Numbers value;
  };

  std::optional<Columns> columns_;
  float farthest_square_ = -1;  // of a site that is neither refused nor left out
  std::vector<float> x_;
  std::vector<float> y_;
  std::vector<float> value_;
  std::vector<Site> sites_;
  analysis::Sample sample_;
};

}  // namespace discoplan::c
