// SPDX-License-Identifier: MIT
// The classic look: a control of its own, set up for the wafer as the command line sets it up.
#include <algorithm>
#include <cmath>

#include "bindings/c/drawing.h"
#include "bindings/c/of_thread.h"
#include "discoplan/base/algorithms.h"
#include "discoplan/controls/lattice_control.h"
#include "discoplan/controls/plot3db.h"
#include "discoplan/controls/sigma_control.h"
#include "discoplan/controls/view_control.h"
#include "discoplan/platform/screen.h"
#include "hosts/headless/headless_host.h"

namespace discoplan::c {
namespace {

/// Letters grow with the square root of the picture. Small ones shrink so that the least size of a
/// control fits.
Screen ScreenFor(const Drawing& drawing) {
  constexpr float kPlainSide = 300;
  const ControlClass& kind = *drawing.kind;
  const auto width = static_cast<float>(drawing.width);
  const auto height = static_cast<float>(drawing.height);
  const float grown =
      kTwipsPerPixel / std::sqrt(std::max(1.0F, std::min(width, height) / kPlainSide));
  const bool scales = kind.family != Family::Chart;  // whose margins are in pixels
  const float twips = std::max(
      {scales ? grown : kTwipsPerPixel, kind.least.width / width, kind.least.height / height});
  return {twips, twips};
}

void FitLook(PlotControl& control, const data::Wafer& measured) {
  constexpr float kFinestCells = 200;
  constexpr float kFinestLines = 1000;
  constexpr float kBarHeight = 0.2F;  // between the limits, in parts of the diameter
  control.BackColor(kWhite);
  if (auto* bars = dynamic_cast<Plot3DB*>(&control)) {
    const auto [low, high] = MinMax(measured.value);
    if (low < high) bars->BeamScale(kBarHeight * control.WaferDiameter() / (high - low));
  }
  if (auto* map = dynamic_cast<LatticeControl*>(&control)) {
    map->Resolution(map->TestDiameter() / kFinestCells);
  }
  auto* surface = dynamic_cast<SurfaceControl*>(&control);
  const float finest = control.WaferDiameter() / kFinestLines;
  if (surface != nullptr && surface->XResolution() < finest) {
    surface->XResolution(finest);
    surface->YResolution(finest);
  }
}

void TakeColours(PlotControl& control, const std::string& colours) {
  if (colours.empty()) return;
  std::vector<const Member*> intervals;  // from the highest on
  for (int i = 0; i < wafer::kLegendRows; ++i) {
    const Member* member = control.Members().Find("IntervalColor" + std::to_string(i));
    if (member != nullptr) intervals.push_back(member);
  }
  const auto bands =
      figures::BandColours(*figures::FindColourMap(colours), static_cast<int>(intervals.size()));
  for (std::size_t i = 0; i < bands.size(); ++i) {
    const figures::Rgba& band = bands[bands.size() - 1 - i];
    const auto packed = static_cast<Colour>(band.red | band.green << 8 | band.blue << 16);
    intervals[i]->Set(control, Variant(packed));
  }
}

void SetUp(PlotControl& control, const MeasuredWafer& wafer, const Drawing& drawing) {
  const data::Wafer& measured = wafer.Measured();
  control.InitProperties();
  control.WaferDiameter(measured.diameter);
  control.TestDiameter(measured.test_diameter);
  std::string title = drawing.has_title ? drawing.title : measured.name;
  if (wafer.LeftOut() > 0) title += (title.empty() ? "" : ": ") + wafer.SitesText();
  control.PlotCaption(title);
  FitLook(control, measured);
  if (wafer.Looks().orientation == figures::Orientation::Flat) control.WaferStyle(WaferSt::Flat);
  const Member* sigma = control.Members().Find("SigmaRange");
  if (drawing.sigma_range > 0 && sigma != nullptr) {
    sigma->Set(control, Variant(drawing.sigma_range));
  }
  if (drawing.Has(DISCOPLAN_NO_LEGEND)) control.HideLegend(true);
}

/// The thread's last host, as long as plots are of one size: to look for fonts and to draw letters
/// takes longer than a plot.
HeadlessHost& HostFor(const Drawing& drawing) {
  struct Kept {
    Screen screen;
    std::string font, font_file, bold_font_file;
    HeadlessHost host;
  };
  struct Last {
    std::unique_ptr<Kept> host;
  };
  std::unique_ptr<Kept>& last = OfThread<Last>().host;
  const Screen screen = ScreenFor(drawing);
  const bool fits = last != nullptr && last->screen.twips_per_pixel_x == screen.twips_per_pixel_x &&
                    last->font == drawing.font && last->font_file == drawing.font_file &&
                    last->bold_font_file == drawing.bold_font_file;
  if (!fits) {
    last.reset(new Kept{screen, drawing.font, drawing.font_file, drawing.bold_font_file,
                        HeadlessHost(screen, FontsFor(drawing))});
  }
  return last->host;
}

}  // namespace

Canvas PaintClassic(const MeasuredWafer& wafer, const Drawing& drawing) {
  HeadlessHost& host = HostFor(drawing);
  std::unique_ptr<PlotControl> control = drawing.kind->make(host, nullptr);
  SetUp(*control, wafer, drawing);
  const Screen& screen = host.screen();
  control->SetSize(static_cast<float>(drawing.width) * screen.twips_per_pixel_x,
                   static_cast<float>(drawing.height) * screen.twips_per_pixel_y);
  const data::Wafer& measured = wafer.Measured();
  if (control->SetWaferData(measured.x, measured.y, measured.value) != LoadResult::Loaded) {
    throw Error(DISCOPLAN_BAD_DATA, "the sites don't fit the plot");
  }
  if (drawing.limits) control->SetPlotLimit(drawing.limits->first, drawing.limits->second);
  TakeColours(*control, drawing.colours);
  control->Plot();
  return PaintPicture(*control, host);
}

}  // namespace discoplan::c
