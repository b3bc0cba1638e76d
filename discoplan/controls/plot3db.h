// SPDX-License-Identifier: MIT
#pragma once

#include "discoplan/controls/view_control.h"

namespace discoplan {

struct BeamView;

/// Each measured site as a bar on the wafer's disc in perspective.
class DISCOPLAN_EXPORT Plot3DB final : public ViewControl {
 public:
  static constinit const ControlClass kClass;

  explicit Plot3DB(Platform& platform, Container* container = nullptr);

  /// Half sides of a bar's foot in mm, and the scale of its height; stored as given.
  float BeamWidth() const { return beam_width_; }
  void BeamWidth(float width);
  float BeamHeight() const { return beam_height_; }
  void BeamHeight(float height);
  float BeamScale() const { return beam_scale_; }
  void BeamScale(float scale);
  /// Colour of an interval, 0 the highest to 9.
  Colour IntervalColor(std::size_t interval) const { return TableColour(IntervalSlot(interval)); }
  void IntervalColor(std::size_t interval, Colour colour) {
    TableColour(IntervalSlot(interval), colour);
  }

  void ShowPlotOption() override;

 private:
  void PrintOn(PrintWafer& print, PageArea& area) override;
  void FillDefaults() override;
  void ShowLegend() override { wafer_.scale_colored(chips_, rows_); }
  void DrawPlot(Surface& surface) override;

  BeamView Bars() const;

  float beam_width_ = 0;
  float beam_height_ = 0;
  float beam_scale_ = 0;
};

}  // namespace discoplan
