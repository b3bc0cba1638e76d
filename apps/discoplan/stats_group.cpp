// SPDX-License-Identifier: MIT
#include "apps/discoplan/stats_group.h"

#include <cmath>

#include "apps/discoplan/wafer_sites.h"
#include "data/plain_text.h"

namespace discoplan::app {

std::vector<StatsGroup> GroupsOf(const data::Lot& lot) {
  std::vector<StatsGroup> groups;
  for (std::size_t parameter = 0; parameter < lot.parameters.size(); ++parameter) {
    std::vector<const data::Wafer*> wafers;
    std::vector<std::vector<Site>> sites;
    for (const data::Wafer& wafer : lot.Of(parameter)) {
      wafers.push_back(&wafer);
      sites.push_back(SitesOf(wafer));
    }
    if (wafers.empty()) continue;
    std::vector<analysis::LotWafer> measured;
    for (std::size_t i = 0; i < wafers.size(); ++i) {
      measured.push_back({wafers[i]->name, sites[i]});
    }
    analysis::LotSummary summary = analysis::SummaryOf(measured);
    groups.push_back(
        {&lot.parameters[parameter], std::move(wafers), std::move(sites), std::move(summary)});
  }
  return groups;
}

std::optional<double> SigmaWithin(const analysis::LotSummary& summary) {
  if (!summary.components) return {};
  return std::sqrt(summary.components->within);
}

std::optional<double> SigmaBetween(const analysis::LotSummary& summary) {
  if (!summary.components) return {};
  return std::sqrt(summary.components->between);
}

std::string_view WordFor(analysis::Outlying outlying) {
  switch (outlying) {
    case analysis::Outlying::No:
      return "";
    case analysis::Outlying::Mean:
      return "mean";
    case analysis::Outlying::Sigma:
      return "sigma";
    case analysis::Outlying::Both:
      break;
  }
  return "mean and sigma";
}

std::string OutlyingOnes(const analysis::LotSummary& summary) {
  std::vector<std::string> names;
  for (const analysis::WaferSummary& wafer : summary.wafers) {
    if (wafer.outlying == analysis::Outlying::No) continue;
    names.push_back(wafer.name + " (" + std::string(WordFor(wafer.outlying)) + ')');
  }
  return names.empty() ? "none" : data::Listed(names);
}

}  // namespace discoplan::app
