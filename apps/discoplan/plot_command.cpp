// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>
#include <iostream>
#include <memory>
#include <utility>

#include "apps/discoplan/beside.h"
#include "apps/discoplan/pixel_size.h"
#include "apps/discoplan/plot_request.h"
#include "hosts/headless/headless_host.h"
#include "hosts/headless/png_file.h"

namespace discoplan::app {
namespace {

struct PictureRequest {
  DataRequest data;
  PlotRequest plot;
  std::string output;
  std::string size = "800x600";
};

/// Letters grow with the square root of the picture: large pictures get finer detail and larger
/// letters at once. Small ones shrink so that the least size of a control fits.
Screen ScreenFor(const PixelSize& size, const PlotKind& kind) {
  constexpr float kPlainSide = 300;
  const auto width = static_cast<float>(size.width);
  const auto height = static_cast<float>(size.height);
  const float grown =
      kTwipsPerPixel / std::sqrt(std::max(1.0F, std::min(width, height) / kPlainSide));
  const float twips = std::max(
      {kind.scales ? grown : kTwipsPerPixel, kind.least.width / width, kind.least.height / height});
  return {twips, twips};
}

/// Calls `use(control, host)` with the plot.
template <class Use>
void DrawKind(const PlotKind& kind, const PictureRequest& request, const PixelSize& size,
              const Wafer& measured, Use use) {
  const Screen screen = ScreenFor(size, kind);
  HeadlessHost host(screen);
  host.OnMessage([](const Message& message) { std::cerr << message.text << '\n'; });
  const auto control = LoadedControl(kind, request.plot, request.data, measured, host);
  control->SetSize(static_cast<float>(size.width) * screen.twips_per_pixel_x,
                   static_cast<float>(size.height) * screen.twips_per_pixel_y);
  control->Plot();
  use(*control, host);
}

/// Pictures of one size in rows and columns, as many of the one as of the other or a row less.
class Sheet {
 public:
  Sheet(const PixelSize& each, std::size_t count)
      : each_(each),
        columns_(static_cast<int>(std::ceil(std::sqrt(static_cast<double>(count))))),
        canvas_(columns_ * each.width,
                (static_cast<int>(count) + columns_ - 1) / columns_ * each.height,
                PixelOf(kWhite)) {}

  void Add(const Canvas& picture) {
    const std::size_t left = static_cast<std::size_t>(number_ % columns_ * each_.width);
    const std::size_t top = static_cast<std::size_t>(number_ / columns_ * each_.height);
    const auto width = static_cast<std::size_t>(each_.width);
    for (std::size_t y = 0; y < static_cast<std::size_t>(each_.height); ++y) {
      std::ranges::copy(picture.Pixels().subspan(y * width, width),
                        canvas_.Pixels()
                            .subspan((top + y) * static_cast<std::size_t>(canvas_.Width()) + left)
                            .begin());
    }
    ++number_;
  }
  Canvas Take() { return std::move(canvas_); }

 private:
  const PixelSize each_;
  const int columns_;
  int number_ = 0;
  Canvas canvas_;
};

Canvas DrawSheet(const std::vector<PlotKind>& kinds, const PictureRequest& request,
                 const PixelSize& size, const Wafer& measured) {
  Sheet sheet(size, kinds.size());
  for (const PlotKind& kind : kinds) {
    DrawKind(kind, request, size, measured,
             [&](const PlotControl& control, const HeadlessHost& host) {
               sheet.Add(PaintPicture(control, host));
             });
  }
  return sheet.Take();
}

void Plot(const PictureRequest& request) {
  const std::vector<PlotKind> kinds = KindsOf(request.plot);
  const PixelSize size = ParseSize(request.size);
  const DataResult data = ReadReporting(request.data);
  const Wafer& measured = OnlyWafer(data, request.data);
  if (kinds.size() == 1) {
    DrawKind(kinds.front(), request, size, measured,
             [&](const PlotControl& control, const HeadlessHost& host) {
               SavePicture(control, host, request.output);
             });
    return;
  }
  const Canvas sheet = DrawSheet(kinds, request, size, measured);
  WritePng(request.output, sheet.Pixels(), sheet.Width(), sheet.Height());
}

}  // namespace

void AddPlotCommand(CLI::App& program) {
  CLI::App* command = program.add_subcommand("plot", "Draw a wafer into a PNG, PDF or SVG file");
  auto request = std::make_shared<PictureRequest>();
  AddDataOptions(*command, request->data);
  command
      ->add_option("-o,--output", request->output,
                   "File to write; PDF or SVG if it is called so, else PNG")
      ->required();
  AddPlotOptions(*command, request->plot);
  command->add_option("--size", request->size, "Size of each plot in pixels")
      ->capture_default_str();
  command->footer(
      "Examples:\n"
      "  discoplan plot sites.csv -o map.png\n"
      "  discoplan plot lot.csv --wafer 7 -o slot7.pdf --limits 9.5 10.5\n"
      "  discoplan plot lot.csv --columns X,Y,slot3 -o map.png --set ShowSites=true\n"
      "  discoplan plot sites.dat -o map.png --diameter 300 --style flat --size 1600x1200\n"
      "  discoplan plot sites.csv -o sheet.png --kind all --size 400x300");
  command->callback(
      [request] { IsVectorFile(request->output) ? RunBeside(kReportProgram) : Plot(*request); });
}

}  // namespace discoplan::app
