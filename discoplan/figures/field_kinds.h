// SPDX-License-Identifier: MIT
#pragma once

/// One maker for each kind of field. `samples` are the sites, one in each place.

#include <memory>
#include <vector>

#include "discoplan/figures/thin_plate.h"
#include "discoplan/figures/value_field.h"

namespace discoplan::figures {

std::shared_ptr<const ValueField> MakeIdw4Field(const SiteView& sites,
                                                const std::vector<Sample>& samples, double radius);
/// One thin-plate spline.
std::shared_ptr<const ValueField> MakePlateField(std::vector<Sample> samples, double radius);
/// For many sites.
std::shared_ptr<const ValueField> MakeLatticeField(std::vector<Sample> samples, double radius);

}  // namespace discoplan::figures
