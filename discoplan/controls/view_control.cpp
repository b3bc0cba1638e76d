// SPDX-License-Identifier: MIT
#include "discoplan/controls/view_control.h"
#include "discoplan/render/plots/surface_plot.h"

namespace discoplan {
namespace {

constexpr float kDefaultResolution = 5;

std::int16_t InRange(std::int16_t value, std::int16_t last, std::int16_t otherwise) {
  return value < 0 || value > last ? otherwise : value;
}

}  // namespace

ViewControl::ViewControl(Platform& platform, Container* container, const ControlClass& own_class,
                         Legend legend)
    : MapControl(platform, container, own_class, legend) {
  plota_.Forwards(kForwardsMouse);
}

void ViewControl::GridRotation(std::int16_t degrees) {
  grid_rotation_ = InRange(degrees, 91, 40);
  Changed("GridRotation");
}

void ViewControl::WaferRotation(std::int16_t degrees) {
  wafer_rotation_ = InRange(degrees, 359, 40);
  Changed("WaferRotation");
}

void ViewControl::GridInclination(std::int16_t degrees) {
  grid_inclination_ = InRange(degrees, 91, 35);
  Changed("GridInclination");
}

ViewAngles ViewControl::Angles() const {
  return {grid_rotation_, wafer_rotation_, grid_inclination_};
}

void ViewControl::TakeAngles(const ViewDialog& dialog) {
  grid_rotation_ = dialog.GetAlp();
  wafer_rotation_ = dialog.GetPhi();
  grid_inclination_ = dialog.GetThet();
}

MapControl::View ViewControl::IndicatorView() const {
  return {.rotation = static_cast<float>(wafer_rotation_),
          .inclination = static_cast<float>(grid_inclination_)};
}

void SurfaceControl::TakeResolution(float& field, float resolution, std::string_view property) {
  if (resolution <= 0) resolution = kDefaultResolution;
  if (resolution > wafer_.TestDiameter / 4.0) resolution = wafer_.TestDiameter / 4;
  field = resolution;
  wafer_.GridChanged = true;
  Changed(property);
}

void SurfaceControl::XResolution(float resolution) {
  TakeResolution(x_resolution_, resolution, "XResolution");
}

void SurfaceControl::YResolution(float resolution) {
  TakeResolution(y_resolution_, resolution, "YResolution");
}

void SurfaceControl::PlotScale(std::int16_t scale) {
  plot_scale_ = scale < 1 ? std::int16_t{40} : scale;
  Changed("PlotScale");
}

void SurfaceControl::FillDefaults() {
  if (x_resolution_ == 0) XResolution(kDefaultResolution);
  if (y_resolution_ == 0) YResolution(kDefaultResolution);
}

void SurfaceControl::TakeSurface(const ViewDialog& dialog) {
  x_resolution_ = dialog.GetResx();
  y_resolution_ = dialog.GetResy();
  plot_scale_ = ToInt16(dialog.GetPlotSccale());
  TakeAngles(dialog);
}

ViewValues SurfaceControl::DialogValues() const {
  return {x_resolution_, y_resolution_, static_cast<float>(plot_scale_), Angles()};
}

SurfaceView SurfaceControl::SurfaceSettings() const {
  return {.x_resolution = x_resolution_,
          .y_resolution = y_resolution_,
          .plot_scale = static_cast<float>(plot_scale_),
          .grid_rotation = static_cast<float>(GridRotation()),
          .wafer_rotation = static_cast<float>(WaferRotation()),
          .grid_inclination = static_cast<float>(GridInclination())};
}

}  // namespace discoplan
