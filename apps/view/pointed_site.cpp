// SPDX-License-Identifier: MIT
#include "apps/view/pointed_site.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "discoplan/controls/map_control.h"

namespace discoplan::app {
namespace {

constexpr double kNearSite = 0.03;  // of the test diameter

}  // namespace

std::optional<QPointF> PointOnWafer(PlotControl& control, QPointF share) {
  const auto* map = dynamic_cast<MapControl*>(&control);
  const Node* surface = control.root().Find("PLOTA");
  if (map == nullptr || surface == nullptr) return {};
  const Canvas& drawn = std::as_const(*surface->Picture()).canvas();
  const auto point = map->PointAt({static_cast<float>(share.x() * drawn.Width()),
                                   static_cast<float>(share.y() * drawn.Height())});
  if (!point) return {};
  return QPointF(point->x, point->y);
}

QString Describe(PlotControl& control, QPointF millimetres) {
  const double diameter = control.TestDiameter();
  if (std::hypot(millimetres.x(), millimetres.y()) > diameter / 2) return {};
  const auto distance = [&](const Site& site) {
    return std::hypot(site.x - millimetres.x(), site.y - millimetres.y());
  };
  const std::span<const Site> sites = control.Wafer().Sites();
  const auto nearest = std::ranges::min_element(sites, {}, distance);
  const auto text = [](double x, double y, float value) {
    return QStringLiteral("X %1 mm   Y %2 mm   %3")
        .arg(x, 0, 'f', 1)
        .arg(y, 0, 'f', 1)
        .arg(static_cast<double>(value), 0, 'g', 7);
  };
  if (nearest != sites.end() && distance(*nearest) < kNearSite * diameter) {
    return text(nearest->x, nearest->y, nearest->z) +
           QStringLiteral("   (site %1)").arg(nearest - sites.begin() + 1);
  }
  const float between = control.Interpolation(Variant(millimetres.x()), Variant(millimetres.y()));
  return text(millimetres.x(), millimetres.y(), between) + QStringLiteral("   (between sites)");
}

}  // namespace discoplan::app
