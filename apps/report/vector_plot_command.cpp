// SPDX-License-Identifier: MIT
#include <iostream>
#include <memory>

#include "apps/discoplan/pixel_size.h"
#include "apps/discoplan/plot_request.h"
#include "apps/report/print_plot.h"
#include "apps/report/report_commands.h"
#include "apps/report/vector_file.h"
#include "hosts/headless/headless_host.h"

namespace discoplan::app {
namespace {

// Twips.
constexpr float kControlWidth = 6000;
constexpr float kControlHeight = 4500;

struct VectorRequest {
  DataRequest data;
  PlotRequest plot;
  std::string output;
  std::string size = "800x600";
};

void Plot(const VectorRequest& request) {
  const std::vector<PlotKind> kinds = KindsOf(request.plot);
  const PixelSize size = ParseSize(request.size);
  const DataResult data = ReadReporting(request.data);
  const Wafer& measured = OnlyWafer(data, request.data);
  const PageSize page = {static_cast<float>(size.width) * kTwipsPerPixel,
                         static_cast<float>(size.height) * kTwipsPerPixel};
  VectorFile file(request.output, page, measured.name);
  HeadlessHost host;
  host.OnMessage([](const Message& message) { std::cerr << message.text << '\n'; });
  const PageArea area{0, 0, page.width, page.height};
  const Grid grid = Grid::For(kinds.size(), area);
  for (std::size_t i = 0; i < kinds.size(); ++i) {
    const auto control = LoadedControl(kinds[i], request.plot, request.data, measured, host);
    control->SetSize(kControlWidth, kControlHeight);
    PrintWithLegend(*control, file.paper(), grid.Cell(i, area));
  }
  file.Save();
}

}  // namespace

void AddVectorPlotCommand(CLI::App& program) {
  CLI::App* command = program.add_subcommand("plot", "Draw a wafer into a PDF or SVG file");
  auto request = std::make_shared<VectorRequest>();
  AddDataOptions(*command, request->data);
  command->add_option("-o,--output", request->output, "File to write")->required();
  AddPlotOptions(*command, request->plot);
  command->add_option("--size", request->size, "Size in pixels of 1/96 inch")
      ->capture_default_str();
  command->callback([request] { Plot(*request); });
}

}  // namespace discoplan::app
