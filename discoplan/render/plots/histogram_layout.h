// SPDX-License-Identifier: MIT
#pragma once

/// Where the marks of a histogram stand, in pixels.
///
/// A mark is placed by two lengths: how far its value lies along the value axis, and how far its
/// count reaches from the zero line. Lying, the value axis runs to the right along the lower edge;
/// turned, it runs upward along the left edge. The bars grow from that edge or, reversed, from the
/// one across. Bars and curve go onto one surface, ticks and labels onto the one around it.

#include "discoplan/render/plots/histogram_plot.h"

namespace discoplan {

class HistogramLayout {
 public:
  struct Orientation {
    bool turned;
    bool reversed;
  };

  struct Point {
    double x;
    double y;
  };

  struct Segment {
    Point from;
    Point to;
  };

  /// Where a text stands: the point lies at these shares of its width and of its height.
  struct Anchor {
    Point point;
    double across;
    double down;
  };

  enum class End { Lower, Upper };

  /// Of the texts as they will be printed.
  struct TextSize {
    double height;
    double limit_width;  ///< Of the label of a control limit.
  };

  /// Takes the chart's lengths from twips in print.
  HistogramLayout(const HistogramChart& chart, Orientation orientation, const Surface& bars);

  bool turned() const { return orientation_.turned; }
  bool printing() const { return printing_; }
  /// Of the value axis.
  double length() const { return length_; }
  /// From the zero line to the other edge.
  double depth() const { return depth_; }

  // On the surface of the bars.

  Point Bar(double along, double reach) const;
  /// From the reach to beyond the value axis.
  Segment SigmaMark(double along, double reach) const;
  Segment LimitLine(double along) const;

  // On the surface around it.

  Segment CountTick(double reach) const;
  /// The tick at the low or the high end of a bin.
  Segment ValueTick(double along, End end) const;
  Anchor SigmaLabel(double along, const TextSize& text) const;
  Anchor ValueLabel(End end, const TextSize& text) const;
  /// At the lower or left end of the count axis, or at the other one.
  Anchor CountLabel(End end) const;
  /// The end at which the bars stand.
  End ZeroEnd() const { return orientation_.reversed ? End::Upper : End::Lower; }
  Anchor LimitLabel(double along) const;

 private:
  void ToPixels(const Surface& bars);
  Point Turned(double along, double across) const;
  double BarAlong(double along) const;
  Point AxisOrigin() const;
  double AxisAlong(double along) const;
  double AxisEdge() const;
  double LabelEdge(const TextSize& text) const;

  HistogramChart chart_;
  const Orientation orientation_;
  const bool printing_;
  double length_;
  double depth_;
  double base_;
  double sign_;
  double overhang_;
  double surface_height_;
  double bottom_ = 0;
  double tick_end_ = 0;
};

}  // namespace discoplan
