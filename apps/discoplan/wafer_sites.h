// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "data/lot.h"
#include "discoplan/core/wafer.h"

namespace discoplan::app {

/// A wafer's sites, and back.
std::vector<Site> SitesOf(const data::Wafer& measured);
void TakeSites(data::Wafer& measured, const std::vector<Site>& sites);

}  // namespace discoplan::app
