// SPDX-License-Identifier: MIT
#include <algorithm>
#include <array>
#include <cmath>
#include <iostream>
#include <memory>
#include <optional>

#include "apps/discoplan/command.h"
#include "apps/discoplan/member_text.h"
#include "apps/discoplan/plot_kinds.h"
#include "discoplan/controls/control_factory.h"
#include "discoplan/controls/lattice_control.h"
#include "discoplan/controls/plot3db.h"
#include "hosts/headless/headless_host.h"
#include "hosts/headless/png_file.h"
#include "hosts/headless/settings_file.h"

namespace discoplan::app {
namespace {

struct PlotRequest {
  DataRequest data;
  std::string output;
  std::vector<std::string> kinds = {"2D"};
  std::optional<float> diameter;
  std::optional<float> test_diameter;
  std::optional<std::string> style;
  std::vector<float> limits;
  std::string size = "800x600";
  std::vector<std::string> assignments;
  std::optional<std::string> caption;
  bool no_legend = false;
  std::string settings;
  std::string saved_settings;
};

constexpr float kFinestCells = 200;
/// Of the bars between the limits, in parts of the wafer's diameter.
constexpr float kBarHeight = 0.2F;

struct PixelSize {
  int width = 0;
  int height = 0;
};

PixelSize ParseSize(const std::string& text) {
  constexpr int kSmallest = 50;
  constexpr int kLargest = 10000;
  PixelSize size;
  int used = 0;
  if (std::sscanf(text.c_str(), "%5dx%5d%n", &size.width, &size.height, &used) != 2 ||
      used != static_cast<int>(text.size()) || std::min(size.width, size.height) < kSmallest ||
      std::max(size.width, size.height) > kLargest) {
    throw UsageError("--size takes WIDTHxHEIGHT, 50 to 10000 pixels each, not '" + text + "'");
  }
  return size;
}

/// Letters grow with the square root of the picture: large pictures get finer detail and larger
/// letters at once. Small ones shrink so that the least size of a control fits.
Screen ScreenFor(const PixelSize& size, const PlotKind& kind) {
  constexpr float kTwipsPerPixel = 15;
  constexpr float kPlainSide = 300;
  const auto width = static_cast<float>(size.width);
  const auto height = static_cast<float>(size.height);
  const float grown =
      kTwipsPerPixel / std::sqrt(std::max(1.0F, std::min(width, height) / kPlainSide));
  const float twips = std::max(
      {kind.scales ? grown : kTwipsPerPixel, kind.least.width / width, kind.least.height / height});
  return {twips, twips};
}

/// What is chosen by the data where nothing else is asked for.
void FitTo(PlotControl& control, const Wafer& measured) {
  const WaferSize size = SizeFor(measured);
  control.WaferDiameter(size.diameter);
  control.TestDiameter(size.test_diameter);
  control.BackColor(kWhite);
  control.PlotCaption(measured.name);
  // A file is drawn once and looked at long: a map as fine as it gets, bars as high as they
  // can be told apart.
  if (auto* bars = dynamic_cast<Plot3DB*>(&control)) {
    const auto [low, high] = std::ranges::minmax(measured.value);
    if (low < high) bars->BeamScale(kBarHeight * size.diameter / (high - low));
  }
  if (auto* map = dynamic_cast<LatticeControl*>(&control)) {
    map->Resolution(map->TestDiameter() / kFinestCells);
  }
}

void SetUp(PlotControl& control, const PlotRequest& request, const Wafer& measured) {
  if (request.settings.empty()) {
    control.InitProperties();
    FitTo(control, measured);
  } else {
    ReadSettings(control, request.settings);
  }
  if (request.diameter) {
    const float margin = control.WaferDiameter() - control.TestDiameter();
    control.WaferDiameter(*request.diameter);
    control.TestDiameter(std::max(0.0F, *request.diameter - margin));
  }
  if (request.test_diameter) control.TestDiameter(*request.test_diameter);
  if (request.style) {
    control.WaferStyle(*request.style == "flat" ? WaferSt::Flat : WaferSt::Notch);
  }
  if (request.caption) control.PlotCaption(*request.caption);
  for (const std::string& assignment : request.assignments) SetMember(control, assignment);
  if (request.no_legend) control.HideLegend(true);
  if (!request.saved_settings.empty()) WriteSettings(control, request.saved_settings);
}

void Load(PlotControl& control, const PlotRequest& request, const Wafer& measured) {
  const std::string file = request.data.path.string();
  if (control.SetWaferData(measured.x, measured.y, measured.value) != LoadResult::Loaded) {
    throw CommandError(file + ": the sites don't fit a wafer of " +
                       std::to_string(std::lround(control.WaferDiameter())) +
                       " mm, or their values a 32-bit sum; give a larger --diameter");
  }
  if (request.limits.empty()) return;
  if (!(request.limits[0] < request.limits[1])) {
    throw UsageError("--limits takes LOW HIGH with LOW below HIGH");
  }
  control.SetPlotLimit(request.limits[0], request.limits[1]);
}

const Wafer& OnlyWafer(const DataResult& data, const PlotRequest& request) {
  if (data.wafers.size() == 1) return data.wafers.front();
  std::string slots;
  for (const Wafer& measured : data.wafers) {
    slots += (slots.empty() ? "" : ", ") + std::to_string(measured.slot.value_or(0));
  }
  throw CommandError(request.data.path.string() + ": has " + std::to_string(data.wafers.size()) +
                     " wafers; choose one by --wafer, from slots " + slots);
}

Canvas DrawKind(const PlotKind& kind, const PlotRequest& request, const PixelSize& size,
                const Wafer& measured) {
  const Screen screen = ScreenFor(size, kind);
  HeadlessHost host(screen);
  host.OnMessage([](const Message& message) { std::cerr << message.text << '\n'; });
  const std::unique_ptr<PlotControl> control = NewControl(kind.class_name, host, nullptr);
  SetUp(*control, request, measured);
  Load(*control, request, measured);
  control->SetSize(static_cast<float>(size.width) * screen.twips_per_pixel_x,
                   static_cast<float>(size.height) * screen.twips_per_pixel_y);
  control->Plot();
  return PaintPicture(*control, host);
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
  const Canvas& canvas() const { return canvas_; }

 private:
  const PixelSize each_;
  const int columns_;
  int number_ = 0;
  Canvas canvas_;
};

void Plot(const PlotRequest& request) {
  const std::vector<PlotKind> kinds = PlotKindsOf(request.kinds);
  if (kinds.size() > 1 && !(request.settings + request.saved_settings).empty()) {
    throw UsageError("--settings and --save-settings are for one kind of plot at a time");
  }
  const PixelSize size = ParseSize(request.size);
  const DataResult data = ReadReporting(request.data);
  const Wafer& measured = OnlyWafer(data, request);
  Sheet sheet(size, kinds.size());
  for (const PlotKind& kind : kinds) sheet.Add(DrawKind(kind, request, size, measured));
  const Canvas& canvas = sheet.canvas();
  WritePng(request.output, canvas.Pixels(), canvas.Width(), canvas.Height());
}

}  // namespace

void AddPlotCommand(CLI::App& program) {
  CLI::App* command = program.add_subcommand("plot", "Draw a wafer into a PNG file");
  auto request = std::make_shared<PlotRequest>();
  AddDataOptions(*command, request->data);
  command->add_option("-o,--output", request->output, "PNG file to write")->required();
  command
      ->add_option("--kind", request->kinds,
                   "Kind of plot: " + PlotKindNames() +
                       "; again for another beside it, or 'all' for a sheet of all")
      ->type_name("KIND")
      ->allow_extra_args(false)
      ->capture_default_str();
  command
      ->add_option("--diameter", request->diameter,
                   "Wafer's diameter in mm; the smallest standard one that holds all sites "
                   "otherwise")
      ->check(CLI::PositiveNumber);
  command
      ->add_option("--test-diameter", request->test_diameter,
                   "Diameter of the measured area in mm; 6 less than the wafer's otherwise")
      ->check(CLI::PositiveNumber);
  command->add_option("--style", request->style, "Mark of the orientation; notch otherwise")
      ->check(CLI::IsMember({"notch", "flat"}));
  command->add_option("--limits", request->limits, "Pin the colour scale")
      ->expected(2)
      ->type_name("LOW HIGH");
  command->add_option("--size", request->size, "Size of each plot in pixels")
      ->capture_default_str();
  command->add_option("--set", request->assignments, "Set any writable member of the plot")
      ->type_name("NAME=VALUE")
      ->allow_extra_args(false);
  command->add_option("--caption", request->caption, "Title of the plot");
  command
      ->add_option("--settings", request->settings,
                   "Settings from a JSON file, before those of the other options")
      ->type_name("FILE");
  command
      ->add_option("--save-settings", request->saved_settings,
                   "Write the plot's settings to a JSON file")
      ->type_name("FILE");
  command->add_flag("--no-legend", request->no_legend, "Leave out the legend");
  command->footer(
      "Examples:\n"
      "  discoplan plot sites.csv -o map.png\n"
      "  discoplan plot lot.csv --wafer 7 -o slot7.png --limits 9.5 10.5\n"
      "  discoplan plot lot.csv --columns X,Y,slot3 -o map.png --set ShowSites=true\n"
      "  discoplan plot sites.dat -o map.png --diameter 300 --style flat --size 1600x1200\n"
      "  discoplan plot sites.csv -o sheet.png --kind all --size 400x300");
  command->callback([request] { Plot(*request); });
}

}  // namespace discoplan::app
