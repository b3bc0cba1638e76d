// SPDX-License-Identifier: MIT
#pragma once

/// A wafer seen from in front and above: where its points lie on the page, its base, its height
/// axis, and faces in the light.

#include <vector>

#include "discoplan/figures/kinds.h"

namespace discoplan::figures {

/// Lengths are parts of the wafer's radius.
class View {
 public:
  /// `reach` is how far from the centre anything stands, at least 1.
  View(const Box& area, const Scale& scale, const Style& style, double reach = 1);

  double Unit() const { return unit_; }
  double HeightOf(double value) const;
  /// Away from the viewer.
  double Depth(Point p) const;
  Point At(Point p, double height) const;
  /// Where it is farthest to the left.
  Point LeftMost() const;

 private:
  const Scale& scale_;
  double rotation_;
  double elevation_;
  double reach_;
  double unit_ = 1;
  double height_ = 0.6;  // of the whole range of values
  Point origin_;
};

void AddFace(Page& page, std::vector<Point> corners, Rgba colour, Stroke stroke = {});
/// Light from the upper left: above 0 is brighter, below darker.
Rgba Lit(Rgba colour, double light);
void DrawBase(Page& page, const View& view, const WaferPlot& plot);
/// The base's test area as maps show what is far from every site.
void HatchBase(Page& page, const View& view, const WaferPlot& plot);
void DrawHeightAxis(Page& page, const View& view, const Scale& scale, const Ticks& ticks,
                    const WaferPlot& plot);
/// The wafer and what is `beside` it stand together in the middle.
void GatherView(Page& page, const Style& style, double beside);
/// Room at the left for the numbers of the height axis.
double AxisRoom(const Page& page, const Ticks& ticks);

}  // namespace discoplan::figures
