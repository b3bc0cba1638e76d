// SPDX-License-Identifier: MIT
#include "apps/discoplan/picture_request.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <utility>

#include "apps/discoplan/checks.h"
#include "apps/discoplan/data_options.h"
#include "discoplan/analysis/figures_of_merit.h"
#include "discoplan/figures/colour_map.h"

namespace discoplan::app {
PixelSize ParseSize(const std::string& text) {
  constexpr int kSmallest = 50;
  constexpr int kLargest = 10000;
  PixelSize size;
  int used = 0;
  const auto is_whole = [&] { return used == static_cast<int>(text.size()); };
  if (std::sscanf(text.c_str(), "%5dx%5d%n", &size.width, &size.height, &used) == 2 && is_whole() &&
      std::min(size.width, size.height) >= kSmallest &&
      std::max(size.width, size.height) <= kLargest) {
    return size;
  }
  used = 0;
  if (std::sscanf(text.c_str(), "%7lfx%7lfmm%n", &size.width_mm, &size.height_mm, &used) == 2 &&
      is_whole() && std::min(size.width_mm, size.height_mm) >= 20 &&
      std::max(size.width_mm, size.height_mm) <= 2000) {
    return size;
  }
  throw UsageError(
      "--size takes WIDTHxHEIGHT, 50 to 10000 pixels each, or WIDTHxHEIGHTmm, 20 to "
      "2000 each, not '" +
      text + "'");
}

namespace {

/// The classic look knows pixels alone.
void TakePixels(PictureRequest& request) {
  PixelSize& size = request.size;
  if (size.width_mm <= 0) return;
  const double pixels = request.dpi.value_or(300) / 25.4;
  size.width = static_cast<int>(std::lround(size.width_mm * pixels));
  size.height = static_cast<int>(std::lround(size.height_mm * pixels));
  if (std::max(size.width, size.height) <= 10000) return;
  throw UsageError("--size and --dpi make a picture of more than 10000 pixels; give less");
}

/// Figures of merit in per cent.
std::vector<std::string> Uniformities() {
  std::vector<std::string> keys;
  for (const analysis::FigureOfMerit& figure : analysis::FiguresOfMerit()) {
    if (figure.unit == analysis::UnitKind::Percent) keys.emplace_back(figure.key);
  }
  return keys;
}

/// `modern` are the options of that look.
void CheckLook(const LookRequest& look, const std::vector<const CLI::Option*>& modern) {
  for (const CLI::Option* option : modern) {
    if (!look.classic || option->count() == 0) continue;
    throw UsageError(option->get_name() +
                     " belongs to the modern look; leave it away, or --look classic");
  }
  if (!look.view.empty() && (look.view[1] < 10 || look.view[1] > 80)) {
    throw UsageError("--view: surfaces are seen from an elevation of 10 to 80 degrees");
  }
  if (!look.control_limits.empty() && !(look.control_limits[0] < look.control_limits[1])) {
    throw UsageError("--control-limits takes LOW HIGH with LOW below HIGH");
  }
}

}  // namespace

void AddLookOptions(CLI::App& command, LookRequest& look, std::function<void()> then) {
  command
      .add_option_function<std::string>(
          "--look", [&look](const std::string& name) { look.classic = name == "classic"; },
          "modern, or classic as the controls draw it")
      ->check(CLI::IsMember({"modern", "classic"}))
      ->default_str("modern");
  command
      .add_option("--colours", look.colours,
                  "Colours of the values: " + figures::ColourMapNames() +
                      "; with _r behind its name reversed")
      ->check(CLI::Validator(
          [](std::string& name) {
            return figures::FindColourMap(name) ? std::string()
                                                : "is none of " + figures::ColourMapNames();
          },
          "NAME"));
  const std::size_t of_both = command.get_options().size();
  command.add_option("--bands", look.bands, "Steps of the colour scale; continuous otherwise")
      ->check(CLI::Range(2, 64));
  command
      .add_option("--interpolation", look.interpolation,
                  "Between the sites: smooth (thin-plate spline) or idw4 (mean of four)")
      ->check(CLI::IsMember({"smooth", "idw4"}))
      ->capture_default_str();
  command.add_option("--notch", look.notch, "Side that notch or flat are at")
      ->check(CLI::IsMember(NotchSides()))
      ->capture_default_str();
  command.add_option("--quantity", look.quantity, "What was measured; the data's name otherwise");
  command.add_option("--font", look.font, "Font of all texts");
  command.add_flag("--values", look.values, "Write the values beside the sites of a map");
  command.add_flag("--no-isolines", look.no_isolines, "Leave out the lines of equal value");
  command.add_flag("--dark", look.dark, "Light on dark");
  command.add_flag("--transparent", look.transparent, "No background");
  command
      .add_option("--uniformity", look.uniformity,
                  "Figure of the line below the title; std_dev_percent otherwise")
      ->check(CLI::IsMember(Uniformities()));
  command
      .add_option("--view", look.view, "Surfaces and bars as seen from there, in degrees; 20 34")
      ->expected(2)
      ->type_name("ROTATION ELEVATION")
      ->check(CLI::Range(-360.0, 360.0));
  command.add_option("--cut", look.cut, "Ends of a line scan in mm; along X otherwise")
      ->expected(4)
      ->type_name("X1 Y1 X2 Y2")
      ->check(FiniteNumber());
  command.add_option("--control-limits", look.control_limits, "Of a histogram")
      ->expected(2)
      ->type_name("LOW HIGH")
      ->check(FiniteNumber());
  command.add_option("--bins", look.bins, "About as many in a histogram; 0 as the data call for")
      ->check(CLI::Range(0, 200));
  command
      .add_option("--sigma-range", look.sigma_range,
                  "Half the band of sigma ranges, in standard deviations")
      ->check(CLI::Range(0.01, 100.0))
      ->capture_default_str();
  const std::vector<const CLI::Option*> all = std::as_const(command).get_options();
  const std::vector<const CLI::Option*> modern(all.begin() + static_cast<std::ptrdiff_t>(of_both),
                                               all.end());
  command.parse_complete_callback([&look, modern, then = std::move(then)] {
    CheckLook(look, modern);
    if (then) then();
  });
}

const std::array<std::string, 4>& NotchSides() {
  static const std::array<std::string, 4> sides = {"bottom", "left", "top", "right"};
  return sides;
}

void AddPictureOptions(CLI::App& command, PictureRequest& request) {
  AddDataOptions(command, request.data);
  AddDeriveOptions(command, request.derive);
  command
      .add_option("-o,--output", request.output,
                  "File to write; its ending tells the format: .png, .pdf or .svg")
      ->required()
      ->check(FileName());
  AddPlotOptions(command, request.plot);
  command
      .add_option_function<std::string>(
          "--size", [&request](const std::string& text) { request.size = ParseSize(text); },
          "Size of each plot in pixels or, as in 160x120mm, on paper")
      ->default_str("800x600");
  AddLookOptions(command, request.look, [&request] { TakePixels(request); });
  command.add_option("--dpi", request.dpi, "Dots per inch of a size in mm; 300 otherwise")
      ->check(CLI::Range(30.0, 2400.0));
}

SheetGrid SheetGrid::For(std::size_t count) {
  const int columns = static_cast<int>(std::ceil(std::sqrt(static_cast<double>(count))));
  return {columns, (static_cast<int>(count) + columns - 1) / columns};
}

}  // namespace discoplan::app
