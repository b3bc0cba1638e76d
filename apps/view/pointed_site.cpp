// SPDX-License-Identifier: MIT
#include "apps/view/pointed_site.h"

#include <algorithm>
#include <cmath>

#include "discoplan/controls/lattice_control.h"
#include "discoplan/controls/plot2dc.h"
#include "discoplan/controls/plot2dn.h"

namespace discoplan::app {
namespace {

constexpr double kMargin = 6;       // pixels around a map
constexpr double kNearSite = 0.03;  // of the test diameter

/// The picture that the map was drawn at, in pixels.
QSizeF SizeOfMap(PlotControl& control) {
  const Node* surface = control.root().Find("PLOTA");
  if (surface == nullptr || !surface->Picture()) return {};
  const Canvas& canvas = surface->Picture()->canvas();
  return QSizeF(canvas.Width(), canvas.Height());
}

/// What of the wafer a map fits into its picture, in mm; nothing for other plots.
std::optional<double> ShownBy(PlotControl& control) {
  if (dynamic_cast<Plot2DC*>(&control) != nullptr) return control.WaferDiameter();
  if (dynamic_cast<Plot2DN*>(&control) != nullptr) return control.TestDiameter();
  if (const auto* map = dynamic_cast<LatticeControl*>(&control)) {
    return control.Wafer().D2PlotSide(map->Resolution());
  }
  return {};
}

}  // namespace

std::optional<QPointF> PointOnWafer(PlotControl& control, QPointF share) {
  const std::optional<double> shown = ShownBy(control);
  if (!shown || control.Wafer().GetNop() == 0) return {};
  const QSizeF size = SizeOfMap(control);
  const double pixels = std::min(size.width(), size.height()) - kMargin;
  if (!(*shown > 0) || !(pixels > 0)) return {};
  const double scale = pixels / *shown;
  return QPointF((share.x() - 0.5) * size.width() / scale,
                 (0.5 - share.y()) * size.height() / scale);
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
