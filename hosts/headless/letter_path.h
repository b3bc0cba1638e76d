// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cmath>

#include "hosts/headless/freetype_text.h"
#include "hosts/headless/pixel_path.h"

namespace discoplan {

/// Outlines of letters at their place, in pixels. The pieces of a curve leave it by a sixteenth of
/// a pixel at most, along either side, as those of FreeType's own pictures do.
class LetterPath final : public OutlineSink {
  using Point = figures::Point;

 public:
  LetterPath(PixelPath& path, Point start, double size, double angle)
      : path_(path), start_(start), c_(std::cos(angle) * size), s_(std::sin(angle) * size) {}

  void MoveTo(double x, double y) override {
    path_.Close();
    last_ = At(x, y);
    path_.MoveTo(last_);
  }
  void LineTo(double x, double y) override {
    last_ = At(x, y);
    path_.LineTo(last_);
  }
  void CurveTo(double control_x, double control_y, double x, double y) override {
    const Point control = At(control_x, control_y);
    const Point to = At(x, y);
    const Point from = last_;
    LinesTo(to, from - control * 2 + to, [&](double t) {
      return from * ((1 - t) * (1 - t)) + control * (2 * t * (1 - t)) + to * (t * t);
    });
  }
  void CubicTo(double x1, double y1, double x2, double y2, double x, double y) override {
    const Point a = At(x1, y1);
    const Point b = At(x2, y2);
    const Point to = At(x, y);
    const Point from = last_;
    const Point first = from - a * 2 + b;
    const Point second = a - b * 2 + to;
    const Point bend = {std::max(std::abs(first.x), std::abs(second.x)),
                        std::max(std::abs(first.y), std::abs(second.y))};
    LinesTo(to, bend * 3, [&](double t) {
      const double u = 1 - t;
      return from * (u * u * u) + a * (3 * u * u * t) + b * (3 * u * t * t) + to * (t * t * t);
    });
  }

 private:
  Point At(double x, double y) const {
    return {start_.x + c_ * x - s_ * y, start_.y - s_ * x - c_ * y};
  }

  /// A curve's second differences, over one step, are four times what its chord leaves it by, and
  /// a quarter with every halving.
  template <class Curve>
  void LinesTo(Point to, Point bend, const Curve& curve) {
    constexpr double kMost = 4 / 16.0;
    constexpr int kMostSteps = 64;
    const double most = std::max(std::abs(bend.x), std::abs(bend.y));
    int steps = 1;
    while (steps * steps * kMost < most && steps < kMostSteps) ++steps;
    for (int i = 1; i < steps; ++i) path_.LineTo(curve(static_cast<double>(i) / steps));
    path_.LineTo(to);
    last_ = to;
  }

  PixelPath& path_;
  Point start_;
  double c_;
  double s_;
  Point last_;
};

}  // namespace discoplan
