// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "data/lot.h"
#include "discoplan/core/wafer.h"

namespace discoplan::app {

/// Wafers, and what was done to them: "minus mean, residual of plane"; nothing for "".
struct DerivedLot {
  data::Lot lot;
  std::string what;
};

/// A wafer's sites, and back.
std::vector<Site> SitesOf(const data::Wafer& measured);
void TakeSites(data::Wafer& measured, const std::vector<Site>& sites);

}  // namespace discoplan::app
