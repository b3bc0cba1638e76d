// SPDX-License-Identifier: MIT
#pragma once

/// What a figure shows and how it looks, from what is asked for on the command line.

#include "apps/discoplan/picture_request.h"
#include "discoplan/figures/lot_figure.h"
#include "hosts/headless/save_figure.h"

namespace discoplan::app {

/// Raises `UsageError` for options that belong to the classic look.
void RefuseClassicOptions(const PlotRequest& plot);

/// Of one page. Differences and residuals have colours about 0.
/// Whether the colours are of differences, about 0.
inline bool IsCentred(const figures::Style& style) {
  return style.difference && style.colours.IsDiverging();
}
figures::Style StyleOf(const LookRequest& look, const DeriveRequest& derive,
                       const FigureSize& size);

/// One wafer, without title and limits. `source` is what it is called in errors. Raises
/// `CommandError` for sites outside the wafer.
struct WaferSource {
  const ReadRequest& data;
  const data::Parameter& parameter;
  const Wafer& wafer;
};
figures::WaferPlot WaferPlotOf(const WaferSource& source, const LookRequest& look,
                               const std::optional<std::string>& style);

figures::PlotKind FigureKindOf(const ControlClass* kind);
FigureFormat FigureFormatOf(const std::string& path);

}  // namespace discoplan::app
