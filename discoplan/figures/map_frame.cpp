// SPDX-License-Identifier: MIT
#include "discoplan/figures/map_frame.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace discoplan::figures {
namespace {

constexpr double kTurn = 6.283185307179586;

/// Of the mark, counter-clockwise from the right.
double AngleOf(Side side) {
  static constexpr std::array kQuarters = {0.75, 0.5, 0.25, 0.0};
  return kTurn * kQuarters[static_cast<std::size_t>(side)];
}

/// Half of a flat in parts of the radius, about as the standards have it.
constexpr double kHalfFlat = 0.32;

/// Larger than life, so that it shows on small maps too.
double NotchDepth(double drawn_radius) { return std::clamp(4.5 / drawn_radius, 0.035, 0.1); }

double FlatDistance() { return std::sqrt(1 - kHalfFlat * kHalfFlat); }

void Turn(std::vector<Point>& points, double angle) {
  const double c = std::cos(angle);
  const double s = std::sin(angle);
  for (Point& p : points) p = {c * p.x - s * p.y, s * p.x + c * p.y};
}

}  // namespace

MapFrame FrameIn(const Box& area, const WaferPlot& plot) {
  MapFrame frame{.centre = area.Centre(), .radius = plot.diameter / 2};
  frame.test_radius = std::max(frame.radius - plot.edge_exclusion, frame.radius * 0.05);
  const double side = std::max(1.0, std::min(area.Width(), area.Height()));
  frame.scale = side / plot.diameter * 0.995;
  return frame;
}

std::vector<Point> RimPoints(const WaferPlot& plot, double drawn_radius) {
  const double radius = plot.diameter / 2;
  const int corners = CircleCorners(drawn_radius);
  // The mark is at angle 0, then all is turned.
  double from = 0;
  std::vector<Point> points;
  if (plot.orientation == Orientation::Flat) {
    from = std::asin(kHalfFlat);
  } else if (plot.orientation == Orientation::Notch) {
    const double depth = NotchDepth(drawn_radius);
    from = 0.6 * depth;
    points.push_back({radius * (1 - depth), 0});
  }
  for (int i = 0; i <= corners; ++i) {
    const double angle = from + (kTurn - 2 * from) * i / corners;
    points.push_back({radius * std::cos(angle), radius * std::sin(angle)});
  }
  Turn(points, AngleOf(plot.notch));
  return points;
}

std::vector<Point> TestAreaPoints(const WaferPlot& plot, double drawn_radius) {
  const double radius = plot.diameter / 2;
  const double inside = std::max(radius - plot.edge_exclusion, radius * 0.05);
  double from = 0;
  if (plot.orientation == Orientation::Flat) {
    const double flat = FlatDistance() * radius - plot.edge_exclusion;
    if (flat < inside) from = std::acos(std::clamp(flat / inside, -1.0, 1.0));
  }
  const int corners = CircleCorners(drawn_radius);
  std::vector<Point> points;
  for (int i = 0; i <= corners; ++i) {
    const double angle = from + (kTurn - 2 * from) * i / corners;
    points.push_back({inside * std::cos(angle), inside * std::sin(angle)});
  }
  Turn(points, AngleOf(plot.notch));
  return points;
}

void DrawRim(Page& page, const MapFrame& frame, const WaferPlot& plot) {
  std::vector<Point> points = RimPoints(plot, frame.Length(frame.radius));
  for (Point& point : points) point = frame.At(point.x, point.y);
  Path path;
  path.Polygon(std::move(points));
  page.Add(PathShape{.path = std::move(path), .stroke = {1.6 * page.Hair(), page.Ink().rim}});
}

void DrawEdge(Page& page, const MapFrame& frame, const WaferPlot& plot) {
  if (plot.edge_exclusion <= 0 || frame.Length(plot.edge_exclusion) < 2 * page.Hair()) return;
  std::vector<Point> points = TestAreaPoints(plot, frame.Length(frame.radius));
  for (Point& point : points) point = frame.At(point.x, point.y);
  Path path;
  path.Polygon(std::move(points));
  page.Add(PathShape{.path = std::move(path),
                     .stroke = {0.8 * page.Hair(), page.Ink().soft, 0.3 * page.Em()}});
}

void DrawDots(Page& page, const MapFrame& frame, const WaferPlot& plot, double part) {
  DotsShape dots;
  const auto count = static_cast<double>(plot.sites.Size());
  if (count == 0) return;
  // Small enough to leave the map to be seen between them.
  const double spacing = frame.Length(frame.radius) * std::sqrt(3.14 / count);
  dots.radius = part * std::min(0.17 * page.Em(), 0.075 * spacing);
  if (dots.radius < 0.3) return;
  for (std::size_t i = 0; i < plot.sites.Size(); ++i) {
    dots.centres.push_back(frame.At(plot.sites.x[i], plot.sites.y[i]));
  }
  // One for sites at one place, whose rims would cover each other.
  const auto before = [](Point a, Point b) { return a.x < b.x || (a.x == b.x && a.y < b.y); };
  std::sort(dots.centres.begin(), dots.centres.end(), before);
  dots.centres.erase(std::unique(dots.centres.begin(), dots.centres.end()), dots.centres.end());
  dots.fill = Rgb(0x14171C);
  dots.stroke = {0.45 * dots.radius, Rgba{255, 255, 255, 190}, 0};
  page.Add(std::move(dots));
}

}  // namespace discoplan::figures
