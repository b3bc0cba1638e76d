// SPDX-License-Identifier: MIT
#include "discoplan/render/orientation_patches.h"
#include "discoplan/base/angles.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "discoplan/base/numbers.h"

namespace discoplan {
namespace {

constexpr int kHalf = 5;

}  // namespace

void DrawOrientationPatches(Surface& surface, float rotation, float inclination) {
  surface.ForeColor(kBlack);
  surface.BackColor(kWhite);
  surface.Cls();
  const double cosine = Cosine(Radians(rotation));
  const double sine = Sine(Radians(rotation));
  const double tilt = Sine(Radians(inclination));
  // The corners of the turned board touch the picture's edges.
  const double side = std::min(surface.ScaleWidth(), surface.ScaleHeight()) - 2.0;
  const double step = side / (2 * kHalf * std::sqrt(2.0));
  const auto corner = [&](int column, int row) {
    const double x = (column - kHalf) * step;
    const double y = (row - kHalf) * step;
    return PixelPoint{ToInt32(surface.ScaleWidth() / 2.0 + x * cosine + y * sine),
                      ToInt32(surface.ScaleHeight() / 2.0 + (y * cosine - x * sine) * tilt)};
  };
  surface.FillStyle(0);
  for (int row = 0; row < 2 * kHalf; ++row) {
    for (int column = 0; column < 2 * kHalf; ++column) {
      const bool is_last = row == 2 * kHalf - 1 && column == 2 * kHalf - 1;
      surface.FillColor(is_last ? kPalette[4] : kWhite);
      surface.Polygon(std::array<PixelPoint, 4>{corner(column, row), corner(column + 1, row),
                                                corner(column + 1, row + 1),
                                                corner(column, row + 1)});
    }
  }
}

}  // namespace discoplan
