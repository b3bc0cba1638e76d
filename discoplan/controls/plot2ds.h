// SPDX-License-Identifier: MIT
#pragma once

#include "discoplan/controls/lattice_control.h"
#include "discoplan/controls/sigma_control.h"

namespace discoplan {

/// Map of a wafer in three colours: within, above and below a band around the mean.
class DISCOPLAN_EXPORT Plot2DS final : public SigmaControl<LatticeControl> {
 public:
  static constinit const ControlClass kClass;

  explicit Plot2DS(Platform& platform, Container* container = nullptr);

  /// Result codes of `PrintResult`, as numbers.
  float PrintPlot(float& left, float& top, float& width, float& height);

  void ShowPlotOption() override;

 private:
  void PrintOn(PrintWafer& print, PageArea& area) override;
  void DrawPlot(Surface& surface) override;
};

}  // namespace discoplan
