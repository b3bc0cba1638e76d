// SPDX-License-Identifier: MIT
#include "discoplan/figures/shapes.h"

#include <cmath>

namespace discoplan::figures {

int CircleCorners(double radius) {
  constexpr double kHalfTurn = 3.141592653589793;
  // Half of it is left for what is made of the circle.
  const double corners = kHalfTurn / std::sqrt(kFinest / std::max(radius, 1.0));
  return std::clamp(static_cast<int>(corners / 4) * 4, 16, 1440);
}

std::vector<Point> CirclePoints(Point centre, double radius) {
  constexpr double kTurn = 6.283185307179586;
  const int count = CircleCorners(radius);
  std::vector<Point> points;
  for (int i = 0; i < count; ++i) {
    const double angle = kTurn * i / count;
    points.push_back({centre.x + radius * std::cos(angle), centre.y - radius * std::sin(angle)});
  }
  return points;
}

Path Circle(Point centre, double radius) {
  Path path;
  path.Polygon(CirclePoints(centre, radius));
  return path;
}

Path Rectangle(const Box& box) {
  Path path;
  path.Polygon(
      {{box.left, box.top}, {box.right, box.top}, {box.right, box.bottom}, {box.left, box.bottom}});
  return path;
}

namespace {

/// An image on a page that begins elsewhere.
class MovedSource final : public ImageSource {
 public:
  MovedSource(std::shared_ptr<const ImageSource> source, Point by)
      : source_(std::move(source)), by_(by) {}
  void Render(const PixelGrid& grid, std::span<Rgba> pixels) const override {
    PixelGrid moved = grid;
    moved.left -= by_.x;
    moved.top -= by_.y;
    source_->Render(moved, pixels);
  }

 private:
  std::shared_ptr<const ImageSource> source_;
  Point by_;
};

struct Move {
  Point by;

  void operator()(Path& path) const {
    for (Path::Piece& piece : path.pieces) {
      for (Point& point : piece.points) point = point + by;
    }
  }
  void operator()(Box& box) const {
    box = {box.left + by.x, box.top + by.y, box.right + by.x, box.bottom + by.y};
  }
  void operator()(PathShape& shape) const { (*this)(shape.path); }
  void operator()(DotsShape& shape) const {
    for (Point& centre : shape.centres) centre = centre + by;
  }
  void operator()(TextShape& shape) const {
    shape.start = shape.start + by;
    (*this)(shape.box);
  }
  void operator()(ImageShape& shape) const {
    (*this)(shape.outline);
    (*this)(shape.area);
    shape.source = std::make_shared<MovedSource>(std::move(shape.source), by);
  }
};

}  // namespace

void Place(Figure part, Point corner, Figure& sheet) {
  for (Shape& shape : part.shapes) {
    std::visit(Move{corner}, shape);
    sheet.shapes.push_back(std::move(shape));
  }
}

void Draw(const Figure& figure, Device& device) {
  for (const Shape& shape : figure.shapes) {
    std::visit([&](const auto& drawn) { device.Draw(drawn); }, shape);
  }
}

}  // namespace discoplan::figures
