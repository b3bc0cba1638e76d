// SPDX-License-Identifier: MIT
#pragma once

/// A figure as a list of shapes on a page, for any device: pixels, vector files, widgets, paper.
///
///     Figure figure{.width = 360, .height = 270};
///     figure.shapes.push_back(PathShape{.path = Circle({180, 135}, 100), .stroke = {.width = 1}});
///     figure.shapes.push_back(TextShape{.text = "Wafer 7", .start = {20, 30}, .size = 10});
///     Draw(figure, device);
///
/// Lengths are points of 1/72 inch from the page's upper left corner, Y downward. Shapes lie over
/// those before them.

#include <algorithm>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <variant>
#include <vector>

#include "discoplan/export.h"

namespace discoplan::figures {

struct Point {
  double x = 0;
  double y = 0;

  bool operator==(const Point&) const = default;
  friend Point operator+(Point a, Point b) { return {a.x + b.x, a.y + b.y}; }
  friend Point operator-(Point a, Point b) { return {a.x - b.x, a.y - b.y}; }
  friend Point operator*(Point a, double f) { return {a.x * f, a.y * f}; }
};

struct Box {
  double left = 0;
  double top = 0;
  double right = 0;
  double bottom = 0;

  double Width() const { return right - left; }
  double Height() const { return bottom - top; }
  Point Centre() const { return {(left + right) / 2, (top + bottom) / 2}; }
  /// Boxes that only touch don't meet.
  bool Meets(const Box& other) const {
    return left < other.right && other.left < right && top < other.bottom && other.top < bottom;
  }
  bool Holds(const Box& other) const {
    return left <= other.left && other.right <= right && top <= other.top && other.bottom <= bottom;
  }
  Box Grown(double by) const { return {left - by, top - by, right + by, bottom + by}; }
};

/// Not premultiplied; an alpha of 255 is opaque.
struct Rgba {
  std::uint8_t red = 0;
  std::uint8_t green = 0;
  std::uint8_t blue = 0;
  std::uint8_t alpha = 255;

  bool operator==(const Rgba&) const = default;
};

constexpr Rgba Rgb(std::uint32_t rrggbb) {
  return {static_cast<std::uint8_t>(rrggbb >> 16), static_cast<std::uint8_t>(rrggbb >> 8 & 0xFF),
          static_cast<std::uint8_t>(rrggbb & 0xFF)};
}

/// `part` of `b` in `a`, from 0 to 1.
inline Rgba Mix(Rgba a, Rgba b, double part) {
  const auto mix = [part](std::uint8_t from, std::uint8_t to) {
    return static_cast<std::uint8_t>(from + (to - from) * part + 0.5);
  };
  return {mix(a.red, b.red), mix(a.green, b.green), mix(a.blue, b.blue), mix(a.alpha, b.alpha)};
}

/// Pieces of straight lines. A filled path is closed by itself; its inside is by non-zero winding.
struct Path {
  struct Piece {
    std::vector<Point> points;
    bool closed = false;
  };
  std::vector<Piece> pieces = {};

  void Line(std::vector<Point> points) { pieces.push_back({std::move(points), false}); }
  void Polygon(std::vector<Point> points) { pieces.push_back({std::move(points), true}); }
};

struct Stroke {
  double width = 0;  ///< 0 draws none.
  Rgba colour = {};
  double dash = 0;  ///< Length of dashes and of the gaps between them; 0 is an unbroken line.
};

struct PathShape {
  Path path = {};
  std::optional<Rgba> fill = {};
  Stroke stroke = {};
};

/// Many equal circles.
struct DotsShape {
  std::vector<Point> centres = {};
  double radius = 1;
  Rgba fill = {};
  Stroke stroke = {};
};

/// One line of UTF-8. `box` is what it covers, as it was measured when the page was laid out.
struct TextShape {
  std::string text = {};
  Point start = {};  ///< Of the base line.
  double size = 8;   ///< Of the letters, in points.
  bool bold = false;
  Rgba colour = {};
  double angle = 0;  ///< Degrees, counter-clockwise around `start`.
  double halo = 0;   ///< Width of a rim in `halo_colour` around the letters.
  Rgba halo_colour = {};
  Box box = {};
  double width = 0;  ///< Of the text as it was measured.
};

/// Pixels of a device: the centre of the one in column `i` of row `j` lies at
/// (left + (i + 0.5) * pitch, top + (j + 0.5) * pitch), in points.
struct PixelGrid {
  double left = 0;
  double top = 0;
  double pitch = 1;
  int columns = 0;
  int rows = 0;
};

/// What can be evaluated at the pixels of any device.
class DISCOPLAN_EXPORT ImageSource {
 public:
  virtual ~ImageSource() = default;
  /// Fills rows from top to bottom, `columns` pixels each.
  virtual void Render(const PixelGrid& grid, std::span<Rgba> pixels) const = 0;
};

/// An image that is seen through an outline.
struct ImageShape {
  Path outline = {};
  Box area = {};  ///< Around the outline.
  std::shared_ptr<const ImageSource> source = {};
};

using Shape = std::variant<PathShape, DotsShape, TextShape, ImageShape>;

/// Where a wafer lies on a page that is seen from above, to tell what is pointed at.
struct WaferPlace {
  Point centre;      ///< In points.
  double scale = 1;  ///< Points for a millimetre.

  /// In mm from the wafer's centre, Y up.
  Point MillimetresAt(Point at) const {
    return {(at.x - centre.x) / scale, (centre.y - at.y) / scale};
  }
};

struct Figure {
  double width = 0;
  double height = 0;
  std::optional<Rgba> background;  ///< None is transparent.
  std::string font;                ///< Family of all texts.
  std::string title;               ///< For the file's own description.
  std::vector<Shape> shapes;
  std::optional<WaferPlace> wafer = {};  ///< Of a map of one.
};

/// What no device shows, in points.
inline constexpr double kFinest = 0.01;
/// So many that the circle is nowhere farther off than that; the radius is in points.
DISCOPLAN_EXPORT int CircleCorners(double radius);
DISCOPLAN_EXPORT std::vector<Point> CirclePoints(Point centre, double radius);
DISCOPLAN_EXPORT Path Circle(Point centre, double radius);
DISCOPLAN_EXPORT Path Rectangle(const Box& box);

/// Measures text as the devices set it: letters scale with their size, no hinting.
class DISCOPLAN_EXPORT TextMeasure {
 public:
  virtual ~TextMeasure() = default;
  /// Points from the start to the end of a text.
  virtual double Width(std::string_view text, double size, bool bold) const = 0;
};

/// Above and below the base line, in parts of the letters' size: what capitals, figures and
/// descenders cover.
inline constexpr double kAscent = 0.76;
inline constexpr double kDescent = 0.22;

/// Draws shapes. An adapter scales points to its own units.
class DISCOPLAN_EXPORT Device {
 public:
  virtual ~Device() = default;
  virtual void Draw(const PathShape& shape) = 0;
  virtual void Draw(const DotsShape& shape) = 0;
  virtual void Draw(const TextShape& shape) = 0;
  virtual void Draw(const ImageShape& shape) = 0;
};

/// Puts the shapes of a figure onto another one, its corner at `corner`.
DISCOPLAN_EXPORT void Place(Figure part, Point corner, Figure& sheet);

/// All shapes in turn; the background is the device's matter.
DISCOPLAN_EXPORT void Draw(const Figure& figure, Device& device);

}  // namespace discoplan::figures
