// SPDX-License-Identifier: MIT
#include <cmath>

#include "discoplan/figures/kinds.h"

namespace discoplan::figures {
namespace {

/// The cut, as far as it lies in the test area.
struct Scan {
  Point from;
  Point to;
  double length = 0;

  Point At(double distance) const { return from + (to - from) * (distance / length); }
  /// Along the cut from its start, and beside it.
  Point Foot(Point p) const {
    const Point along = (to - from) * (1 / length);
    const Point off = p - from;
    return {off.x * along.x + off.y * along.y, off.y * along.x - off.x * along.y};
  }
};

/// From border to border of the area along the line of the cut.
Scan ScanOf(const WaferPlot& plot) {
  const double reach = std::max(plot.diameter / 2 - plot.edge_exclusion, plot.diameter * 0.05);
  const Cut cut = plot.cut.value_or(Cut{{-reach, 0}, {reach, 0}});
  Point along = cut.to - cut.from;
  const double length = std::hypot(along.x, along.y);
  if (!(length > 0)) return {{-reach, 0}, {reach, 0}, 2 * reach};
  along = along * (1 / length);
  const double middle = -(cut.from.x * along.x + cut.from.y * along.y);
  const Point nearest = cut.from + along * middle;
  const double half = reach * reach - nearest.x * nearest.x - nearest.y * nearest.y;
  if (half <= 0) return {{-reach, 0}, {reach, 0}, 2 * reach};
  const double side = std::sqrt(half);
  return {nearest - along * side, nearest + along * side, 2 * side};
}

struct NearSite {
  double distance;
  double value;
};

/// Takes a small map with the cut from the right of what is free.
void AddSmallMap(Page& page, const WaferPlot& plot, const Scale& scale, const Scan& scan,
                 const std::shared_ptr<const ValueField>& field,
                 const std::shared_ptr<const Coverage>& coverage) {
  const double em = page.Em();
  Box& free = page.Free();
  const double side = std::min(0.26 * free.Width(), 0.6 * free.Height());
  if (side < 5 * em) return;
  const Box area = {free.right - side, free.top + em, free.right, free.top + em + side};
  free.right = area.left - 1.5 * em;
  const MapFrame frame = FrameIn(area.Grown(-0.8 * em), plot);
  AddValueImage(page, frame, plot, scale, field, coverage);
  DrawRim(page, frame, plot);
  const Point a = frame.At(scan.from.x, scan.from.y);
  const Point b = frame.At(scan.to.x, scan.to.y);
  page.Line(a, b, page.Ink().paper, 3 * page.Hair());
  page.Line(a, b, page.Ink().accent, 1.8 * page.Hair());
  // The names of the ends, just off the rim.
  const Point out = (b - a) * (1 / std::max(1e-9, std::hypot(b.x - a.x, b.y - a.y)));
  const auto name = [&](std::string_view text, Point at) {
    page.Put({.text = text, .size = 0.95 * em, .bold = true, .colour = page.Ink().accent}, at,
             Align::Middle);
  };
  const double off = frame.Length(plot.edge_exclusion) + 0.75 * em;
  name("A", a - out * off);
  name("B", b + out * off);
}

DotsShape MeasuredDots(const Page& page, const Chart& chart, const std::vector<NearSite>& sites,
                       bool few) {
  const double em = page.Em();
  const Inks& ink = page.Ink();
  DotsShape dots{.radius = (few ? 0.26 : 0.12) * em,
                 .fill = few ? ink.accent : Mix(ink.accent, ink.paper, 0.55)};
  if (few) dots.stroke = {0.12 * em, ink.paper};
  for (const NearSite& site : sites) {
    if (site.value < chart.y.low || site.value > chart.y.high) continue;
    dots.centres.push_back({chart.X(site.distance), chart.Y(site.value)});
  }
  return dots;
}

}  // namespace

void DrawLineScan(Sketch sketch) {
  auto& [page, plot, summary, style, plan] = sketch;
  const double em = page.Em();
  const Scan scan = ScanOf(plot);
  const auto field = FieldOf(sketch);
  const Scale scale = MakeScale(plot, summary, style, 6);
  // Sites within a quarter of their usual distance count as on the cut.
  const double spacing = plot.diameter / 2 * std::sqrt(3.14 / static_cast<double>(summary.count));
  const double near = std::max(0.25 * spacing, 0.005 * plot.diameter);
  std::vector<NearSite> sites;
  for (std::size_t i = 0; i < plot.sites.Size(); ++i) {
    const Point foot = scan.Foot({plot.sites.x[i], plot.sites.y[i]});
    if (std::abs(foot.y) <= near && foot.x >= -1e-6 && foot.x <= scan.length + 1e-6) {
      sites.push_back({foot.x, plot.sites.value[i]});
    }
  }
  const auto coverage = sketch.plan.CoverageOf(plot);
  constexpr int kSteps = 400;
  std::vector<double> values;
  std::vector<bool> known;
  for (int i = 0; i <= kSteps; ++i) {
    const Point p = scan.At(scan.length * i / kSteps);
    float value = 0;
    field->Evaluate({p.x, p.y, 1e9, 1, 1}, plot.diameter, {&value, 1});
    values.push_back(value);
    known.push_back(!coverage->IsFar(p));
  }
  std::vector<std::string> notes = {std::to_string(sites.size()) +
                                        (sites.size() == 1 ? " site" : " sites") + " within " +
                                        NumberText(near, 2) + " mm of the cut",
                                    MethodNote(*field, plot)};
  if (std::find(known.begin(), known.end(), false) != known.end()) {
    notes.insert(notes.begin() + 1, coverage->Note("dashed"));
  }
  AddWords(page, plot, summary, notes);
  AddSmallMap(page, plot, scale, scan, field, coverage);
  double low = *std::min_element(values.begin(), values.end());
  double high = *std::max_element(values.begin(), values.end());
  for (const NearSite& site : sites) {
    low = std::min(low, site.value);
    high = std::max(high, site.value);
  }
  if (plot.low) low = *plot.low;
  if (plot.high) high = *plot.high;
  const double margin = high > low ? 0.06 * (high - low) : 1;
  const Axis across{0, scan.length, style.small ? "mm" : "Distance from A (mm)"};
  page.Free().top += 0.4 * em;
  const Chart chart =
      AddChart(page, across, {low - margin, high + margin, style.small ? "" : QuantityText(plot)});
  const bool few = static_cast<double>(sites.size()) * em < 2 * chart.area.Width();
  DotsShape dots = MeasuredDots(page, chart, sites, few);
  // Many are a cloud, over which the curve is seen.
  if (!few) page.Add(std::move(dots));
  // Solid where sites are near, dashed where they aren't.
  for (int start = 0; start < kSteps;) {
    const bool solid = known[static_cast<std::size_t>(start)];
    std::vector<Point> line;
    int end = start;
    for (; end <= kSteps; ++end) {
      const double value =
          std::clamp(values[static_cast<std::size_t>(end)], chart.y.low, chart.y.high);
      line.push_back({chart.X(scan.length * end / kSteps), chart.Y(value)});
      if (known[static_cast<std::size_t>(end)] != solid) break;
    }
    Path path;
    path.Line(std::move(line));
    const Rgba colour = page.Readable(Mix(style.colours.At(0.35), page.Ink().text, 0.15));
    page.Add(PathShape{.path = std::move(path),
                       .stroke = {2.2 * page.Hair(), colour, solid ? 0 : 0.4 * em}});
    start = std::max(end, start + 1);
  }
  if (few) page.Add(std::move(dots));
  if (style.small) return;
  for (const auto& [text, at] :
       {std::pair("A", chart.area.left), std::pair("B", chart.area.right)}) {
    page.Put({.text = text, .size = em, .bold = true, .colour = page.Ink().accent},
             {at, chart.area.bottom + 2.5 * em}, Align::Middle);
  }
}

}  // namespace discoplan::figures
