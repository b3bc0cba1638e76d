// SPDX-License-Identifier: MIT
#include <cmath>

#include "discoplan/figures/kinds.h"

namespace discoplan::figures {
namespace {

/// Edges at round numbers.
struct Bins {
  double first = 0;
  double width = 1;
  std::vector<std::size_t> counts;

  double Edge(std::size_t number) const { return first + width * static_cast<double>(number); }
  std::size_t Highest() const { return *std::max_element(counts.begin(), counts.end()); }
};

/// As many as D. Freedman and P. Diaconis (1981) would have, but 9 to 60.
int WantedBins(const WaferPlot& plot, const Summary& summary) {
  if (plot.bins > 0) return std::min(plot.bins, 200);
  std::vector<float> sorted(plot.sites.value.begin(), plot.sites.value.end());
  std::sort(sorted.begin(), sorted.end());
  const double spread = sorted[sorted.size() * 3 / 4] - sorted[sorted.size() / 4];
  const double width = 2 * spread / std::cbrt(static_cast<double>(sorted.size()));
  if (!(width > 0)) return 10;
  return static_cast<int>(std::clamp((summary.high - summary.low) / width, 9.0, 60.0));
}

Bins BinsOf(const WaferPlot& plot, const Summary& summary) {
  Bins bins;
  if (summary.high > summary.low) {
    bins.width = RoundTicks(summary.low, summary.high, WantedBins(plot, summary) + 1).step;
  } else {
    bins.width = summary.mean != 0 ? std::abs(summary.mean) * 0.01 : 1;
  }
  // A constant value stands in the middle of its bin.
  bins.first = summary.high > summary.low ? std::floor(summary.low / bins.width) * bins.width
                                          : summary.low - bins.width / 2;
  const auto count = static_cast<std::size_t>((summary.high - bins.first) / bins.width) + 1;
  bins.counts.resize(count);
  for (const float value : plot.sites.value) {
    const double slot = std::floor((value - bins.first) / bins.width);
    ++bins.counts[static_cast<std::size_t>(std::clamp(slot, 0.0, static_cast<double>(count - 1)))];
  }
  return bins;
}

struct Limit {
  double value;
  std::string name;
  bool control = false;
  bool is_sigma = false;
};

std::vector<Limit> LimitsOf(const WaferPlot& plot, const Summary& summary) {
  std::vector<Limit> limits;
  const auto add = [&](double value, const std::string& name, bool control, bool is_sigma = false) {
    limits.push_back({value, name + " " + ValueText(value, summary), control, is_sigma});
  };
  add(summary.mean, "mean", false);
  if (plot.lower_control) add(*plot.lower_control, "LCL", true);
  if (plot.upper_control) add(*plot.upper_control, "UCL", true);
  if (!plot.lower_control && !plot.upper_control && summary.sigma > 0) {
    add(summary.mean - 3 * summary.sigma, "\u22123\u03C3", false, true);
    add(summary.mean + 3 * summary.sigma, "+3\u03C3", false, true);
  }
  return limits;
}

}  // namespace

void DrawHistogram(Sketch sketch) {
  auto& [page, plot, summary, style, plan] = sketch;
  const Bins bins = BinsOf(plot, summary);
  std::vector<Limit> limits = LimitsOf(plot, summary);
  if (style.small) std::erase_if(limits, [](const Limit& limit) { return limit.is_sigma; });
  std::vector<std::string> notes = {"bins of " + WithUnit(NumberText(bins.width, 3), plot)};
  if (summary.sigma > 0) notes.push_back("curve: normal distribution of the same mean and \u03C3");
  std::size_t beyond = 0;
  for (const float value : plot.sites.value) {
    beyond += (plot.lower_control && value < *plot.lower_control) ||
              (plot.upper_control && value > *plot.upper_control);
  }
  if (beyond > 0) {
    notes.insert(notes.begin(), std::to_string(beyond) + " beyond the control limits");
  }
  AddWords(page, plot, summary, notes);
  Axis x{bins.first, bins.Edge(bins.counts.size()), style.small ? "" : QuantityText(plot)};
  if (style.small && plot.low && plot.high) {
    // One of many, which are compared.
    x.low = std::min(x.low, *plot.low);
    x.high = std::max(x.high, *plot.high);
  }
  for (const Limit& limit : limits) {
    x.low = std::min(x.low, limit.value);
    x.high = std::max(x.high, limit.value);
  }
  const double margin = (summary.high > summary.low ? 0.03 : 2) * (x.high - x.low);
  x.low -= margin;
  x.high += margin;
  const double factor = static_cast<double>(summary.count) * bins.width;
  const double peak = summary.sigma > 0 ? factor / (summary.sigma * std::sqrt(6.283185307)) : 0;
  const double top = std::max(static_cast<double>(bins.Highest()), peak);
  const double em = page.Em();
  if (!style.small) page.Free().top += 1.4 * em;  // for the limits' names
  const Chart chart = AddChart(page, x, {0, 1.06 * top, style.small ? "" : "Sites", true});
  const Scale scale = MakeScale(plot, summary, style, 5);
  for (std::size_t i = 0; i < bins.counts.size(); ++i) {
    if (bins.counts[i] == 0) continue;
    const double left = chart.X(bins.Edge(i));
    const double right = chart.X(bins.Edge(i + 1));
    const double gap = std::min(0.5, 0.06 * (right - left));
    const Rgba colour = scale.Colour(bins.Edge(i) + bins.width / 2);
    page.Add(PathShape{.path = Rectangle({left + gap, chart.Y(static_cast<double>(bins.counts[i])),
                                          right - gap, chart.area.bottom}),
                       .fill = colour,
                       .stroke = {0.6 * page.Hair(), Mix(colour, page.Ink().text, 0.4)}});
  }
  if (summary.sigma > 0) {
    std::vector<Point> curve;
    constexpr int kSteps = 240;
    for (int i = 0; i <= kSteps; ++i) {
      const double value = x.low + (x.high - x.low) * i / kSteps;
      const double z = (value - summary.mean) / summary.sigma;
      curve.push_back({chart.X(value), chart.Y(peak * std::exp(-z * z / 2))});
    }
    Path path;
    path.Line(std::move(curve));
    // Dark bars would swallow it.
    Rgba around = page.Ink().paper;
    around.alpha = 170;
    page.Add(PathShape{.path = path, .stroke = {4 * page.Hair(), around}});
    page.Add(PathShape{.path = std::move(path), .stroke = {1.8 * page.Hair(), page.Ink().text}});
  }
  for (const Limit& limit : limits) {
    const Rgba colour = limit.control ? page.Ink().accent : page.Ink().soft;
    const double at = chart.X(limit.value);
    page.Line({at, chart.area.top}, {at, chart.area.bottom}, colour, 1.4 * page.Hair(), 0.4 * em);
    if (style.small) continue;
    const double half = page.Width(limit.name, 0.9 * em) / 2;
    const double shown = std::clamp(at, chart.area.left + half, chart.area.right - half);
    page.Put({.text = limit.name, .size = 0.9 * em, .colour = colour},
             {shown, chart.area.top - 0.7 * em}, Align::Middle);
  }
}

}  // namespace discoplan::figures
