// SPDX-License-Identifier: MIT
#include "discoplan/figures/map_frame.h"

#include <array>
#include <cmath>
#include <limits>

#include "discoplan/figures/site_grid.h"

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
constexpr double kNotchDepth = 0.035;  // larger than life, so that it shows

double FlatDistance() { return std::sqrt(1 - kHalfFlat * kHalfFlat); }

Point Turned(Point p, double angle) {
  const double c = std::cos(angle);
  const double s = std::sin(angle);
  return {c * p.x - s * p.y, s * p.x + c * p.y};
}

}  // namespace

MapFrame FrameIn(const Box& area, const WaferPlot& plot) {
  MapFrame frame{.centre = area.Centre(), .radius = plot.diameter / 2};
  frame.test_radius = std::max(frame.radius - plot.edge_exclusion, frame.radius * 0.05);
  const double side = std::max(1.0, std::min(area.Width(), area.Height()));
  frame.scale = side / plot.diameter * 0.995;
  return frame;
}

std::vector<Point> RimPoints(const WaferPlot& plot) {
  const double radius = plot.diameter / 2;
  constexpr int kCorners = 720;
  // The mark is at angle 0, then all is turned.
  double from = 0;
  std::vector<Point> points;
  if (plot.orientation == Orientation::Flat) {
    from = std::asin(kHalfFlat);
  } else if (plot.orientation == Orientation::Notch) {
    from = 0.6 * kNotchDepth;
    points.push_back({radius * (1 - kNotchDepth), 0});
  }
  for (int i = 0; i <= kCorners; ++i) {
    const double angle = from + (kTurn - 2 * from) * i / kCorners;
    points.push_back({radius * std::cos(angle), radius * std::sin(angle)});
  }
  for (Point& point : points) point = Turned(point, AngleOf(plot.notch));
  return points;
}

std::vector<Point> TestAreaPoints(const WaferPlot& plot) {
  const double radius = plot.diameter / 2;
  const double inside = std::max(radius - plot.edge_exclusion, radius * 0.05);
  double from = 0;
  if (plot.orientation == Orientation::Flat) {
    const double flat = FlatDistance() * radius - plot.edge_exclusion;
    if (flat < inside) from = std::acos(std::clamp(flat / inside, -1.0, 1.0));
  }
  constexpr int kCorners = 720;
  std::vector<Point> points;
  for (int i = 0; i <= kCorners; ++i) {
    const double angle = from + (kTurn - 2 * from) * i / kCorners;
    points.push_back(
        Turned({inside * std::cos(angle), inside * std::sin(angle)}, AngleOf(plot.notch)));
  }
  return points;
}

void DrawRim(Page& page, const MapFrame& frame, const WaferPlot& plot) {
  std::vector<Point> points = RimPoints(plot);
  for (Point& point : points) point = frame.At(point.x, point.y);
  Path path;
  path.Polygon(std::move(points));
  page.Add(PathShape{.path = std::move(path), .stroke = {1.6 * page.Hair(), page.Ink().rim}});
}

void DrawEdge(Page& page, const MapFrame& frame, const WaferPlot& plot) {
  if (plot.edge_exclusion <= 0 || frame.Length(plot.edge_exclusion) < 2 * page.Hair()) return;
  std::vector<Point> points = TestAreaPoints(plot);
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
  dots.fill = Rgb(0x14171C);
  dots.stroke = {0.45 * dots.radius, Rgba{255, 255, 255, 190}, 0};
  page.Add(std::move(dots));
}

double FarDistance(const SiteView& sites, double radius) {
  if (sites.Size() < 4) return 2 * radius;
  std::vector<Sample> samples;
  for (std::size_t i = 0; i < sites.Size(); ++i) samples.push_back({sites.x[i], sites.y[i], 0});
  const SiteGrid grid(samples);
  // Some hundred of them tell.
  const std::size_t stride = std::max<std::size_t>(1, samples.size() / 256);
  std::vector<double> next;
  for (std::size_t i = 0; i < samples.size(); i += stride) {
    double nearest = 2 * radius;
    for (const std::size_t near : grid.Nearest(samples[i].x, samples[i].y, 4)) {
      const double distance =
          std::hypot(samples[near].x - samples[i].x, samples[near].y - samples[i].y);
      if (near != i && distance > 1e-6 * radius) nearest = std::min(nearest, distance);
    }
    next.push_back(nearest);
  }
  std::sort(next.begin(), next.end());
  const double even = radius * std::sqrt(3.14159 / static_cast<double>(samples.size()));
  // No hole among the dies of a wafer is far from them.
  return std::max({1.5 * next[next.size() * 9 / 10], 0.75 * even, 0.1 * radius});
}

std::vector<float> DistancesToSites(const Lattice& lattice, const SiteView& sites) {
  const auto width = static_cast<std::size_t>(lattice.columns);
  const auto height = static_cast<std::size_t>(lattice.rows);
  std::vector<int> nearest(lattice.Size(), -1);
  const auto squared = [&](std::size_t column, std::size_t row, int site) {
    const double dx = lattice.X(static_cast<int>(column)) - sites.x[static_cast<std::size_t>(site)];
    const double dy = lattice.Y(static_cast<int>(row)) - sites.y[static_cast<std::size_t>(site)];
    return dx * dx + dy * dy;
  };
  for (std::size_t i = 0; i < sites.Size(); ++i) {
    const double column = std::round((sites.x[i] - lattice.x0) / lattice.step);
    const double row = std::round((lattice.y0 - sites.y[i]) / lattice.step);
    if (!(column >= 0 && row >= 0 && column < lattice.columns && row < lattice.rows)) continue;
    nearest[static_cast<std::size_t>(row) * width + static_cast<std::size_t>(column)] =
        static_cast<int>(i);
  }
  const auto offer = [&](std::size_t column, std::size_t row, std::size_t from_column,
                         std::size_t from_row) {
    const int offered = nearest[from_row * width + from_column];
    int& kept = nearest[row * width + column];
    if (offered < 0 || offered == kept) return;
    if (kept < 0 || squared(column, row, offered) < squared(column, row, kept)) kept = offered;
  };
  // Each point asks its neighbours, forward and back again (P.-E. Danielsson, 1980).
  for (int turn = 0; turn < 2; ++turn) {
    for (std::size_t j = 0; j < height; ++j) {
      const std::size_t row = turn == 0 ? j : height - 1 - j;
      if (j > 0) {
        const std::size_t before = turn == 0 ? row - 1 : row + 1;
        for (std::size_t column = 0; column < width; ++column) {
          offer(column, row, column, before);
          if (column > 0) offer(column, row, column - 1, before);
          if (column + 1 < width) offer(column, row, column + 1, before);
        }
      }
      for (std::size_t column = 1; column < width; ++column) offer(column, row, column - 1, row);
      for (std::size_t column = width - 1; column-- > 0;) offer(column, row, column + 1, row);
    }
  }
  std::vector<float> distances(lattice.Size(), std::numeric_limits<float>::max());
  for (std::size_t row = 0; row < height; ++row) {
    for (std::size_t column = 0; column < width; ++column) {
      const int site = nearest[row * width + column];
      if (site >= 0) {
        distances[row * width + column] = static_cast<float>(std::sqrt(squared(column, row, site)));
      }
    }
  }
  return distances;
}

}  // namespace discoplan::figures
