// SPDX-License-Identifier: MIT
#include "discoplan/dialogs/view_dialogs.h"

#include "discoplan/dialogs/previews.h"
#include "discoplan/render/orientation_patches.h"

namespace discoplan {
namespace {

// Twips.
constexpr float kGridFrameHeight = 2250;
constexpr float kWaferFrameHeight = 1890;
constexpr TwipsBox kPreview{690, 270, 1020, 1020};
constexpr float kFirstAngle = 1380;
constexpr FieldColumn::Places kAngles{
    .left = 120, .label_width = 1300, .field_left = 1500, .field_width = 720};

}  // namespace

ViewDialog::ViewDialog(Platform& platform, const char* name, const char* caption,
                       const Labels& labels)
    : OptionDialog(platform, name, {"frmplot", caption}),
      first_(AddNumber(labels.first, "tresx", "mm")),
      second_(AddNumber(labels.second, "tresy", "mm")),
      scale_(AddNumber(labels.scale, "tscale")),
      grid_frame_(AddSideFrame("Frame2", "Grid", kGridFrameHeight)),
      wafer_frame_(AddSideFrame("Frame3", "Wafer", kWaferFrameHeight)),
      grid_picture_(AddPicture(grid_frame_, "Plot", kPreview)),
      wafer_picture_(AddPicture(wafer_frame_, "FNPlot", kPreview)),
      grid_fields_(grid_frame_, kAngles, kFirstAngle),
      wafer_fields_(wafer_frame_, kAngles, kFirstAngle),
      grid_rotation_(grid_fields_.AddAngle(labels.grid_rotation, "talph", AngleEntry::kQuarter)),
      inclination_(grid_fields_.AddAngle("Inclination:", "tthet", AngleEntry::kQuarter)),
      wafer_rotation_(wafer_fields_.AddAngle("Rotation:", "tphi", AngleEntry::kTurn)) {
  for (AngleEntry* angle : {&grid_rotation_, &inclination_, &wafer_rotation_}) {
    angle->node().Text("90");
  }
  grid_rotation_.OnAngle([this] { ShowGrid(); });
  inclination_.OnAngle([this] { ShowGrid(); });
  wafer_rotation_.OnAngle([this] { ShowWafer(); });
}

void ViewDialog::ShowGrid() {
  DrawOrientationPatches(*grid_picture_.Picture(), grid_rotation_.value(), inclination_.value());
}

void ViewDialog::ShowWafer() {
  if (source() == nullptr) return;
  ShowWaferPreview(*source(), *wafer_picture_.Picture(), wafer_rotation_.value());
}

void ViewDialog::CheckSurface() {
  scale_.Open(100);
  CheckOnOk(first_, "X Resolution ", 0.001);
  CheckOnOk(second_, "Y Resolution ", 0.001);
  CheckOnOk(scale_, "Scale Factor ", 0.001, 1000);
}

void ViewDialog::Begin(const wafer& source, const ViewValues& values, Colour back_color) {
  OptionDialog::Begin(source, back_color);
  first_.Open(values.first);
  second_.Open(values.second);
  scale_.Open(values.scale);
  grid_rotation_.Open(values.angles.grid_rotation);
  inclination_.Open(values.angles.grid_inclination);
  wafer_rotation_.Open(values.angles.wafer_rotation);
}

frmPlotOpt3d::frmPlotOpt3d(Platform& platform)
    : ViewDialog(platform, "frmPlotOpt3d", "3D Plot",
                 {"Resolution X: ", "Resolution Y: ", "Scale: ", "Rotation:"}),
      plot_type_(AddOptions("Plot Type", "optPlot", SurfaceStyles())) {
  const TwipsBox group = plot_type_.node().Box();
  for (int style = 1; style <= 3; ++style) {
    const float top = group.top + 180 + 270 * static_cast<float>(style - 1);
    Node& image = AddPicture(frame_, "Image" + std::to_string(style),
                             {group.left + group.width + 60, top, 360, 255});
    DrawSurfaceStyle(*image.Picture(), style);
  }
  CheckSurface();
  Finish();
}

void frmPlotOpt3d::SetValues(const wafer& source, const ViewValues& values, std::int16_t plot_type,
                             Colour back_color) {
  Begin(source, values, back_color);
  plot_type_.Choose(plot_type);
}

frmPlotOpt3ds::frmPlotOpt3ds(Platform& platform)
    : ViewDialog(platform, "frmPlotOpt3ds", "3D Plot",
                 {"Resolution X: ", "Resolution Y: ", "Scale: ", "Rotation:"}),
      sigma_range_(AddNumber("Sigma Range: ", "SSigma")) {
  sigma_range_.node().Text("0,5");
  CheckSurface();
  Finish();
}

void frmPlotOpt3ds::SetValues(const wafer& source, const ViewValues& values, float sigma_range,
                              Colour back_color) {
  Begin(source, values, back_color);
  sigma_range_.Open(sigma_range);
}

frmPlotOpt3DB::frmPlotOpt3DB(Platform& platform)
    : ViewDialog(platform, "frmPlotOpt3DB", "3D Bar Plot",
                 {"Bar width: ", "Bar depth:", "Scale: ", "Beam Rotation:"}) {
  CheckOnOk(first_, "Bar width ", 0.001);
  CheckOnOk(second_, "Bar depth ", 0.001);
  CheckOnOk(scale_, "Scale factor ", 1e-7, 1000);
  Finish();
}

void frmPlotOpt3DB::SetValues(const wafer& source, const ViewValues& values, Colour back_color) {
  Begin(source, values, back_color);
}

}  // namespace discoplan
