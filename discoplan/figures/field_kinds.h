// SPDX-License-Identifier: MIT
#pragma once

/// One maker for each kind of field. `samples` are the sites, one in each place.

#include <memory>
#include <vector>

#include "discoplan/figures/place_plan.h"
#include "discoplan/figures/thin_plate.h"
#include "discoplan/figures/value_field.h"

namespace discoplan::figures {

/// Twice the area of the triangle of three sites, with its sign; 0 where they are nearly in line.
double Determinant(const std::vector<Sample>& three);

std::shared_ptr<const ValueField> MakeIdw4Field(const SiteView& sites,
                                                const std::vector<Sample>& samples, double radius);
/// One thin-plate spline.
std::shared_ptr<const ValueField> MakePlateField(const std::vector<Sample>& samples, double radius,
                                                 PlacePlan& plan);
/// For many sites.
std::shared_ptr<const ValueField> MakeLatticeField(std::vector<Sample> samples, double radius,
                                                   PlacePlan& plan);

/// As the function for everyone, with what is kept of the places.
DISCOPLAN_EXPORT std::shared_ptr<const ValueField> MakeField(const SiteView& sites, double radius,
                                                             Interpolation interpolation,
                                                             PlacePlan& plan);

}  // namespace discoplan::figures
