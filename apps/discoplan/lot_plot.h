// SPDX-License-Identifier: MIT
#pragma once

/// The small plots of a lot's sheet.

#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "apps/discoplan/lot_sheet.h"
#include "apps/discoplan/plot_request.h"
#include "discoplan/core/wafer.h"
#include "discoplan/render/surface.h"

namespace discoplan::app {

/// A square, or the box of a chart, in twips.
struct SheetBox {
  float left = 0;
  float top = 0;
  float width = 0;
  float height = 0;

  float Right() const { return left + width; }
  float Bottom() const { return top + height; }
};

/// What the colours of a kind stand for, which the legend tells.
enum class LotColours { Scale, Sigma, None };

struct LotPlot {
  std::string_view kind;
  LotColours colours;
  bool is_disc;      ///< It lies in the outline of a wafer.
  bool spans_scale;  ///< Values beyond the scale show at its ends; others need all values on it.
  std::size_t least_sites;
  /// With the members of a control of its kind.
  void (*draw)(wafer& source, Surface& surface, const SheetBox& box, const PlotControl& look);
};

/// Null for a name that is none.
const LotPlot* FindLotPlot(std::string_view kind);

/// A control whose members say how the plot of a cell looks: small, unless the request sets
/// something else. Raises as `TakeSettings` does, and for members that nothing of a sheet shows.
std::unique_ptr<PlotControl> LotLook(Platform& platform, const PlotRequest& request,
                                     const LotPlot& plot, const LotSheet& sheet,
                                     const LotCell& cell);

/// Half the band of sigma colours, in standard deviations; 0 for a plot without it.
float SigmaRangeOf(const PlotControl& look);

/// Draws one wafer's plot. False for sites that no such wafer holds, or values whose sum is too
/// large.
[[nodiscard]] bool DrawLotPlot(Surface& surface, const LotPlot& plot, const LotSheet& sheet,
                               const LotCell& cell, const SheetBox& box, const PlotControl& look);

}  // namespace discoplan::app
