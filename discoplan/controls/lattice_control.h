// SPDX-License-Identifier: MIT
#pragma once

#include "discoplan/controls/map_control.h"

namespace discoplan {

/// What the two flat maps have in common: a pitch of the lattice, and marks on the sites.
class DISCOPLAN_EXPORT LatticeControl : public MapControl {
 public:
  /// Cell side in mm; 0 or less becomes 5, and a quarter of the test diameter is the most.
  float Resolution() const { return resolution_; }
  void Resolution(float resolution);
  Sites ShowSites() const { return show_sites_ ? Sites::ShowSite : Sites::HideSite; }
  void ShowSites(Sites shown);

 protected:
  using MapControl::MapControl;

  void FillDefaults() override;
  double ShownSide() const override { return wafer_.D2PlotSide(resolution_); }
  /// A test diameter that shrank may have left the pitch too large.
  void CheckBeforeDrawing() override;

  float resolution_ = 0;
  bool show_sites_ = false;
};

}  // namespace discoplan
