// SPDX-License-Identifier: MIT
#include "discoplan/render/plots/histogram_plot.h"

#include <array>
#include <cmath>

#include "discoplan/base/numbers.h"
#include "discoplan/core/normal_curve.h"
#include "discoplan/core/wafer_data.h"
#include "discoplan/render/control_limits.h"
#include "discoplan/render/number_text.h"
#include "discoplan/render/plots/histogram_bins.h"
#include "discoplan/render/plots/histogram_layout.h"
#include "discoplan/render/plots/plot_frame.h"
#include "discoplan/render/surface.h"

namespace discoplan {
namespace {

using End = HistogramLayout::End;

constexpr Colour kTickColour = kPalette[1];
constexpr Colour kLimitColour = kPalette[1];
constexpr Colour kLimitLabelColour = kPalette[9];
constexpr const char* kFontName = "MS Sans Serif";
constexpr int kMean = 3;
constexpr std::array<const char*, 7> kSigmaLabels = {"-3s", "-2s", "-1s", "Mean", "1s", "2s", "3s"};

/// Scales the curve to the number of sites that a normal distribution has in the bin around its
/// mean, and the count axis to reach up to it.
void ScaleGauss(const WaferData& data, double bin_width, HistogramPeaks& peaks) {
  Attempt([&] {
    const double step = Divide(bin_width, data.deviation) / 2 / 10;
    double sum = 0;
    for (int k = 0; k <= 10; ++k) sum += StandardNormal(ToFloat(k * step));
    peaks.gauss = ToFloat(sum * 2 * step * data.count);
  });
  if (peaks.count < peaks.gauss) Attempt([&] { peaks.count = ToInt16(peaks.gauss); });
  Attempt([&] { peaks.gauss = ToFloat(peaks.gauss / 0.4); });
}

HistogramPeaks PeaksOf(const WaferData& data, const HistogramBins& bins, HistogramPeaks peaks) {
  if (data.count >= HistogramBins::kFewestSites) peaks = {.count = bins.Peak(), .gauss = 1};
  if (data.deviation != 0) ScaleGauss(data, bins.width, peaks);
  return peaks;
}

/// Draws one histogram, mark by mark; a mark that fails is left out.
class HistogramPainter {
 public:
  HistogramPainter(const WaferData& data, const HistogramBins& bins, const HistogramPeaks& peaks,
                   const HistogramLayout& layout, Surface& bar_surface, Surface& axis_surface)
      : data_(data),
        bins_(bins),
        peaks_(peaks),
        layout_(layout),
        bar_surface_(bar_surface),
        axis_surface_(axis_surface) {}

  void Paint(float bin_number) {
    DrawWidth(1);
    DrawCountTicks();
    if (data_.count >= HistogramBins::kFewestSites && peaks_.count >= 1) {
      DrawBins(bin_number);
    }
    Refresh(bar_surface_);
    Refresh(axis_surface_);
    if (layout_.turned() && ThreadControlLimits().shown) DrawLimits();
    if (data_.deviation != 0) DrawDistribution();
    DrawScaleLabels();
  }

 private:
  void Line(Surface& surface, const HistogramLayout::Segment& segment, Colour colour,
            LineShape shape = LineShape::Line) {
    const auto& [from, to] = segment;
    surface.Line({.from = SurfacePoint{ToFloat(from.x), ToFloat(from.y)},
                  .to = {ToFloat(to.x), ToFloat(to.y)},
                  .colour = colour,
                  .shape = shape});
  }

  /// Stands where the text `measured` would stand.
  void Label(const HistogramLayout::Anchor& anchor, const std::string& measured,
             const std::string& text) {
    axis_surface_.CurrentX(
        ToFloat(anchor.point.x - anchor.across * axis_surface_.TextWidth(measured)));
    axis_surface_.CurrentY(ToFloat(anchor.point.y - anchor.down * axis_surface_.TextHeight("0")));
    axis_surface_.Print(text);
  }

  HistogramLayout::TextSize Measure() const {
    return {axis_surface_.TextHeight("0"), axis_surface_.TextWidth("UCL")};
  }

  void DrawWidth(std::int16_t width) {
    Attempt([&] { bar_surface_.DrawWidth(width); });
  }

  void Refresh(Surface& surface) {
    if (!layout_.printing()) Attempt([&] { RefreshPicture(surface); });
  }

  double Reach(double count) const { return Divide(layout_.depth(), peaks_.count) * count; }

  double Along(double value) const {
    return Divide(layout_.length() * (value - bins_.lower),
                  static_cast<double>(data_.plot_maximum) - bins_.lower);
  }

  /// Share of the chart's depth that the curve has at a value.
  double CurveShare(double value) const {
    return Divide(peaks_.gauss, peaks_.count) *
           NormalCurve(data_.mean, data_.deviation, ToFloat(value));
  }

  void DrawCountTicks() {
    for (int i = 1; i <= peaks_.count; ++i) {
      Attempt([&] {
        const double reach = i * layout_.depth() / peaks_.count;
        Line(axis_surface_, layout_.CountTick(reach), kTickColour);
      });
    }
  }

  void DrawBins(double bin_number) {
    const auto end = [&](double bin) { return Divide(bin * layout_.length(), bin_number); };
    const auto tick = [&](double along, End which) {
      Line(axis_surface_, layout_.ValueTick(along, which), kTickColour);
    };
    for (std::size_t i = 1; i < bins_.counts.size(); ++i) {
      const double bin = static_cast<double>(i);
      if (bins_.counts[i] > 0) {
        Attempt([&] { DrawBar(end(bin - 1), end(bin), bins_.counts[i]); });
      }
      Attempt([&] { tick(end(bin - 1), End::Lower); });
      Attempt([&] { tick(end(bin), End::Upper); });
    }
    Attempt([&] { tick(end(std::trunc(bin_number)), End::Lower); });
    Attempt([&] { tick(layout_.length(), End::Upper); });
  }

  void DrawBar(double from, double to, double count) {
    const HistogramLayout::Segment corners = {layout_.Bar(from, Reach(count)), layout_.Bar(to, 0)};
    Attempt(
        [&] { Line(bar_surface_, corners, ToColour(data_.aux_colours[1]), LineShape::FilledBox); });
    Attempt([&] { Line(bar_surface_, corners, kBlack, LineShape::Box); });
  }

  void DrawLimits() {
    const ControlLimits& limits = ThreadControlLimits();
    Attempt([&] { axis_surface_.ForeColor(kLimitLabelColour); });
    DrawLimit(limits.lower, "LCL");
    DrawLimit(limits.upper, "UCL");
  }

  void DrawLimit(float limit, const std::string& text) {
    Attempt([&] { Line(bar_surface_, layout_.LimitLine(Along(limit)), kLimitColour); });
    Attempt([&] { Label(layout_.LimitLabel(Along(limit)), text, text); });
  }

  void DrawDistribution() {
    DrawWidth(2);
    Attempt([&] { axis_surface_.ForeColor(kLightRed); });
    Attempt([&] { axis_surface_.ForeColor(ToColour(data_.aux_colours[0])); });
    if (!layout_.printing()) {
      Attempt([&] { axis_surface_.FontName(kFontName); });
      Attempt([&] { axis_surface_.FontSize(8); });
    }
    for (int k = -3; k <= 3; ++k) {
      Attempt([&] { DrawSigma(k); });
    }
    DrawCurve();
    Refresh(bar_surface_);
    DrawWidth(1);
  }

  void DrawSigma(int k) {
    const double value = k * data_.deviation + data_.mean;
    const double along = Along(value);
    if (!(along > 0 && along < layout_.length())) return;
    Attempt([&] {
      const double reach = layout_.depth() * CurveShare(value);
      Line(bar_surface_, layout_.SigmaMark(along, reach), ToColour(data_.aux_colours[0]));
    });
    const Font kept = axis_surface_.Font();
    if (k == 0) Attempt([&] { axis_surface_.Font({.name = kFontName, .size = kept.size}); });
    Attempt([&] {
      const std::string text = kSigmaLabels[static_cast<std::size_t>(kMean + k)];
      Label(layout_.SigmaLabel(along, Measure()), text, text);
    });
    if (k == 0) Attempt([&] { axis_surface_.Font(kept); });
  }

  void DrawCurve() {
    double previous = 0;
    Attempt([&] { previous = CurveShare(bins_.lower); });
    std::int16_t last = 0;
    Attempt([&] { last = ToInt16(std::floor(layout_.length())); });
    const double range = static_cast<double>(data_.plot_maximum) - bins_.lower;
    for (int i = 1; i <= last; ++i) {
      Attempt([&] {
        const double share = CurveShare(range / layout_.length() * i + bins_.lower);
        if (!(share <= 1 && previous <= 1)) return;
        Line(bar_surface_,
             {layout_.Bar(i - 1, layout_.depth() * previous),
              layout_.Bar(i, layout_.depth() * share)},
             ToColour(data_.aux_colours[0]));
        previous = share;
      });
    }
  }

  void DrawScaleLabels() {
    const auto count_label = [&](float count, End end) {
      const std::string text = FormatToDigits(count, "0");
      Attempt([&] { Label(layout_.CountLabel(end), text, text); });
    };
    const End zero = layout_.ZeroEnd();
    count_label(peaks_.count, zero == End::Lower ? End::Upper : End::Lower);
    count_label(0, zero);
    const auto value_label = [&](float value, End end) {
      const std::string text = FormatLegendValue(value);
      const std::string measured = layout_.turned() ? text : FormatToDigits(value, "0.0");
      Attempt([&] { Label(layout_.ValueLabel(end, Measure()), measured, text); });
    };
    value_label(bins_.lower, End::Lower);
    value_label(data_.plot_maximum, End::Upper);
  }

  const WaferData& data_;
  const HistogramBins& bins_;
  const HistogramPeaks peaks_;
  const HistogramLayout& layout_;
  Surface& bar_surface_;
  Surface& axis_surface_;
};

}  // namespace

HistogramPeaks DrawHistogram(const WaferData& data, HistogramSide side, Surface& bars,
                             Surface& axes, const HistogramChart& chart,
                             const HistogramPeaks& peaks) {
  const bool turned = side == HistogramSide::Left || side == HistogramSide::Right;
  const bool reversed = side == HistogramSide::Top || side == HistogramSide::Right;
  const HistogramLayout layout(chart, {.turned = turned, .reversed = reversed}, bars);
  if (layout.printing()) Attempt([&] { bars.FillColor(kPalette[2]); });
  const HistogramBins bins = HistogramBins::Of(data, chart.bins);
  const HistogramPeaks found = PeaksOf(data, bins, peaks);
  HistogramPainter(data, bins, found, layout, bars, axes).Paint(chart.bins);
  return found;
}

}  // namespace discoplan
