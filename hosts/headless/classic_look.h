// SPDX-License-Identifier: MIT
#pragma once

/// What a classic picture looks like where nothing else is asked for. It is drawn once and looked
/// at long: a map as fine as it gets, and bars as high as they can be told apart.
///
///     HeadlessHost host(ScreenFor(Plot2D::kClass, 800, 600));
///     Plot2D plot(host);
///     plot.WaferDiameter(300);
///     FitLook(plot, values);
///     TakeColours(plot, "viridis");

#include <span>
#include <string_view>

#include "discoplan/controls/plot_control.h"
#include "discoplan/platform/screen.h"
#include "hosts/headless/export.h"

namespace discoplan {

/// For a picture of that kind in pixels. Letters grow with its square root: large pictures get
/// finer detail and larger letters at once. Small ones shrink so that the least size of a control
/// fits.
DISCOPLAN_HEADLESS_EXPORT Screen ScreenFor(const ControlClass& kind, int width, int height);

/// For a control that has its diameters, and the values that it is to show.
DISCOPLAN_HEADLESS_EXPORT void FitLook(PlotControl& control, std::span<const float> values);

/// Cell side in mm: the time that a surface takes grows with the square of its lines, of which
/// nobody sees more than a thousand.
DISCOPLAN_HEADLESS_EXPORT float FinestSurface(const PlotControl& control);

/// Gives the classes of a coloured plot the colours of the map of that name, which is one of
/// `figures::ColourMapNames()`; nothing for "", and for a plot in one colour.
DISCOPLAN_HEADLESS_EXPORT void TakeColours(PlotControl& control, std::string_view colours);

}  // namespace discoplan
