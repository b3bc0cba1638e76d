// SPDX-License-Identifier: MIT
#pragma once

/// What fields need of the places of the sites alone, kept from field to field: the wafers of a lot
/// are mostly measured at the same places. A field is the same whether or not it was kept.

#include <cstdint>
#include <map>
#include <optional>
#include <vector>

#include "discoplan/figures/lattice_fit.h"
#include "discoplan/figures/thin_plate.h"
#include "discoplan/figures/value_field.h"

namespace discoplan::figures {

class DISCOPLAN_EXPORT PlacePlan {
 public:
  /// The sites in order, those in one place as one with their mean. What is asked for next is about
  /// these.
  std::vector<Sample> Distinct(const SiteView& sites);

  const PlateEquations& Plate(const std::vector<Sample>& samples, double radius, double smoothing);
  /// Where to keep kernels of thin-plate splines at points that are always the same, if they have
  /// been asked for before; nothing for so many sites that they would need much memory.
  std::vector<float>* PlateKernels();
  LatticeFit& LatticeOf(const std::vector<Sample>& samples, double radius);

 private:
  void KeepFor(double radius);
  void Forget();

  std::vector<float> x_;
  std::vector<float> y_;
  std::vector<std::uint32_t> order_;  // of the sites, by x, then y
  double radius_ = 0;
  std::map<double, PlateEquations> of_smoothing_;
  std::vector<float> plate_kernels_;
  bool asked_for_kernels_ = false;
  std::optional<LatticeFit> lattice_;
};

}  // namespace discoplan::figures
