// SPDX-License-Identifier: MIT
#include "discoplan/controls/plot2d.h"

#include "discoplan/core/numbers.h"
#include "discoplan/render/number_text.h"

namespace discoplan {
namespace {

constexpr float kDefaultResolution = 5;
constexpr std::int16_t kIntervalColours = 5;

}  // namespace

Plot2D::Plot2D(Platform& platform, Container* container)
    : MapControl(platform, container, {.class_name = "Plot2D", .ignores_same_limits = true}) {}

void Plot2D::InitOwnProperties() {
  Resolution(kDefaultResolution);
  ShowSites(Sites::HideSite);
  HideLegend(false);
  PlotCaption("Wafer");
}

void Plot2D::Resolution(float resolution) {
  if (resolution <= 0) resolution = kDefaultResolution;
  if (resolution > wafer_.TestDiameter / 4.0) resolution = wafer_.TestDiameter / 4;
  resolution_ = resolution;
  AnnounceStale("Resolution");
}

void Plot2D::ShowSites(Sites shown) {
  show_sites_ = shown != Sites::HideSite;
  AnnounceStale("ShowSites");
}

void Plot2D::FillDefaults() {
  if (resolution_ == 0) Resolution(kDefaultResolution);
}

void Plot2D::CheckBeforeDrawing() {
  if (!(resolution_ > wafer_.TestDiameter / 4.0)) return;
  resolution_ = wafer_.TestDiameter / 4;
  platform_.Show({.text = "Maximal possible resolution is " + PlainNumber(resolution_) + " mm",
                  .title = "Standard resolution to high ",
                  .critical = true,
                  .system_modal = true});
}

const MemberTable& Plot2D::Members() const {
  static const MemberTable table({
      HostMembers(),
      StatisticsMembers(),
      SizeMembers(),
      {
          Property<Plot2D, float>("Resolution", &Plot2D::Resolution, &Plot2D::Resolution),
          Property<Plot2D, Sites>("ShowSites", &Plot2D::ShowSites, &Plot2D::ShowSites),
      },
      LimitMembers(),
      VariantLoadMembers(),
      LoadMembers(),
      LegendMembers(),
      ReadBackMembers(),
      ColourMembers(kIntervalSlots),
      StaleMembers(),
  });
  return table;
}

void Plot2D::DrawPlot(Surface& surface) {
  wafer_.D2Plot(surface, resolution_, kIntervalColours, 0, show_sites_, {});
}

}  // namespace discoplan
