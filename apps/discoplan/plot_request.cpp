// SPDX-License-Identifier: MIT
#include "apps/discoplan/plot_request.h"

#include <algorithm>
#include <cmath>

#include "apps/discoplan/measured_wafer.h"
#include "apps/discoplan/measured_wafer.h"
#include "apps/discoplan/member_text.h"
#include "discoplan/controls/control_factory.h"
#include "discoplan/controls/lattice_control.h"
#include "discoplan/controls/plot3db.h"
#include "discoplan/core/worker_pool.h"
#include "hosts/headless/settings_file.h"

namespace discoplan::app {
namespace {

constexpr float kFinestCells = 200;
/// Of the bars between the limits, in parts of the wafer's diameter.
constexpr float kBarHeight = 0.2F;

void SetUp(PlotControl& control, const PlotRequest& request, const Wafer& measured) {
  if (request.settings.empty()) {
    control.InitProperties();
    FitSize(control, measured);
    FitLook(control, measured);
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

void Load(PlotControl& control, const PlotRequest& request, const DataRequest& data,
          const Wafer& measured) {
  const std::string file = data.path.string();
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

}  // namespace

void AddPlotOptions(CLI::App& command, PlotRequest& request) {
  command
      .add_option("--kind", request.kinds,
                  "Kind of plot: " + PlotKindNames() +
                      "; again for another beside it, or 'all' for a sheet of all")
      ->type_name("KIND")
      ->allow_extra_args(false)
      ->capture_default_str();
  command
      .add_option("--diameter", request.diameter,
                  "Wafer's diameter in mm; the smallest standard one that holds all sites "
                  "otherwise")
      ->check(CLI::PositiveNumber);
  command
      .add_option("--test-diameter", request.test_diameter,
                  "Diameter of the measured area in mm; 6 less than the wafer's otherwise")
      ->check(CLI::PositiveNumber);
  command.add_option("--style", request.style, "Mark of the orientation; notch otherwise")
      ->check(CLI::IsMember({"notch", "flat"}));
  command.add_option("--limits", request.limits, "Pin the colour scale")
      ->expected(2)
      ->type_name("LOW HIGH");
  command.add_option("--set", request.assignments, "Set any writable member of the plot")
      ->type_name("NAME=VALUE")
      ->allow_extra_args(false);
  command.add_option("--caption", request.caption, "Title of the plot");
  command
      .add_option("--settings", request.settings,
                  "Settings from a JSON file, before those of the other options")
      ->type_name("FILE");
  command
      .add_option("--save-settings", request.saved_settings,
                  "Write the plot's settings to a JSON file")
      ->type_name("FILE");
  command.add_flag("--no-legend", request.no_legend, "Leave out the legend");
  command
      .add_option_function<int>(
          "--threads",
          [&request](int threads) { request.workers = std::make_shared<WorkerPool>(threads); },
          "Threads that share the interpolation of a fine map or surface; one otherwise")
      ->check(CLI::Range(1, 64));
}

std::vector<PlotKind> KindsOf(const PlotRequest& request) {
  std::vector<PlotKind> kinds = PlotKindsOf(request.kinds);
  if (kinds.size() > 1 && !(request.settings + request.saved_settings).empty()) {
    throw UsageError("--settings and --save-settings are for one kind of plot at a time");
  }
  return kinds;
}

void FitSize(PlotControl& control, const Wafer& measured) {
  const WaferSize size = SizeFor(measured);
  control.WaferDiameter(size.diameter);
  control.TestDiameter(size.test_diameter);
  control.PlotCaption(measured.name);
}

void FitLook(PlotControl& control, const Wafer& measured) {
  control.BackColor(kWhite);
  if (auto* bars = dynamic_cast<Plot3DB*>(&control)) {
    const auto [low, high] = std::ranges::minmax(measured.value);
    if (low < high) bars->BeamScale(kBarHeight * control.WaferDiameter() / (high - low));
  }
  if (auto* map = dynamic_cast<LatticeControl*>(&control)) {
    map->Resolution(map->TestDiameter() / kFinestCells);
  }
}

std::unique_ptr<PlotControl> LoadedControl(const PlotKind& kind, const PlotRequest& request,
                                           const DataRequest& data, const Wafer& measured,
                                           Platform& platform) {
  std::unique_ptr<PlotControl> control = NewControl(kind.class_name, platform, nullptr);
  control->UseWorkers(request.workers);
  SetUp(*control, request, measured);
  Load(*control, request, data, measured);
  return control;
}

const Wafer& OnlyWafer(const DataResult& data, const DataRequest& request) {
  if (data.wafers.size() == 1) return data.wafers.front();
  std::string slots;
  for (const Wafer& measured : data.wafers) {
    slots += (slots.empty() ? "" : ", ") + std::to_string(measured.slot.value_or(0));
  }
  throw CommandError(request.path.string() + ": has " + std::to_string(data.wafers.size()) +
                     " wafers; choose one by --wafer, from slots " + slots);
}

}  // namespace discoplan::app
