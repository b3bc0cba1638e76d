// SPDX-License-Identifier: MIT
#include "discoplan/figures/wafer_view.h"

#include <cmath>

namespace discoplan::figures {
namespace {

constexpr double kTurn = 6.283185307179586;
constexpr double kGap = 0.10;     // between the base and the lowest value
constexpr double kBeyond = 0.05;  // that splines leave the values' range by, in parts of it

}  // namespace

View::View(const Box& area, const Scale& scale, const Style& style)
    : scale_(scale),
      rotation_(style.rotation * kTurn / 360),
      elevation_(std::clamp(style.elevation, 10.0, 80.0) * kTurn / 360) {
  const double deep = 2 * std::sin(elevation_);
  // What the width leaves free goes to the height, within reason.
  const double free = 2 * area.Height() / area.Width() - deep;
  height_ = std::clamp(free / std::cos(elevation_) / (1 + kGap + kBeyond), 0.5, 0.85);
  const double up = height_ * (1 + kGap + kBeyond) * std::cos(elevation_);
  unit_ = std::min(area.Width() / 2, area.Height() / (deep + up));
  origin_ = {area.Centre().x, area.Centre().y + unit_ * up / 2};
}

double View::HeightOf(double value) const {
  return height_ * (kGap + std::clamp(scale_.Part(value), -kBeyond, 1 + kBeyond));
}

double View::Depth(Point p) const { return p.x * std::sin(rotation_) + p.y * std::cos(rotation_); }

Point View::At(Point p, double height) const {
  const double across = p.x * std::cos(rotation_) - p.y * std::sin(rotation_);
  return {origin_.x + unit_ * across,
          origin_.y - unit_ * (Depth(p) * std::sin(elevation_) + height * std::cos(elevation_))};
}

Point View::LeftMost() const { return {-std::cos(rotation_), std::sin(rotation_)}; }

void AddFace(Page& page, std::vector<Point> corners, Rgba colour, Stroke stroke) {
  Path path;
  path.Polygon(std::move(corners));
  page.Add(PathShape{.path = std::move(path), .fill = colour, .stroke = stroke});
}

Rgba Lit(Rgba colour, double light) {
  return light >= 0 ? Mix(colour, Rgb(0xFFFFFF), std::min(light, 0.35))
                    : Mix(colour, Rgb(0x000000), std::min(-light, 0.45));
}

void DrawBase(Page& page, const View& view, const WaferPlot& plot) {
  std::vector<Point> rim = RimPoints(plot, view.Unit());
  for (Point& p : rim) p = view.At(p * (2 / plot.diameter), 0);
  AddFace(page, std::move(rim), page.Ink().nothing, {1.2 * page.Hair(), page.Ink().rim});
}

void DrawHeightAxis(Page& page, const View& view, const Scale& scale, const Ticks& ticks,
                    const WaferPlot& plot) {
  const double em = page.Em();
  const Point foot = view.LeftMost();
  const double left = view.At(foot, 0).x - 0.7 * em;
  const auto y_of = [&](double value) { return view.At(foot, view.HeightOf(value)).y; };
  page.Line({left, y_of(scale.low)}, {left, y_of(scale.high)}, page.Ink().rim, page.Hair());
  double widest = 0;
  for (const double tick : ticks.values) {
    const std::string text = ticks.Text(tick);
    widest = std::max(widest, page.Width(text, 0.9 * em));
    page.Line({left - 0.3 * em, y_of(tick)}, {left, y_of(tick)}, page.Ink().rim, page.Hair());
    page.Put({.text = text, .size = 0.9 * em, .colour = page.Ink().text},
             {left - 0.5 * em, y_of(tick)}, Align::End);
  }
  const double room = y_of(scale.low) - y_of(scale.high) + 4 * em;
  page.Put({.text = page.ShortenedQuantity(QuantityText(plot), room, 0.9 * em),
            .size = 0.9 * em,
            .colour = page.Ink().soft,
            .angle = 90},
           {left - 1.4 * em - widest, y_of((scale.low + scale.high) / 2)}, Align::Middle);
}

double AxisRoom(const Page& page, const Ticks& ticks) {
  double widest = 0;
  for (const double tick : ticks.values) {
    widest = std::max(widest, page.Width(ticks.Text(tick), 0.9 * page.Em()));
  }
  return widest + 3 * page.Em();
}

}  // namespace discoplan::figures
