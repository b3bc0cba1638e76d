// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cstdint>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "apps/discoplan/figure_command.h"
#include "apps/discoplan/legend_room.h"
#include "apps/discoplan/output.h"
#include "apps/discoplan/picture_request.h"
#include "apps/discoplan/vector_plots.h"
#include "discoplan/base/algorithms.h"
#include "hosts/headless/classic_look.h"
#include "hosts/headless/headless_host.h"
#include "hosts/headless/png_file.h"

namespace discoplan::app {
namespace {

/// With its upper left corner there; the part that fits.
void CopyInto(Canvas& canvas, const Canvas& picture, int left, int top) {
  const auto width = static_cast<std::size_t>(picture.Width());
  const auto across = static_cast<std::size_t>(canvas.Width());
  const std::size_t kept = std::min(width, across - static_cast<std::size_t>(left));
  const int rows = std::min(picture.Height(), canvas.Height() - top);
  for (int y = 0; y < rows; ++y) {
    CopyTo(picture.Pixels().subspan(static_cast<std::size_t>(y) * width, kept),
           canvas.Pixels()
               .subspan(static_cast<std::size_t>(top + y) * across + static_cast<std::size_t>(left))
               .begin());
  }
}

std::vector<std::uint8_t> EncodeCanvas(const Canvas& canvas) {
  return EncodePng(
      PngPicture{.pixels = canvas.Pixels(), .width = canvas.Width(), .height = canvas.Height()});
}

/// One kind of plot with the host that it stands on.
class Drawing {
 public:
  Drawing(const ControlClass& kind, const PictureRequest& request, const Wafer& measured)
      : size_(request.size), host_(ScreenFor(kind, request.size.width, request.size.height)) {
    WarnByMessages(host_, request.data);
    const Screen& screen = host_.screen();
    PlotStage stage{.platform = host_,
                    .width = static_cast<float>(request.size.width) * screen.twips_per_pixel_x,
                    .height = static_cast<float>(request.size.height) * screen.twips_per_pixel_y};
    const LegendRoom room = LegendRoomOf(kind, request, measured, stage);
    const float width = room.WidthFor(stage.width, stage.height);
    is_narrowed_ = width < stage.width;
    stage.width = width;
    control_ = LoadedControl(kind, request.plot, request.data, measured, stage);
    TakeColours(*control_, request.look.colours);
    control_->Plot();
  }

  Canvas Paint() const {
    return is_narrowed_ ? Widened(PaintPicture(*control_, host_)) : PaintPicture(*control_, host_);
  }
  std::vector<std::uint8_t> Encode() const {
    return is_narrowed_ ? EncodeCanvas(Paint()) : EncodePicture(*control_, host_);
  }
  PlotControl& Control() { return *control_; }

 private:
  /// As wide as was asked for, with its own ground at the right.
  Canvas Widened(const Canvas& picture) const {
    Canvas canvas(size_.width, picture.Height(), PixelOf(control_->BackColor()));
    CopyInto(canvas, picture, 0, 0);
    return canvas;
  }

  const PixelSize size_;
  HeadlessHost host_;
  std::unique_ptr<PlotControl> control_;
  bool is_narrowed_ = false;
};

/// Pictures of one size beside each other.
class Sheet {
 public:
  Sheet(const PixelSize& each, std::size_t count)
      : each_(each),
        grid_(SheetGrid::For(count)),
        canvas_(grid_.columns * each.width, grid_.rows * each.height, PixelOf(kWhite)) {}

  void Add(const Canvas& picture) {
    CopyInto(canvas_, picture, grid_.ColumnOf(number_) * each_.width,
             grid_.RowOf(number_) * each_.height);
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
  return EncodeCanvas(sheet.Take());
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
