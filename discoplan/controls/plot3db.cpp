// SPDX-License-Identifier: MIT
#include "discoplan/controls/plot3db.h"

#include "discoplan/dialogs/view_dialogs.h"
#include "discoplan/print/bar_print.h"
#include "discoplan/print/print_wafer.h"
#include "discoplan/render/plots/bar_plot.h"

namespace discoplan {
namespace {

constexpr float kDefaultFoot = 5;

}  // namespace

Plot3DB::Plot3DB(Platform& platform, Container* container)
    : ViewControl(platform, container, kClass, Legend::Intervals) {}

void Plot3DB::BeamWidth(float width) {
  beam_width_ = width;
  Changed("BeamWidth");
}

void Plot3DB::BeamHeight(float height) {
  beam_height_ = height;
  Changed("BeamHeight");
}

void Plot3DB::BeamScale(float scale) {
  beam_scale_ = scale;
  Changed("BeamScale");
}

void Plot3DB::FillDefaults() {
  if (beam_width_ == 0) BeamWidth(kDefaultFoot);
  if (beam_height_ == 0) BeamHeight(kDefaultFoot);
}

BeamView Plot3DB::Bars() const {
  return {.beam_width = beam_width_,
          .beam_height = beam_height_,
          .beam_scale = beam_scale_,
          .grid_rotation = static_cast<float>(GridRotation()),
          .wafer_rotation = static_cast<float>(WaferRotation()),
          .grid_inclination = static_cast<float>(GridInclination())};
}

void Plot3DB::DrawPlot(Surface& surface) { wafer_.D2BeamPlot(surface, Bars(), false, {}); }

void Plot3DB::PrintOn(PrintWafer& print, PageArea& area) {
  print.Print_2DBPlot(wafer_, area, {.view = Bars(), .caption = PlotCaption()});
}

void Plot3DB::ShowPlotOption() {
  const auto dialog = std::make_shared<frmPlotOpt3DB>(platform_);
  dialog->SetValues(wafer_, {beam_width_, beam_height_, beam_scale_, Angles()}, SurfaceBackColor());
  RunDialog(dialog, [this](const frmPlotOpt3DB& confirmed) {
    beam_width_ = confirmed.GetResx();
    beam_height_ = confirmed.GetResy();
    beam_scale_ = confirmed.GetPlotSccale();
    TakeAngles(confirmed);
  });
}

}  // namespace discoplan
