// SPDX-License-Identifier: MIT
#pragma once

/// What is asked of a plot on the command line, whatever it is drawn on.

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "apps/discoplan/colour_limits.h"
#include "apps/discoplan/command.h"
#include "apps/discoplan/plot_kinds.h"
#include "discoplan/controls/plot_control.h"
#include "hosts/headless/headless_host.h"

namespace discoplan::app {

struct PlotRequest {
  std::vector<std::string> kinds = {"2D"};
  std::optional<std::string> style;
  std::optional<ColourLimits> limits;
  std::vector<std::string> assignments;
  std::optional<std::string> caption;
  bool no_legend = false;
  std::string settings;
  std::string saved_settings;
  std::shared_ptr<WorkerPool> workers;
};

/// Those that choose the members of a control.
void AddSettingsOptions(CLI::App& command, PlotRequest& request);
/// And those of a picture of one wafer.
void AddPlotOptions(CLI::App& command, PlotRequest& request);

/// Whether --set gives that member.
bool Assigns(const PlotRequest& request, std::string_view member);

/// Gives a new control the settings, the size and the assignments; `fit` chooses what suits the
/// picture where no settings are given. Raises `UsageError` for what makes no sense.
void TakeSettings(PlotControl& control, const PlotRequest& request, const data::WaferSize& size,
                  const std::function<void()>& fit);

/// The kinds that are asked for. Raises `UsageError` for what doesn't go with several.
PlotKinds KindsOf(const PlotRequest& request);

/// Raises `UsageError` if one of the files to write is a file to read or the other one to write.
/// Settings may go back to where they came from.
void RefuseOverwriting(const PlotRequest& request, const std::string& output,
                       const std::vector<std::string>& data);

/// Adds the diameters of the settings and assignments, so that sites are left out before anything
/// is computed from them. Raises as `LoadedControl` does.
ReadRequest WithSizes(const PlotRequest& request, const PlotKinds& kinds, ReadRequest reading);

/// Gives the control the wafer's size and name.
void FitSize(PlotControl& control, const Wafer& measured);
/// Gives it the name alone, with what was done to the values and what was left out.
void FitCaption(PlotControl& control, const Wafer& measured);
/// Where a plot is drawn, and how large in twips.
struct PlotStage {
  Platform& platform;
  float width;
  float height;
};

/// A control of that kind with settings, size and data, not yet plotted: it gets its size before
/// its data, since plots with data draw themselves at each new size. Raises `CommandError` for
/// sites that no such wafer holds, `UsageError` for settings that make no sense.
std::unique_ptr<PlotControl> LoadedControl(const ControlClass& kind, const PlotRequest& request,
                                           const ReadRequest& data, const Wafer& measured,
                                           const PlotStage& stage);

/// The limits asked for. Raises as `EndsOf` does.
std::optional<std::pair<float, float>> LimitsFor(const PlotRequest& request,
                                                 const std::string& source, const Wafer& measured);

/// Writes the settings if that is asked for: at the end, when nothing else has failed. What the
/// caption says of these values alone stays out of them.
void SaveSettings(const PlotRequest& request, PlotControl& control, const Wafer& measured);

/// Says on standard error which kinds of plot the wafer has too few sites for.
void WarnOfEmptyPlots(const PlotKinds& kinds, const ReadRequest& data, const Wafer& measured);

/// Puts what the host has to say about the data on standard error.
void WarnByMessages(HeadlessHost& host, const ReadRequest& data);

/// The wafer of data that must have only one. Raises `CommandError` for others.
const Wafer& OnlyWafer(const Lot& lot, const ReadRequest& request);

}  // namespace discoplan::app
