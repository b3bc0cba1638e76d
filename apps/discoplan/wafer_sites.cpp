// SPDX-License-Identifier: MIT
#include "apps/discoplan/wafer_sites.h"

namespace discoplan::app {

std::vector<Site> SitesOf(const data::Wafer& measured) {
  std::vector<Site> sites(measured.x.size());
  for (std::size_t i = 0; i < sites.size(); ++i) {
    sites[i] = {measured.x[i], measured.y[i], measured.value[i]};
  }
  return sites;
}

void TakeSites(data::Wafer& measured, const std::vector<Site>& sites) {
  measured.x.resize(sites.size());
  measured.y.resize(sites.size());
  measured.value.resize(sites.size());
  for (std::size_t i = 0; i < sites.size(); ++i) {
    measured.x[i] = sites[i].x;
    measured.y[i] = sites[i].y;
    measured.value[i] = sites[i].z;
  }
}

}  // namespace discoplan::app
