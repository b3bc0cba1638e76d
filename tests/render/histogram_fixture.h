// SPDX-License-Identifier: MIT
#pragma once

/// Histograms of few sites on recording surfaces, and what of a trace tests ask for.

#include <cmath>

#include "discoplan/render/control_limits.h"
#include "discoplan/render/plots/histogram_plot.h"
#include "tests/render/plot_fixture.h"

namespace discoplan {

using nlohmann::json;

inline constexpr std::int16_t kBottom = 1, kTop = 2, kLeft = 3, kRight = 4;
inline constexpr std::int16_t kAllTypes[] = {kBottom, kTop, kLeft, kRight};
inline constexpr int kDarkBlue = 0x800000;
inline constexpr int kCurve = 0x000080;
inline constexpr int kBeam = 0x008000;

/// The chart of a bar surface of 301 x 241 pixels at (60, 20).
inline constexpr HistogramChart kScreen = {
    .left = 60, .top = 20, .width = 300, .height = 240, .bins = 2};

struct Text {
  std::string text;
  double x, y;
};

inline std::vector<Text> TextsOf(const json& trace) {
  std::vector<Text> texts;
  double x = 0, y = 0;
  for (const auto& call : trace) {
    if (call[0] == "CurrentX") x = call[1];
    if (call[0] == "CurrentY") y = call[1];
    if (call[0] == "Print") texts.push_back({call[1], x, y});
  }
  return texts;
}

inline void ExpectTexts(const json& trace, const std::vector<Text>& expected) {
  const std::vector<Text> texts = TextsOf(trace);
  ASSERT_EQ(texts.size(), expected.size()) << trace;
  for (std::size_t i = 0; i < texts.size(); ++i) {
    EXPECT_EQ(texts[i].text, expected[i].text);
    EXPECT_NEAR(texts[i].x, expected[i].x, 1e-3) << texts[i].text;
    EXPECT_NEAR(texts[i].y, expected[i].y, 1e-3) << texts[i].text;
  }
}

/// Coordinates of the lines of that shape and colour.
inline std::vector<json> Lines(const json& trace, const std::string& shape, int colour) {
  std::vector<json> lines;
  for (const auto& call : trace) {
    if (call[0] == "Line" && call[6] == shape && call[5] == colour) {
      lines.push_back({call[1], call[2], call[3], call[4]});
    }
  }
  return lines;
}

inline double Bell(double z) { return std::exp(-z * z / 2) / std::sqrt(2 * 3.14159265358979); }

/// The bell's height in sites, for a bin width in standard deviations.
inline double BellPeak(double bin_width, double sites) {
  double sum = 0;
  for (int k = 0; k <= 10; ++k) sum += Bell(k * bin_width / 20);
  return sum * 2 * (bin_width / 20) * sites / 0.4;
}

class Histogram : public PlotFixture {
 protected:
  void TearDown() override { ThreadControlLimits() = {}; }

  static wafer WaferOf(const std::vector<float>& values) {
    std::vector<Site> sites;
    for (const float z : values) sites.push_back({static_cast<float>(sites.size()), 0, z});
    return LoadedWafer(sites);
  }

  /// Two bins of one and three sites; mean 5, standard deviation the root of 50 / 3.
  static wafer FourSites() { return WaferOf({0, 5, 5, 10}); }

  struct Drawing {
    json bars, axes;
  };

  Drawing Draw(wafer& source, std::int16_t type, const HistogramChart& chart = kScreen) {
    const auto bars = NewPicture(301, 241);
    const auto axes = NewPicture(420, 300);
    source.Statistic(type, *bars, *axes, chart);
    return {bars->TakeTrace(), axes->TakeTrace()};
  }
};

}  // namespace discoplan
