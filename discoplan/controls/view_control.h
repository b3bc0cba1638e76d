// SPDX-License-Identifier: MIT
#pragma once

#include "discoplan/controls/map_control.h"
#include "discoplan/dialogs/view_dialogs.h"

namespace discoplan {

struct SurfaceView;

/// What the three plots in perspective have in common: the angles of the view, in degrees. The
/// indicator turns with the view.
class DISCOPLAN_EXPORT ViewControl : public MapControl {
 public:
  /// Of the grid below the wafer: 0 to 91, anything else becomes 40.
  std::int16_t GridRotation() const { return grid_rotation_; }
  void GridRotation(std::int16_t degrees);
  /// Of the wafer in the plot: 0 to 359, anything else becomes 40. A change alone doesn't redraw.
  std::int16_t WaferRotation() const { return wafer_rotation_; }
  void WaferRotation(std::int16_t degrees);
  /// Tilt of the grid: 0 to 91, anything else becomes 35; 90 is seen from straight above.
  std::int16_t GridInclination() const { return grid_inclination_; }
  void GridInclination(std::int16_t degrees);

 protected:
  ViewControl(Platform& platform, Container* container, const ControlClass& own_class,
              Legend legend);

  View IndicatorView() const override;
  ViewAngles Angles() const;
  /// What the user confirmed.
  void TakeAngles(const ViewDialog& dialog);

  std::int16_t grid_rotation_ = 0;
  std::int16_t wafer_rotation_ = 0;
  std::int16_t grid_inclination_ = 0;
};

/// What the two surfaces have in common: the pitch along both grid axes and the height.
class DISCOPLAN_EXPORT SurfaceControl : public ViewControl {
 public:
  /// Grid step in mm; 0 or less becomes 5, and a quarter of the test diameter is the most.
  float XResolution() const { return x_resolution_; }
  void XResolution(float resolution);
  float YResolution() const { return y_resolution_; }
  void YResolution(float resolution);
  /// Of the value axis; below 1 becomes 40.
  std::int16_t PlotScale() const { return plot_scale_; }
  void PlotScale(std::int16_t scale);

 protected:
  using ViewControl::ViewControl;

  void FillDefaults() override;
  SurfaceView SurfaceSettings() const;
  ViewValues DialogValues() const;
  void TakeSurface(const ViewDialog& dialog);

 private:
  void TakeResolution(float& field, float resolution, std::string_view property);

  float x_resolution_ = 0;
  float y_resolution_ = 0;
  std::int16_t plot_scale_ = 0;
};

}  // namespace discoplan
