// SPDX-License-Identifier: MIT
#include "discoplan/figures/contour_lines.h"

#include <cmath>

#include "discoplan/figures/isolines.h"

namespace discoplan::figures {
namespace {

constexpr double kDegrees = 57.29577951308232;

/// A line with the lengths from its start to each of its points.
struct Measured {
  std::vector<Point> points;
  std::vector<double> at;

  explicit Measured(std::vector<Point> line) : points(std::move(line)) {
    double length = 0;
    for (std::size_t i = 0; i < points.size(); ++i) {
      if (i > 0) {
        length += std::hypot(points[i].x - points[i - 1].x, points[i].y - points[i - 1].y);
      }
      at.push_back(length);
    }
  }
  double Length() const { return at.back(); }
  Point At(double length) const {
    const auto next = std::upper_bound(at.begin() + 1, at.end() - 1, length);
    const auto i = static_cast<std::size_t>(next - at.begin());
    const double whole = at[i] - at[i - 1];
    const double part = whole > 0 ? (length - at[i - 1]) / whole : 0;
    return points[i - 1] + (points[i] - points[i - 1]) * part;
  }
  std::vector<Point> Part(double from, double to) const {
    std::vector<Point> part = {At(from)};
    for (std::size_t i = 0; i < points.size(); ++i) {
      if (at[i] > from && at[i] < to) part.push_back(points[i]);
    }
    part.push_back(At(to));
    return part;
  }
};

struct Gap {
  double from;
  double to;
};

/// Where the line is straightest over the label's width and the label is free; none if nowhere.
std::vector<Gap> LabelLine(Page& page, const Measured& line, const std::string& text,
                           const ContourStyle& style, Rgba colour) {
  const double em = page.Em();
  const double size = 0.85 * em;
  const double width = page.Width(text, size) + 0.5 * em;
  if (line.Length() < 2.2 * width) return {};
  struct Candidate {
    double bend;
    double start;
  };
  std::vector<Candidate> candidates;
  const double step = std::max(0.6 * em, (line.Length() - width) / 60);
  for (double start = 0.3 * em; start + width + 0.3 * em < line.Length(); start += step) {
    const Point a = line.At(start);
    const Point b = line.At(start + width);
    const Point middle = line.At(start + width / 2);
    const double chord = std::hypot(b.x - a.x, b.y - a.y);
    const Point off = middle - (a + b) * 0.5;
    const double bend = (width - chord) / width + std::hypot(off.x, off.y) / width;
    // Level text is read best.
    const double tilt = std::abs(std::sin(std::atan2(b.y - a.y, b.x - a.x)));
    if (bend < 0.25) candidates.push_back({bend + 0.1 * tilt, start});
  }
  std::sort(candidates.begin(), candidates.end(),
            [](const Candidate& a, const Candidate& b) { return a.bend < b.bend; });
  for (const bool off_dots : {true, false}) {
    for (const Candidate& candidate : candidates) {
      const Point a = line.At(candidate.start);
      const Point b = line.At(candidate.start + width);
      double angle = -std::atan2(b.y - a.y, b.x - a.x) * kDegrees;
      if (angle > 90) angle -= 180;
      if (angle < -90) angle += 180;
      const Point middle = (line.At(candidate.start + width / 2) * 2 + a + b) * 0.25;
      const Words words{.text = text,
                        .size = size,
                        .colour = colour,
                        .angle = angle,
                        .halo = style.halo,
                        .halo_colour = style.halo_colour};
      if (off_dots && style.dots != nullptr &&
          !style.dots->IsFree(page.BoxOf(words, middle, Align::Middle))) {
        continue;
      }
      if (page.Put(words, middle, Align::Middle)) {
        return {{candidate.start, candidate.start + width}};
      }
    }
    if (style.dots == nullptr) break;
  }
  return {};
}

Lattice LatticeFor(const Page& page, const MapFrame& frame, const ContourStyle& style) {
  const double part = frame.Length(frame.test_radius) / 24;
  const double step = style.square * std::max(page.Em(), part) / frame.scale;
  const double reach = frame.test_radius + 2 * step;
  const int across = static_cast<int>(std::ceil(2 * reach / step)) + 1;
  return {-reach, reach, step, across, across};
}

}  // namespace

void AddContours(Page& page, const MapFrame& frame, const WaferPlot& plot, const ValueField& field,
                 const Coverage& coverage, const Ticks& levels, const ContourStyle& style) {
  const Lattice lattice = LatticeFor(page, frame, style);
  std::vector<float> values(lattice.Size());
  field.Evaluate(lattice, frame.test_radius * 1.5 + 3 * lattice.step, values);
  const std::vector<Point> area = TestAreaPoints(plot, frame.Length(frame.radius));
  // The area is the circle, cut by a flat between its first and last corners.
  const Point middle = (area.front() + area.back()) * 0.5;
  const double flat = std::hypot(middle.x, middle.y);
  const double reach = frame.test_radius * frame.test_radius;
  const auto is_inside = [&](Point p) {
    if (p.x * p.x + p.y * p.y > reach) return false;
    if (flat < frame.test_radius && p.x * middle.x + p.y * middle.y > flat * flat) return false;
    return !coverage.IsFar(p);
  };
  IsolineFinder finder(lattice, values);
  for (const double level : levels.values) {
    const bool emphasised =
        style.has_emphasis && std::abs(level - style.emphasised) < 1e-9 * levels.step;
    Path path;
    for (const std::vector<Point>& line : finder.Lines(level)) {
      for (std::vector<Point>& piece : Clipped(line, is_inside)) {
        if (piece.size() < 2) continue;
        for (Point& point : piece) point = frame.At(point.x, point.y);
        const Measured measured(std::move(piece));
        if (measured.Length() < 0.5 * page.Em()) continue;
        double from = 0;
        if (style.labels) {
          for (const Gap& gap :
               LabelLine(page, measured, levels.Text(level), style, style.label(level))) {
            path.Line(Thinned(measured.Part(from, gap.from), kFinest));
            from = gap.to;
          }
        }
        path.Line(Thinned(measured.Part(from, measured.Length()), kFinest));
      }
    }
    page.Add(PathShape{.path = std::move(path),
                       .stroke = {style.width * (emphasised ? 2 : 1), style.colour(level)}});
  }
}

}  // namespace discoplan::figures
