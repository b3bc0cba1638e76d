// SPDX-License-Identifier: MIT
#include <cmath>
#include <limits>

#include "discoplan/analysis/sample.h"
#include "discoplan/analysis/zones.h"
#include "discoplan/figures/lot_parts.h"

namespace discoplan::figures {
namespace {

/// A chart's heading, and the room below it.
Box UnderHeading(Page& page, const Box& box, const std::string& heading,
                 const std::string& detail) {
  const double em = page.Em();
  const double y = box.top + 0.6 * em;
  const std::string shown = page.Shortened(heading, box.Width(), em, true);
  page.Put({.text = shown, .size = em, .bold = true, .colour = page.Ink().text}, {box.left, y},
           Align::Start);
  const double start = box.left + page.Width(shown, em, true) + 0.8 * em;
  const std::string rest = page.Shortened(detail, box.right - start, 0.85 * em);
  if (!rest.empty()) {
    page.Put({.text = rest, .size = 0.85 * em, .colour = page.Ink().soft}, {start, y},
             Align::Start);
  }
  return {box.left, box.top + 1.2 * em, box.right, box.bottom};
}

/// A chart in a box, whatever else is free on the page.
Chart ChartIn(Page& page, const Box& box, const Axis& x, const Axis& y) {
  const Box free = page.Free();
  page.Free() = box;
  Chart chart = AddChart(page, x, y);
  page.Free() = free;
  return chart;
}

Axis WaferAxis(const LotPlot& lot) {
  return {.low = 0.5,
          .high = static_cast<double>(lot.wafers.size()) + 0.5,
          .label = lot.label_title,
          .names = lot.labels};
}

/// With a little room beyond the values.
Axis ValueAxis(const LotPlot& lot, double low, double high) {
  const double margin = high > low ? 0.05 * (high - low) : std::max(0.01 * std::abs(low), 1e-9);
  return {.low = low - margin, .high = high + margin, .label = QuantityText(lot.wafers.front())};
}

Rgba InkOf(const Page& page, const WaferPlot& wafer) {
  return wafer.flag.empty() ? page.Readable(page.Look().colours.At(0.3)) : page.Ink().accent;
}

struct Quartiles {
  double low, first, median, third, high;
  std::vector<double> beyond;
};

Quartiles QuartilesOf(std::span<const float> values) {
  std::vector<double> sorted(values.begin(), values.end());
  const analysis::Sample sample(std::move(sorted));
  Quartiles q{.low = 0,
              .first = sample.Quantile(0.25),
              .median = sample.Quantile(0.5),
              .third = sample.Quantile(0.75),
              .high = 0,
              .beyond = {}};
  const double reach = 1.5 * (q.third - q.first);
  q.low = q.first;
  q.high = q.third;
  for (const double value : sample.sorted) {
    if (value < q.first - reach || value > q.third + reach) {
      q.beyond.push_back(value);
    } else {
      q.low = std::min(q.low, value);
      q.high = std::max(q.high, value);
    }
  }
  return q;
}

std::vector<Site> SitesOf(const WaferPlot& wafer) {
  std::vector<Site> sites(wafer.sites.Size());
  for (std::size_t i = 0; i < sites.size(); ++i) {
    sites[i].x = wafer.sites.x[i];
    sites[i].y = wafer.sites.y[i];
    sites[i].z = wafer.sites.value[i];
  }
  return sites;
}

/// Of each ring that has sites, their mean distance from the centre and their mean value. As many
/// rings as the sites of one wafer call for.
std::vector<Point> ProfileOf(std::span<const Site> sites, int rings) {
  struct Sums {
    double radius = 0;
    double value = 0;
    double count = 0;
  };
  const std::vector<analysis::Zone> zones = analysis::ProfileOf(sites, rings).rings;
  std::vector<Sums> sums(zones.size());
  for (const Site& site : sites) {
    const double radius = std::hypot(site.x, site.y);
    const auto beyond = std::find_if(zones.begin(), zones.end(),
                                     [radius](const auto& zone) { return radius <= zone.outer; });
    Sums& ring = sums[static_cast<std::size_t>(
        std::min(beyond - zones.begin(), static_cast<std::ptrdiff_t>(zones.size()) - 1))];
    ring.radius += radius;
    ring.value += site.z;
    ring.count += 1;
  }
  std::vector<Point> profile;
  for (const Sums& ring : sums) {
    if (ring.count > 0) profile.push_back({ring.radius / ring.count, ring.value / ring.count});
  }
  return profile;
}

}  // namespace

void DrawTrend(Page& page, const Box& box, const LotPlot& lot) {
  const double em = page.Em();
  const Box area = UnderHeading(page, box, "Mean \u00B1 \u03C3", "line: mean of all sites");
  std::vector<Summary> summaries;
  double low = std::numeric_limits<double>::max();
  double high = std::numeric_limits<double>::lowest();
  double sum = 0;
  double count = 0;
  for (const WaferPlot& wafer : lot.wafers) {
    const Summary& s = summaries.emplace_back(Summarise(wafer.sites.value));
    low = std::min(low, s.mean - s.sigma);
    high = std::max(high, s.mean + s.sigma);
    sum += s.mean * static_cast<double>(s.count);
    count += static_cast<double>(s.count);
  }
  const Chart chart = ChartIn(page, area, WaferAxis(lot), ValueAxis(lot, low, high));
  const double mean = chart.Y(sum / count);
  page.Line({chart.area.left, mean}, {chart.area.right, mean}, page.Ink().soft, 1.2 * page.Hair());
  const double pitch = chart.area.Width() / static_cast<double>(lot.wafers.size());
  const double cap = std::min(0.35 * em, 0.3 * pitch);
  for (std::size_t i = 0; i < summaries.size(); ++i) {
    const double x = chart.X(static_cast<double>(i) + 1);
    const Rgba ink = InkOf(page, lot.wafers[i]);
    const double top = chart.Y(summaries[i].mean + summaries[i].sigma);
    const double bottom = chart.Y(summaries[i].mean - summaries[i].sigma);
    Path bar;
    bar.Line({{x, top}, {x, bottom}});
    for (const double y : {top, bottom}) bar.Line({{x - cap, y}, {x + cap, y}});
    page.Add(PathShape{.path = std::move(bar), .stroke = {1.4 * page.Hair(), ink}});
    page.Add(DotsShape{.centres = {{x, chart.Y(summaries[i].mean)}},
                       .radius = std::min(0.3 * em, 0.35 * pitch),
                       .fill = ink});
  }
}

void DrawBoxes(Page& page, const Box& box, const LotPlot& lot) {
  const double em = page.Em();
  const Box area = UnderHeading(page, box, "Quartiles", "whiskers: 1.5 IQR");
  std::vector<Quartiles> all;
  double low = std::numeric_limits<double>::max();
  double high = std::numeric_limits<double>::lowest();
  for (const WaferPlot& wafer : lot.wafers) {
    const Quartiles& q = all.emplace_back(QuartilesOf(wafer.sites.value));
    low = std::min(low, q.beyond.empty() ? q.low : std::min(q.low, q.beyond.front()));
    high = std::max(high, q.beyond.empty() ? q.high : std::max(q.high, q.beyond.back()));
  }
  const Chart chart = ChartIn(page, area, WaferAxis(lot), ValueAxis(lot, low, high));
  const double pitch = chart.area.Width() / static_cast<double>(lot.wafers.size());
  const double half = std::min(0.32 * pitch, 1.2 * em);
  for (std::size_t i = 0; i < all.size(); ++i) {
    const Quartiles& q = all[i];
    const double x = chart.X(static_cast<double>(i) + 1);
    const Rgba ink = InkOf(page, lot.wafers[i]);
    const double top = chart.Y(q.third);
    const double bottom = chart.Y(q.first);
    Path whiskers;
    whiskers.Line({{x, chart.Y(q.high)}, {x, top}});
    whiskers.Line({{x, bottom}, {x, chart.Y(q.low)}});
    page.Add(PathShape{.path = std::move(whiskers), .stroke = {1.2 * page.Hair(), ink}});
    page.Add(PathShape{.path = Rectangle({x - half, top, x + half, bottom}),
                       .fill = Mix(page.Ink().paper, ink, 0.35),
                       .stroke = {1.2 * page.Hair(), ink}});
    page.Line({x - half, chart.Y(q.median)}, {x + half, chart.Y(q.median)}, page.Ink().text,
              2 * page.Hair());
    DotsShape dots{.radius = std::min(0.16 * em, 0.25 * pitch), .fill = ink};
    for (const double value : q.beyond) dots.centres.push_back({x, chart.Y(value)});
    if (!dots.centres.empty()) page.Add(std::move(dots));
  }
}

void DrawProfiles(Page& page, const Box& box, const LotPlot& lot) {
  const Box area = UnderHeading(page, box, "Radial profiles", "bold: all sites");
  std::vector<std::vector<Point>> profiles;
  std::vector<Site> all;
  double low = std::numeric_limits<double>::max();
  double high = std::numeric_limits<double>::lowest();
  double radius = 0;
  int rings = 0;
  const auto take = [&](std::span<const Site> sites) {
    for (const Point p : profiles.emplace_back(ProfileOf(sites, rings))) {
      low = std::min(low, p.y);
      high = std::max(high, p.y);
    }
  };
  for (const WaferPlot& wafer : lot.wafers) {
    const std::vector<Site> sites = SitesOf(wafer);
    take(sites);
    all.insert(all.end(), sites.begin(), sites.end());
    radius = std::max(radius, wafer.diameter / 2);
  }
  rings = static_cast<int>(analysis::ProfileOf(SitesOf(lot.wafers.front())).rings.size());
  take(all);
  const Chart chart = ChartIn(page, area, {0, radius, "Radius (mm)"}, ValueAxis(lot, low, high));
  const auto draw = [&](const std::vector<Point>& profile, Rgba ink, double width) {
    std::vector<Point> line;
    for (const Point p : profile) line.push_back({chart.X(p.x), chart.Y(p.y)});
    Path path;
    path.Line(std::move(line));
    page.Add(PathShape{.path = std::move(path), .stroke = {width, ink}});
  };
  // The flagged ones over the others, the lot's own over all.
  for (const bool flagged : {false, true}) {
    for (std::size_t i = 0; i < lot.wafers.size(); ++i) {
      if (lot.wafers[i].flag.empty() == flagged) continue;
      const Rgba ink = InkOf(page, lot.wafers[i]);
      draw(profiles[i], flagged ? ink : Mix(page.Ink().paper, ink, 0.5),
           (flagged ? 1.6 : 1) * page.Hair());
    }
  }
  draw(profiles.back(), page.Ink().text, 2.4 * page.Hair());
}

}  // namespace discoplan::figures
