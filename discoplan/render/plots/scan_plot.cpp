// SPDX-License-Identifier: MIT
#include "discoplan/render/plots/scan_plot.h"
#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "discoplan/base/angles.h"
#include "discoplan/base/numbers.h"
#include "discoplan/core/interpolation/site_interpolator.h"
#include "discoplan/core/wafer_data.h"
#include "discoplan/render/label.h"
#include "discoplan/render/number_text.h"
#include "discoplan/render/surface.h"

namespace discoplan {
namespace {

constexpr Colour kGridColour = kPalette[7];
constexpr int kFields = 4;
/// Cells of the raster that the picture of a wafer is laid out in.
constexpr double kCellsPerDiameter = 50;

double SquareRoot(double value) {
  if (value < 0) throw RunTimeError(Fault::InvalidCall, "the cut lies beside the test circle");
  return std::sqrt(value);
}

/// Crossings of the line y = slope * x + offset with the circle. `ascending` runs towards larger X.
CutEnds CutAlong(float slope, float offset, double radius, bool ascending) {
  const double m = slope;
  const double c = offset;
  const double e = ToFloat(m * m + 1);
  const double half = ToFloat(SquareRoot(e * (radius * radius) - c * c) / e);
  const double middle = ToFloat(c * m / e);
  const float low = ToFloat(-middle - half);
  const float high = ToFloat(-middle + half);
  const float ax = ascending ? low : high;
  const float bx = ascending ? high : low;
  return {ax, ToFloat(m * ax + c), bx, ToFloat(m * bx + c)};
}

/// Crossings of a line parallel to the Y axis.
CutEnds CutUpright(float x, double radius, bool ascending) {
  const float half = ToFloat(SquareRoot(radius * radius - static_cast<double>(x) * x));
  return ascending ? CutEnds{x, -half, x, half} : CutEnds{x, half, x, -half};
}

CutEnds CutThroughPoints(const ScanLine& cut, double radius) {
  if (cut.x1 == cut.x2) return CutUpright(cut.x1, radius, cut.y1 < cut.y2);
  const float slope =
      ToFloat((static_cast<double>(cut.y2) - cut.y1) / (static_cast<double>(cut.x2) - cut.x1));
  const float offset = ToFloat(cut.y1 - static_cast<double>(slope) * cut.x1);
  return CutAlong(slope, offset, radius, cut.x1 < cut.x2);
}

CutEnds CutAtAngle(const ScanLine& cut, double radius) {
  if (cut.angle % 180 == 0 && cut.angle >= 0 && cut.angle <= 360) {
    return CutUpright(cut.x1, radius, cut.angle != 180);
  }
  const double direction = ToFloat(Radians(cut.angle + 90.0));
  const float slope = ToFloat(Divide(Sine(direction), Cosine(direction)));
  const float offset = ToFloat(cut.y1 - static_cast<double>(slope) * cut.x1);
  return CutAlong(slope, offset, radius, cut.angle >= 180);
}

}  // namespace

CutEnds EndsOf(const ScanLine& cut, float diameter) {
  return cut.at_angle ? CutAtAngle(cut, diameter / 2.0) : CutThroughPoints(cut, diameter / 2.0);
}

float ScanFloor(const WaferData& data) {
  return data.plot_maximum == data.plot_minimum
             ? ToFloat(FloorUnderConstant(data.plot_minimum, data.minimum < 0))
             : data.plot_minimum;
}

void DrawScan(const WaferData& data, Surface& surface, const ScanCurve& curve,
              const PlotArea& area) {
  const bool on_page = area.IsPartOfPage();
  const double left = on_page ? area.left : 0;
  const double height = on_page ? area.height : surface.ScaleHeight();
  const double base =
      on_page ? ToFloat(static_cast<double>(area.top) + area.height) : surface.ScaleHeight();
  const double width = on_page ? area.width : surface.ScaleWidth();
  if (!data.IsDrawn()) return;
  const double floor = ScanFloor(data);
  const int steps = curve.steps;
  const CutEnds ends = EndsOf(curve.cut, data.test_diameter);
  const double dx = ToFloat(Divide(static_cast<double>(ends.bx) - ends.ax, steps));
  const double dy = ToFloat(Divide(static_cast<double>(ends.by) - ends.ay, steps));
  const double pitch = ToFloat(Divide(width, steps));
  const auto place = [&](int i, float value) {
    const double above = (value - floor) * height;
    return SurfacePoint{ToFloat(i * pitch + left),
                        ToFloat(base - Divide(above, data.plot_maximum - floor))};
  };
  std::vector<Site> points = {{.x = ends.ax, .y = ends.ay}};
  for (int i = 1; i <= steps; ++i) {
    points.push_back({.x = ToFloat(points.back().x + dx), .y = ToFloat(points.back().y + dy)});
  }
  SiteInterpolator(data).Evaluate(points, points.size());
  for (int i = 1; i <= steps; ++i) {
    const auto at = static_cast<std::size_t>(i);
    surface.Line({.from = place(i - 1, points[at - 1].z),
                  .to = place(i, points[at].z),
                  .colour = curve.colour});
  }
}

void DrawScanGrid(Surface& surface, float left, float top, float width, float height) {
  const bool printer = surface.IsPrinter();
  const double across = (width - (printer ? surface.TwipsPerPixelX() : 0.0)) / kFields;
  const double down = (height - (printer ? surface.TwipsPerPixelY() : 0.0)) / kFields;
  const float right = ToFloat(static_cast<double>(left) + width);
  const float bottom = ToFloat(static_cast<double>(top) + height);
  for (int i = 0; i <= kFields; ++i) {
    const float x = ToFloat(left + i * across);
    surface.Line({.from = SurfacePoint{x, top}, .to = {x, bottom}, .colour = kGridColour});
  }
  for (int i = 0; i <= kFields; ++i) {
    const float y = ToFloat(top + i * down);
    surface.Line({.from = SurfacePoint{left, y}, .to = {right, y}, .colour = kGridColour});
  }
  if (!printer) surface.KeepImageAsPicture();
}

void LabelScan(const WaferData& data, std::span<Label* const> x, std::span<Label* const> y,
               const ScanLine& cut) {
  const CutEnds ends = EndsOf(cut, data.test_diameter);
  const double low = data.scale_floor;
  const double high = data.plot_maximum;
  const double middle = (low + high) / 2;
  const std::array<double, 5> values = {low, (middle + low) / 2, middle, (middle + high) / 2, high};
  for (std::size_t i = 0; i < y.size() && i < values.size(); ++i) {
    y[i]->caption(FormatLegendValue(ToFloat(values[i])));
  }
  const double dx = ToFloat((static_cast<double>(ends.bx) - ends.ax) / kFields);
  const double dy = ToFloat((static_cast<double>(ends.by) - ends.ay) / kFields);
  for (std::size_t i = 0; i < x.size() && i <= kFields; ++i) {
    const double steps = static_cast<double>(i);
    const float at_x = i == kFields ? ends.bx : ToFloat(ends.ax + steps * dx);
    const float at_y = i == kFields ? ends.by : ToFloat(ends.ay + steps * dy);
    x[i]->caption(std::string("X=") + FormatPicture(at_x, "0.00") +
                  "Y=" + FormatPicture(at_y, "0.00"));
  }
}

void IndicateCut(float wafer_diameter, Surface& picture, Marker& marker, const ScanLine& cut) {
  const float quotient = ToFloat(wafer_diameter / kCellsPerDiameter);
  const double cell = quotient == 0 ? 1.0 : quotient;
  const double extent = 2 * (ToInt16(wafer_diameter / 2 / cell + 2) * cell);
  const double scale = std::min(picture.ScaleWidth() / extent, picture.ScaleHeight() / extent);
  const double width = Divide(picture.ScaleWidth(), scale);
  const double height = Divide(picture.ScaleHeight(), scale);
  picture.ScaleLeft(ToFloat(-width / 2));
  picture.ScaleTop(ToFloat(-height / 2));
  picture.ScaleWidth(ToFloat(width));
  picture.ScaleHeight(ToFloat(height));
  const CutEnds ends = EndsOf(cut, ToFloat(wafer_diameter / 10.0 + wafer_diameter));
  marker.Move({ends.ax, -ends.ay}, {ends.bx, -ends.by});
  marker.Visible(true);
}

}  // namespace discoplan
