// SPDX-License-Identifier: MIT
#include "discoplan/analysis/zones.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <utility>

#include "discoplan/analysis/sample.h"
#include "discoplan/analysis/surface_fit.h"

namespace discoplan::analysis {
namespace {

void Summarize(std::vector<Site> sites, Zone& zone) {
  zone.sites = std::move(sites);
  zone.count = zone.sites.size();
  if (zone.sites.empty()) return;
  const Sample sample(zone.sites);
  zone.mean = sample.mean;
  zone.sigma = sample.sigma;
  zone.minimum = sample.Minimum();
  zone.maximum = sample.Maximum();
}

double RadiusOf(const Site& site) { return std::hypot(static_cast<double>(site.x), site.y); }

/// Positions are 32-bit floats: a site that is meant to lie on a circle may be off by that much.
double WithTolerance(double radius) { return radius * (1 + 1e-6); }

std::size_t RingOf(const std::vector<Zone>& rings, double radius) {
  const auto ring = std::find_if(rings.begin(), rings.end(), [&](const Zone& zone) {
    return radius <= WithTolerance(zone.outer);
  });
  return ring == rings.end() ? rings.size() - 1 : static_cast<std::size_t>(ring - rings.begin());
}

double OuterRadius(RingRule rule, double radius, int ring, int rings) {
  const double part = static_cast<double>(ring) / rings;
  switch (rule) {
    case RingRule::EqualWidth:
      return radius * part;
    case RingRule::EqualArea:
      return radius * std::sqrt(part);
    case RingRule::AroundDisc:
      break;
  }
  return radius * (2 * ring - 1) / (2 * rings - 1);
}

std::string RingName(double inner, double outer) {
  std::array<char, 64> text{};
  std::snprintf(text.data(), text.size(), "%.4g to %.4g mm", inner, outer);
  return text.data();
}

std::size_t QuadrantOf(const Site& site) {
  if (site.x > 0 && site.y >= 0) return 0;
  if (site.y > 0) return 1;
  return site.x < 0 ? 2 : 3;
}

}  // namespace

int RingsFor(std::size_t sites) {
  return std::max(1, static_cast<int>(
                         std::nearbyint((std::sqrt(static_cast<double>(sites)) + 1) / 2 + 0.4999)));
}

std::vector<Zone> RingsOf(std::span<const Site> sites, const RingOptions& options) {
  const int count = options.rings > 0 ? options.rings : RingsFor(sites.size());
  const double radius = options.radius > 0 ? options.radius : FarthestRadius(sites);
  std::vector<Zone> rings(static_cast<std::size_t>(count));
  double inner = 0;
  for (int ring = 1; ring <= count; ++ring) {
    const double outer = OuterRadius(options.rule, radius, ring, count);
    Zone& zone = rings[static_cast<std::size_t>(ring - 1)];
    zone.name = RingName(inner, outer);
    zone.inner = inner;
    zone.outer = outer;
    inner = outer;
  }
  std::vector<std::vector<Site>> members(rings.size());
  for (const Site& site : sites) members[RingOf(rings, RadiusOf(site))].push_back(site);
  for (std::size_t i = 0; i < rings.size(); ++i) Summarize(std::move(members[i]), rings[i]);
  return rings;
}

std::vector<Zone> QuadrantsOf(std::span<const Site> sites) {
  std::array<std::vector<Site>, 4> members;
  for (const Site& site : sites) {
    if (site.x != 0 || site.y != 0) members[QuadrantOf(site)].push_back(site);
  }
  std::vector<Zone> quadrants(members.size());
  for (std::size_t i = 0; i < members.size(); ++i) {
    quadrants[i].name = "quadrant " + std::to_string(i + 1);
    Summarize(std::move(members[i]), quadrants[i]);
  }
  return quadrants;
}

double RadialProfile::At(double x, double y) const {
  return rings[RingOf(rings, std::hypot(x, y))].mean.value_or(0);
}

RadialProfile ProfileOf(std::span<const Site> sites, int rings) {
  return {RingsOf(sites, {.rings = rings, .rule = RingRule::AroundDisc})};
}

}  // namespace discoplan::analysis
