// SPDX-License-Identifier: MIT
#include "discoplan/figures/colour_map.h"

#include <gtest/gtest.h>

#include <cmath>

namespace discoplan::figures {
namespace {

using Triple = std::array<double, 3>;
using Matrix3 = std::array<Triple, 3>;

constexpr Matrix3 kNormal = {{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};
// G. M. Machado, M. M. Oliveira, L. A. F. Fernandes (2009), of full severity, on linear light.
constexpr Matrix3 kProtanope = {{{0.152286, 1.052583, -0.204868},
                                 {0.114503, 0.786281, 0.099216},
                                 {-0.003882, -0.048116, 1.051998}}};
constexpr Matrix3 kDeuteranope = {{{0.367322, 0.860646, -0.227968},
                                   {0.280085, 0.672501, 0.047413},
                                   {-0.011820, 0.042940, 0.968881}}};
constexpr Matrix3 kGrey = {
    {{0.2126, 0.7152, 0.0722}, {0.2126, 0.7152, 0.0722}, {0.2126, 0.7152, 0.0722}}};

double Linear(std::uint8_t part) {
  const double v = part / 255.0;
  return v <= 0.04045 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4);
}

Triple Times(const Matrix3& m, const Triple& v) {
  Triple product = {};
  for (std::size_t i = 0; i < 3; ++i) {
    for (std::size_t k = 0; k < 3; ++k) product[i] += m[i][k] * v[k];
  }
  return product;
}

/// CIE L*a*b* of D65, as the eye sees it.
Triple Lab(Rgba colour, const Matrix3& sight) {
  constexpr Matrix3 kToXyz = {
      {{0.4124, 0.3576, 0.1805}, {0.2126, 0.7152, 0.0722}, {0.0193, 0.1192, 0.9505}}};
  Triple light = Times(sight, {Linear(colour.red), Linear(colour.green), Linear(colour.blue)});
  for (double& part : light) part = std::clamp(part, 0.0, 1.0);
  const Triple xyz = Times(kToXyz, light);
  const auto f = [](double t) { return t > 0.008856 ? std::cbrt(t) : 7.787 * t + 16.0 / 116; };
  const double x = f(xyz[0] / 0.9505);
  const double y = f(xyz[1]);
  const double z = f(xyz[2] / 1.089);
  return {116 * y - 16, 500 * (x - y), 200 * (y - z)};
}

double LeastStep(std::string_view name, int bands, const Matrix3& sight) {
  const std::vector<Rgba> colours = BandColours(*FindColourMap(name), bands);
  double least = 1e9;
  for (std::size_t i = 1; i < colours.size(); ++i) {
    const Triple a = Lab(colours[i - 1], sight);
    const Triple b = Lab(colours[i], sight);
    least = std::min(least, std::hypot(a[0] - b[0], a[1] - b[1], a[2] - b[2]));
  }
  return least;
}

// A difference of 2.3 is the least that is noticed.
TEST(ColourMap, NeighbouringBandsStayApartForAllReaders) {
  for (const char* name : {"viridis", "cividis", "magma", "inferno", "plasma", "batlow", "grey",
                           "viridis_r", "grey_r"}) {
    for (const int bands : {6, 10, 12}) {
      EXPECT_GT(LeastStep(name, bands, kNormal), 4.6) << name << bands;
      EXPECT_GT(LeastStep(name, bands, kProtanope), 4) << name << bands;
      EXPECT_GT(LeastStep(name, bands, kDeuteranope), 4) << name << bands;
      EXPECT_GT(LeastStep(name, bands, kGrey), 2.3) << name << bands;
    }
  }
  // Both arms of a diverging map are equally dark: grey tells the distance from the middle alone.
  for (const char* name : {"vik", "roma"}) {
    for (const int bands : {5, 9, 11}) {
      EXPECT_GT(LeastStep(name, bands, kNormal), 4.6) << name << bands;
      EXPECT_GT(LeastStep(name, bands, kProtanope), 4) << name << bands;
      EXPECT_GT(LeastStep(name, bands, kDeuteranope), 4) << name << bands;
    }
  }
}

// Why the modern look has other colours than the classic one.
TEST(ColourMap, TheClassicTenAreNotToldApartInGrey) {
  EXPECT_LT(LeastStep("classic", 10, kGrey), 2.3);
}

TEST(ColourMap, IsFoundByNameAndReversed) {
  EXPECT_EQ(FindColourMap("viridis")->At(0), Rgb(0x440154));
  EXPECT_EQ(FindColourMap("viridis")->At(1), Rgb(0xFDE725));
  EXPECT_EQ(FindColourMap("viridis_r")->At(0), Rgb(0xFDE725));
  EXPECT_EQ(FindColourMap("viridis")->At(NAN), Rgb(0x440154));
  EXPECT_TRUE(FindColourMap("vik")->IsDiverging());
  EXPECT_FALSE(FindColourMap("jet"));
  EXPECT_EQ(FindColourMap("classic")->At(0.95), Rgb(0x800000));
}

}  // namespace
}  // namespace discoplan::figures
