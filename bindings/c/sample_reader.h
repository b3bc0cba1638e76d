// SPDX-License-Identifier: MIT
#pragma once

/// What figures of merit are computed from, of one wafer after the other in the same memory, with
/// no wafer made of each.

#include <cstdint>
#include <limits>
#include <optional>
#include <vector>

#include "bindings/c/arguments.h"
#include "discoplan/analysis/sample.h"

namespace discoplan::c {

class SampleReader {
 public:
  SampleReader(const discoplan_sites& sites, const discoplan_wafer_options& options);

  /// Of sites `first` to below `last`, until the next call. Null unless it is plain of each whether
  /// `NewWafer` takes it or leaves it out; what it does otherwise is its own to tell.
  const analysis::Sample* Read(std::int64_t first, std::int64_t last);

 private:
  struct Columns {
    Numbers x;
    Numbers y;
    Numbers value;
  };

  void SetReach(const discoplan_wafer_options& options);
  bool IsTaken(const Site& site) const;
  bool IsLeftOut(const Site& site) const;

  std::optional<Columns> columns_;
  const bool skips_invalid_;
  // Squared distances from the centre: of sites that are surely taken, at most; that are surely
  // left out, at least, or not a number.
  float taken_ = -1;
  float left_out_ = std::numeric_limits<float>::quiet_NaN();
  std::vector<float> x_;
  std::vector<float> y_;
  std::vector<float> value_;
  std::vector<Site> sites_;
  analysis::Sample sample_;
};

}  // namespace discoplan::c
