// SPDX-License-Identifier: MIT
#include <algorithm>

#include "discoplan/base/numbers.h"
#include "discoplan/core/wafer.h"
#include "discoplan/render/plot_frame.h"
#include "discoplan/render/surface.h"
#include "discoplan/render/value_scale.h"

namespace discoplan {
namespace {

/// Centres the text on the site. The height of "0" serves for all, so that the lines of
/// neighbouring sites agree.
void WriteAt(const SurfacePoint& site, const std::string& text, Surface& surface,
             PlotFrame& frame) {
  frame([&] { surface.CurrentX(ToFloat(site.x - surface.TextWidth(text) / 2.0)); });
  frame([&] { surface.CurrentY(ToFloat(site.y - surface.TextHeight("0") / 2.0)); });
  frame([&] { surface.Print(text); });
}

}  // namespace

void wafer::D2Number(Surface& surface, const PlotArea& area) {
  PlotFrame frame(surface, area, PlotFrame::Rounding::Height);
  frame.Open();
  const ValueScale values = ValueScale::Of(*this);
  frame([&] { ScaleFloor = ToFloat(values.MapFloor()); });
  frame.MeasureRectangle();
  double scale = 0;
  frame([&] {
    scale =
        std::min(Divide(frame.width - 6.0, TestDiameter), Divide(frame.height - 6.0, TestDiameter));
  });
  const double step = values.ClassStep(scale, ScaleFloor);
  frame([&] {
    surface.Circle({.centre = {ToFloat(frame.CentreX()), ToFloat(frame.CentreY())},
                    .radius = ToFloat(scale * TestDiameter / 2)});
  });
  SurfacePoint place;
  float height = 0;
  float colour = 0;
  for (const Site& site : sites_) {
    frame.Place(place, scale, site.x, site.y);
    frame([&] { height = ToFloat(values.Height(site.z, scale, ScaleFloor)); });
    ChooseIntervalColour(*this, values.IsFlat(), IntervalClass(height, scale, step), colour);
    if (height == 0) colour = kWhite;
    frame([&] { surface.ForeColor(ToColour(colour)); });
    WriteAt(place, FormatLbl(site.z), surface, frame);
    frame.Refresh();
  }
  frame([&] { setMaximalMinial(PlotMaximum, PlotMinimum); });
}

}  // namespace discoplan
