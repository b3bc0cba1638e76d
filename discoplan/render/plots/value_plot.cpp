// SPDX-License-Identifier: MIT
#include "discoplan/render/plots/value_plot.h"

#include <algorithm>

#include "discoplan/base/numbers.h"
#include "discoplan/core/wafer_data.h"
#include "discoplan/render/number_text.h"
#include "discoplan/render/plots/plot_frame.h"
#include "discoplan/render/plots/value_scale.h"
#include "discoplan/render/surface.h"

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

float DrawValues(const WaferData& data, Surface& surface, const PlotArea& area) {
  PlotFrame frame(surface, area, PlotFrame::Rounding::Height);
  frame.Open();
  const ValueScale values = ValueScale::Of(data);
  float floor = data.scale_floor;
  frame.Keep(floor, values.MapFloor());
  frame.MeasureRectangle();
  double scale = 0;
  frame.KeepScale(scale, data.test_diameter, data.test_diameter);
  const double step = values.ClassStep(scale, floor);
  frame([&] {
    surface.Circle({.centre = {ToFloat(frame.CentreX()), ToFloat(frame.CentreY())},
                    .radius = ToFloat(scale * data.test_diameter / 2)});
  });
  SurfacePoint place;
  float height = 0;
  float colour = 0;
  for (const Site& site : data.sites) {
    frame.Place(place, scale, site.x, site.y);
    frame.Keep(height, values.Height(site.z, scale, floor));
    ChooseIntervalColour(data, values.IsFlat(), IntervalClass(height, scale, step), colour);
    if (height == 0) colour = kWhite;
    frame([&] { surface.ForeColor(ToColour(colour)); });
    WriteAt(place, FormatLegendValue(site.z), surface, frame);
    frame.Refresh();
  }
  return floor;
}

}  // namespace discoplan
