// SPDX-License-Identifier: MIT
#include "discoplan/dialogs/map_dialogs.h"
#include "discoplan/core/enumerations.h"
#include "discoplan/render/plots/contour_plot.h"

namespace discoplan {

std::vector<OptionGroup::Option> ShowOrHide() {
  return {{"Show", Sites::ShowSite}, {"Hide", Sites::HideSite}};
}

frmPlotOpt2d::frmPlotOpt2d(Platform& platform)
    : OptionDialog(platform, "frmPlotOpt2d", {"frmplot", "2D Plot"}),
      resolution_(AddNumber("Resolution : ", "tresx", "mm")),
      marks_(AddOptions("Marked Sites:", "optMark", ShowOrHide())) {
  CheckOnOk(resolution_, "Resolution ", 0.001);
  Finish();
}

void frmPlotOpt2d::SetValues(const wafer& source, float resolution, bool show_sites,
                             Colour back_color) {
  Begin(source, back_color);
  resolution_.Open(resolution);
  marks_.Choose(show_sites ? -1 : 0);
}

frmPlotOpt2ds::frmPlotOpt2ds(Platform& platform)
    : OptionDialog(platform, "frmPlotOpt2ds", {"frmplot", "2D Sigma Plot"}),
      resolution_(AddNumber("Resolution : ", "tresx", "mm")),
      sigma_range_(AddNumber("Sigma Range: ", "SSigma")),
      unused_(AddNumber("Resolution Y: ", "tresy", "mm")),
      marks_(AddOptions("Marked Sites:", "optMark", ShowOrHide())) {
  sigma_range_.Open(0.5F);
  CheckOnOk(resolution_, "Resolution ", 0.001);
  CheckOnOk(sigma_range_, "Sigma Range ", 0.001, 1000);
  Finish();
}

void frmPlotOpt2ds::SetValues(const wafer& source, float resolution, float sigma_range,
                              bool show_sites, Colour back_color) {
  Begin(source, back_color);
  resolution_.Open(resolution);
  unused_.Open(resolution);
  sigma_range_.Open(sigma_range);
  marks_.Choose(show_sites ? -1 : 0);
}

frmPlotOpt2DC::frmPlotOpt2DC(Platform& platform)
    : OptionDialog(platform, "frmPlotOpt2DC", {"frmplot", "2D Contour Plot"}),
      interval_(AddNumber("Interval:", "tdist", "%")),
      quality_(AddOptions("Plot Resolution:", "OptQuali",
                          {{"High", ResoEnum::HighQuality},
                           {"Auto", ResoEnum::Automatic},
                           {"Low", ResoEnum::LowQuality}})),
      marks_(AddOptions("Marked Sites:", "OptExcon",
                        {{"exact", ExconEnum::Exact},
                         {"converted", ExconEnum::Converted},
                         {"none", ExconEnum::None}})),
      colours_(AddOptions(
          "Draw Plot:", "Optcol",
          {{"colored", DrawColEnum::ColorPlot}, {"black/white", DrawColEnum::BWhitePlot}})) {
  CheckOnOk(interval_, "Interval ", 0.009, 1000);
  Finish();
}

void frmPlotOpt2DC::SetValues(const wafer& source, const ContourSettings& settings,
                              Colour back_color) {
  Begin(source, back_color);
  interval_.Open(settings.interval);
  quality_.Choose(settings.resolution);
  marks_.Choose(settings.mark_sites);
  colours_.Choose(settings.plot_colored);
}

frmPlotHist::frmPlotHist(Platform& platform)
    : OptionDialog(platform, "frmPlotHist", {"Frame9", "Histogram Options"}),
      resolution_(AddNumber("Resolution : ", "tresx", "Ranges", NumberEntry::Filter::Whole)) {
  CheckOnOk(resolution_, "Resolution ", 1, 1000);
  Finish();
}

void frmPlotHist::SetValues(const wafer& source, float resolution, Colour back_color) {
  Begin(source, back_color);
  resolution_.Open(resolution);
}

void frmPlotHist::Accept() {
  if (resolution_.value() != resolution_.opening()) return OptionDialog::Accept();
  Hide();
}

}  // namespace discoplan
