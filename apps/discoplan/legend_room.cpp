// SPDX-License-Identifier: MIT
#include "apps/discoplan/legend_room.h"

#include <algorithm>
#include <exception>

#include "discoplan/controls/lattice_control.h"
#include "discoplan/controls/view_control.h"

namespace discoplan::app {
namespace {

float PanelOf(const ControlClass& kind, const PictureRequest& request, const Wafer& wafer,
              const PlotStage& stage) {
  const auto control = LoadedControl(kind, request.plot, request.data, wafer, stage);
  // The legend is what counts.
  if (auto* map = dynamic_cast<LatticeControl*>(control.get())) {
    map->Resolution(map->TestDiameter() / 4);
  }
  if (auto* surface = dynamic_cast<SurfaceControl*>(control.get())) {
    surface->XResolution(surface->TestDiameter() / 4);
    surface->YResolution(surface->TestDiameter() / 4);
  }
  control->Plot();
  const Node* panel = control->root().Find("frmove");
  return panel != nullptr && panel->Visible() ? panel->Box().width : 0;
}

}  // namespace

float LegendRoom::WidthFor(float width, float height) const {
  const float side = std::min(width - widest, height);
  return widest > own && side > 0 ? std::min(width, own + side) : width;
}

LegendRoom LegendRoomOf(const ControlClass& kind, const PictureRequest& request,
                        const Wafer& measured, const PlotStage& stage) {
  const bool is_one_of_many = !request.data.wafers.empty() && request.data.path != "/dev/stdin";
  const bool is_derived = !request.derive.minus.empty() || request.derive.residual;
  const bool has_numbers = kind.members.Find("IntervalColor0") != nullptr;
  if (!is_one_of_many || is_derived || !has_numbers || request.plot.no_legend) return {};
  LegendRoom room;
  HeadlessHost quiet(stage.platform.screen());
  const PlotStage unseen{quiet, stage.width, stage.height};
  try {
    room.own = PanelOf(kind, request, measured, unseen);
    ReadRequest all = request.data;
    all.wafers.clear();
    room.widest = room.own;
    for (const Wafer& wafer : data::Read(all).wafers) {
      room.widest = std::max(room.widest, PanelOf(kind, request, wafer, unseen));
    }
  } catch (const std::exception&) {
    // What can't be shown has no size to agree with.
  }
  return room;
}

}  // namespace discoplan::app
