// SPDX-License-Identifier: MIT
#include <algorithm>
#include <array>

#include "discoplan/base/algorithms.h"
#include "discoplan/base/numbers.h"
#include "discoplan/core/enumerations.h"
#include "discoplan/core/number_checks.h"
#include "discoplan/dialogs/previews.h"
#include "discoplan/dialogs/property_page.h"
#include "discoplan/render/number_text.h"
#include "discoplan/render/orientation_patches.h"

namespace discoplan {
namespace {

constexpr auto kNotch = static_cast<std::int16_t>(WaferSt::Notch);
constexpr auto kFlat = static_cast<std::int16_t>(WaferSt::Flat);

float RatioOf(std::int16_t style) { return style == kFlat ? wafer::kFlatRatio : 1.0F; }

class WaferInfoProp final : public PropertyPage {
 public:
  explicit WaferInfoProp(Platform& platform)
      : PropertyPage(platform, "WaferInfoProp", "Wafer Size"),
        wafer_diameter_(
            AddNumber("Wafer diameter :", "txtWaferDiameter", "WaferDiameter", "200").node()),
        test_diameter_(
            AddNumber("Test diameter :", "txtTestDiameter", "TestDiameter", "195").node()),
        style_(AddOptions("Wafer Style:", "nfbox", "WaferStyle",
                          {{"Notch", kNotch}, {"Flat!", kFlat}})) {
    AddCheck("HideLegend", "chkHideLegend", "HideLegend");
    AddCheck("Hide Plot Legend:", "showLeg", "");  // on the page, without a role
    picture_ = &AddPreview("FNPic");
    const TwipsBox& above = picture_->Box();
    label_ = &root().Add(NodeKind::Label, "FNLabel",
                         {above.left, above.top + above.height, above.width, 285});
    label_->Alignment(Alignment::Centre);
    style_.node().on_change = [this] {
      ShowStyle();
      MarkChanged();
    };
    WriteInOrder({"WaferDiameter", "TestDiameter", "WaferStyle", "HideLegend"});
    Finish();
  }

  void SelectionChanged() override {
    PropertyPage::SelectionChanged();
    ShowStyle();
  }

  void ApplyChanges() override {
    const bool fits = NumberIn(test_diameter_) <= NumberIn(wafer_diameter_);
    if (!fits) {
      platform_.Show({.text = "Wafer diamter can not be less than test diameter",
                      .title = "Input Error",
                      .critical = true,
                      .system_modal = true});
      wafer_diameter_.Type("200");
      test_diameter_.Type("195");
    }
    PropertyPage::ApplyChanges();
  }

 private:
  void ShowStyle() {
    wafer_.FlatRatio = RatioOf(style_.value());
    label_->Text(style_.value() == kNotch ? "Notch" : "Flat");
    ShowWaferPreview(wafer_, *picture_->Picture(), 0);
  }

  Node& wafer_diameter_;
  Node& test_diameter_;
  OptionGroup& style_;
  wafer wafer_;
  Node* label_;
  Node* picture_;
};

class Plot2DProp final : public PropertyPage {
 public:
  explicit Plot2DProp(Platform& platform)
      : PropertyPage(platform, "Plot2DProp", "2D Plot Options") {
    AddNumber("Resolution : ", "txtResolution", "Resolution", "5");
    AddCheck("ShowSites:", "chkShowSites", "ShowSites");
    WriteInOrder({"ShowSites", "Resolution"});
    Finish();
  }
};

class Plot2DSProp final : public PropertyPage {
 public:
  explicit Plot2DSProp(Platform& platform) : PropertyPage(platform, "Plot2DSProp", "Plot2DSProp") {
    AddNumber("Resolution : ", "txtResolution", "Resolution", "5");
    AddNumber("Sigma Range: ", "txtSigmaRange", "SigmaRange", "0.5");
    AddCheck("ShowSites:", "chkShowSites", "ShowSites");
    WriteInOrder({"SigmaRange", "ShowSites", "Resolution"});
    Finish();
  }
};

class Plot2DCProp final : public PropertyPage {
 public:
  explicit Plot2DCProp(Platform& platform) : PropertyPage(platform, "Plot2DCProp", "Plot2DCProp") {
    AddNumber("Interval:", "txtInterval", "Interval", "1");
    AddOptions("Mark Sites:", "OptExcon", "markSites",
               {{"none", ExconEnum::None},
                {"exact", ExconEnum::Exact},
                {"converted", ExconEnum::Converted}});
    AddOptions("Draw Plot:", "Optcol", "PlotColored",
               {{"black/white", DrawColEnum::BWhitePlot}, {"colored", DrawColEnum::ColorPlot}});
    AddOptions("Plot Resolution:", "OptQuali", "Resolution",
               {{"High", ResoEnum::HighQuality},
                {"Auto", ResoEnum::Automatic},
                {"Low", ResoEnum::LowQuality}});
    WriteInOrder({"markSites", "Resolution", "PlotColored", "Interval"});
    Finish();
  }
};

/// What the pages of the three plots in perspective share: angles with their pictures.
class ViewPage : public PropertyPage {
 public:
  void SelectionChanged() override {
    wafer_.FlatRatio = RatioOf(Get("WaferStyle").AsInt16());
    PropertyPage::SelectionChanged();
  }

 protected:
  using PropertyPage::PropertyPage;

  void AddGridAngles() {
    Node& picture = AddPreview("Plot");
    AngleEntry& rotation =
        AddAngle("Rotation:", "txtGridRotation", "GridRotation", AngleEntry::kQuarter);
    AngleEntry& inclination =
        AddAngle("Inclination:", "txtGridInclination", "GridInclination", AngleEntry::kQuarter);
    const auto show = [&picture, &rotation, &inclination] {
      DrawOrientationPatches(*picture.Picture(), rotation.value(), inclination.value());
    };
    rotation.OnAngle(show);
    inclination.OnAngle(show);
  }
  void AddWaferAngle() {
    Node& picture = AddPreview("FNPlot");
    AngleEntry& rotation =
        AddAngle("Wafer rotation:", "txtWaferRotation", "WaferRotation", AngleEntry::kTurn);
    rotation.OnAngle([this, &picture, &rotation] {
      ShowWaferPreview(wafer_, *picture.Picture(), rotation.value());
    });
  }
  void AddSurfaceNumbers() {
    AddNumber("Resolution X: ", "txtXResolution", "XResolution", "5");
    AddNumber("Resolution Y: ", "txtYResolution", "YResolution", "5");
    AddNumber("Scale: ", "txtPlotScale", "PlotScale", "40");
  }

 private:
  wafer wafer_;
};

class Plot3DProp final : public ViewPage {
 public:
  explicit Plot3DProp(Platform& platform) : ViewPage(platform, "Plot3DProp", "Plot3DProp") {
    AddSurfaceNumbers();
    AddGridAngles();
    AddWaferAngle();
    AddOptions("Plot Type", "optPlot", "PlotType", SurfaceStyles());
    for (int style = 1; style <= 3; ++style) {
      DrawSurfaceStyle(*AddPreview("Image" + std::to_string(style)).Picture(), style);
    }
    WriteInOrder({"PlotType", "PlotScale", "GridInclination", "GridRotation", "WaferRotation",
                  "YResolution", "XResolution"});
    Finish();
  }
};

class Plot3DSProp final : public ViewPage {
 public:
  explicit Plot3DSProp(Platform& platform) : ViewPage(platform, "Plot3DSProp", "Plot3DSProp") {
    AddSurfaceNumbers();
    AddNumber("Sigma Range: ", "txtSigmaRange", "SigmaRange", "0.5");
    AddGridAngles();
    AddWaferAngle();
    WriteInOrder({"SigmaRange", "PlotScale", "GridInclination", "GridRotation", "WaferRotation",
                  "YResolution", "XResolution"});
    Finish();
  }
};

class Plot3DBProp final : public ViewPage {
 public:
  explicit Plot3DBProp(Platform& platform) : ViewPage(platform, "Plot3DBProp", "PropertyPage1") {
    for (NumberEntry* unfiltered : {&AddNumber("Bar width: ", "txtBeamWidth", "BeamWidth", "5"),
                                    &AddNumber("Bar depth:", "txtBeamHeight", "BeamHeight", "5"),
                                    &AddNumber("Scale: ", "txtBeamScale", "BeamScale", "1")}) {
      unfiltered->node().on_change = [this] { MarkChanged(); };
    }
    AddGridAngles();
    WriteInOrder({"BeamScale", "BeamHeight", "BeamWidth", "GridInclination", "GridRotation"});
    Finish();
  }
};

class HistogrammProp final : public PropertyPage {
 public:
  explicit HistogrammProp(Platform& platform)
      : PropertyPage(platform, "HistogrammProp", "HistogrammProp") {
    AddNumber("Resolution : ", "txtResolution", "Resolution", "0.01");
    AddOptions("Plot Type", "optPlot", "PlotType",
               {{"Right", PlotTyEnum::vbRight},
                {"Left", PlotTyEnum::vbLeft},
                {"Top", PlotTyEnum::vbTop},
                {"Bottom", PlotTyEnum::vbbottom}});
    for (int side = 4; side >= 1; --side) {
      DrawHistogramSide(*AddPreview("Image" + std::to_string(side)).Picture(), side);
    }
    WriteInOrder({"Resolution", "PlotType"});
    Finish();
  }
};

class LineScanAngleProp final : public PropertyPage {
 public:
  explicit LineScanAngleProp(Platform& platform)
      : PropertyPage(platform, "LineScanAngleProp", "Line Scan Options") {
    BeginFrame("Frame1", "1D Plot Option");
    AddAngle("Angle:", "txtAngle", "angle", AngleEntry::kStrictTurn);
    wafer_.FlatRatio = 1;
    ShowWaferPreview(wafer_, *AddPreview("FNPic").Picture(), 0);
    Node& cross = AddPreview("picplus");
    const float side = cross.Box().width;
    const TwipsBox lines[] = {
        {side / 2, 0, 0, side}, {side / 2, 0, -90, 150}, {side / 2, 0, 90, 150}};
    for (std::size_t i = 0; i < std::size(lines); ++i) {
      cross.Add(NodeKind::Line, "Line" + std::to_string(i + 1), lines[i]);
    }
    WriteInOrder({"angle"});
    Finish();
  }

 private:
  wafer wafer_;
};

template <class Page>
std::unique_ptr<PropertyPage> Make(Platform& platform) {
  return std::make_unique<Page>(platform);
}

struct PageRow {
  std::string_view name;
  std::unique_ptr<PropertyPage> (*make)(Platform& platform);
};

constexpr std::array kPages = {
    PageRow{"WaferInfoProp", Make<WaferInfoProp>},
    PageRow{"Plot2DProp", Make<Plot2DProp>},
    PageRow{"Plot2DSProp", Make<Plot2DSProp>},
    PageRow{"Plot2DCProp", Make<Plot2DCProp>},
    PageRow{"Plot3DProp", Make<Plot3DProp>},
    PageRow{"Plot3DSProp", Make<Plot3DSProp>},
    PageRow{"Plot3DBProp", Make<Plot3DBProp>},
    PageRow{"HistogrammProp", Make<HistogrammProp>},
    PageRow{"LineScanAngleProp", Make<LineScanAngleProp>},
};

}  // namespace

std::unique_ptr<PropertyPage> NewPropertyPage(std::string_view class_name, Platform& platform) {
  const auto row = FindIn(kPages, class_name, &PageRow::name);
  return row == kPages.end() ? nullptr : row->make(platform);
}

std::vector<std::string_view> PropertyPageClasses() {
  std::vector<std::string_view> names;
  for (const PageRow& row : kPages) names.push_back(row.name);
  return names;
}

}  // namespace discoplan
