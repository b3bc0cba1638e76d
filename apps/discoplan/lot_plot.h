// SPDX-License-Identifier: MIT
#pragma once

/// The small plots of a lot's sheet.

#include <span>
#include <string>
#include <string_view>

#include "apps/discoplan/lot_sheet.h"
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
  void (*draw)(wafer& source, Surface& surface, const SheetBox& box);
};

/// Null for a name that is none.
const LotPlot* FindLotPlot(std::string_view kind);

/// Draws one wafer's plot. False for sites that no such wafer holds, or values whose sum is too
/// large.
[[nodiscard]] bool DrawLotPlot(Surface& surface, const LotPlot& plot, const LotSheet& sheet,
                               const LotCell& cell, const SheetBox& box);

}  // namespace discoplan::app
