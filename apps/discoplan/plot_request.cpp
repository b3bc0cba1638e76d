// SPDX-License-Identifier: MIT
#include "apps/discoplan/plot_request.h"

#include <algorithm>
#include <system_error>

#include "apps/discoplan/checks.h"
#include "apps/discoplan/measured_wafer.h"
#include "apps/discoplan/member_text.h"
#include "apps/discoplan/output.h"
#include "data/wafer_choice.h"
#include "discoplan/base/algorithms.h"
#include "discoplan/base/numbers.h"
#include "discoplan/controls/view_control.h"
#include "discoplan/core/worker_pool.h"
#include "discoplan/render/number_text.h"
#include "hosts/headless/classic_look.h"
#include "hosts/headless/settings_file.h"

namespace discoplan::app {
namespace {

void TakeSize(PlotControl& control, const data::WaferSize& size) {
  control.WaferDiameter(size.diameter);
  control.TestDiameter(size.test_diameter);
}

void RefuseFineSurface(const PlotControl& control) {
  const auto* surface = dynamic_cast<const SurfaceControl*>(&control);
  const float finest = FinestSurface(control);
  if (surface == nullptr || std::min(surface->XResolution(), surface->YResolution()) >= finest) {
    return;
  }
  throw UsageError("XResolution and YResolution of a surface can't be below " +
                   PlainNumber(finest) + " mm, a thousandth of the wafer's diameter; give more");
}

/// What was done to the values and what was left out, which nobody can see in a map.
std::string WordsOn(const Wafer& measured) {
  if (measured.left_out.empty()) return measured.derived;
  return (measured.derived.empty() ? "" : measured.derived + ": ") + measured.SitesText();
}

std::string CaptionOf(const std::string& title, const Wafer& measured) {
  const std::string words = WordsOn(measured);
  if (title.empty() || words.empty()) return title + words;
  return title + (measured.derived.empty() ? ": " : ", ") + words;
}

/// The caption without those words.
std::string TitleIn(const std::string& caption, const Wafer& measured) {
  const std::string words = CaptionOf(" ", measured).substr(1);
  const bool has_words = !words.empty() && caption.ends_with(words);
  return has_words ? caption.substr(0, caption.size() - words.size()) : caption;
}

struct Measured {
  const ReadRequest& request;
  const std::string& source;
  const Wafer& wafer;
};

void SetUp(PlotControl& control, const PlotRequest& request, const Measured& measured) {
  const bool fits = request.settings.empty();
  if (fits && !measured.request.diameter) RefuseOtherUnits(measured.source, measured.wafer);
  TakeSettings(control, request, {measured.wafer.diameter, measured.wafer.test_diameter}, [&] {
    control.PlotCaption(measured.wafer.name);
    FitLook(control, measured.wafer.value);
  });
  control.PlotCaption(CaptionOf(control.PlotCaption(), measured.wafer));
  if (request.no_legend) control.HideLegend(true);
}

std::shared_ptr<WorkerPool> NewWorkers(int threads) {
  try {
    return std::make_shared<WorkerPool>(threads);
  } catch (const std::system_error& error) {
    throw CommandError("--threads: there is no room for " + std::to_string(threads) +
                       " threads now (" + error.code().message() + "); give fewer");
  }
}

}  // namespace

bool Assigns(const PlotRequest& request, std::string_view member) {
  return AnyOf(request.assignments, [&](const std::string& assignment) {
    return data::SameName(std::string_view(assignment).substr(0, assignment.find('=')), member);
  });
}

void TakeSettings(PlotControl& control, const PlotRequest& request, const data::WaferSize& size,
                  const std::function<void()>& fit) {
  const bool fits = request.settings.empty();
  fits ? control.InitProperties() : ReadSettings(control, request.settings);
  TakeSize(control, size);
  if (fits) fit();
  if (request.style) {
    control.WaferStyle(*request.style == "flat" ? WaferSt::Flat : WaferSt::Notch);
  }
  if (request.caption) control.PlotCaption(*request.caption);
  for (const std::string& assignment : request.assignments) SetMember(control, assignment);
  RefuseFineSurface(control);
}

std::optional<std::pair<float, float>> LimitsFor(const PlotRequest& request,
                                                 const std::string& source, const Wafer& measured) {
  if (!request.limits) return {};
  return EndsOf(*request.limits, source, measured.value);
}

void AddSettingsOptions(CLI::App& command, PlotRequest& request) {
  command.add_option("--style", request.style, "Mark of the orientation; notch otherwise")
      ->check(CLI::IsMember({"notch", "flat"}));
  command
      .add_option("--set", request.assignments,
                  "Set any writable member of the plot, in the classic look")
      ->type_name("NAME=VALUE")
      ->allow_extra_args(false);
  command
      .add_option("--settings", request.settings,
                  "Settings from a JSON file, before those of the other options; in the classic "
                  "look")
      ->type_name("FILE")
      ->transform(InputFile());
}

void AddPlotOptions(CLI::App& command, PlotRequest& request) {
  command
      .add_option("--kind", request.kinds,
                  "Kind of plot: " + PlotKindNames() +
                      "; again for another beside it, or 'all' for a sheet of all")
      ->type_name("KIND")
      ->allow_extra_args(false)
      ->capture_default_str();
  AddSettingsOptions(command, request);
  AddLimitsOption(command, request.limits,
                  "Pin the colour scale, to values or to percentages of them as 1% 99%");
  command.add_option("--caption", request.caption, "Title of the plot");
  command
      .add_option("--save-settings", request.saved_settings,
                  "Write the plot's settings to a JSON file")
      ->type_name("FILE")
      ->check(FileName());
  command.add_flag("--no-legend", request.no_legend, "Leave out the legend");
  command
      .add_option_function<int>(
          "--threads", [&request](int threads) { request.workers = NewWorkers(threads); },
          "Threads that share the interpolation of a fine map or surface; one otherwise")
      ->check(CLI::Range(1, 64));
}

void RefuseOverwriting(const PlotRequest& request, const std::string& output,
                       const std::vector<std::string>& data) {
  std::vector<NamedFile> measured;
  for (const std::string& file : data) measured.push_back({"DATA", file});
  const NamedFile saved = {"--save-settings", request.saved_settings};
  RefuseOverwriting(saved, measured);
  measured.push_back({"--settings", request.settings});
  measured.push_back(saved);
  RefuseOverwriting({"--output", output}, measured);
}

PlotKinds KindsOf(const PlotRequest& request) {
  PlotKinds kinds = PlotKindsOf(request.kinds);
  if (kinds.size() > 1 && !(request.settings + request.saved_settings).empty()) {
    throw UsageError("--settings and --save-settings are for one kind of plot at a time");
  }
  return kinds;
}

ReadRequest WithSizes(const PlotRequest& request, const PlotKinds& kinds, ReadRequest reading) {
  const bool has_settings = !request.settings.empty();
  const bool sets_wafer = has_settings || Assigns(request, "WaferDiameter");
  const bool sets_test = has_settings || Assigns(request, "TestDiameter");
  if (!sets_wafer && !sets_test) return reading;
  HeadlessHost host;
  const std::unique_ptr<PlotControl> control = kinds.front()->make(host, nullptr);
  control->InitProperties();
  if (has_settings) ReadSettings(*control, request.settings);
  for (const std::string& assignment : request.assignments) SetMember(*control, assignment);
  const double margin = static_cast<double>(control->WaferDiameter()) - control->TestDiameter();
  if (sets_test && !reading.test_diameter && !reading.edge_exclusion) {
    const bool keeps_margin = reading.diameter.has_value() && *reading.diameter > margin;
    reading.test_diameter = keeps_margin && !Assigns(request, "TestDiameter")
                                ? *reading.diameter - margin
                                : static_cast<double>(control->TestDiameter());
  }
  if (sets_wafer && !reading.diameter) reading.diameter = control->WaferDiameter();
  return reading;
}

void FitSize(PlotControl& control, const Wafer& measured) {
  TakeSize(control, {measured.diameter, measured.test_diameter});
  FitCaption(control, measured);
}

void FitCaption(PlotControl& control, const Wafer& measured) {
  control.PlotCaption(CaptionOf(measured.name, measured));
}

std::unique_ptr<PlotControl> LoadedControl(const ControlClass& kind, const PlotRequest& request,
                                           const ReadRequest& data, const Wafer& measured,
                                           const PlotStage& stage) {
  const std::string source = SourceOf(data.path.string(), measured);
  std::unique_ptr<PlotControl> control = kind.make(stage.platform, nullptr);
  control->UseWorkers(request.workers);
  SetUp(*control, request, {data, source, measured});
  control->SetSize(stage.width, stage.height);
  LoadSites(*control, source, measured);
  if (const auto limits = LimitsFor(request, source, measured)) {
    control->SetPlotLimit(limits->first, limits->second);
  }
  return control;
}

void SaveSettings(const PlotRequest& request, PlotControl& control, const Wafer& measured) {
  if (request.saved_settings.empty()) return;
  control.PlotCaption(TitleIn(control.PlotCaption(), measured));
  WriteSettings(control, request.saved_settings);
}

void WarnOfEmptyPlots(const PlotKinds& kinds, const ReadRequest& data, const Wafer& measured) {
  const auto stays_empty = [&](const ControlClass* each) {
    return measured.x.size() < each->least_sites;
  };
  const auto found = FindIf(kinds, stays_empty);
  if (found == kinds.end()) return;
  const ControlClass* kind = *found;
  Warn(SourceOf(data.path.string(), measured) + ": " + Counted(measured.x.size(), "site") +
       ", and a plot of kind " + std::string(kind->kind) + " stays empty below " +
       std::to_string(kind->least_sites) + "; --kind 2DN or 3DB shows the values");
}

void WarnByMessages(HeadlessHost& host, const ReadRequest& data) {
  host.OnMessage(
      [file = data.path.string()](const Message& message) { Warn(file + ": " + message.text); });
}

const Wafer& OnlyWafer(const Lot& lot, const ReadRequest& request) {
  const std::string file = request.path.string();
  if (lot.parameters.size() > 1) {
    std::vector<std::string> names;
    for (const data::Parameter& parameter : lot.parameters) names.push_back(Shown(parameter.name));
    throw CommandError(file + ": " + std::to_string(names.size()) +
                       " values are read; choose one by --parameter, from " + Listed(names));
  }
  if (lot.wafers.size() == 1) return lot.wafers.front();
  throw CommandError(file + ": has " + std::to_string(lot.wafers.size()) +
                     " wafers; choose one by --wafer, from " + data::ChoiceText(lot.wafers));
}

}  // namespace discoplan::app
