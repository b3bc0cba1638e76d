// SPDX-License-Identifier: MIT
#include "apps/discoplan/plot_kinds.h"

#include <algorithm>
#include <array>

#include "apps/discoplan/command.h"

namespace discoplan::app {
namespace {

constexpr TwipsBox kMapLeast{0, 0, 4500, 3180};
constexpr std::array kKinds = {
    PlotKind{"2D", "Plot2D", "Map", kMapLeast},
    PlotKind{"2DS", "Plot2DS", "Sigma ranges", kMapLeast},
    PlotKind{"2DC", "Plot2DC", "Contours", kMapLeast},
    PlotKind{"2DN", "Plot2DN", "Values", kMapLeast, 1},
    PlotKind{"3D", "Plot3D", "Surface", kMapLeast},
    PlotKind{"3DS", "Plot3DS", "Sigma surface", kMapLeast},
    PlotKind{"3DB", "Plot3DB", "Bars", kMapLeast, 1},
    PlotKind{"histo", "Histo", "Histogram", {0, 0, 2000, 2000}, 2, false},
    PlotKind{"linescan", "LineScan", "Line scan", {0, 0, 4000, 2850}},
};

}  // namespace

std::span<const PlotKind> AllPlotKinds() { return kKinds; }

std::string PlotKindNames() {
  std::string names;
  for (const PlotKind& kind : kKinds) names += (names.empty() ? "" : ", ") + std::string(kind.name);
  return names;
}

std::vector<PlotKind> PlotKindsOf(const std::vector<std::string>& names) {
  std::vector<PlotKind> kinds;
  for (const std::string& name : names) {
    if (name == "all") {
      kinds.insert(kinds.end(), kKinds.begin(), kKinds.end());
      continue;
    }
    const auto kind = std::ranges::find(kKinds, name, &PlotKind::name);
    if (kind == kKinds.end()) {
      throw UsageError("--kind: '" + name + "' is none of " + PlotKindNames() + ", all");
    }
    kinds.push_back(*kind);
  }
  return kinds;
}

}  // namespace discoplan::app
