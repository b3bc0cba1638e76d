// SPDX-License-Identifier: MIT
#include "apps/view/pointed_site.h"

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

QString Describe(const MeasuredPoints& measured, QPointF millimetres) {
  if (std::hypot(millimetres.x(), millimetres.y()) > measured.diameter / 2) return {};
  std::size_t nearest = measured.count;
  double least = kNearSite * measured.diameter;
  for (std::size_t i = 0; i < measured.count; ++i) {
    const Site site = measured.site(i);
    const double distance = std::hypot(site.x - millimetres.x(), site.y - millimetres.y());
    if (distance >= least) continue;
    least = distance;
    nearest = i;
  }
  const auto text = [](double x, double y, float value) {
    return QStringLiteral("X %1 mm   Y %2 mm   %3")
        .arg(x, 0, 'f', 1)
        .arg(y, 0, 'f', 1)
        .arg(static_cast<double>(value), 0, 'g', 7);
  };
  if (nearest < measured.count) {
    const Site site = measured.site(nearest);
    return text(site.x, site.y, site.z) + QStringLiteral("   (site %1)").arg(nearest + 1);
  }
  return text(millimetres.x(), millimetres.y(), measured.between(millimetres)) +
         QStringLiteral("   (between sites)");
}

QString Describe(PlotControl& control, QPointF millimetres) {
  const std::span<const Site> sites = control.Wafer().Sites();
  return Describe({.count = sites.size(),
                   .diameter = control.TestDiameter(),
                   .site = [sites](std::size_t i) { return sites[i]; },
                   .between =
                       [&control](QPointF mm) {
                         return control.Interpolation(Variant(mm.x()), Variant(mm.y()));
                       }},
                  millimetres);
}

}  // namespace discoplan::app
