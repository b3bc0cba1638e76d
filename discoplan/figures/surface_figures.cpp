// SPDX-License-Identifier: MIT
#include <array>
#include <cmath>

#include "discoplan/figures/wafer_view.h"

namespace discoplan::figures {
namespace {

constexpr double kTurn = 6.283185307179586;
constexpr double kOverlap = 0.35;  // of neighbouring faces, in points

/// Values at any place, from a lattice of them.
class Sampled {
 public:
  Sampled(const ValueField& field, double radius)
      : lattice_{-1.02 * radius, 1.02 * radius, 2.04 * radius / (kAcross - 1), kAcross, kAcross},
        values_(lattice_.Size()),
        radius_(radius) {
    field.Evaluate(lattice_, 1.5 * radius, values_);
  }
  /// `p` in parts of the radius.
  double At(Point p) const {
    const double across = (p.x * radius_ - lattice_.x0) / lattice_.step;
    const double down = (lattice_.y0 - p.y * radius_) / lattice_.step;
    const int i = std::clamp(static_cast<int>(across), 0, kAcross - 2);
    const int j = std::clamp(static_cast<int>(down), 0, kAcross - 2);
    const double u = across - i;
    const double v = down - j;
    const auto at = [&](int column, int row) {
      return static_cast<double>(values_[static_cast<std::size_t>(row * kAcross + column)]);
    };
    return (1 - v) * ((1 - u) * at(i, j) + u * at(i + 1, j)) +
           v * ((1 - u) * at(i, j + 1) + u * at(i + 1, j + 1));
  }

 private:
  static constexpr int kAcross = 160;
  Lattice lattice_;
  std::vector<float> values_;
  double radius_;
};

/// A little larger than its corners say, so that no seam shows beside the next one.
std::vector<Point> Grown(std::vector<Point> corners, double by) {
  std::vector<Point> grown = corners;
  const std::size_t count = corners.size();
  for (std::size_t i = 0; i < count; ++i) {
    // Along both sides that end there, so that thin faces grow as much as others.
    for (const std::size_t from : {(i + 1) % count, (i + count - 1) % count}) {
      const Point out = corners[i] - corners[from];
      const double length = std::hypot(out.x, out.y);
      if (length > 0) grown[i] = grown[i] + out * (by / length);
    }
  }
  return grown;
}

/// Distance of the test area's border at an angle, in parts of the wafer's radius.
class Border {
 public:
  Border(const WaferPlot& plot, double drawn_radius) : points_(TestAreaPoints(plot, drawn_radius)) {
    for (Point& p : points_) p = p * (2 / plot.diameter);
    round_ = std::hypot(points_.front().x, points_.front().y);
    middle_ = (points_.front() + points_.back()) * 0.5;
  }
  double At(double angle) const {
    const double flat = std::hypot(middle_.x, middle_.y);
    if (flat >= round_ * 0.9999) return round_;
    const double toward = (std::cos(angle) * middle_.x + std::sin(angle) * middle_.y) / flat;
    return toward > 0 ? std::min(round_, flat / toward) : round_;
  }

 private:
  std::vector<Point> points_;
  double round_;
  Point middle_;
};

/// A corner of a face on the page, with its value.
struct Corner {
  Point at;
  double value;
};

/// What of a face lies above a value, or below it (I. Sutherland, G. Hodgman, 1974).
std::vector<Corner> Cut(const std::vector<Corner>& face, double value, bool above) {
  std::vector<Corner> kept;
  for (std::size_t i = 0; i < face.size(); ++i) {
    const Corner& a = face[i];
    const Corner& b = face[(i + 1) % face.size()];
    const bool a_in = above ? a.value >= value : a.value <= value;
    const bool b_in = above ? b.value >= value : b.value <= value;
    if (a_in) kept.push_back(a);
    if (a_in == b_in) continue;
    const double part = (value - a.value) / (b.value - a.value);
    kept.push_back({a.at + (b.at - a.at) * part, value});
  }
  return kept;
}

/// In one colour, or in those of its bands with straight edges between them.
void AddShadedFace(Page& page, const std::vector<Corner>& face, const Scale& scale, double light) {
  const auto add = [&](const std::vector<Corner>& piece, double value) {
    std::vector<Point> corners;
    for (const Corner& corner : piece) corners.push_back(corner.at);
    AddFace(page, Grown(std::move(corners), kOverlap), Lit(scale.Colour(value), light));
  };
  const auto [low, high] = std::minmax_element(
      face.begin(), face.end(), [](const Corner& a, const Corner& b) { return a.value < b.value; });
  const auto bands = static_cast<double>(scale.bands.size());
  const auto band_of = [&](double value) {
    return std::clamp(std::floor(scale.Part(value) * bands), 0.0, bands - 1);
  };
  double sum = 0;
  for (const Corner& corner : face) sum += corner.value / static_cast<double>(face.size());
  if (bands == 0 || band_of(low->value) == band_of(high->value)) return add(face, sum);
  for (double band = band_of(low->value); band <= band_of(high->value); ++band) {
    const auto edge = [&](double number) {
      return scale.low + number / bands * (scale.high - scale.low);
    };
    std::vector<Corner> piece = face;
    if (band > band_of(low->value)) piece = Cut(piece, edge(band), true);
    if (band < band_of(high->value)) piece = Cut(piece, edge(band + 1), false);
    if (piece.size() >= 3) add(piece, edge(band + 0.5));
  }
}

void DrawFaces(Page& page, const View& view, const WaferPlot& plot, const Scale& scale,
               const ValueField& field, const Coverage& coverage) {
  const Sampled values(field, plot.diameter / 2);
  const Border border(plot, view.Unit());
  // As fine as is seen.
  const int rings = std::clamp(static_cast<int>(view.Unit() / 3.2), 14, 56);
  const int sectors = 4 * rings;
  struct Node {
    Point place;
    double value;
    double height;
  };
  const auto node = [&](int ring, int sector) {
    const double angle = kTurn * sector / sectors;
    const double radius = border.At(angle) * ring / rings;
    const Point place{radius * std::cos(angle), radius * std::sin(angle)};
    const double value = values.At(place);
    return Node{place, value, view.HeightOf(value)};
  };
  std::vector<Node> nodes;
  for (int ring = 0; ring <= rings; ++ring) {
    for (int sector = 0; sector < sectors; ++sector) nodes.push_back(node(ring, sector));
  }
  const auto number = [&](int ring, int sector) {
    return static_cast<std::size_t>(ring * sectors + sector % sectors);
  };
  struct Face {
    double depth;
    std::array<std::size_t, 4> corners;
  };
  std::vector<Face> faces;
  for (int ring = 0; ring < rings; ++ring) {
    for (int sector = 0; sector < sectors; ++sector) {
      Face face{0,
                {number(ring, sector), number(ring + 1, sector), number(ring + 1, sector + 1),
                 number(ring, sector + 1)}};
      for (const std::size_t corner : face.corners) face.depth += view.Depth(nodes[corner].place);
      faces.push_back(face);
    }
  }
  std::stable_sort(faces.begin(), faces.end(),
                   [](const Face& a, const Face& b) { return a.depth > b.depth; });
  for (const Face& face : faces) {
    const Node& a = nodes[face.corners[0]];
    const Node& b = nodes[face.corners[1]];
    const Node& c = nodes[face.corners[2]];
    const Node& d = nodes[face.corners[3]];
    // The normal, from the diagonals.
    const Point p = c.place - a.place;
    const Point q = d.place - b.place;
    const double pz = c.height - a.height;
    const double qz = d.height - b.height;
    const double nx = p.y * qz - pz * q.y;
    const double ny = pz * q.x - p.x * qz;
    const double nz = p.x * q.y - p.y * q.x;
    const double length = std::sqrt(nx * nx + ny * ny + nz * nz);
    const double light = length > 0 ? (-0.55 * nx + 0.25 * ny + 0.79 * nz) / length - 0.79 : 0;
    const std::vector<Corner> corners = {{view.At(a.place, a.height), a.value},
                                         {view.At(b.place, b.height), b.value},
                                         {view.At(c.place, c.height), c.value},
                                         {view.At(d.place, d.height), d.value}};
    if (coverage.IsFar((a.place + c.place) * (plot.diameter / 4))) {
      std::vector<Point> points;
      for (const Corner& corner : corners) points.push_back(corner.at);
      AddFace(page, Grown(std::move(points), kOverlap), Lit(page.Ink().hatch, 0.55 * light));
    } else {
      AddShadedFace(page, corners, scale, 0.55 * light);
    }
  }
  // The wall under the rim, where it faces the viewer.
  for (int sector = 0; sector < sectors; ++sector) {
    const Node& a = nodes[number(rings, sector)];
    const Node& b = nodes[number(rings, sector + 1)];
    if (view.Depth((a.place + b.place) * 0.5) > 0) continue;
    // Bare, so that no colour is seen that the scale doesn't have.
    const Rgba wall = Lit(page.Ink().nothing, -0.12);
    AddFace(page,
            Grown({view.At(a.place, a.height), view.At(b.place, b.height), view.At(b.place, 0),
                   view.At(a.place, 0)},
                  kOverlap),
            wall);
  }
  Path rim;
  std::vector<Point> line;
  for (int sector = 0; sector < sectors; ++sector) {
    const Node& a = nodes[number(rings, sector)];
    const Node& b = nodes[number(rings, sector + 1)];
    if (view.Depth(a.place) > 0 || view.Depth(b.place) > 0) continue;
    rim.Line({view.At(a.place, a.height), view.At(b.place, b.height)});
  }
  page.Add(PathShape{.path = std::move(rim), .stroke = {0.7 * page.Hair(), page.Ink().rim}});
}

/// Heights show the data's own range, whatever limits the colours have.
Scale HeightScale(const WaferPlot& plot, const Summary& summary, const Style& style) {
  Style plain = style;
  plain.bands = 0;
  WaferPlot free = plot;
  free.low.reset();
  free.high.reset();
  Scale scale = MakeScale(free, summary, plain, 6);
  scale.colours = &style.colours;
  return scale;
}

void DrawSurfaceWith(Sketch& sketch, const Scale& colours, const Scale& heights,
                     const ValueField& field, const Coverage& coverage) {
  Page& page = sketch.page;
  Ticks ticks = RoundTicks(heights.low, heights.high, 5);
  const double room = AxisRoom(page, ticks);
  page.Free().left += room;
  const View view(page.Free(), heights, sketch.style);
  DrawBase(page, view, sketch.plot);
  DrawFaces(page, view, sketch.plot, colours, field, coverage);
  DrawHeightAxis(page, view, heights, ticks, sketch.plot);
}

}  // namespace

void DrawSurface(Sketch sketch) {
  auto& [page, plot, summary, style, plan] = sketch;
  const Scale scale = MakeScale(plot, summary, style, 7);
  const auto field = FieldOf(sketch);
  const auto coverage = sketch.plan.CoverageOf(plot);
  std::vector<std::string> notes = {MethodNote(*field, plot)};
  if (coverage->HasFar()) notes.insert(notes.begin(), coverage->Note("grey"));
  if (const std::string beyond = BeyondNote(plot, scale); !beyond.empty()) {
    notes.insert(notes.begin(), beyond);
  }
  AddWords(page, plot, summary, notes);
  if (style.legend) AddColourBar(page, scale, plot);
  DrawSurfaceWith(sketch, scale, HeightScale(plot, summary, style), *field, *coverage);
}

void DrawSigmaSurface(Sketch sketch) {
  auto& [page, plot, summary, style, plan] = sketch;
  const SigmaClasses classes = ClassesOf(plot, summary, style);
  const auto field = FieldOf(sketch);
  const auto coverage = sketch.plan.CoverageOf(plot);
  std::vector<std::string> notes = {MethodNote(*field, plot)};
  if (coverage->HasFar()) notes.insert(notes.begin(), coverage->Note("grey"));
  AddWords(page, plot, summary, notes);
  if (style.legend) AddSigmaKey(page, plot, classes);
  DrawSurfaceWith(sketch, classes.scale, HeightScale(plot, summary, style), *field, *coverage);
}

}  // namespace discoplan::figures
