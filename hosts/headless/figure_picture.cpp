// SPDX-License-Identifier: MIT
#include "hosts/headless/figure_picture.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <map>

#include "discoplan/base/wide_loops.h"
#include "discoplan/figures/image_rows.h"
#include "hosts/headless/blending.h"
#include "hosts/headless/glyph.h"
#include "hosts/headless/letter_path.h"
#include "hosts/headless/path_strokes.h"
#include "hosts/headless/png_file.h"
#include "hosts/headless/shape_cells.h"

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

/// Pixels of the size of letters that are stamped. Of larger ones few could be kept, smaller ones
/// have no pictures of their own size.
constexpr double kMostStamped = 96;
constexpr double kLeastStamped = 1;

/// Of a colour as it lies in memory, as are the library's own pixels: lowest byte first.
std::uint32_t BitsOf(const Rgba& colour) {
  std::uint32_t bits;
  std::memcpy(&bits, &colour, sizeof bits);
  return bits;
}

DISCOPLAN_WIDE_LOOPS bool AreOpaque(std::span<const Rgba> colours) {
  std::uint32_t all = kOpaque;
  for (const Rgba& colour : colours) all &= BitsOf(colour);
  return all == kOpaque;
}

DISCOPLAN_WIDE_LOOPS void CopyColours(std::span<const Rgba> colours, Pixel* to) {
  for (std::size_t i = 0; i < colours.size(); ++i) {
    const std::uint32_t bits = BitsOf(colours[i]);
    to[i] = (bits & 0xFF00FF00) | (bits >> 16 & 0xFF) | (bits & 0xFF) << 16;
  }
}

void PutColours(std::span<const Rgba> colours, unsigned cover, Pixel* to) {
  if (cover == 255 && AreOpaque(colours)) return CopyColours(colours, to);
  for (const Rgba colour : colours) Blend(*to++, Parts(ColourOf(colour)) * cover);
}

/// A disc of which each pixel's cover follows from its distance alone: for dots of few pixels, what
/// an outline would give is hardly told from it. The edge fades over one pixel.
class SoftDisc {
 public:
  SoftDisc(double radius, Rgba colour)
      : ink_(ColourOf(colour)), reach_(static_cast<float>(EvenRadius(radius) + 0.5)) {}

  /// From the centre to where nothing is covered.
  float Reach() const { return reach_; }

  void Blend(Pixel& pixel, float distance) const {
    const float cover = std::min(reach_ - distance, 1.0F);
    if (cover > 0) discoplan::Blend(pixel, ink_ * static_cast<unsigned>(cover * 255 + 0.5F));
  }

 private:
  /// To the middle of the edge, for as much ink as a sharp one has: of pi r^2 for that radius, the
  /// disc has pi (r^2 + 1/12), or as a mere cone pi (r + 1/2)^3 / 3.
  static double EvenRadius(double radius) {
    const double square = radius * radius;
    return square >= 1.0 / 3 ? std::sqrt(square - 1.0 / 12) : std::cbrt(3 * square) - 0.5;
  }

  Parts ink_;
  float reach_;
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

/// What of a picture is large, and may be used for the next one.
struct Room {
  std::vector<Pixel> pixels;
  std::vector<Rgba> image;
  std::vector<std::uint8_t> file;
};

/// Paints what of a figure lies in a band of its picture, with the pixels that the whole would
/// have: shapes are left out where they are elsewhere, but never cut, which would round their edges
/// anew.
class RasterDevice final : public figures::Device {
 public:
  RasterDevice(const Figure& figure, double pixels_per_point, const FreeTypeText& text, Room& room)
      : scale_(pixels_per_point),
        text_(text),
        figure_(figure),
        width_(std::max(1, static_cast<int>(std::lround(figure.width * scale_)))),
        height_(std::max(1, static_cast<int>(std::lround(figure.height * scale_)))),
        pixels_(room.pixels),
        image_room_(room.image) {}

  int Width() const { return width_; }
  int Height() const { return height_; }
  bool HasAlpha() const { return !figure_.background || figure_.background->alpha != 255; }

  /// Good until the next call.
  std::span<Pixel> Paint(Band band) {
    band_ = band;
    const auto width = static_cast<std::size_t>(width_);
    pixels_.assign(width * static_cast<std::size_t>(band.bottom - band.top),
                   figure_.background ? ColourOf(*figure_.background) : 0);
    cells_.LookAt(width_, height_, band);
    figures::Draw(figure_, *this);
    if (HasAlpha()) Divide(pixels_);
    return pixels_;
  }

  void Draw(const PathShape& shape) override {
    if (!TakePath(shape.path, shape.stroke.width)) return;
    if (shape.fill) Fill(path_, *shape.fill);
    DrawStroke(shape.stroke);
  }

  void Draw(const DotsShape& shape) override {
    // A rim as a larger disc below.
    const double rim = shape.stroke.width > 0 ? std::max(shape.stroke.width * scale_, 0.7) : 0;
    const double radius = shape.radius * scale_;
    if (rim > 0) DrawDiscs(shape.centres, radius + rim / 2, shape.stroke.colour);
    DrawDiscs(shape.centres, radius, shape.fill);
  }

  void Draw(const TextShape& shape) override {
    if (!Meets(shape.box.top - shape.size, shape.box.bottom + shape.size)) return;
    const double size = shape.size * scale_;
    const bool is_plain = shape.angle == 0 && shape.halo <= 0;
    if (is_plain && size >= kLeastStamped && size <= kMostStamped) return StampLetters(shape);
    path_.Clear();
    LetterPath letters(path_, shape.start * scale_, size, shape.angle * kRadians);
    text_.Outline({.name = figure_.font, .size = 1, .bold = shape.bold}, shape.text, letters);
    path_.Close();
    if (shape.halo > 0) DrawStroke({2 * shape.halo, shape.halo_colour});
    Fill(path_, shape.colour);
  }

  void Draw(const ImageShape& shape) override {
    const int left = std::max(0, static_cast<int>(std::floor(shape.area.left * scale_)));
    const int top = std::max(0, static_cast<int>(std::floor(shape.area.top * scale_)));
    const int right = std::min(width_, static_cast<int>(std::ceil(shape.area.right * scale_)));
    const int bottom = std::min(height_, static_cast<int>(std::ceil(shape.area.bottom * scale_)));
    if (right <= left || bottom <= top) return;
    if (top >= band_.bottom || bottom <= band_.top || !TakePath(shape.outline)) return;
    const auto image = images_
                           .try_emplace(&shape, *shape.source,
                                        figures::PixelGrid{left / scale_, top / scale_, 1 / scale_,
                                                           right - left, bottom - top},
                                        std::move(image_room_))
                           .first;
    figures::ImageRows& rows = image->second;
    AddToCells(path_);
    cells_.Sweep([&](int y, int x, int count, unsigned cover) {
      if (y < top || y >= bottom) return;
      const int begin = std::max(x, left);
      const int end = std::min(x + count, right);
      if (begin >= end) return;
      const std::span<const Rgba> colours = rows.At(y - top).subspan(
          static_cast<std::size_t>(begin - left), static_cast<std::size_t>(end - begin));
      PutColours(colours, cover, RowAt(y) + begin);
    });
    if (bottom > band_.bottom) return;
    image_room_ = rows.Take();
    images_.erase(image);
  }

 private:
  /// Whether what reaches from one height to another, in points, comes near the band.
  bool Meets(double top, double bottom) const {
    constexpr double kNear = 2;
    return top * scale_ < band_.bottom + kNear && bottom * scale_ > band_.top - kNear;
  }

  /// Without the pieces that a pen of that width doesn't bring into the band. False if none does.
  bool TakePath(const figures::Path& path, double width = 0) {
    path_.Clear();
    for (const auto& piece : path.pieces) {
      const auto [high, low] =
          std::minmax_element(piece.points.begin(), piece.points.end(),
                              [](const Point& a, const Point& b) { return a.y < b.y; });
      if (high == piece.points.end() || !Meets(high->y - width, low->y + width)) continue;
      path_.MoveTo(piece.points.front() * scale_);
      for (const Point& p : std::span(piece.points).subspan(1)) path_.LineTo(p * scale_);
      if (piece.closed) path_.Close();
    }
    return !path_.IsEmpty();
  }

  void DrawDiscs(std::span<const Point> centres, double radius, Rgba colour) {
    if (radius <= 0) return;
    const SoftDisc disc(radius, colour);
    for (const Point centre : centres) {
      const Point c = centre * scale_;
      const auto [left, right] = Touched(c.x - disc.Reach(), c.x + disc.Reach(), {0, width_});
      const auto [top, bottom] = Touched(c.y - disc.Reach(), c.y + disc.Reach(), band_);
      for (int y = top; y < bottom; ++y) {
        Pixel* row = RowAt(y);
        const auto down = static_cast<float>(y + 0.5 - c.y);
        for (int x = left; x < right; ++x) {
          const auto across = static_cast<float>(x + 0.5 - c.x);
          disc.Blend(row[x], std::sqrt(across * across + down * down));
        }
      }
    }
  }

  /// Level letters, which stand on whole pixels and so are sharp, from those that are kept.
  void StampLetters(const TextShape& shape) {
    const Parts ink(ColourOf(shape.colour));
    const Point start = shape.start * scale_;
    const auto stamp = [&](const Glyph& glyph, PixelPoint corner) {
      const int top = std::max(corner.y, band_.top);
      const int bottom = std::min(corner.y + glyph.rows, band_.bottom);
      const int left = std::max(corner.x, 0);
      const int right = std::min(corner.x + glyph.width, width_);
      for (int y = top; y < bottom; ++y) {
        const std::uint8_t* covers = glyph.coverage.data() + (y - corner.y) * glyph.width;
        Pixel* row = RowAt(y);
        for (int x = left; x < right; ++x) {
          if (const unsigned cover = covers[x - corner.x]; cover > 0) Blend(row[x], ink * cover);
        }
      }
    };
    const auto size = static_cast<float>(shape.size * scale_);
    text_.ForEachGlyph({.name = figure_.font, .size = size, .bold = shape.bold}, 1, start.x,
                       static_cast<int>(std::lround(start.y)), shape.text, stamp);
  }

  /// The pixels that a stretch touches, within a range: the first, and the one behind the last.
  static std::pair<int, int> Touched(double from, double to, Band within) {
    const auto pixel = [&](double place) {
      return static_cast<int>(std::fmax(std::fmin(place, within.bottom), within.top));
    };
    return {pixel(std::floor(from)), pixel(std::ceil(to))};
  }

  Pixel* RowAt(int y) {
    return pixels_.data() + static_cast<std::ptrdiff_t>(y - band_.top) * width_;
  }

  void FillCells(Rgba colour) {
    const Parts ink(ColourOf(colour));
    cells_.Sweep([&](int y, int x, int count, unsigned cover) {
      const std::span pixels(RowAt(y) + x, static_cast<std::size_t>(count));
      const Parts covered = ink * cover;
      if (covered.Alpha() == 255) {
        return std::fill(pixels.begin(), pixels.end(), covered.Joined());
      }
      for (Pixel& pixel : pixels) Blend(pixel, covered);
    });
  }

  void AddToCells(const PixelPath& path) {
    path.ForEachPiece([this](const PixelPath::Piece& piece) { cells_.Add(piece.points); });
  }

  void Fill(const PixelPath& path, Rgba colour) {
    AddToCells(path);
    FillCells(colour);
  }

  /// Along the path that was taken.
  void DrawStroke(const Stroke& stroke) {
    if (stroke.width <= 0 || stroke.colour.alpha == 0) return;
    // Finer than that a line would fade.
    const LinePen pen = {.width = std::max(stroke.width * scale_, 0.7),
                         .top = band_.top - 1.0,
                         .bottom = band_.bottom + 1.0};
    Fill(
        stroke.dash > 0 ? Outlined(Dashed(path_, stroke.dash * scale_), pen) : Outlined(path_, pen),
        stroke.colour);
  }

  double scale_;
  const FreeTypeText& text_;
  const Figure& figure_;
  int width_;
  int height_;
  Band band_;
  std::vector<Pixel>& pixels_;
  std::vector<Rgba>& image_room_;
  PixelPath path_;
  // That go on in the next band, whose first rows are made together with the last ones of this.
  std::map<const ImageShape*, figures::ImageRows> images_;
  ShapeCells cells_;
};

/// A PNG file, painted and compressed in bands of so many pixels, about.
std::vector<std::uint8_t> EncodeInBands(const Figure& figure, double pixels_per_point,
                                        const FreeTypeText& text, int band_pixels, Room& room) {
  RasterDevice device(figure, pixels_per_point, text, room);
  const double pixels = 1.0 * device.Width() * device.Height();
  const int bands = std::max(1, static_cast<int>(std::lround(pixels / band_pixels)));
  const int rows = (device.Height() + bands - 1) / bands;
  const PngStrips picture = {
      .width = device.Width(),
      .height = device.Height(),
      .rows_from =
          [&](int top) {
            return device.Paint({top, std::min(top + rows, device.Height())});
          },
      .pixels_per_metre = static_cast<int>(std::lround(pixels_per_point * 72 / 0.0254)),
      .has_alpha = device.HasAlpha()};
  return EncodePng(picture, std::move(room.file));
}

}  // namespace

FigurePicture PaintFigure(const Figure& figure, double pixels_per_point, const FreeTypeText& text) {
  Room room;
  RasterDevice device(figure, pixels_per_point, text, room);
  device.Paint({0, device.Height()});
  return {std::move(room.pixels), device.Width(), device.Height(), device.HasAlpha()};
}

std::vector<std::uint8_t> EncodeFigurePicture(const Figure& figure, double pixels_per_point,
                                              const FreeTypeText& text) {
  Room room;
  return EncodeInBands(figure, pixels_per_point, text, 3 << 16, room);
}

struct FigureEncoder::Memory : Room {};

FigureEncoder::FigureEncoder() : memory_(std::make_unique<Memory>()) {}

FigureEncoder::~FigureEncoder() = default;

std::vector<std::uint8_t> FigureEncoder::Encode(const Figure& figure, double pixels_per_point,
                                                const FreeTypeText& text) {
  constexpr std::size_t kMostKept = 1 << 20;  // bytes of a file
  std::vector<std::uint8_t> file = EncodeInBands(figure, pixels_per_point, text, 1 << 19, *memory_);
  if (file.capacity() > kMostKept) return file;
  memory_->file = std::move(file);
  return {memory_->file.begin(), memory_->file.end()};
}

double FigureText::Width(std::string_view text, double size, bool bold) const {
  constexpr double kFine = 1000;  // pixels, so that sizes below a pixel are exact too
  return text_.Width({.name = font_, .size = 1, .bold = bold}, kFine, text) / kFine * size;
}

}  // namespace discoplan
