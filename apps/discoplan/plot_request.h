// SPDX-License-Identifier: MIT
#pragma once

/// What is asked of a plot on the command line, whatever it is drawn on.

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "apps/discoplan/command.h"
#include "apps/discoplan/plot_kinds.h"
#include "discoplan/controls/plot_control.h"

namespace discoplan::app {

struct PlotRequest {
  std::vector<std::string> kinds = {"2D"};
  std::optional<float> diameter;
  std::optional<float> test_diameter;
  std::optional<std::string> style;
  std::vector<float> limits;
  std::vector<std::string> assignments;
  std::optional<std::string> caption;
  bool no_legend = false;
  std::string settings;
  std::string saved_settings;
  std::shared_ptr<WorkerPool> workers;
};

void AddPlotOptions(CLI::App& command, PlotRequest& request);

/// The kinds that are asked for. Raises `UsageError` for what doesn't go with several.
std::vector<PlotKind> KindsOf(const PlotRequest& request);

/// Gives the control the wafer's size and name.
void FitSize(PlotControl& control, const Wafer& measured);
/// What is chosen where nothing else is asked for: a picture is drawn once and looked at long, so
/// a map as fine as it gets, and bars as high as they can be told apart.
void FitLook(PlotControl& control, const Wafer& measured);

/// A control of that kind with settings and data, not yet plotted. Raises `CommandError` for sites
/// that no such wafer holds.
std::unique_ptr<PlotControl> LoadedControl(const PlotKind& kind, const PlotRequest& request,
                                           const DataRequest& data, const Wafer& measured,
                                           Platform& platform);

/// The wafer of data that must have only one. Raises `CommandError` for others.
const Wafer& OnlyWafer(const DataResult& data, const DataRequest& request);

}  // namespace discoplan::app
