// SPDX-License-Identifier: MIT
#include <vector>

#include "discoplan/controls/plot2d.h"
#include "hosts/headless/headless_host.h"

int main() {
  const std::vector<float> x = {0, 60, 0, -60, 0, 80, -80}, y = {0, 0, 60, 0, -60, 40, -40};
  const std::vector<float> thickness = {101.2F, 99.8F, 100.4F, 98.9F, 102.3F, 97.5F, 100.1F};

  discoplan::HeadlessHost host;
  discoplan::Plot2D plot(host);
  plot.InitProperties();
  plot.WaferDiameter(200);  // mm
  plot.ShowSites(discoplan::Sites::ShowSite);
  if (plot.SetWaferData(x, y, thickness) != discoplan::LoadResult::Loaded) return 1;
  plot.SetSize(6000, 4500);  // twips: 1440 to the inch
  plot.Plot();
  discoplan::SavePicture(plot, host, "map.png");
}
