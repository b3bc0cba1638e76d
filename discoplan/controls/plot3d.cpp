// SPDX-License-Identifier: MIT
#include "discoplan/controls/plot3d.h"

#include "discoplan/dialogs/view_dialogs.h"
#include "discoplan/print/print_wafer.h"
#include "discoplan/print/surface_print.h"
#include "discoplan/render/plots/surface_plot.h"

namespace discoplan {

Plot3D::Plot3D(Platform& platform, Container* container)
    : SurfaceControl(platform, container, kClass, Legend::Intervals) {}

void Plot3D::PlotType(PlotTypeEnum type) {
  plot_type_ = type;
  Changed("PlotType");
}

void Plot3D::FillDefaults() {
  SurfaceControl::FillDefaults();
  if (plot_type_ == PlotTypeEnum{}) PlotType(PlotTypeEnum::PolyEdge);
}

void Plot3D::DrawPlot(Surface& surface) {
  wafer_.D3Plot(surface, SurfaceSettings(), static_cast<std::int16_t>(plot_type_), 0, false, {});
}

void Plot3D::Mouse(Node& node, const MouseAction& action) {
  if (&node != &replot_ || action.event != MouseEvent::MouseDown) {
    return SurfaceControl::Mouse(node, action);
  }
  replot_.Visible(false);
  plota_.Visible(true);
  SurfaceControl::Mouse(plota_, action);
}

void Plot3D::PrintOn(PrintWafer& print, PageArea& area) {
  print.Print_3DPlot(wafer_, area,
                     {.plot_type = static_cast<std::int16_t>(plot_type_),
                      .view = SurfaceSettings(),
                      .caption = PlotCaption()});
}

void Plot3D::ShowPlotOption() {
  const auto dialog = std::make_shared<frmPlotOpt3d>(platform_);
  dialog->SetValues(wafer_, DialogValues(), static_cast<std::int16_t>(plot_type_),
                    SurfaceBackColor());
  RunDialog(dialog, [this](const frmPlotOpt3d& confirmed) {
    TakeSurface(confirmed);
    plot_type_ = static_cast<PlotTypeEnum>(confirmed.GetPlotType());
  });
}

}  // namespace discoplan
