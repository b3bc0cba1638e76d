// SPDX-License-Identifier: MIT
#include "discoplan/controls/lattice_control.h"

#include "discoplan/render/number_text.h"

namespace discoplan {
namespace {

constexpr float kDefaultResolution = 5;

}  // namespace

void LatticeControl::Resolution(float resolution) {
  if (resolution <= 0) resolution = kDefaultResolution;
  if (resolution > wafer_.TestDiameter / 4.0) resolution = wafer_.TestDiameter / 4;
  resolution_ = resolution;
  Changed("Resolution");
}

void LatticeControl::ShowSites(Sites shown) {
  show_sites_ = shown != Sites::HideSite;
  Changed("ShowSites");
}

void LatticeControl::FillDefaults() {
  if (resolution_ == 0) Resolution(kDefaultResolution);
}

void LatticeControl::CheckBeforeDrawing() {
  if (!(resolution_ > wafer_.TestDiameter / 4.0)) return;
  resolution_ = wafer_.TestDiameter / 4;
  platform_.Show({.text = "Maximal possible resolution is " + PlainNumber(resolution_) + " mm",
                  .title = "Standard resolution to high ",
                  .critical = true,
                  .system_modal = true});
  ShowPlotOption();
}

}  // namespace discoplan
