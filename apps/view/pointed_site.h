// SPDX-License-Identifier: MIT
#pragma once

#include <QPointF>
#include <QString>
#include <functional>
#include <optional>

#include "hosts/qt/plot_widget.h"

namespace discoplan::app {

/// Where a flat map shows a point of its wafer: millimetres from the centre, Y up. `share` is the
/// point's place in the picture, 0 to 1 from the upper left corner. Nothing for other plots.
std::optional<QPointF> PointOnWafer(PlotControl& control, QPointF share);

/// What was measured of a wafer.
struct MeasuredPoints {
  std::size_t count = 0;
  double diameter = 0;  ///< Of the measured area, in mm.
  std::function<Site(std::size_t)> site;
  std::function<float(QPointF)> between;  ///< The value at a point without a site.
};

/// The site next to that point and its value, or the value between the sites where none is near.
/// Empty outside the measured area.
QString Describe(const MeasuredPoints& measured, QPointF millimetres);
QString Describe(PlotControl& control, QPointF millimetres);

}  // namespace discoplan::app
