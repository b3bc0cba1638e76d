// SPDX-License-Identifier: MIT
#include <vector>

#include "hosts/headless/save_figure.h"

int main() {
  const std::vector<float> x = {0, 60, 0, -60, 0, 80, -80}, y = {0, 0, 60, 0, -60, 40, -40};
  const std::vector<float> thickness = {101.2F, 99.8F, 100.4F, 98.9F, 102.3F, 97.5F, 100.1F};

  discoplan::figures::WaferPlot plot;
  plot.sites = {x, y, thickness};  // mm, mm, nm
  plot.diameter = 200;
  plot.title = "Slot 7";
  plot.quantity = "Thickness";
  plot.unit = "nm";
  for (const char* file : {"figure.png", "figure.pdf", "figure.svg"}) {
    discoplan::SaveFigure(file, discoplan::figures::PlotKind::Map, plot);
  }
}
