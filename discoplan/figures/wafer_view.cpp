// SPDX-License-Identifier: MIT
#include "discoplan/figures/wafer_view.h"

#include <cmath>

namespace discoplan::figures {
namespace {

constexpr double kTurn = 6.283185307179586;
constexpr double kGap = 0.10;     // between the base and the lowest value
constexpr double kBeyond = 0.05;  // that splines leave the values' range by, in parts of it
constexpr double kLowest = 0.5;   // of the whole range of values, in parts of the radius
constexpr double kHighest = 0.85;

double ElevationOf(const Style& style) {
  return std::clamp(style.elevation, 10.0, 80.0) * kTurn / 360;
}

}  // namespace

View::View(const Box& area, const Scale& scale, const Style& style, double reach)
    : scale_(scale),
      rotation_(style.rotation * kTurn / 360),
      elevation_(ElevationOf(style)),
      reach_(reach) {
  const double deep = 2 * reach * std::sin(elevation_);
  // What the width leaves free goes to the height, within reason.
  const double free = 2 * reach * area.Height() / area.Width() - deep;
  height_ = std::clamp(free / std::cos(elevation_) / (1 + kGap + kBeyond), kLowest, kHighest);
  const double up = height_ * (1 + kGap + kBeyond) * std::cos(elevation_);
  unit_ = std::min(area.Width() / (2 * reach), area.Height() / (deep + up));
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

Point View::LeftMost() const {
  return {-reach_ * std::cos(rotation_), reach_ * std::sin(rotation_)};
}

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

void HatchBase(Page& page, const View& view, const WaferPlot& plot) {
  const std::vector<Point> border = TestAreaPoints(plot, view.Unit());
  const double pitch = 0.75 * page.Em() / view.Unit() * plot.diameter / 2;
  const Point along = {std::sqrt(0.5), std::sqrt(0.5)};
  const Point across = {-along.y, along.x};
  const auto lines = static_cast<int>(plot.diameter / 2 / pitch);
  Path hatching;
  for (int line = -lines; line <= lines; ++line) {
    const Point start = across * (line * pitch);
    // The border is convex and goes counter-clockwise: each of its sides cuts off what is beyond.
    double from = -plot.diameter;
    double to = plot.diameter;
    for (std::size_t i = 0; i < border.size(); ++i) {
      const Point a = border[i];
      const Point side = border[(i + 1) % border.size()] - a;
      if (std::hypot(side.x, side.y) < 1e-6 * plot.diameter) continue;
      const Point off = start - a;
      const double inside = side.x * off.y - side.y * off.x;
      const double speed = side.x * along.y - side.y * along.x;
      if (speed > 0) from = std::max(from, -inside / speed);
      if (speed < 0) to = std::min(to, -inside / speed);
      if (speed == 0 && inside < 0) to = from;
    }
    if (from >= to) continue;
    const auto on_page = [&](double at) {
      return view.At((start + along * at) * (2 / plot.diameter), 0);
    };
    hatching.Line({on_page(from), on_page(to)});
  }
  page.Add(PathShape{.path = std::move(hatching), .stroke = {1.2 * page.Hair(), page.Ink().hatch}});
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

void GatherView(Page& page, const Style& style, double beside) {
  if (!style.legend) return;
  const double elevation = ElevationOf(style);
  const auto tall = [elevation](double height) {
    return std::sin(elevation) + height * (1 + kGap + kBeyond) * std::cos(elevation) / 2;
  };
  const Box free = page.Free();
  page.Narrow(free.Height() / tall(kLowest) + beside, (free.Width() - beside) * tall(kHighest));
}

double AxisRoom(const Page& page, const Ticks& ticks) {
  double widest = 0;
  for (const double tick : ticks.values) {
    widest = std::max(widest, page.Width(ticks.Text(tick), 0.9 * page.Em()));
  }
  return widest + 3 * page.Em();
}

}  // namespace discoplan::figures
