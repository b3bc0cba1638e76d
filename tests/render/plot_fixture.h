// SPDX-License-Identifier: MIT
#pragma once

/// Wafers and recording surfaces for the tests of plots.

#include <gtest/gtest.h>

#include <cmath>
#include <nlohmann/json.hpp>
#include <random>

#include "discoplan/core/wafer.h"
#include "discoplan/render/plot_area.h"
#include "hosts/recording/recording_host.h"

namespace discoplan {

inline wafer LoadedWafer(const std::vector<Site>& sites, float diameter = 200,
                         float test_diameter = 200) {
  wafer target;
  target.WaferDiameter = diameter;
  target.TestDiameter = test_diameter;
  target.FlatRatio = 1;
  if (sites.empty()) return target;
  target.SetNop(static_cast<float>(sites.size()));
  for (const Site& site : sites) target.SetGridValue(site.x, site.y, site.z);
  target.MaxMin();
  return target;
}

inline std::vector<Site> FiveSites() {
  return {{0, 0, 10}, {50, 0, 12}, {0, 50, 14}, {-50, 0, 16}, {0, -50, 18}};
}

/// Within 97 mm of the centre, with values around 50.
inline std::vector<Site> RandomSites(unsigned seed, std::size_t count) {
  std::mt19937 random(seed);
  std::uniform_real_distribution<float> along(-95, 95);
  std::normal_distribution<float> value(50, 7);
  std::vector<Site> sites;
  while (sites.size() < count) {
    const Site site{along(random), along(random), value(random)};
    if (std::hypot(site.x, site.y) < 97) sites.push_back(site);
  }
  return sites;
}

inline Pixel PixelAt(const Picture& picture, int x, int y) {
  const Canvas& canvas = picture.canvas();
  return canvas.Pixels()[static_cast<std::size_t>(y * canvas.Width() + x)];
}

/// A picture that is so many pixels wide and high, and a printer of so many twips.
class PlotFixture : public testing::Test {
 protected:
  std::unique_ptr<Recording<Picture>> NewPicture(float pixels_across, float pixels_down) {
    return std::make_unique<Recording<Picture>>(
        Picture::Setting{
            .screen = host_.screen(), .resolution = host_.screen(), .text = host_.text()},
        pixels_across * 15, pixels_down * 15);
  }
  std::unique_ptr<Recording<Paper>> NewPaper(float twips_per_pixel_x, float twips_per_pixel_y) {
    return std::make_unique<Recording<Paper>>(
        host_.screen(), Screen{twips_per_pixel_x, twips_per_pixel_y}, 12000.0F, 16000.0F);
  }

  /// The calls of that name, in order.
  static std::vector<nlohmann::json> Calls(const nlohmann::json& trace, const std::string& name) {
    std::vector<nlohmann::json> calls;
    for (const auto& call : trace) {
      if (call[0] == name) calls.push_back(call);
    }
    return calls;
  }

  RecordingHost host_;
};

}  // namespace discoplan
