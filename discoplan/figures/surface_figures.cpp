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
  Sampled(const ValueField& field, double radius, int across)
      : across_(across),
        lattice_{-1.02 * radius, 1.02 * radius, 2.04 * radius / (across - 1), across, across},
        values_(lattice_.Size()),
        radius_(radius) {
    field.Evaluate(lattice_, 1.5 * radius, values_);
  }
  /// `p` in parts of the radius.
  double At(Point p) const {
    const double across = (p.x * radius_ - lattice_.x0) / lattice_.step;
    const double down = (lattice_.y0 - p.y * radius_) / lattice_.step;
    const int i = std::clamp(static_cast<int>(across), 0, across_ - 2);
    const int j = std::clamp(static_cast<int>(down), 0, across_ - 2);
    const double u = across - i;
    const double v = down - j;
    const auto at = [&](int column, int row) {
      return static_cast<double>(values_[static_cast<std::size_t>(row * across_ + column)]);
    };
    return (1 - v) * ((1 - u) * at(i, j) + u * at(i + 1, j)) +
           v * ((1 - u) * at(i, j + 1) + u * at(i + 1, j + 1));
  }

 private:
  int across_;
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

/// A corner of a face.
struct Corner {
  Point place;  ///< In parts of the wafer's radius.
  double height;
  double value;
  double beyond;           ///< How much farther from the sites than what they tell of, in mm.
  bool cut_after = false;  ///< The side to the next corner is where the sites' surroundings end.
};

/// What of a face lies in a half of it, `part` being above 0 there (I. Sutherland, G. Hodgman,
/// 1974).
template <class Part>
std::vector<Corner> Cut(const std::vector<Corner>& face, Part part, bool shows = false) {
  std::vector<Corner> kept;
  for (std::size_t i = 0; i < face.size(); ++i) {
    const Corner& a = face[i];
    const Corner& b = face[(i + 1) % face.size()];
    const double at_a = part(a);
    const double at_b = part(b);
    if (at_a >= 0) kept.push_back(a);
    if ((at_a >= 0) == (at_b >= 0)) continue;
    const double t = at_a / (at_a - at_b);
    const auto mix = [t](double from, double to) { return from + (to - from) * t; };
    kept.push_back({a.place + (b.place - a.place) * t, mix(a.height, b.height),
                    mix(a.value, b.value), mix(a.beyond, b.beyond), shows && at_a >= 0});
  }
  return kept;
}

/// The surface of a field over its base, as far as sites tell of it.
class SurfaceDrawing {
 public:
  SurfaceDrawing(Page& page, const View& view, const WaferPlot& plot, const Scale& colours)
      : page_(page), view_(view), plot_(plot), scale_(colours) {}

  void Draw(const ValueField& field, const Coverage& coverage) {
    MakeNodes(field, coverage);
    if (coverage.HasFar()) HatchBase(page_, view_, plot_);
    for (const Face& face : FacesFromBehind()) {
      const std::vector<Corner> told = Told({nodes_[face.corners[0]], nodes_[face.corners[1]],
                                             nodes_[face.corners[2]], nodes_[face.corners[3]]});
      if (told.size() < 3) continue;
      AddShadedFace(told, Light(face));
      for (std::size_t i = 0; i < told.size(); ++i) {
        if (!told[i].cut_after) continue;
        const Corner& next = told[(i + 1) % told.size()];
        const Point side = next.place - told[i].place;
        // Faces go counter-clockwise: outside is to the right of a side.
        if (view_.Depth({side.y, -side.x}) < 0) AddWall(told[i], next);
      }
    }
    AddRim();
  }

 private:
  struct Face {
    double depth;
    std::array<std::size_t, 4> corners;
  };

  std::size_t Number(int ring, int sector) const {
    return static_cast<std::size_t>(ring * sectors_ + sector % sectors_);
  }

  void MakeNodes(const ValueField& field, const Coverage& coverage) {
    // As fine as is seen.
    rings_ = std::clamp(static_cast<int>(view_.Unit() / 2.4), 14, 96);
    sectors_ = 4 * rings_;
    const Sampled values(field, plot_.diameter / 2, std::max(160, 3 * rings_));
    const Border border(plot_, view_.Unit());
    for (int ring = 0; ring <= rings_; ++ring) {
      for (int sector = 0; sector < sectors_; ++sector) {
        const double angle = kTurn * sector / sectors_;
        const double radius = border.At(angle) * ring / rings_;
        const Point place{radius * std::cos(angle), radius * std::sin(angle)};
        const double value = values.At(place);
        const double beyond =
            coverage.HasFar() ? coverage.DistanceAt(place * (plot_.diameter / 2)) - coverage.Far()
                              : -1;
        nodes_.push_back({place, view_.HeightOf(value), value, beyond});
      }
    }
  }

  std::vector<Face> FacesFromBehind() const {
    std::vector<Face> faces;
    for (int ring = 0; ring < rings_; ++ring) {
      for (int sector = 0; sector < sectors_; ++sector) {
        Face face{0,
                  {Number(ring, sector), Number(ring + 1, sector), Number(ring + 1, sector + 1),
                   Number(ring, sector + 1)}};
        for (const std::size_t corner : face.corners) {
          face.depth += view_.Depth(nodes_[corner].place);
        }
        faces.push_back(face);
      }
    }
    std::stable_sort(faces.begin(), faces.end(),
                     [](const Face& a, const Face& b) { return a.depth > b.depth; });
    return faces;
  }

  static std::vector<Corner> Told(std::vector<Corner> corners) {
    const auto far = [](const Corner& corner) { return corner.beyond > 0; };
    if (std::none_of(corners.begin(), corners.end(), far)) return corners;
    return Cut(
        corners, [](const Corner& corner) { return -corner.beyond; }, true);
  }

  /// By the normal, from the diagonals.
  double Light(const Face& face) const {
    const Corner& a = nodes_[face.corners[0]];
    const Corner& b = nodes_[face.corners[1]];
    const Corner& c = nodes_[face.corners[2]];
    const Corner& d = nodes_[face.corners[3]];
    const Point p = c.place - a.place;
    const Point q = d.place - b.place;
    const double pz = c.height - a.height;
    const double qz = d.height - b.height;
    const double nx = p.y * qz - pz * q.y;
    const double ny = pz * q.x - p.x * qz;
    const double nz = p.x * q.y - p.y * q.x;
    const double length = std::sqrt(nx * nx + ny * ny + nz * nz);
    if (!(length > 0)) return 0;
    return 0.55 * ((-0.55 * nx + 0.25 * ny + 0.79 * nz) / length - 0.79);
  }

  /// In one colour, or in those of its bands with straight edges between them.
  void AddShadedFace(const std::vector<Corner>& face, double light) {
    const auto add = [&](const std::vector<Corner>& piece, double value) {
      std::vector<Point> corners;
      for (const Corner& corner : piece) corners.push_back(view_.At(corner.place, corner.height));
      AddFace(page_, Grown(std::move(corners), kOverlap), Lit(scale_.Colour(value), light));
    };
    const auto [low, high] =
        std::minmax_element(face.begin(), face.end(),
                            [](const Corner& a, const Corner& b) { return a.value < b.value; });
    const auto bands = static_cast<double>(scale_.bands.size());
    const auto band_of = [&](double value) {
      return std::clamp(std::floor(scale_.Part(value) * bands), 0.0, bands - 1);
    };
    double sum = 0;
    for (const Corner& corner : face) sum += corner.value / static_cast<double>(face.size());
    if (bands == 0 || band_of(low->value) == band_of(high->value)) return add(face, sum);
    for (double band = band_of(low->value); band <= band_of(high->value); ++band) {
      const auto edge = [&](double number) {
        return scale_.low + number / bands * (scale_.high - scale_.low);
      };
      std::vector<Corner> piece = face;
      if (band > band_of(low->value)) {
        piece = Cut(piece, [&](const Corner& corner) { return corner.value - edge(band); });
      }
      if (band < band_of(high->value)) {
        piece = Cut(piece, [&](const Corner& corner) { return edge(band + 1) - corner.value; });
      }
      if (piece.size() >= 3) add(piece, edge(band + 0.5));
    }
  }

  /// Bare, so that no colour is seen that the scale doesn't have.
  void AddWall(const Corner& a, const Corner& b) {
    const Point top_a = view_.At(a.place, a.height);
    const Point top_b = view_.At(b.place, b.height);
    AddFace(page_, Grown({top_a, top_b, view_.At(b.place, 0), view_.At(a.place, 0)}, kOverlap),
            Lit(page_.Ink().nothing, -0.12));
    // As long as the wall, whose neighbours would cut it into dashes otherwise.
    const Point along = top_b - top_a;
    const Point more = along * (kOverlap / std::max(kOverlap, std::hypot(along.x, along.y)));
    page_.Line(top_a - more, top_b + more, page_.Ink().rim, 0.7 * page_.Hair());
  }

  /// The wall under the rim, where it faces the viewer.
  void AddRim() {
    for (int sector = 0; sector < sectors_; ++sector) {
      const Corner& a = nodes_[Number(rings_, sector)];
      const Corner& b = nodes_[Number(rings_, sector + 1)];
      if (view_.Depth((a.place + b.place) * 0.5) > 0) continue;
      const std::vector<Corner> told = Told({a, b});
      if (told.size() >= 2) AddWall(told[0], told[1]);
    }
  }

  Page& page_;
  const View& view_;
  const WaferPlot& plot_;
  const Scale& scale_;
  int rings_ = 0;
  int sectors_ = 0;
  std::vector<Corner> nodes_;  // by ring and sector
};

/// Heights show the data's own range, whatever limits the colours have; those of one of many are
/// compared.
Scale HeightScale(const WaferPlot& plot, const Summary& summary, const Style& style) {
  Style plain = style;
  plain.bands = 0;
  WaferPlot free = plot;
  if (!style.small) {
    free.low.reset();
    free.high.reset();
  }
  Scale scale = MakeScale(free, summary, plain, 6);
  scale.colours = &style.colours;
  return scale;
}

Ticks HeightTicks(const Scale& heights) { return RoundTicks(heights.low, heights.high, 5); }

void DrawSurfaceWith(Sketch& sketch, const Scale& colours, const Scale& heights,
                     const ValueField& field, const Coverage& coverage) {
  Page& page = sketch.page;
  const Ticks ticks = HeightTicks(heights);
  if (!sketch.style.small) page.Free().left += AxisRoom(page, ticks);
  const View view(page.Free(), heights, sketch.style);
  DrawBase(page, view, sketch.plot);
  SurfaceDrawing(page, view, sketch.plot, colours).Draw(field, coverage);
  if (!sketch.style.small) DrawHeightAxis(page, view, heights, ticks, sketch.plot);
}

}  // namespace

void DrawSurface(Sketch sketch) {
  auto& [page, plot, summary, style, plan] = sketch;
  const Scale scale = MakeScale(plot, summary, style, 7);
  const auto field = FieldOf(sketch);
  const auto coverage = sketch.plan.CoverageOf(plot);
  std::vector<std::string> notes = {MethodNote(*field, plot)};
  if (coverage->HasFar()) notes.insert(notes.begin(), coverage->Note("hatched"));
  if (const std::string beyond = BeyondNote(plot, scale); !beyond.empty()) {
    notes.insert(notes.begin(), beyond);
  }
  AddWords(page, plot, summary, notes);
  const Scale heights = HeightScale(plot, summary, style);
  GatherView(page, style, ColourBarRoom(page, scale) + AxisRoom(page, HeightTicks(heights)));
  if (style.legend) AddColourBar(page, scale, plot);
  DrawSurfaceWith(sketch, scale, heights, *field, *coverage);
}

void DrawSigmaSurface(Sketch sketch) {
  auto& [page, plot, summary, style, plan] = sketch;
  const SigmaClasses classes = ClassesOf(plot, summary, style);
  const auto field = FieldOf(sketch);
  const auto coverage = sketch.plan.CoverageOf(plot);
  std::vector<std::string> notes = {MethodNote(*field, plot)};
  if (coverage->HasFar()) notes.insert(notes.begin(), coverage->Note("hatched"));
  AddWords(page, plot, summary, notes);
  if (style.legend) AddSigmaKey(page, plot, summary, classes);
  DrawSurfaceWith(sketch, classes.scale, HeightScale(plot, summary, style), *field, *coverage);
}

}  // namespace discoplan::figures
