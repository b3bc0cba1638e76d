// SPDX-License-Identifier: MIT
#include "discoplan/dialogs/previews.h"

#include <array>

#include "discoplan/base/angles.h"
#include "discoplan/base/numbers.h"
#include "discoplan/core/enumerations.h"

namespace discoplan {

void ShowWaferPreview(const wafer& source, Surface& picture, float rotation) {
  float centre_x = 34;
  float centre_y = 34;
  source.FlatNotchShow(nullptr, picture, centre_x, centre_y, 30, rotation, 90);
}

std::vector<OptionGroup::Option> SurfaceStyles() {
  return {{"Polys + Edge", PlotTypeEnum::PolyEdge},
          {"Hidden Wireframe", PlotTypeEnum::HiddenWireFrame},
          {"Wireframe", PlotTypeEnum::WireFrame}};
}

void DrawSurfaceStyle(Surface& picture, int style) {
  constexpr int kCells = 4;
  picture.Cls();
  picture.ForeColor(kBlack);
  const double width = picture.ScaleWidth();
  const double height = picture.ScaleHeight();
  const auto corner = [&](int column, int row) {
    const double u = (column - row) / (2.0 * kCells);
    const double v = (column + row) / (2.0 * kCells);
    const double hill = Cosine(4 * u) * Sine(3.1 * v) * 0.3;
    return PixelPoint{ToInt32(width * (0.5 + 0.9 * u)), ToInt32(height * (0.35 + 0.55 * v - hill))};
  };
  for (int row = 0; row < kCells; ++row) {
    for (int column = 0; column < kCells; ++column) {
      picture.FillStyle(style == 3 ? 1 : 0);
      picture.FillColor(style == 1 ? kPalette[9 + (row + column) % 4] : kWhite);
      picture.Polygon(std::array<PixelPoint, 4>{corner(column, row), corner(column + 1, row),
                                                corner(column + 1, row + 1),
                                                corner(column, row + 1)});
    }
  }
}

void DrawHistogramSide(Surface& picture, int side) {
  constexpr std::array kCounts = {0.3, 0.9, 0.6, 0.2};
  picture.Cls();
  const bool upright = side == 3 || side == 4;
  const bool reversed = side == 2 || side == 4;
  const double length = (upright ? picture.ScaleHeight() : picture.ScaleWidth()) - 3.0;
  const double depth = (upright ? picture.ScaleWidth() : picture.ScaleHeight()) - 3.0;
  for (std::size_t i = 0; i < kCounts.size(); ++i) {
    const double from = 1 + length * static_cast<double>(i) / kCounts.size();
    const double to = 1 + length * static_cast<double>(i + 1) / kCounts.size();
    const bool grows_from_zero = upright != reversed;
    const double base = grows_from_zero ? 1 : 1 + depth;
    const double tip = grows_from_zero ? 1 + depth * kCounts[i] : 1 + depth * (1 - kCounts[i]);
    const auto point = [&](double along, double across) {
      return upright ? SurfacePoint{ToFloat(across), ToFloat(along)}
                     : SurfacePoint{ToFloat(along), ToFloat(across)};
    };
    picture.Line({.from = point(from, base),
                  .to = point(to, tip),
                  .colour = kPalette[2],
                  .shape = LineShape::FilledBox});
    picture.Line({.from = point(from, base),
                  .to = point(to, tip),
                  .colour = kBlack,
                  .shape = LineShape::Box});
  }
}

void DrawMarkerCross(Surface& picture, Colour colour) {
  const float right = picture.ScaleWidth();
  const float bottom = picture.ScaleHeight();
  picture.Cls();
  picture.Line({.from = SurfacePoint{0, 0}, .to = {right, bottom}, .colour = colour});
  picture.Line({.from = SurfacePoint{right - 1, 0}, .to = {-1, bottom}, .colour = colour});
}

}  // namespace discoplan
