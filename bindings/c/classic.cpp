// SPDX-License-Identifier: MIT
// The classic look: a control of its own, set up for the wafer as the command line sets it up.
#include <cmath>

#include "bindings/c/drawing.h"
#include "bindings/c/of_thread.h"
#include "hosts/headless/classic_look.h"
#include "hosts/headless/classic_page.h"
#include "hosts/headless/headless_host.h"

namespace discoplan::c {
namespace {

void SetUp(PlotControl& control, const MeasuredWafer& wafer, const Drawing& drawing) {
  const data::Wafer& measured = wafer.Measured();
  control.InitProperties();
  control.WaferDiameter(measured.diameter);
  control.TestDiameter(measured.test_diameter);
  std::string title = drawing.has_title ? drawing.title : measured.name;
  if (wafer.IsRemarkable()) title += (title.empty() ? "" : ": ") + wafer.SitesText();
  control.PlotCaption(title);
  FitLook(control, measured.value);
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
  const Screen screen = ScreenFor(*drawing.kind, drawing.width, drawing.height);
  const bool fits = last != nullptr && last->screen.twips_per_pixel_x == screen.twips_per_pixel_x &&
                    last->font == drawing.font && last->font_file == drawing.font_file &&
                    last->bold_font_file == drawing.bold_font_file;
  if (!fits) {
    last.reset(new Kept{screen, drawing.font, drawing.font_file, drawing.bold_font_file,
                        HeadlessHost(screen, FontsFor(drawing))});
  }
  return last->host;
}

/// A control with its wafer, as large as the picture.
std::unique_ptr<PlotControl> Loaded(const MeasuredWafer& wafer, const Drawing& drawing,
                                    HeadlessHost& host) {
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
  return control;
}

}  // namespace

Canvas PaintClassic(const MeasuredWafer& wafer, const Drawing& drawing) {
  HeadlessHost& host = HostFor(drawing);
  return PaintPicture(*Loaded(wafer, drawing, host), host);
}

figures::Figure PrintClassic(const MeasuredWafer& wafer, const Drawing& drawing) {
  return PrintClassic(*Loaded(wafer, drawing, HostFor(drawing)), drawing);
}

figures::Figure PrintClassic(PlotControl& control, const Drawing& drawing) {
  const PageSetting setting{.width = drawing.size.width,
                            .height = drawing.size.height,
                            .text = TextFor(drawing).Letters(),
                            .font = drawing.font};
  figures::Figure page;
  const PrintResult result = PrintPage(control, setting, page);
  if (result == PrintResult::NothingToPrint) {
    throw Error(DISCOPLAN_BAD_DATA, "there is nothing to print: the control has no data");
  }
  if (result == PrintResult::Failed) {
    const auto pixels = [](float twips) {
      return std::to_string(static_cast<int>(std::ceil(twips / kTwipsPerPixel)));
    };
    const auto& least = control.Class().least_printed;
    Refuse("the control is too small to be printed, for which it takes " + pixels(least.width) +
           " x " + pixels(least.height) + " pixels");
  }
  page.title = control.PlotCaption();
  return page;
}

}  // namespace discoplan::c
