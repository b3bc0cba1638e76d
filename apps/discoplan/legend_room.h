// SPDX-License-Identifier: MIT
#pragma once

/// Classic plots of the wafers of one lot are of one size, however long the numbers of their
/// legends are.

#include "apps/discoplan/picture_request.h"
#include "discoplan/controls/control_class.h"

namespace discoplan::app {

/// Widths in twips of the panels beside a plot; 0 where there is none or none is known.
struct LegendRoom {
  float own = 0;     ///< Of the measured wafer.
  float widest = 0;  ///< Of all wafers of its data.

  /// Of a control that leaves its plot as much room as the widest panel does.
  float WidthFor(float width, float height) const;
};

/// Lays out the plots of all wafers of the data, without telling what is wrong with others than the
/// measured one. Those that something is subtracted from stand for themselves.
LegendRoom LegendRoomOf(const ControlClass& kind, const PictureRequest& request,
                        const Wafer& measured, const PlotStage& stage);

}  // namespace discoplan::app
