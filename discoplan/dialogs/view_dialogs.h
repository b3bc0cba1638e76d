// SPDX-License-Identifier: MIT
#pragma once

/// The option dialogs of the plots in perspective, with small pictures that follow the angles.

#include "discoplan/dialogs/option_dialog.h"

namespace discoplan {

/// Where grid and wafer are seen from, in degrees.
struct ViewAngles {
  std::int16_t grid_rotation = 90;
  std::int16_t wafer_rotation = 90;
  std::int16_t grid_inclination = 90;
};

/// What a plot in perspective is drawn with: the sides of a cell or a bar in mm, and a scale.
struct ViewValues {
  float first = 0;
  float second = 0;
  float scale = 0;
  ViewAngles angles = {};
};

class DISCOPLAN_EXPORT ViewDialog : public OptionDialog {
 public:
  float GetResx() const { return first_.value(); }
  float GetResy() const { return second_.value(); }
  float GetPlotSccale() const { return scale_.value(); }
  std::int16_t GetAlp() const { return grid_rotation_.value(); }
  std::int16_t GetThet() const { return inclination_.value(); }
  std::int16_t GetPhi() const { return wafer_rotation_.value(); }

 protected:
  /// Labels of the three numbers and of the grid's rotation.
  struct Labels {
    const char* first;
    const char* second;
    const char* scale;
    const char* grid_rotation;
  };

  ViewDialog(Platform& platform, const char* name, const char* caption, const Labels& labels);

  /// Checks of the numbers of a surface.
  void CheckSurface();
  void Begin(const wafer& source, const ViewValues& values, Colour back_color);

  NumberEntry& first_;
  NumberEntry& second_;
  NumberEntry& scale_;

 private:
  void ShowGrid();
  void ShowWafer();

  Node& grid_frame_;
  Node& wafer_frame_;
  Node& grid_picture_;
  Node& wafer_picture_;
  FieldColumn grid_fields_;
  FieldColumn wafer_fields_;
  AngleEntry& grid_rotation_;
  AngleEntry& inclination_;
  AngleEntry& wafer_rotation_;
};

class DISCOPLAN_EXPORT frmPlotOpt3d final : public ViewDialog {
 public:
  explicit frmPlotOpt3d(Platform& platform);

  void SetValues(const wafer& source, const ViewValues& values, std::int16_t plot_type,
                 Colour back_color);
  std::int16_t GetPlotType() const { return plot_type_.value(); }

 private:
  OptionGroup& plot_type_;
};

/// Its sigma range has no check on OK.
class DISCOPLAN_EXPORT frmPlotOpt3ds final : public ViewDialog {
 public:
  explicit frmPlotOpt3ds(Platform& platform);

  void SetValues(const wafer& source, const ViewValues& values, float sigma_range,
                 Colour back_color);
  float GetSigRange() const { return sigma_range_.value(); }

 private:
  NumberEntry& sigma_range_;
};

class DISCOPLAN_EXPORT frmPlotOpt3DB final : public ViewDialog {
 public:
  explicit frmPlotOpt3DB(Platform& platform);

  void SetValues(const wafer& source, const ViewValues& values, Colour back_color);
};

}  // namespace discoplan
