// SPDX-License-Identifier: MIT
#pragma once

#include <QPointF>
#include <QString>
#include <optional>

#include "hosts/qt/plot_widget.h"

namespace discoplan::app {

/// Where a flat map shows a point of its wafer: millimetres from the centre, Y up. `share` is the
/// point's place in the picture, 0 to 1 from the upper left corner. Nothing for other plots.
std::optional<QPointF> PointOnWafer(PlotControl& control, QPointF share);

/// The site next to that point and its value, or the value between the sites where none is near.
/// Empty outside the measured area.
QString Describe(PlotControl& control, QPointF millimetres);

}  // namespace discoplan::app
