// SPDX-License-Identifier: MIT
#include "discoplan/figures/figure_paper.h"

#include <array>
#include <cmath>
#include <utility>

#include "discoplan/base/algorithms.h"
#include "discoplan/figures/clip.h"
#include "discoplan/raster/picture.h"
#include "discoplan/raster/symbol_letters.h"

namespace discoplan::figures {
namespace {

constexpr double kDotsPerInch = 300;
constexpr double kTwipsPerDot = kTwipsPerInch / kDotsPerInch;
constexpr double kPointsPerDot = 72 / kDotsPerInch;
constexpr std::int16_t kNoOutline = 5;
/// What of a line's height is above the base line, in Arial and in what stands in for it.
constexpr double kRise = 0.81;
// Of an underline, in parts of the letters' size.
constexpr double kUnderlineDrop = 0.07;
constexpr double kUnderlineWidth = 0.07;
constexpr double kTurn = 6.283185307179586;

Rgba RgbaOf(Colour colour) { return Rgb(PixelOf(colour) & 0xFFFFFF); }

bool IsFinite(Point p) { return std::isfinite(p.x) && std::isfinite(p.y); }

bool AreEqual(const Stroke& a, const Stroke& b) {
  return a.width == b.width && a.colour == b.colour;
}

/// In two bytes each.
std::string GreekOf(std::string_view text) {
  std::string greek;
  for (const char c : text) {
    const char32_t letter = SymbolLetter(static_cast<unsigned char>(c));
    if (letter < 0x100) {
      greek += c;
      continue;
    }
    greek += static_cast<char>(0xC0 | letter >> 6);
    greek += static_cast<char>(0x80 | (letter & 0x3F));
  }
  return greek;
}

struct Ellipse {
  Point centre;
  double across;  ///< Half axes.
  double down;

  /// Corners from one angle to another, counter-clockwise, both among them.
  std::vector<Point> Arc(double start, double sweep) const {
    const double part = sweep / kTurn;
    const int count = std::max(1, static_cast<int>(CircleCorners(std::max(across, down)) * part));
    std::vector<Point> points;
    for (int i = 0; i <= count; ++i) {
      const double angle = start + sweep * i / count;
      points.push_back(centre + Point{across * std::cos(angle), -down * std::sin(angle)});
    }
    return points;
  }
};

}  // namespace

FigurePaper::FigurePaper(const Setting& setting) : setting_(setting) {
  figure_ = {.width = setting.width / kTwipsPerPoint,
             .height = setting.height / kTwipsPerPoint,
             .background = Rgba{255, 255, 255},
             .font = setting.font,
             .title = {},
             .shapes = {}};
  clip_ = Page();
  state_.scale_mode = kTwips;
  state_.width = setting.width;
  state_.height = setting.height;
  TakeScale();
}

Figure FigurePaper::Take() {
  PutCells();
  Figure taken = figure_;
  taken.shapes = std::exchange(figure_.shapes, {});
  boxes_end_ = 0;
  return taken;
}

void FigurePaper::Origin(const SurfacePoint& twips, double scale) {
  PutCells();
  origin_ = {twips.x / kTwipsPerPoint, twips.y / kTwipsPerPoint};
  scale_ = scale;
}

void FigurePaper::ClipTo(const PlotArea& twips) {
  PutCells();
  const auto on_page = [&](float x, float y) {
    return origin_ + Point{x, y} * (scale_ / kTwipsPerPoint);
  };
  const Point corner = on_page(twips.left, twips.top);
  const Point opposite = corner + (on_page(twips.width, twips.height) - origin_);
  clip_ = {std::max(corner.x, 0.0), std::max(corner.y, 0.0), std::min(opposite.x, figure_.width),
           std::min(opposite.y, figure_.height)};
}

void FigurePaper::Unclip() {
  PutCells();
  clip_ = Page();
}

void FigurePaper::StateWritten(SurfaceState which) {
  if (which == SurfaceState::ScaleMode) TakeScale();
}

void FigurePaper::TakeScale() {
  const auto units_per_twip = static_cast<float>(UnitsPerPixel() / kTwipsPerDot);
  state_.scale_width = state_.width * units_per_twip;
  state_.scale_height = state_.height * units_per_twip;
}

double FigurePaper::UnitsPerPixel() const { return state_.scale_mode == kTwips ? kTwipsPerDot : 1; }

double FigurePaper::PointsPerPixel() const { return kPointsPerDot * scale_; }

Point FigurePaper::At(const SurfacePoint& units) const {
  return origin_ + Point{units.x, units.y} * (PointsPerPixel() / UnitsPerPixel());
}

Point FigurePaper::At(const PixelPoint& pixel) const {
  return origin_ +
         Point{static_cast<double>(pixel.x), static_cast<double>(pixel.y)} * PointsPerPixel();
}

float FigurePaper::TwipsPerPixelX() const { return static_cast<float>(kTwipsPerDot); }

float FigurePaper::TwipsPerPixelY() const { return static_cast<float>(kTwipsPerDot); }

discoplan::Font FigurePaper::FontOf() const {
  discoplan::Font font = state_.font;
  font.name = setting_.font;
  font.size = std::max(1.0F, font.size);
  return font;
}

std::optional<Rgba> FigurePaper::FillOf() const {
  if (state_.fill_style != 0) return {};
  return RgbaOf(state_.fill_color);
}

Stroke FigurePaper::StrokeOf(std::optional<Colour> colour) const {
  if (state_.draw_style == kNoOutline) return {};
  return {.width = std::max<int>(1, state_.draw_width) * PointsPerPixel(),
          .colour = RgbaOf(colour.value_or(state_.fore_color))};
}

void FigurePaper::Put(Shape shape) {
  PutCells();
  figure_.shapes.push_back(std::move(shape));
}

/// One path for each colour.
void FigurePaper::PutCells() {
  if (cells_.empty()) return;
  const std::vector<ColourCell> cells = std::exchange(cells_, {});
  for (const ColourRegion& region : MergeCells(cells)) {
    PathShape shape{.path = {}, .fill = RgbaOf(region.colour), .stroke = {}};
    for (const std::vector<PixelPoint>& outline : region.outlines) {
      std::vector<Point> points;
      for (const PixelPoint& corner : outline) points.push_back(At(corner));
      points = ClippedArea(std::move(points), clip_);
      if (!points.empty()) shape.path.Polygon(std::move(points));
    }
    if (!shape.path.pieces.empty()) figure_.shapes.push_back(std::move(shape));
  }
}

/// An outline that is cut has no line where it is.
void FigurePaper::Area(std::vector<Point> outline, std::optional<Rgba> fill, const Stroke& stroke) {
  if (outline.empty() || !AllOf(outline, IsFinite)) return;
  if (clip_.Holds(BoxAround(outline))) {
    if (!fill && stroke.width <= 0) return;
    PathShape shape{.path = {}, .fill = fill, .stroke = stroke};
    shape.path.Polygon(std::move(outline));
    return Put(std::move(shape));
  }
  if (fill) {
    std::vector<Point> inside = ClippedArea(outline, clip_);
    PathShape shape{.path = {}, .fill = fill, .stroke = {}};
    shape.path.Polygon(std::move(inside));
    if (!shape.path.pieces[0].points.empty()) Put(std::move(shape));
  }
  for (std::size_t i = 0; i < outline.size(); ++i) {
    Piece(outline[i], outline[(i + 1) % outline.size()], stroke);
  }
}

/// Goes on with the last shape, if it is of lines that look alike.
void FigurePaper::Piece(Point from, Point to, const Stroke& stroke) {
  if (stroke.width <= 0 || !IsFinite(from) || !IsFinite(to)) return;
  const auto inside = ClippedLine(from, to, clip_);
  if (!inside) return;
  if (inside->first == inside->second) {
    const Point at = inside->first;
    return FilledBox(Box{at.x, at.y, at.x, at.y}.Grown(stroke.width / 2), stroke.colour);
  }
  PutCells();
  auto* last = figure_.shapes.empty() ? nullptr : std::get_if<PathShape>(&figure_.shapes.back());
  if (last == nullptr || last->fill || !AreEqual(last->stroke, stroke)) {
    figure_.shapes.push_back(PathShape{.path = {}, .fill = {}, .stroke = stroke});
    last = &std::get<PathShape>(figure_.shapes.back());
  }
  std::vector<Path::Piece>& pieces = last->path.pieces;
  if (!pieces.empty() && !pieces.back().closed && pieces.back().points.back() == inside->first) {
    pieces.back().points.push_back(inside->second);
  } else {
    last->path.Line({inside->first, inside->second});
  }
}

/// Goes on with the last shape, if it is of boxes in that colour.
void FigurePaper::FilledBox(const Box& box, Rgba fill) {
  if (!IsFinite({box.left, box.top}) || !IsFinite({box.right, box.bottom})) return;
  std::vector<Point> inside = ClippedArea(Rectangle(box).pieces[0].points, clip_);
  if (inside.empty()) return;
  PutCells();
  std::vector<Shape>& shapes = figure_.shapes;
  if (shapes.empty() || boxes_end_ != shapes.size() ||
      std::get<PathShape>(shapes.back()).fill != fill) {
    shapes.push_back(PathShape{.path = {}, .fill = fill, .stroke = {}});
    boxes_end_ = shapes.size();
  }
  std::get<PathShape>(shapes.back()).path.Polygon(std::move(inside));
}

void FigurePaper::DrawLine(const LineCall& call) {
  const SurfacePoint from = call.from.value_or(state_.current);
  const Point a = At(from);
  const Point b = At(call.to);
  if (call.shape == LineShape::Line) return Piece(a, b, StrokeOf(call.colour));
  const Box box{std::min(a.x, b.x), std::min(a.y, b.y), std::max(a.x, b.x), std::max(a.y, b.y)};
  if (call.shape == LineShape::Box) {
    return Area(Rectangle(box).pieces[0].points, {}, StrokeOf(call.colour));
  }
  // Both corners belong to it: without extent it is a line one pixel wide.
  const double pixel = PointsPerPixel();
  FilledBox({box.left, box.top, box.right + pixel, box.bottom + pixel},
            RgbaOf(call.colour.value_or(state_.fore_color)));
}

void FigurePaper::Circle(const CircleCall& call) {
  const double across = call.radius * (PointsPerPixel() / UnitsPerPixel());
  const double down = across * call.aspect.value_or(1.0F);
  if (!(across >= 0) || !(down >= 0)) return;
  const Ellipse ellipse{At(call.centre), across, down};
  const Stroke stroke = StrokeOf(call.colour);
  if (!call.start || !call.end) {
    std::vector<Point> outline = ellipse.Arc(0, kTurn);
    outline.pop_back();
    return Area(std::move(outline), FillOf(), stroke);
  }
  double sweep = std::fmod(static_cast<double>(*call.end) - *call.start, kTurn);
  if (!(sweep > 0)) sweep += kTurn;
  const std::vector<Point> arc = ellipse.Arc(*call.start, sweep);
  for (std::size_t i = 1; i < arc.size(); ++i) Piece(arc[i - 1], arc[i], stroke);
}

void FigurePaper::Polygon(std::span<const PixelPoint> points) {
  if (const std::optional<ColourCell> cell = CellOf(points, *this)) {
    if (!cell->IsEmpty()) cells_.push_back(*cell);
    return;
  }
  std::vector<Point> outline;
  for (const PixelPoint& point : points) outline.push_back(At(point));
  Area(std::move(outline), FillOf(), StrokeOf({}));
}

void FigurePaper::Print(std::string_view text) {
  const discoplan::Font font = FontOf();
  const std::string letters = state_.font.name == kSymbolFont ? GreekOf(text) : std::string(text);
  const double size = font.size * scale_;
  const double pixels_per_point = 1 / kPointsPerDot;
  const double width = setting_.text.Width(font, pixels_per_point, letters) * PointsPerPixel();
  const double rise = kRise * setting_.text.Height(font, pixels_per_point) * PointsPerPixel();
  const Point start = At(state_.current) + Point{0, rise};
  const Point middle = start - Point{0, rise / 2};
  const bool begins = clip_.Holds({middle.x, middle.y, middle.x, middle.y});
  if (letters.empty() || !IsFinite(start) || !begins) return;
  const Rgba colour = RgbaOf(state_.fore_color);
  Put(TextShape{
      .text = letters,
      .start = start,
      .size = size,
      .bold = font.bold,
      .colour = colour,
      .box = {start.x, start.y - kAscent * size, start.x + width, start.y + kDescent * size},
      .width = width});
  if (!font.underline) return;
  const double line = start.y + kUnderlineDrop * size;
  FilledBox({start.x, line, start.x + width, line + kUnderlineWidth * size}, colour);
}

float FigurePaper::TextWidth(std::string_view text) const {
  const std::string letters = state_.font.name == kSymbolFont ? GreekOf(text) : std::string(text);
  return static_cast<float>(setting_.text.Width(FontOf(), 1 / kPointsPerDot, letters) *
                            UnitsPerPixel());
}

float FigurePaper::TextHeight(std::string_view) const {
  return static_cast<float>(setting_.text.Height(FontOf(), 1 / kPointsPerDot) * UnitsPerPixel());
}

}  // namespace discoplan::figures
