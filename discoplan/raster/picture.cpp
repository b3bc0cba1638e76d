// SPDX-License-Identifier: MIT
#include "discoplan/raster/picture.h"
#include "discoplan/base/angles.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <utility>

#include "discoplan/base/numbers.h"

namespace discoplan {
namespace {

constexpr int kMostPixels = 32767;            // along one side
constexpr int kMostPixelsTogether = 1 << 26;  // what lies below them isn't kept

/// To the nearest whole pixel; what lies farther away than 32 bits stays on that side.
std::int32_t Nearest(double pixels) {
  constexpr double kFarthest = std::numeric_limits<std::int32_t>::max();
  if (std::isnan(pixels)) return std::numeric_limits<std::int32_t>::min();
  return static_cast<std::int32_t>(
      RoundHalfEven(std::clamp<double>(static_cast<float>(pixels), -kFarthest, kFarthest)));
}

}  // namespace

Pixel PixelOf(Colour colour) {
  constexpr Colour kSystem = 0x80000000;
  constexpr Colour kButtonFace = 0x8000000F;
  if (colour == kButtonFace) return 0xFFF0F0F0;
  if (colour & kSystem) return 0xFFC8C8C8;
  return 0xFF000000 | (colour & 0xFF) << 16 | (colour & 0xFF00) | (colour >> 16 & 0xFF);
}

int WholePixels(double pixels) {
  return pixels > 0 ? static_cast<int>(RoundHalfEven(std::min<double>(pixels, kMostPixels))) : 0;
}

Picture::Picture(const Setting& setting, float width, float height)
    : setting_(setting), canvas_(0, 0, PixelOf(kWhite)) {
  Resize(width, height);
}

void Picture::Resize(float width, float height) { TakeSize(width, height); }

/// The canvas first, which may not find the memory.
void Picture::TakeSize(float width, float height) {
  Touch();
  const int across = WholePixels(PixelsAcross(width));
  const int down =
      std::min(WholePixels(PixelsDown(height)), kMostPixelsTogether / std::max(across, 1));
  canvas_.Resize(across, down, PixelOf(state_.back_color));
  state_.width = canvas_width_ = width;
  state_.height = canvas_height_ = height;
  TakeScale();
}

void Picture::TakeScale() {
  state_.scale_left = 0;
  state_.scale_top = 0;
  state_.scale_width =
      state_.scale_mode == kTwips ? state_.width : static_cast<float>(PixelsAcross(state_.width));
  state_.scale_height =
      state_.scale_mode == kTwips ? state_.height : static_cast<float>(PixelsDown(state_.height));
}

void Picture::StateWritten(SurfaceState which) {
  if (which == SurfaceState::Width || which == SurfaceState::Height) {
    const float width = std::exchange(state_.width, canvas_width_);
    const float height = std::exchange(state_.height, canvas_height_);
    TakeSize(width, height);
  }
  if (which == SurfaceState::ScaleMode &&
      (state_.scale_mode == kTwips || state_.scale_mode == kPixels)) {
    TakeScale();
  }
}

double Picture::PixelsAcross(float width) const {
  return width / static_cast<double>(setting_.resolution.twips_per_pixel_x);
}

double Picture::PixelsDown(float height) const {
  return height / static_cast<double>(setting_.resolution.twips_per_pixel_y);
}

double Picture::PixelsPerUnitX() const {
  return static_cast<float>(PixelsAcross(state_.width)) / static_cast<double>(state_.scale_width);
}

double Picture::PixelsPerUnitY() const {
  return static_cast<float>(PixelsDown(state_.height)) / static_cast<double>(state_.scale_height);
}

double Picture::PixelsPerPoint() const {
  return kTwipsPerPoint / setting_.resolution.twips_per_pixel_y;
}

inline Pen Picture::PenOf(std::optional<Colour> colour) const {
  return {.pixel = PixelOf(colour.value_or(state_.fore_color)),
          .width = state_.draw_width,
          .visible = state_.draw_style != 5};
}

inline Brush Picture::BrushOf() const {
  return {.pixel = PixelOf(state_.fill_color), .visible = state_.fill_style == 0};
}

void Picture::Watch(std::function<void(PictureNews)> watcher) {
  watcher_ = std::move(watcher);
  MarkShown();
}

void Picture::Tell() {
  is_told_ = true;
  watcher_(PictureNews::Drawn);
}

void Picture::Cls() {
  Touch();
  canvas_.Clear(PixelOf(state_.back_color));
  if (background_) {
    // A resized copy leaves the rest of a grown surface to the background colour.
    Canvas copy = *background_;
    copy.Resize(canvas_.Width(), canvas_.Height(), PixelOf(state_.back_color));
    canvas_ = std::move(copy);
  }
  state_.current = {};
}

void Picture::Refresh() {
  if (watcher_) watcher_(PictureNews::Refresh);
}

void Picture::KeepImageAsPicture() { background_ = canvas_; }

void Picture::DrawLine(const LineCall& call) {
  Touch();
  const SurfacePoint from = call.from.value_or(state_.current);
  const PixelPoint a{Nearest(PixelX(from.x)), Nearest(PixelY(from.y))};
  const PixelPoint b{Nearest(PixelX(call.to.x)), Nearest(PixelY(call.to.y))};
  const Pen pen = PenOf(call.colour);
  switch (call.shape) {
    case LineShape::Line:
      canvas_.Line(a, b, pen);
      break;
    case LineShape::Box: {
      const std::array<PixelPoint, 4> corners = {{a, {b.x, a.y}, b, {a.x, b.y}}};
      canvas_.Polygon(corners, pen, {.visible = false});
      break;
    }
    case LineShape::FilledBox:
      canvas_.FillBox(
          {std::min(a.x, b.x), std::min(a.y, b.y), std::max(a.x, b.x), std::max(a.y, b.y)},
          pen.pixel);
      break;
  }
}

void Picture::Circle(const CircleCall& call) {
  Touch();
  const double x = PixelX(call.centre.x);
  const double y = PixelY(call.centre.y);
  const double across = call.radius * PixelsPerUnitX();
  const double down = across * call.aspect.value_or(1.0F);
  if (!(across >= 0) || !(down >= 0)) return;
  const PixelBox box{Nearest(x - across), Nearest(y - down), Nearest(x + across),
                     Nearest(y + down)};
  const Pen pen = PenOf(call.colour);
  if (!call.start || !call.end) return canvas_.Ellipse(box, pen, BrushOf());
  // Far out along the rays, so that rounding the points doesn't turn them.
  constexpr double kFarOut = 256;
  const auto along = [&](double angle) {
    return PixelPoint{Nearest(x + kFarOut * across * Cosine(angle)),
                      Nearest(y - kFarOut * down * Sine(angle))};
  };
  canvas_.Arc(box, along(*call.start), along(*call.end), pen);
}

void Picture::Polygon(std::span<const PixelPoint> points) {
  Touch();
  canvas_.Polygon(points, PenOf({}), BrushOf());
}

void Picture::FloodFill(PixelPoint start, Colour boundary) {
  Touch();
  canvas_.FloodFill(start, PixelOf(boundary), BrushOf());
}

void Picture::Print(std::string_view text) {
  Touch();
  setting_.text.Paint(canvas_, state_.font,
                      {.x = PixelX(state_.current.x),
                       .y = PixelY(state_.current.y),
                       .pixels_per_point = PixelsPerPoint(),
                       .colour = state_.fore_color},
                      text);
}

float Picture::TextWidth(std::string_view text) const {
  return static_cast<float>(setting_.text.Width(state_.font, PixelsPerPoint(), text) /
                            PixelsPerUnitX());
}

float Picture::TextHeight(std::string_view) const {
  return static_cast<float>(setting_.text.Height(state_.font, PixelsPerPoint()) / PixelsPerUnitY());
}

}  // namespace discoplan
