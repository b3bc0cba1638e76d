// SPDX-License-Identifier: MIT
#pragma once

/// The option dialogs of the flat maps and of the histogram.

#include "discoplan/dialogs/option_dialog.h"

namespace discoplan {

struct ContourSettings;

/// Whether sites are marked, as a group of two.
std::vector<OptionGroup::Option> ShowOrHide();

class DISCOPLAN_EXPORT frmPlotOpt2d final : public OptionDialog {
 public:
  explicit frmPlotOpt2d(Platform& platform);

  void SetValues(const wafer& source, float resolution, bool show_sites, Colour back_color);
  float GetXRes() const { return resolution_.value(); }
  std::int16_t GetMarkeSites() const { return marks_.value(); }

 private:
  NumberEntry& resolution_;
  OptionGroup& marks_;
};

class DISCOPLAN_EXPORT frmPlotOpt2ds final : public OptionDialog {
 public:
  explicit frmPlotOpt2ds(Platform& platform);

  void SetValues(const wafer& source, float resolution, float sigma_range, bool show_sites,
                 Colour back_color);
  float GetXRes() const { return resolution_.value(); }
  float GetSigRange() const { return sigma_range_.value(); }
  std::int16_t GetMarkeSites() const { return marks_.value(); }

 private:
  NumberEntry& resolution_;
  NumberEntry& sigma_range_;
  NumberEntry& unused_;  // on the form, without a role
  OptionGroup& marks_;
};

class DISCOPLAN_EXPORT frmPlotOpt2DC final : public OptionDialog {
 public:
  explicit frmPlotOpt2DC(Platform& platform);

  /// The settings of the contours; their radius is not asked for.
  void SetValues(const wafer& source, const ContourSettings& settings, Colour back_color);
  float GetDist() const { return interval_.value(); }
  std::int16_t GetReso() const { return quality_.value(); }
  std::int16_t GetMarkeSites() const { return marks_.value(); }
  std::int16_t GetShowColor() const { return colours_.value(); }

 private:
  NumberEntry& interval_;
  OptionGroup& quality_;
  OptionGroup& marks_;
  OptionGroup& colours_;
};

/// A number that didn't change is no reason to draw again.
class DISCOPLAN_EXPORT frmPlotHist final : public OptionDialog {
 public:
  explicit frmPlotHist(Platform& platform);

  void SetValues(const wafer& source, float resolution, Colour back_color);
  float GetResolution() const { return resolution_.value(); }

 private:
  void Accept() override;

  NumberEntry& resolution_;
};

}  // namespace discoplan
