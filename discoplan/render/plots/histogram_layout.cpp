// SPDX-License-Identifier: MIT
#include "discoplan/render/plots/histogram_layout.h"

#include <algorithm>
#include <cmath>

#include "discoplan/base/numbers.h"
#include "discoplan/render/plots/twips.h"
#include "discoplan/render/surface.h"

namespace discoplan {
namespace {

constexpr std::int16_t kPrinting = 1;
constexpr double kTickStart = 6;
constexpr double kCountLabelGap = 6;
/// From the height of the bars' surface to the labels below it.
constexpr double kLabelDrop = 30;
constexpr double kPrintedLabelDrop = 20;
/// From the ticks of a turned chart, in print from the labels of its limits, to its labels.
constexpr double kTurnedLabelGap = 4;
/// Widths of its own text that the label of a limit begins before the printed chart.
constexpr double kPrintedLimitWidths = 1.5;

}  // namespace

HistogramLayout::HistogramLayout(const HistogramChart& chart, Orientation orientation,
                                 const Surface& bars)
    : chart_(chart),
      orientation_(orientation),
      printing_(chart.mode == kPrinting),
      surface_height_(bars.ScaleHeight()) {
  if (printing_) ToPixels(bars);
  length_ = turned() ? chart_.height : chart_.width;
  depth_ = turned() ? chart_.width : chart_.height;
  const bool from_origin = turned() == orientation_.reversed;
  base_ = from_origin ? 0 : depth_;
  sign_ = from_origin ? -1 : 1;
  if (turned()) {
    overhang_ = bars.IsPrinter() ? 40 : 10;
  } else {
    overhang_ = orientation_.reversed ? 0 : 10;
  }
  Attempt([&] { bottom_ = ToInt32(static_cast<double>(chart_.height) + chart_.top); });
  Attempt([&] { tick_end_ = ToInt32(static_cast<double>(chart_.left) - chart_.gap); });
}

void HistogramLayout::ToPixels(const Surface& bars) {
  const auto across = [&](double twips) { return PixelsAcross(bars, twips); };
  const auto down = [&](double twips) { return PixelsDown(bars, twips); };
  Attempt([&] { chart_.left = ToFloat(across(chart_.left)); });
  Attempt([&] { chart_.top = ToFloat(down(chart_.top)); });
  Attempt([&] { chart_.width = ToFloat(across(chart_.width)); });
  Attempt([&] { chart_.height = ToFloat(down(chart_.height)); });
  Attempt([&] { chart_.gap = ToInt16(across(chart_.gap)); });
  Attempt([&] { chart_.plot_left = ToFloat(across(chart_.plot_left)); });
  Attempt([&] { chart_.plot_top = ToFloat(down(chart_.plot_top)); });
}

HistogramLayout::Point HistogramLayout::Turned(double along, double across) const {
  return turned() ? Point{across, along} : Point{along, across};
}

double HistogramLayout::BarAlong(double along) const {
  return turned() ? chart_.plot_top + length_ - along : along + chart_.plot_left;
}

HistogramLayout::Point HistogramLayout::Bar(double along, double reach) const {
  const double origin = turned() ? chart_.plot_left : chart_.plot_top;
  return Turned(BarAlong(along), base_ + origin - sign_ * (depth_ - reach));
}

HistogramLayout::Segment HistogramLayout::SigmaMark(double along, double reach) const {
  return {Bar(along, reach), Bar(along, -overhang_)};
}

HistogramLayout::Segment HistogramLayout::LimitLine(double along) const {
  const double left = chart_.plot_left;
  return {{left + depth_, BarAlong(along)}, {left, BarAlong(along)}};
}

HistogramLayout::Point HistogramLayout::AxisOrigin() const {
  return printing_ ? Point{chart_.plot_left, chart_.plot_top} : Point{chart_.left, chart_.top};
}

double HistogramLayout::AxisAlong(double along) const {
  return turned() ? AxisOrigin().y + length_ - along : along + AxisOrigin().x;
}

double HistogramLayout::AxisEdge() const {
  if (turned()) return AxisOrigin().x;
  return printing_ ? AxisOrigin().y + depth_ : bottom_;
}

HistogramLayout::Segment HistogramLayout::CountTick(double reach) const {
  if (!turned()) return {{kTickStart, bottom_ - reach}, {tick_end_, bottom_ - reach}};
  const double x = base_ + chart_.left - sign_ * (depth_ - reach);
  return {{x, bottom_ + chart_.gap}, {x, bottom_ + chart_.gap + overhang_}};
}

HistogramLayout::Segment HistogramLayout::ValueTick(double along, End end) const {
  const double outward = turned() ? -1 : 1;
  double start = AxisEdge() + outward * chart_.gap;
  if (!printing_) {
    start = end == End::Lower ? static_cast<double>(chart_.gap) + chart_.left : start + outward * 2;
  }
  return {Turned(AxisAlong(along), start), Turned(AxisAlong(along), AxisEdge())};
}

double HistogramLayout::LabelEdge(const TextSize& text) const {
  const double taken = printing_ ? kPrintedLimitWidths * text.limit_width : chart_.gap;
  return AxisEdge() - taken - kTurnedLabelGap;
}

HistogramLayout::Anchor HistogramLayout::SigmaLabel(double along, const TextSize& text) const {
  if (turned()) {
    // The labels of the values stand right beyond both ends of the axis.
    const double room = text.height / 2;
    const double inside = std::min(std::max(along, room), length_ - room);
    return {{LabelEdge(text), AxisAlong(inside)}, 1, 0.5};
  }
  if (!printing_) return {{AxisAlong(along), surface_height_ + kLabelDrop}, 0.5, 0};
  const double lines = std::ceil(Divide(kPrintedLabelDrop, text.height)) + 1;
  return {{AxisAlong(along), AxisEdge() + lines * text.height}, 0.5, 0};
}

HistogramLayout::Anchor HistogramLayout::ValueLabel(End end, const TextSize& text) const {
  const double along = AxisAlong(end == End::Lower ? 0 : length_);
  if (turned()) return {{LabelEdge(text), along}, 1, end == End::Lower ? 0.0 : 1.0};
  const double y = printing_ ? AxisEdge() + kPrintedLabelDrop : surface_height_ + kLabelDrop;
  return {{along, y}, 0.5, 0};
}

HistogramLayout::Anchor HistogramLayout::CountLabel(End end) const {
  const Point origin = AxisOrigin();
  if (turned()) {
    const double below = bottom_ + chart_.gap + overhang_ + 2;
    return {{origin.x + (end == End::Lower ? 0 : depth_), below}, 0.5, 0};
  }
  const double height = printing_ ? depth_ : surface_height_;
  const double y = origin.y + (end == End::Lower ? height : 0);
  return {{origin.x - kCountLabelGap, y}, 1, printing_ ? 0.5 : 0};
}

HistogramLayout::Anchor HistogramLayout::LimitLabel(double along) const {
  if (printing_) return {{chart_.plot_left, BarAlong(along)}, kPrintedLimitWidths, 0.5};
  return {{2, BarAlong(along) + chart_.top}, 0, 0.5};
}

}  // namespace discoplan
