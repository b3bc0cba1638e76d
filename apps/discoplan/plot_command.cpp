// SPDX-License-Identifier: MIT
#include <cstdint>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "apps/discoplan/figure_command.h"
#include "apps/discoplan/output.h"
#include "apps/discoplan/picture_request.h"
#include "apps/discoplan/vector_plots.h"
#include "discoplan/base/algorithms.h"
#include "hosts/headless/classic_look.h"
#include "hosts/headless/headless_host.h"
#include "hosts/headless/png_file.h"

namespace discoplan::app {
namespace {

/// One kind of plot with the host that it stands on.
class Drawing {
 public:
  Drawing(const ControlClass& kind, const PictureRequest& request, const Wafer& measured)
      : host_(ScreenFor(kind, request.size.width, request.size.height)) {
    WarnByMessages(host_, request.data);
    const Screen& screen = host_.screen();
    const PlotStage stage{
        .platform = host_,
        .width = static_cast<float>(request.size.width) * screen.twips_per_pixel_x,
        .height = static_cast<float>(request.size.height) * screen.twips_per_pixel_y};
    control_ = LoadedControl(kind, request.plot, request.data, measured, stage);
    TakeColours(*control_, request.look.colours);
    control_->Plot();
  }

  Canvas Paint() const { return PaintPicture(*control_, host_); }
  std::vector<std::uint8_t> Encode() const { return EncodePicture(*control_, host_); }
  PlotControl& Control() { return *control_; }

 private:
  HeadlessHost host_;
  std::unique_ptr<PlotControl> control_;
};

/// Pictures of one size beside each other.
class Sheet {
 public:
  Sheet(const PixelSize& each, std::size_t count)
      : each_(each),
        grid_(SheetGrid::For(count)),
        canvas_(grid_.columns * each.width, grid_.rows * each.height, PixelOf(kWhite)) {}

  void Add(const Canvas& picture) {
    const auto left = static_cast<std::size_t>(grid_.ColumnOf(number_) * each_.width);
    const auto top = static_cast<std::size_t>(grid_.RowOf(number_) * each_.height);
    const auto width = static_cast<std::size_t>(each_.width);
    for (std::size_t y = 0; y < static_cast<std::size_t>(each_.height); ++y) {
      CopyTo(picture.Pixels().subspan(y * width, width),
             canvas_.Pixels()
                 .subspan((top + y) * static_cast<std::size_t>(canvas_.Width()) + left)
                 .begin());
    }
    ++number_;
  }
  Canvas Take() { return std::move(canvas_); }

 private:
  const PixelSize each_;
  const SheetGrid grid_;
  std::size_t number_ = 0;
  Canvas canvas_;
};

/// The bytes of the file. Leaves the last plot in `drawing`.
std::vector<std::uint8_t> Draw(const PlotKinds& kinds, const PictureRequest& request,
                               const Wafer& measured, std::optional<Drawing>& drawing) {
  if (kinds.size() == 1) return drawing.emplace(*kinds.front(), request, measured).Encode();
  Sheet sheet(request.size, kinds.size());
  for (const ControlClass* kind : kinds)
    sheet.Add(drawing.emplace(*kind, request, measured).Paint());
  const Canvas canvas = sheet.Take();
  return EncodePng(
      PngPicture{.pixels = canvas.Pixels(), .width = canvas.Width(), .height = canvas.Height()});
}

void Plot(const PictureRequest& request) {
  const PlotKinds kinds = KindsOf(request.plot);
  RefuseOverwriting(request.plot, request.output,
                    {request.data.path.string(), request.derive.File()});
  const ReadRequest reading = WithSizes(request.plot, kinds, request.data);
  const Lot data = ReadDerived(reading, request.derive);
  const Wafer& measured = OnlyWafer(data, request.data);
  WarnOfEmptyPlots(kinds, request.data, measured);
  std::optional<Drawing> drawing;
  WriteOutput(request.output, Draw(kinds, request, measured, drawing));
  SaveSettings(request.plot, drawing->Control(), measured);
}

}  // namespace

void SetUpPlot(CLI::App& command) {
  auto request = std::make_shared<PictureRequest>();
  AddPictureOptions(command, *request);
  command.footer(
      "Examples:\n"
      "  discoplan plot sites.csv -o map.png\n"
      "  discoplan plot lot.csv --wafer 7 -o slot7.pdf --limits 9.5 10.5\n"
      "  discoplan plot lot.csv --columns X,Y,slot3 -o map.png --colours cividis --bands 10\n"
      "  discoplan plot sites.dat -o map.png --diameter 300 --style flat --size 160x120mm\n"
      "  discoplan plot sites.csv -o sheet.png --kind all --size 400x300");
  command.callback([request] {
    const bool is_png = FormatOf(request->output) == FileFormat::Png;
    if (!request->look.classic) return PlotFigures(*request);
    is_png ? Plot(*request) : PlotVectors(*request);
  });
}

}  // namespace discoplan::app
