// SPDX-License-Identifier: MIT
#include "discoplan/figures/wafer_figure.h"

#include <array>
#include <cmath>

#include "discoplan/analysis/compensated_sum.h"
#include "discoplan/figures/kinds.h"

namespace discoplan::figures {

Summary Summarise(std::span<const float> values) {
  Summary summary{.count = values.size()};
  if (values.empty()) return summary;
  const auto count = static_cast<double>(values.size());
  const auto [low, high] = std::minmax_element(values.begin(), values.end());
  summary.low = *low;
  summary.high = *high;
  summary.mean = analysis::SumOver(values, [](double v) { return v; }) / count;
  const double mean = summary.mean;
  const double squares =
      analysis::SumOver(values, [mean](double v) { return (v - mean) * (v - mean); });
  summary.sigma = values.size() > 1 ? std::sqrt(squares / (count - 1)) : 0;
  return summary;
}

int DecimalsFor(const Summary& summary) {
  const double range = summary.high - summary.low;
  if (!(range > 0)) return 3;
  return std::clamp(2 - static_cast<int>(std::floor(std::log10(range))), 0, 9);
}

std::string ValueText(double value, const Summary& summary) {
  const double size = std::max(std::abs(summary.low), std::abs(summary.high));
  const bool plain = size == 0 || (size < 1e7 && size > 1e-4);
  return plain ? FixedText(value, DecimalsFor(summary)) : NumberText(value, 4);
}

std::shared_ptr<const Coverage> SitePlan::CoverageOf(const WaferPlot& plot) {
  const auto same = [](std::span<const float> a, const std::vector<float>& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end());
  };
  if (coverage_ == nullptr || diameter_ != plot.diameter ||
      edge_exclusion_ != plot.edge_exclusion || !same(plot.sites.x, x_) ||
      !same(plot.sites.y, y_)) {
    coverage_ = std::make_shared<const Coverage>(plot);
    x_.assign(plot.sites.x.begin(), plot.sites.x.end());
    y_.assign(plot.sites.y.begin(), plot.sites.y.end());
    diameter_ = plot.diameter;
    edge_exclusion_ = plot.edge_exclusion;
  }
  return coverage_;
}

std::shared_ptr<const ValueField> FieldOf(const Sketch& sketch) {
  if (sketch.plot.field) return sketch.plot.field(sketch.style.interpolation);
  return MakeField(sketch.plot.sites, sketch.plot.diameter / 2, sketch.style.interpolation,
                   sketch.plan.Places());
}

std::string MethodNote(const ValueField& field, const WaferPlot& plot) {
  std::string note = field.Method();
  if (field.LeaveOneOutError() > 0) {
    note += ", leave-one-out error " + WithUnit(NumberText(field.LeaveOneOutError(), 2), plot);
  }
  return note;
}

std::string BeyondNote(const WaferPlot& plot, const Scale& scale) {
  const auto beyond = std::count_if(plot.sites.value.begin(), plot.sites.value.end(), [&](float v) {
    // Limits are 32-bit floats' worth: what equals one isn't beyond it.
    const double slack = 1e-6 * (scale.high - scale.low);
    return v < scale.low - slack || v > scale.high + slack;
  });
  if (beyond == 0) return {};
  return std::to_string(beyond) + (beyond == 1 ? " site" : " sites") + " beyond the colour scale";
}

Figure MakeFigure(PlotKind kind, const WaferPlot& plot, const Style& style,
                  const TextMeasure& text) {
  SitePlan plan;
  return MakeFigure(kind, plot, style, text, plan);
}

Figure MakeFigure(PlotKind kind, const WaferPlot& plot, const Style& style, const TextMeasure& text,
                  SitePlan& plan) {
  using Maker = void (*)(Sketch);
  static constexpr std::array<Maker, 9> kMakers = {DrawMap,    DrawSigmaMap,  DrawContours,
                                                   DrawValues, DrawSurface,   DrawSigmaSurface,
                                                   DrawBars,   DrawHistogram, DrawLineScan};
  Page page(style, text);
  const Summary summary = Summarise(plot.sites.value);
  if (summary.count == 0) {
    AddWords(page, plot, summary, {"no sites"});
  } else {
    kMakers[static_cast<std::size_t>(kind)]({page, plot, summary, style, plan});
  }
  return page.Take();
}

}  // namespace discoplan::figures
