// SPDX-License-Identifier: MIT
#pragma once

/// Maps by their rules told plainly, to hold those of the library against.

#include <cmath>
#include <optional>

#include "tests/render/plot_fixture.h"

namespace discoplan {

inline constexpr std::int16_t kIntervals = 5;
inline constexpr std::int16_t kSigma = 4;

/// Painted cells as (colour, corners), by the rules of the map told plainly: every corner of every
/// cell is asked for anew, nothing is carried from cell to cell.
struct PlainMap {
  const wafer& source;
  double n = 0, cell = 0, scale = 0, centre_x = 0, centre_y = 0, high = 0, low = 0, floor = 0;
  float flat_y = 0;
  std::int16_t kind = 0;
  float sigma_range = 0;

  double At(int i) const { return (n - i) * cell; }

  float Height(double value) const {
    return static_cast<float>((value - floor) * scale / (high - floor));
  }

  float Corner(int i, int j) const {
    const double x = At(i);
    const double y = At(j);
    const double radius = source.TestDiameter / 2.0;
    const bool inside = j == 0 ? x * x + y * y < radius * radius : x * x + y * y <= radius * radius;
    return inside && y > flat_y ? Beyond(i, j) : 0;
  }

  float Beyond(int i, int j) const {
    return Height(source.Interpolation(static_cast<float>(At(i)), static_cast<float>(At(j))));
  }

  nlohmann::json Corners(int i, int j) const {
    nlohmann::json list = nlohmann::json::array();
    for (const auto& [di, dj] : {std::pair{0, 0}, {1, 0}, {1, 1}, {0, 1}}) {
      list.push_back({std::nearbyint(centre_x + scale * At(i + di)),
                      std::nearbyint(centre_y - scale * At(j + dj))});
    }
    return list;
  }

  float Colour(float z) const {
    if (kind == kIntervals) {
      if (high == low) return source.IntervalColor[5];
      const double step = scale * (1 - 0.1 * (high - low) / (high - floor)) / 10;
      for (std::size_t k = 1; k <= 9; ++k) {
        if (z >= scale - static_cast<double>(k) * step) return source.IntervalColor[k - 1];
      }
      return source.IntervalColor[9];
    }
    const auto height = [&](double value) { return (value - floor) * scale / (high - floor); };
    if (source.Maximum == source.Minimum) return source.AuxColor[1];
    if (z < height(source.mean - sigma_range * source.StdDev)) return source.AuxColor[2];
    if (z > height(source.mean + sigma_range * source.StdDev)) return source.AuxColor[0];
    return source.AuxColor[1];
  }

  /// The colour of a painted cell.
  std::optional<float> Painted(int i, int j) const {
    float z[4];
    int off = 0;
    for (int k = 0; k < 4; ++k) {
      z[k] = Corner(i + k % 2, j + k / 2);
      off += z[k] == 0;
    }
    for (int k = 0; k < 4 && (off == 1 || off == 2); ++k) {
      if (z[k] == 0) z[k] = Beyond(i + k % 2, j + k / 2);
    }
    const auto mean = static_cast<float>((double{z[0]} + z[1] + z[2] + z[3]) / 4);
    if (mean == 0 || off > 2 || Colour(mean) == 15) return {};
    return Colour(mean);
  }

  std::vector<std::pair<double, nlohmann::json>> Cells() const {
    std::vector<std::pair<double, nlohmann::json>> cells;
    const int side = static_cast<int>(2 * n);
    for (int j = 0; j < side; ++j) {
      for (int i = 0; i < side; ++i) {
        if (const auto colour = Painted(i, j)) cells.emplace_back(*colour, Corners(i, j));
      }
    }
    return cells;
  }

  /// All calls of the map itself, in order.
  nlohmann::json Trace(bool refreshes) const {
    nlohmann::json calls = nlohmann::json::array({{"FillColor", 0xFFFFFF}});
    calls.push_back({"Circle", centre_x, centre_y, scale * source.TestDiameter / 2, 0xFFFFFF,
                     nullptr, nullptr, nullptr});
    const int side = static_cast<int>(2 * n);
    for (int j = 0; j < side; ++j) {
      for (int i = 0; i < side; ++i) {
        calls.push_back({"DrawStyle", 5});
        const auto colour = Painted(i, j);
        if (!colour) continue;
        calls.push_back({"FillColor", *colour});
        calls.push_back({"FillStyle", 0});
        calls.push_back(nlohmann::json::array({"Polygon", Corners(i, j)}));
      }
      if (refreshes) calls.push_back(nlohmann::json::array({"Refresh"}));
    }
    if (refreshes) calls.push_back(nlohmann::json::array({"Refresh"}));
    return calls;
  }
};

inline std::vector<std::pair<double, nlohmann::json>> PaintedCells(const nlohmann::json& trace) {
  std::vector<std::pair<double, nlohmann::json>> cells;
  double fill = -1;
  for (const nlohmann::json& call : trace) {
    if (call[0] == "FillColor") fill = call[1];
    if (call[0] == "Polygon") cells.emplace_back(fill, call[1]);
  }
  return cells;
}

inline double MapFloor(double high, double low) {
  if (high != low) return static_cast<float>(low - 0.1 * (high - low));
  return static_cast<float>(low * (low < 0 ? 1.1 : 0.9) - 0.001);
}

}  // namespace discoplan
