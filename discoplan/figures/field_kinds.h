// SPDX-License-Identifier: MIT
#pragma once

/// One maker for each kind of field. `samples` are the sites, one in each place.

#include <map>
#include <memory>
#include <vector>

#include "discoplan/figures/thin_plate.h"
#include "discoplan/figures/value_field.h"

namespace discoplan::figures {

/// Twice the area of the triangle of three sites, with its sign; 0 where they are nearly in line.
double Determinant(const std::vector<Sample>& three);

std::shared_ptr<const ValueField> MakeIdw4Field(const SiteView& sites,
                                                const std::vector<Sample>& samples, double radius);
/// Equations of splines, kept from field to field: the wafers of a lot are mostly measured at the
/// same places.
class DISCOPLAN_EXPORT PlateStore {
 public:
  const PlateEquations& For(const std::vector<Sample>& samples, double scale, double smoothing);

 private:
  std::vector<Sample> places_;
  double scale_ = 0;
  std::map<double, PlateEquations> of_smoothing_;
};
/// One thin-plate spline.
std::shared_ptr<const ValueField> MakePlateField(std::vector<Sample> samples, double radius,
                                                 PlateStore& store);
/// For many sites.
std::shared_ptr<const ValueField> MakeLatticeField(std::vector<Sample> samples, double radius);

/// As the function for everyone, with equations that are kept.
DISCOPLAN_EXPORT std::shared_ptr<const ValueField> MakeField(const SiteView& sites, double radius,
                                                             Interpolation interpolation,
                                                             PlateStore& store);

}  // namespace discoplan::figures
