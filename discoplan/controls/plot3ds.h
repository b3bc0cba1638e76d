// SPDX-License-Identifier: MIT
#pragma once

#include "discoplan/controls/sigma_control.h"
#include "discoplan/controls/view_control.h"

namespace discoplan {

/// The surface in three colours: within, above and below a band around the mean.
class DISCOPLAN_EXPORT Plot3DS final : public SigmaControl<SurfaceControl> {
 public:
  static constinit const ControlClass kClass;

  explicit Plot3DS(Platform& platform, Container* container = nullptr);

  void ShowPlotOption() override;

 private:
  void PrintOn(PrintWafer& print, PageArea& area) override;
  void DrawPlot(Surface& surface) override;
};

}  // namespace discoplan
