// SPDX-License-Identifier: MIT
#include "apps/discoplan/stats_rows.h"

#include <algorithm>
#include <utility>

#include "discoplan/analysis/surface_fit.h"

namespace discoplan::app {
namespace {

/// The zones of one wafer are those of all others, whose sites may lie farther out.
std::vector<analysis::Zone> ZonesOf(std::span<const Site> sites, ZoneRule rule, double radius) {
  if (rule.quadrants) return analysis::QuadrantsOf(sites);
  rule.rings.radius = radius;
  return analysis::RingsOf(sites, rule.rings);
}

class RowMaker {
 public:
  RowMaker(const StatsGroup& group, const StatsOptions& options) : options_(options) {
    for (const std::vector<Site>& sites : group.sites) {
      radius_ = std::max(radius_, analysis::FarthestRadius(sites));
      if (sites.size() > largest_) largest_ = sites.size();
    }
    if (options_.zones && options_.zones->rings.rings == 0) {
      options_.zones->rings.rings = analysis::RingsFor(largest_);
    }
  }

  void Add(const Wafer* wafer, const std::string& name, const analysis::Sample& sample,
           std::span<const Site> sites) {
    StatsRow row{wafer, name, {}, sample.Count(), {}};
    if (!options_.zones) {
      row.figures = FiguresOf(options_.figures, sample);
      rows_.push_back(std::move(row));
      return;
    }
    for (analysis::Zone& zone : ZonesOf(sites, *options_.zones, radius_)) {
      row.sites = zone.count;
      row.figures = zone.count > 0 ? FiguresOf(options_.figures, analysis::Sample(zone.sites))
                                   : Figures(options_.figures.size());
      row.zone = std::move(zone);
      rows_.push_back(row);
    }
  }

  std::vector<StatsRow> Take() { return std::move(rows_); }

 private:
  StatsOptions options_;
  double radius_ = 0;
  std::size_t largest_ = 0;
  std::vector<StatsRow> rows_;
};

}  // namespace

Figures FiguresOf(const FigureList& columns, const analysis::Sample& sample) {
  Figures figures;
  for (const auto* column : columns) figures.push_back(FigureOf(*column, sample));
  return figures;
}

std::vector<StatsRow> RowsOf(const StatsGroup& group, const StatsOptions& options) {
  RowMaker rows(group, options);
  std::vector<Site> all;
  for (std::size_t i = 0; i < group.wafers.size(); ++i) {
    rows.Add(group.wafers[i], group.wafers[i]->Title(), group.summary.wafers[i].sample,
             group.sites[i]);
    all.insert(all.end(), group.sites[i].begin(), group.sites[i].end());
  }
  if (group.wafers.size() > 1) rows.Add(nullptr, "All sites", group.summary.all, all);
  return rows.Take();
}

}  // namespace discoplan::app
