// SPDX-License-Identifier: MIT
#include "apps/discoplan/command.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <iostream>

#include "apps/discoplan/skip_report.h"

namespace discoplan::app {

void AddDataOptions(CLI::App& command, DataRequest& request) {
  command
      .add_option("DATA", request.path, "Measured sites: a table, a lot export or a binary file")
      ->required();
  AddReadingOptions(command, request);
}

void AddReadingOptions(CLI::App& command, DataRequest& request) {
  command.add_option("--columns", request.columns,
                     "X,Y,VALUE of a table, by name or number from 1");
  command.add_option("--wafer", request.wafer, "Slot to take from a lot export");
  command.add_option("--sites", request.sites,
                     "Number of sites in a binary file, if not from its size");
  command.add_flag("--skip-invalid", request.skip_invalid,
                   "Leave out rows that can't be read, and say how many");
}

DataResult ReadReporting(const DataRequest& request) {
  DataResult result = ReadData(request);
  if (!result.skipped.empty()) std::cerr << SkipReport(request.path.string(), result) << '\n';
  return result;
}

WaferSize SizeFor(const Wafer& measured) {
  constexpr std::array kStandardDiameters = {50.0F,  75.0F,  100.0F, 125.0F,
                                             150.0F, 200.0F, 300.0F, 450.0F};
  constexpr float kEdge = 6;
  double farthest = 0;
  double near = 0;  // the square of a distance that is surely no more than the farthest one
  for (std::size_t i = 0; i < measured.x.size(); ++i) {
    const double x = measured.x[i];
    const double y = measured.y[i];
    if (x * x + y * y < near) continue;
    farthest = std::max(farthest, 2 * std::hypot(x, y));
    near = farthest * farthest / 4 * (1 - 1e-9);
  }
  const auto fitting = std::ranges::find_if(kStandardDiameters,
                                            [&](float diameter) { return farthest <= diameter; });
  const float diameter =
      fitting != kStandardDiameters.end() ? *fitting : static_cast<float>(std::ceil(farthest));
  return {diameter, std::max(diameter - kEdge, std::min(diameter, static_cast<float>(farthest)))};
}

}  // namespace discoplan::app
