// SPDX-License-Identifier: MIT
#include "apps/discoplan/plot_request.h"

#include <algorithm>
#include <system_error>

#include "apps/discoplan/checks.h"
#include "apps/discoplan/measured_wafer.h"
#include "apps/discoplan/member_text.h"
#include "apps/discoplan/output.h"
#include "data/exclusions.h"
#include "data/wafer_choice.h"
#include "discoplan/base/algorithms.h"
#include "discoplan/base/numbers.h"
#include "discoplan/controls/lattice_control.h"
#include "discoplan/controls/plot3db.h"
#include "discoplan/controls/view_control.h"
#include "discoplan/core/worker_pool.h"
#include "discoplan/figures/colour_map.h"
#include "discoplan/render/number_text.h"
#include "hosts/headless/settings_file.h"

namespace discoplan::app {
namespace {

constexpr float kFinestCells = 200;
/// Of the bars between the limits, in parts of the wafer's diameter.
constexpr float kBarHeight = 0.2F;

void TakeDiameters(PlotControl& control, const ReadRequest& request) {
  if (request.diameter) {
    const float margin = control.WaferDiameter() - control.TestDiameter();
    const auto diameter = static_cast<float>(*request.diameter);
    const float inside = diameter - margin;
    control.WaferDiameter(diameter);
    control.TestDiameter(inside > 0 ? inside : diameter);
  }
  if (request.edge_exclusion) {
    const auto exclusion = static_cast<float>(*request.edge_exclusion);
    control.TestDiameter(std::max(control.WaferDiameter() - 2 * exclusion, 0.0F));
  }
  if (!request.test_diameter) return;
  const auto test_diameter = static_cast<float>(*request.test_diameter);
  if (test_diameter > control.WaferDiameter()) {
    throw UsageError("--test-diameter: " + PlainNumber(test_diameter) +
                     " mm is more than the wafer's " + PlainNumber(control.WaferDiameter()) +
                     " mm; give less, or a larger --diameter");
  }
  control.TestDiameter(request.edge_exclusion ? std::min(control.TestDiameter(), test_diameter)
                                              : test_diameter);
}

/// Cell side in mm: the time that a surface takes grows with the square of its lines, of which
/// nobody sees more than a thousand.
float FinestSurface(const PlotControl& control) { return control.WaferDiameter() / 1000; }

void RefuseFineSurface(const PlotControl& control) {
  const auto* surface = dynamic_cast<const SurfaceControl*>(&control);
  const float finest = FinestSurface(control);
  if (surface == nullptr || std::min(surface->XResolution(), surface->YResolution()) >= finest) {
    return;
  }
  throw UsageError("XResolution and YResolution of a surface can't be below " +
                   PlainNumber(finest) + " mm, a thousandth of the wafer's diameter; give more");
}

/// With what was left out, since nobody can see that in a map.
std::string CaptionOf(const std::string& title, const Wafer& measured) {
  if (measured.left_out.empty()) return title;
  return title + (title.empty() ? "" : ": ") + measured.SitesText();
}

struct Measured {
  const ReadRequest& request;
  const std::string& source;
  const Wafer& wafer;
};

void SetUp(PlotControl& control, const PlotRequest& request, const Measured& measured) {
  const bool fits = request.settings.empty();
  if (fits) {
    if (!measured.request.diameter) RefuseOtherUnits(measured.source, measured.wafer);
    control.InitProperties();
    FitSize(control, measured.wafer);
  } else {
    ReadSettings(control, request.settings);
  }
  TakeDiameters(control, measured.request);
  if (fits) FitLook(control, measured.wafer);
  if (request.style) {
    control.WaferStyle(*request.style == "flat" ? WaferSt::Flat : WaferSt::Notch);
  }
  if (request.caption) control.PlotCaption(CaptionOf(*request.caption, measured.wafer));
  for (const std::string& assignment : request.assignments) SetMember(control, assignment);
  if (request.no_legend) control.HideLegend(true);
  RefuseFineSurface(control);
}

std::shared_ptr<WorkerPool> NewWorkers(int threads) {
  try {
    return std::make_shared<WorkerPool>(threads);
  } catch (const std::system_error& error) {
    throw CommandError("--threads: there is no room for " + std::to_string(threads) +
                       " threads now (" + error.code().message() + "); give fewer");
  }
}

/// Of the classes' colours, from the highest on; empty for a plot in one colour.
std::vector<std::string> ColourMembers(const PlotControl& control) {
  std::vector<std::string> names;
  for (int i = 0; i < wafer::kLegendRows; ++i) {
    std::string name = "IntervalColor" + std::to_string(i);
    if (control.Members().Find(name) != nullptr) names.push_back(std::move(name));
  }
  return names;
}

/// "9.5" or, as a part of the values, "1%".
struct Limit {
  double number = 0;
  bool is_percent = false;
};

Limit LimitIn(std::string text) {
  Limit limit;
  limit.is_percent = text.ends_with('%');
  if (limit.is_percent) text.pop_back();
  CLI::detail::lexical_cast(text, limit.number);
  return limit;
}

CLI::Validator LimitText() {
  return CLI::Validator(
      [](std::string& text) -> std::string {
        const Limit limit = LimitIn(text);
        if (!limit.is_percent) return FiniteNumber()(text);
        std::string number = text.substr(0, text.size() - 1);
        const bool fits =
            FiniteNumber()(number).empty() && limit.number >= 0 && limit.number <= 100;
        return fits ? "" : "takes a percentage from 0% to 100%, not '" + text + "'";
      },
      "");
}

void ParseLimits(const std::vector<std::string>& texts, PlotRequest& request) {
  const Limit low = LimitIn(texts[0]);
  const Limit high = LimitIn(texts[1]);
  if (low.is_percent != high.is_percent) {
    throw UsageError("--limits takes two numbers or two percentages, as in --limits 1% 99%");
  }
  if (!(low.number < high.number)) throw UsageError("--limits takes LOW HIGH with LOW below HIGH");
  if (low.is_percent) {
    request.limit_percents = {low.number, high.number};
    return;
  }
  const std::vector<float> limits = {static_cast<float>(low.number),
                                     static_cast<float>(high.number)};
  if (!(limits[0] < limits[1])) throw UsageError("--limits takes LOW HIGH with LOW below HIGH");
  const bool fits = Attempt([&] {
    ToFloat(static_cast<double>(limits[1]) - limits[0]);
    ToFloat(static_cast<double>(limits[1]) + limits[0]);
  });
  if (!fits) throw UsageError("--limits are too large for 32-bit floats; scale the values");
  request.limits = limits;
}

}  // namespace

std::optional<std::pair<float, float>> LimitsFor(const PlotRequest& request,
                                                 const std::string& source, const Wafer& measured) {
  if (!request.limits.empty()) return std::pair{request.limits[0], request.limits[1]};
  if (request.limit_percents.empty()) return {};
  const auto at = [&](double percent) {
    return static_cast<float>(data::Quantile(measured.value, percent / 100));
  };
  const float low = at(request.limit_percents[0]);
  const float high = at(request.limit_percents[1]);
  if (low < high) return std::pair{low, high};
  throw CommandError(source + ": all values between these --limits are " + PlainNumber(low) +
                     "; give percentages farther apart, or numbers");
}

void AddPlotOptions(CLI::App& command, PlotRequest& request) {
  command
      .add_option("--kind", request.kinds,
                  "Kind of plot: " + PlotKindNames() +
                      "; again for another beside it, or 'all' for a sheet of all")
      ->type_name("KIND")
      ->allow_extra_args(false)
      ->capture_default_str();
  command.add_option("--style", request.style, "Mark of the orientation; notch otherwise")
      ->check(CLI::IsMember({"notch", "flat"}));
  command
      .add_option_function<std::vector<std::string>>(
          "--limits",
          [&request](const std::vector<std::string>& texts) { ParseLimits(texts, request); },
          "Pin the colour scale, to values or to percentages of them as 1% 99%")
      ->expected(2)
      ->check(LimitText())
      ->type_name("LOW HIGH");
  command.add_option("--set", request.assignments, "Set any writable member of the plot")
      ->type_name("NAME=VALUE")
      ->allow_extra_args(false);
  command.add_option("--caption", request.caption, "Title of the plot");
  command
      .add_option("--settings", request.settings,
                  "Settings from a JSON file, before those of the other options")
      ->type_name("FILE")
      ->transform(InputFile());
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

void FitSize(PlotControl& control, const Wafer& measured) {
  control.WaferDiameter(measured.diameter);
  control.TestDiameter(measured.test_diameter);
  control.PlotCaption(CaptionOf(measured.name, measured));
}

void FitLook(PlotControl& control, const Wafer& measured) {
  control.BackColor(kWhite);
  if (auto* bars = dynamic_cast<Plot3DB*>(&control)) {
    const auto [low, high] = MinMax(measured.value);
    if (low < high) bars->BeamScale(kBarHeight * control.WaferDiameter() / (high - low));
  }
  if (auto* map = dynamic_cast<LatticeControl*>(&control)) {
    map->Resolution(map->TestDiameter() / kFinestCells);
  }
  auto* surface = dynamic_cast<SurfaceControl*>(&control);
  if (surface != nullptr && surface->XResolution() < FinestSurface(control)) {
    surface->XResolution(FinestSurface(control));
    surface->YResolution(FinestSurface(control));
  }
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

void TakeColours(PlotControl& control, const std::string& colours) {
  if (colours.empty()) return;
  const std::vector<std::string> names = ColourMembers(control);
  const std::vector<figures::Rgba> bands =
      figures::BandColours(*figures::FindColourMap(colours), static_cast<int>(names.size()));
  for (std::size_t i = 0; i < bands.size(); ++i) {
    const figures::Rgba colour = bands[bands.size() - 1 - i];  // from the highest class on
    const auto packed = static_cast<Colour>(colour.red | colour.green << 8 | colour.blue << 16);
    SetMember(control, names[i] + "=" + std::to_string(packed));
  }
}

void SaveSettings(const PlotRequest& request, PlotControl& control) {
  if (!request.saved_settings.empty()) WriteSettings(control, request.saved_settings);
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
