// SPDX-License-Identifier: MIT
#include "hosts/activex/device_drawing.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "discoplan/base/numbers.h"
#include "hosts/activex/gdi_text.h"

namespace discoplan::activex {
namespace {

constexpr std::int16_t kNoOutline = 5;
constexpr double kPointsPerInch = 72;

/// Something of the device's for the time of a call.
class Selected {
 public:
  Selected(HDC device, HGDIOBJ object)
      : device_(device), object_(object), before_(SelectObject(device, object)) {}
  ~Selected() {
    SelectObject(device_, before_);
    DeleteObject(object_);  // which leaves the system's own ones alone
  }
  Selected(const Selected&) = delete;
  Selected& operator=(const Selected&) = delete;

 private:
  HDC device_;
  HGDIOBJ object_;
  HGDIOBJ before_;
};

HGDIOBJ PenOf(const Surface& state, Colour colour) {
  return state.DrawStyle() == kNoOutline ? CreatePen(PS_NULL, 0, 0)
                                         : CreatePen(PS_SOLID, state.DrawWidth(), colour);
}

HGDIOBJ BrushOf(const Surface& state) {
  return state.FillStyle() == 0 ? CreateSolidBrush(state.FillColor()) : GetStockObject(NULL_BRUSH);
}

int Whole(double pixels) {
  constexpr double kFarthest = 1 << 26;  // which devices of the system can still count to
  return static_cast<int>(RoundHalfEven(std::clamp(pixels, -kFarthest, kFarthest)));
}

POINT PointOf(const Surface& state, DeviceScale scale, SurfacePoint point) {
  return {Whole((static_cast<double>(point.x) - static_cast<double>(state.ScaleLeft())) * scale.x),
          Whole((static_cast<double>(point.y) - static_cast<double>(state.ScaleTop())) * scale.y)};
}

}  // namespace

void PolygonOn(HDC device, const Surface& state, std::span<const PixelPoint> points) {
  const Selected pen(device, PenOf(state, state.ForeColor()));
  const Selected brush(device, BrushOf(state));
  std::vector<POINT> corners;
  for (const PixelPoint& point : points) corners.push_back({point.x, point.y});
  Polygon(device, corners.data(), static_cast<int>(corners.size()));
}

void FloodFillOn(HDC device, const Surface& state, PixelPoint start, Colour boundary) {
  const Selected brush(device, BrushOf(state));
  ExtFloodFill(device, start.x, start.y, boundary, FLOODFILLBORDER);
}

void LineOn(HDC device, const Surface& state, DeviceScale scale, const LineCall& call) {
  const Colour colour = call.colour.value_or(state.ForeColor());
  const POINT from = PointOf(state, scale, *call.from);
  const POINT to = PointOf(state, scale, call.to);
  if (call.shape == LineShape::Line) {
    const Selected pen(device, PenOf(state, colour));
    MoveToEx(device, from.x, from.y, nullptr);
    LineTo(device, to.x, to.y);
    return;
  }
  const bool filled = call.shape == LineShape::FilledBox;
  // Both corners belong to it, also where a filled box is as thin as a line.
  const Selected pen(device, filled ? CreatePen(PS_SOLID, 1, colour) : PenOf(state, colour));
  const Selected brush(device, filled ? CreateSolidBrush(colour) : BrushOf(state));
  Rectangle(device, std::min(from.x, to.x), std::min(from.y, to.y), std::max(from.x, to.x) + 1,
            std::max(from.y, to.y) + 1);
}

void CircleOn(HDC device, const Surface& state, DeviceScale scale, const CircleCall& call) {
  const POINT centre = PointOf(state, scale, call.centre);
  const double radius = static_cast<double>(call.radius);
  const double across = radius * scale.x;
  const double down = radius * static_cast<double>(call.aspect.value_or(1.0F)) * scale.y;
  const RECT box{centre.x - Whole(across), centre.y - Whole(down), centre.x + Whole(across) + 1,
                 centre.y + Whole(down) + 1};
  const Selected pen(device, PenOf(state, call.colour.value_or(state.ForeColor())));
  if (!call.start || !call.end) {
    const Selected brush(device, BrushOf(state));
    Ellipse(device, box.left, box.top, box.right, box.bottom);
    return;
  }
  const auto at = [&](float angle) {
    return POINT{centre.x + Whole(across * std::cos(static_cast<double>(angle))),
                 centre.y - Whole(down * std::sin(static_cast<double>(angle)))};
  };
  const POINT first = at(*call.start);
  const POINT last = at(*call.end);
  Arc(device, box.left, box.top, box.right, box.bottom, first.x, first.y, last.x, last.y);
}

void TextOn(HDC device, const Surface& state, DeviceScale scale, std::string_view text) {
  const double pixels_per_point = GetDeviceCaps(device, LOGPIXELSY) / kPointsPerInch;
  const Selected font(device, NewFont(state.Font(), pixels_per_point));
  const std::wstring letters = LettersOf(state.Font(), text);
  const POINT place = PointOf(state, scale, {state.CurrentX(), state.CurrentY()});
  const COLORREF colour = SetTextColor(device, state.ForeColor());
  const int mode = SetBkMode(device, state.FontTransparent() ? TRANSPARENT : OPAQUE);
  const UINT align = SetTextAlign(device, TA_LEFT | TA_TOP | TA_NOUPDATECP);
  TextOutW(device, place.x, place.y, letters.c_str(), static_cast<int>(letters.size()));
  SetTextAlign(device, align);
  SetBkMode(device, mode);
  SetTextColor(device, colour);
}

}  // namespace discoplan::activex
