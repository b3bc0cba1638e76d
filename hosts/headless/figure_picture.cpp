// SPDX-License-Identifier: MIT
#include "hosts/headless/figure_picture.h"

#include <array>
#include <cmath>
#include <cstring>

#include "discoplan/figures/image_rows.h"
#include "hosts/headless/agg_headers.h"
#include "hosts/headless/path_strokes.h"
#include "hosts/headless/png_file.h"

namespace discoplan {
namespace {

using figures::DotsShape;
using figures::Figure;
using figures::ImageShape;
using figures::PathShape;
using figures::Point;
using figures::Rgba;
using figures::Stroke;
using figures::TextShape;

constexpr double kRadians = 3.14159265358979 / 180;

agg::rgba8 ColourOf(Rgba colour) {
  return agg::rgba8(colour.red, colour.green, colour.blue, colour.alpha).premultiply();
}

/// Of a colour as it lies in memory, as are the library's own pixels: lowest byte first.
constexpr std::uint32_t kOpaque = 0xFF000000;
Pixel ToPixel(std::uint32_t colour) {
  return (colour & 0xFF00FF00) | (colour >> 16 & 0xFF) | (colour & 0xFF) << 16;
}

Pixel ToPixel(agg::rgba8 colour) {
  return static_cast<Pixel>(colour.a) << 24 | static_cast<Pixel>(colour.r) << 16 |
         static_cast<Pixel>(colour.g) << 8 | colour.b;
}

/// As many as are covered wholly by opaque colours, eight at a time.
struct CoveredColours {
  const agg::int8u* covers;
  const Rgba* colours;
  Pixel* pixels;
};
int CopyOpaque(const CoveredColours& from, int count) {
  constexpr int kAtOnce = 8;
  int done = 0;
  for (; done + kAtOnce <= count; done += kAtOnce) {
    std::uint64_t covers;
    std::array<std::uint32_t, kAtOnce> colours;
    std::memcpy(&covers, from.covers + done, sizeof covers);
    std::memcpy(colours.data(), from.colours + done, sizeof colours);
    std::uint32_t all = ~0U;
    for (const std::uint32_t colour : colours) all &= colour;
    if (~covers != 0 || (all & kOpaque) != kOpaque) break;
    Pixel* to = from.pixels + done;
    for (const std::uint32_t colour : colours) *to++ = ToPixel(colour);
  }
  return done;
}

/// Outlines of letters at their place, in pixels.
class LetterPath final : public OutlineSink {
 public:
  LetterPath(agg::path_storage& path, Point start, double size, double angle)
      : path_(path),
        start_(start),
        c_(std::cos(angle) * size),
        s_(std::sin(angle) * size),
        // A piece of a curve is about two pixels long.
        steps_(std::clamp(static_cast<int>(size / 12) + 2, 3, 16)) {}

  void MoveTo(double x, double y) override {
    path_.close_polygon();
    last_ = At(x, y);
    path_.move_to(last_.x, last_.y);
  }
  void LineTo(double x, double y) override {
    last_ = At(x, y);
    path_.line_to(last_.x, last_.y);
  }
  void CurveTo(double control_x, double control_y, double x, double y) override {
    const Point control = At(control_x, control_y);
    const Point to = At(x, y);
    for (int i = 1; i <= steps_; ++i) {
      const double t = static_cast<double>(i) / steps_;
      const Point p = last_ * ((1 - t) * (1 - t)) + control * (2 * t * (1 - t)) + to * (t * t);
      path_.line_to(p.x, p.y);
    }
    last_ = to;
  }
  void CubicTo(double x1, double y1, double x2, double y2, double x, double y) override {
    const Point a = At(x1, y1);
    const Point b = At(x2, y2);
    const Point to = At(x, y);
    for (int i = 1; i <= steps_; ++i) {
      const double t = static_cast<double>(i) / steps_;
      const double u = 1 - t;
      const Point p =
          last_ * (u * u * u) + a * (3 * u * u * t) + b * (3 * u * t * t) + to * (t * t * t);
      path_.line_to(p.x, p.y);
    }
    last_ = to;
  }

 private:
  Point At(double x, double y) const {
    return {start_.x + c_ * x - s_ * y, start_.y - s_ * x - c_ * y};
  }

  agg::path_storage& path_;
  Point start_;
  double c_;
  double s_;
  int steps_;
  Point last_;
};

/// From colours multiplied by their alpha.
void Divide(std::span<Pixel> pixels) {
  for (Pixel& pixel : pixels) {
    const Pixel alpha = pixel >> 24;
    if (alpha == 0 || alpha == 255) continue;
    Pixel plain = alpha << 24;
    for (const int shift : {0, 8, 16}) {
      const Pixel part = ((pixel >> shift & 0xFF) * 255 + alpha / 2) / alpha;
      plain |= std::min<Pixel>(part, 255) << shift;
    }
    pixel = plain;
  }
}

/// Rows of a picture.
struct Band {
  int top = 0;
  int bottom = 0;
};

/// The rows of a band, by their numbers in the whole picture.
class BandRows {
 public:
  using row_data = agg::const_row_info<agg::int8u>;

  void Attach(Pixel* pixels, int width, Band band) {
    pixels_ = pixels;
    width_ = width;
    band_ = band;
  }
  Pixel* Row(int y) const { return pixels_ + static_cast<std::ptrdiff_t>(y - band_.top) * width_; }
  // What the format calls.
  unsigned width() const { return static_cast<unsigned>(width_); }
  unsigned height() const { return static_cast<unsigned>(band_.bottom); }
  agg::int8u* row_ptr(int, int y, unsigned) const { return row_ptr(y); }
  agg::int8u* row_ptr(int y) const { return reinterpret_cast<agg::int8u*>(Row(y)); }

 private:
  Pixel* pixels_ = nullptr;
  int width_ = 0;
  Band band_;
};
using PixelFormat = agg::pixfmt_alpha_blend_rgba<agg::blender_bgra32_pre, BandRows>;

/// Paints what of a figure lies in a band of its picture, with the pixels that the whole would
/// have: shapes are left out where they are elsewhere, but never cut, which would round their edges
/// anew.
class RasterDevice final : public figures::Device {
 public:
  RasterDevice(const Figure& figure, double pixels_per_point, const FreeTypeText& text)
      : scale_(pixels_per_point),
        text_(text),
        figure_(figure),
        width_(std::max(1, static_cast<int>(std::lround(figure.width * scale_)))),
        height_(std::max(1, static_cast<int>(std::lround(figure.height * scale_)))),
        format_(buffer_),
        base_(format_) {}

  int Width() const { return width_; }
  int Height() const { return height_; }
  bool HasAlpha() const { return !figure_.background || figure_.background->alpha != 255; }

  /// Good until the next call.
  std::span<Pixel> Paint(Band band) {
    band_ = band;
    const auto width = static_cast<std::size_t>(width_);
    pixels_.assign(width * static_cast<std::size_t>(band.bottom - band.top),
                   figure_.background ? ToPixel(ColourOf(*figure_.background)) : 0);
    buffer_.Attach(pixels_.data(), width_, band);
    format_.attach(buffer_);
    base_.attach(format_);
    base_.clip_box(0, band.top, width_ - 1, band.bottom - 1);
    raster_.clip_box(0, 0, width_, height_);
    figures::Draw(figure_, *this);
    if (HasAlpha()) Divide(pixels_);
    return pixels_;
  }

  void Draw(const PathShape& shape) override {
    agg::path_storage path = PathOf(shape.path, shape.stroke.width);
    if (path.total_vertices() == 0) return;
    if (shape.fill) Fill(path, *shape.fill);
    DrawStroke(path, shape.stroke);
  }

  void Draw(const DotsShape& shape) override {
    // A rim as a larger disc below.
    const double rim = shape.stroke.width > 0 ? std::max(shape.stroke.width * scale_, 0.7) : 0;
    const double radius = shape.radius * scale_;
    if (rim > 0) DrawDiscs(shape.centres, radius + rim / 2, shape.stroke.colour);
    DrawDiscs(shape.centres, radius, shape.fill);
  }

  void Draw(const TextShape& shape) override {
    agg::path_storage path;
    if (!Meets(shape.box.top - shape.size, shape.box.bottom + shape.size)) return;
    LetterPath letters(path, shape.start * scale_, shape.size * scale_, shape.angle * kRadians);
    text_.Outline({.name = figure_.font, .size = 1, .bold = shape.bold}, shape.text, letters);
    path.close_polygon();
    if (shape.halo > 0) DrawStroke(path, {2 * shape.halo, shape.halo_colour});
    Fill(path, shape.colour);
  }

  void Draw(const ImageShape& shape) override {
    const int left = std::max(0, static_cast<int>(std::floor(shape.area.left * scale_)));
    const int top = std::max(0, static_cast<int>(std::floor(shape.area.top * scale_)));
    const int right = std::min(width_, static_cast<int>(std::ceil(shape.area.right * scale_)));
    const int bottom = std::min(height_, static_cast<int>(std::ceil(shape.area.bottom * scale_)));
    if (right <= left || bottom <= top) return;
    figures::ImageRows rows(*shape.source,
                            {left / scale_, top / scale_, 1 / scale_, right - left, bottom - top});
    agg::path_storage path = PathOf(shape.outline);
    if (path.total_vertices() == 0) return;
    raster_.reset();
    raster_.add_path(path);
    if (!raster_.rewind_scanlines()) return;
    scanline_.reset(raster_.min_x(), raster_.max_x());
    while (raster_.sweep_scanline(scanline_)) {
      const int y = scanline_.y();
      if (y < std::max(top, band_.top) || y >= std::min(bottom, band_.bottom)) continue;
      const Rgba* row = rows.At(y - top).data();
      Pixel* to = buffer_.Row(y);
      auto span = scanline_.begin();
      for (unsigned k = 0; k < scanline_.num_spans(); ++k, ++span) {
        const int begin = std::max<int>(span->x, left);
        const int end = std::min<int>(span->x + span->len, right);
        const agg::int8u* covers = span->covers - span->x;
        for (int x = begin; x < end; ++x) {
          x += CopyOpaque({covers + x, row + (x - left), to + x}, end - x);
          if (x >= end) break;
          const Rgba colour = row[x - left];
          format_.blend_pixel(x, y, ColourOf(colour), covers[x]);
        }
      }
    }
  }

 private:
  /// Whether what reaches from one height to another, in points, comes near the band.
  bool Meets(double top, double bottom) const {
    constexpr double kNear = 2;
    return top * scale_ < band_.bottom + kNear && bottom * scale_ > band_.top - kNear;
  }

  /// Without the pieces that a pen of that width doesn't bring into the band.
  agg::path_storage PathOf(const figures::Path& path, double width = 0) const {
    agg::path_storage made;
    for (const auto& piece : path.pieces) {
      const auto [high, low] =
          std::minmax_element(piece.points.begin(), piece.points.end(),
                              [](const Point& a, const Point& b) { return a.y < b.y; });
      if (high == piece.points.end() || !Meets(high->y - width, low->y + width)) continue;
      for (std::size_t i = 0; i < piece.points.size(); ++i) {
        const Point p = piece.points[i] * scale_;
        i == 0 ? made.move_to(p.x, p.y) : made.line_to(p.x, p.y);
      }
      if (piece.closed) made.close_polygon();
    }
    return made;
  }

  void DrawDiscs(std::span<const Point> centres, double radius, Rgba colour) {
    const int corners = std::clamp(static_cast<int>(4 + 5 * std::sqrt(radius)), 8, 64);
    std::vector<Point> rim;
    for (int i = 0; i < corners; ++i) {
      const double angle = 360.0 * i / corners * kRadians;
      rim.push_back({radius * std::cos(angle), radius * std::sin(angle)});
    }
    raster_.reset();
    for (const Point centre : centres) {
      const Point c = centre * scale_;
      if (c.y + radius < band_.top - 1 || c.y - radius > band_.bottom + 1) continue;
      raster_.move_to_d(c.x + rim[0].x, c.y + rim[0].y);
      for (const Point p : std::span(rim).subspan(1)) raster_.line_to_d(c.x + p.x, c.y + p.y);
    }
    Render(colour);
  }

  /// What was rasterised, in the rows of the band.
  void Render(Rgba colour) {
    if (!raster_.rewind_scanlines()) return;
    scanline_.reset(raster_.min_x(), raster_.max_x());
    const int first = std::max(raster_.min_y(), band_.top);
    if (first >= band_.bottom || !raster_.navigate_scanline(first)) return;
    const agg::rgba8 ink = ColourOf(colour);
    while (raster_.sweep_scanline(scanline_) && scanline_.y() < band_.bottom) {
      agg::render_scanline_aa_solid(scanline_, base_, ink);
    }
  }

  template <class Source>
  void Fill(Source& source, Rgba colour) {
    raster_.reset();
    raster_.add_path(source);
    Render(colour);
  }

  void DrawStroke(agg::path_storage& path, const Stroke& stroke) {
    if (stroke.width <= 0 || stroke.colour.alpha == 0) return;
    agg::path_storage dashes;
    if (stroke.dash > 0) dashes = Dashed(path, stroke.dash * scale_);
    // Finer than that a line would fade.
    const double width = std::max(stroke.width * scale_, 0.7);
    agg::path_storage lines =
        Outlined(stroke.dash > 0 ? dashes : path,
                 {.width = width, .top = band_.top - 1.0, .bottom = band_.bottom + 1.0});
    Fill(lines, stroke.colour);
  }

  double scale_;
  const FreeTypeText& text_;
  const Figure& figure_;
  int width_;
  int height_;
  Band band_;
  std::vector<Pixel> pixels_;
  BandRows buffer_;
  PixelFormat format_;
  agg::renderer_base<PixelFormat> base_;
  agg::rasterizer_scanline_aa<> raster_;
  agg::scanline_u8 scanline_;
};

}  // namespace

FigurePicture PaintFigure(const Figure& figure, double pixels_per_point, const FreeTypeText& text) {
  RasterDevice device(figure, pixels_per_point, text);
  const std::span<const Pixel> pixels = device.Paint({0, device.Height()});
  return {{pixels.begin(), pixels.end()}, device.Width(), device.Height(), device.HasAlpha()};
}

std::vector<std::uint8_t> EncodeFigurePicture(const Figure& figure, double pixels_per_point,
                                              const FreeTypeText& text) {
  constexpr int kPixels = 1 << 18;  // of a band, about
  RasterDevice device(figure, pixels_per_point, text);
  const int bands =
      std::max(1, static_cast<int>(std::lround(1.0 * device.Width() * device.Height() / kPixels)));
  const int rows = (device.Height() + bands - 1) / bands;
  return EncodePng(
      PngStrips{.width = device.Width(),
                .height = device.Height(),
                .rows_from =
                    [&](int top) {
                      return device.Paint({top, std::min(top + rows, device.Height())});
                    },
                .pixels_per_metre = static_cast<int>(std::lround(pixels_per_point * 72 / 0.0254)),
                .has_alpha = device.HasAlpha()});
}

double FigureText::Width(std::string_view text, double size, bool bold) const {
  constexpr double kFine = 1000;  // pixels, so that sizes below a pixel are exact too
  return text_.Width({.name = font_, .size = 1, .bold = bold}, kFine, text) / kFine * size;
}

}  // namespace discoplan
