// SPDX-License-Identifier: MIT
#pragma once

/// Wafers and a peer to measure against, the same in all benchmarks.

#include <array>
#include <cmath>
#include <cstdint>
#include <nanoflann.hpp>
#include <random>
#include <vector>

#include "discoplan/core/wafer.h"
#include "discoplan/render/plot_area.h"

namespace discoplan::bench {

inline constexpr float kDiameter = 200;
inline constexpr float kTestDiameter = 194;

/// Sites spread evenly and at random over the wafer, from a fixed seed.
inline std::vector<Site> RandomSites(int count) {
  std::mt19937 random(20260101);
  std::uniform_real_distribution<float> along(-kDiameter / 2, kDiameter / 2);
  std::normal_distribution<float> noise(0, 1);
  std::vector<Site> sites;
  while (static_cast<int>(sites.size()) < count) {
    const float x = along(random);
    const float y = along(random);
    if (std::hypot(x, y) > kDiameter / 2) continue;
    sites.push_back({x, y, 100 + 0.1F * x - 0.001F * y * y + noise(random)});
  }
  return sites;
}

/// Dies of a square pitch in mm, on a lattice around the wafer's centre.
inline std::vector<Site> DieSites(float pitch) {
  std::mt19937 random(20260101);
  std::normal_distribution<float> value(100, 5);
  std::vector<Site> sites;
  const int half = static_cast<int>(kDiameter / 2 / pitch);
  for (int j = -half; j <= half; ++j) {
    for (int i = -half; i <= half; ++i) {
      const float x = pitch * static_cast<float>(i);
      const float y = pitch * static_cast<float>(j);
      if (std::hypot(x, y) <= 97) sites.push_back({x, y, value(random)});
    }
  }
  return sites;
}

inline void Load(wafer& target, const std::vector<Site>& sites) {
  target.WaferDiameter = kDiameter;
  target.TestDiameter = kTestDiameter;
  target.FlatRatio = 1;
  target.reset();
  target.SetNop(static_cast<float>(sites.size()));
  for (const Site& site : sites) target.SetGridValue(site.x, site.y, site.z);
  target.MaxMin();
}

inline constexpr std::size_t kLatticeColumns = 201;

/// A lattice of 200 x 200 cells, `pitch` mm wide, row after row. Points outside the test circle
/// have an X that isn't a number.
inline std::vector<Site> WholeLattice(float pitch = 0.97F) {
  std::vector<Site> points;
  for (int j = -100; j <= 100; ++j) {
    for (int i = -100; i <= 100; ++i) {
      const float x = static_cast<float>(i) * pitch;
      const float y = static_cast<float>(j) * pitch;
      points.push_back({std::hypot(x, y) <= 97 ? x : std::nanf(""), y, 0});
    }
  }
  return points;
}

/// The points of that lattice in the test circle alone.
inline std::vector<Site> LatticePoints(float pitch = 0.97F) {
  std::vector<Site> points = WholeLattice(pitch);
  std::erase_if(points, [](const Site& point) { return std::isnan(point.x); });
  return points;
}

/// The four nearest sites by nanoflann with the same weighting.
class NanoflannWafer {
 public:
  explicit NanoflannWafer(const std::vector<Site>& sites)
      : cloud_{sites}, tree_(2, cloud_, nanoflann::KDTreeSingleIndexAdaptorParams(10)) {
    tree_.buildIndex();
  }

  using Four = std::array<std::uint32_t, 4>;
  struct Found {
    Four site;
    std::array<float, 4> square;
  };

  Found Nearest(float x, float y) const {
    const float query[2] = {x, y};
    Found found;
    tree_.knnSearch(query, 4, found.site.data(), found.square.data());
    return found;
  }

  float Interpolation(float x, float y) const {
    const Found found = Nearest(x, y);
    if (found.square[0] == 0) return cloud_.sites[found.site[0]].z;
    double numerator = 0;
    double denominator = 0;
    for (std::size_t i = 0; i < 4; ++i) {
      const double square = found.square[i];
      numerator += cloud_.sites[found.site[i]].z / square;
      denominator += 1 / square;
    }
    return static_cast<float>(numerator / denominator);
  }

 private:
  struct Cloud {
    const std::vector<Site>& sites;
    std::size_t kdtree_get_point_count() const { return sites.size(); }
    float kdtree_get_pt(std::size_t i, std::size_t axis) const {
      return axis == 0 ? sites[i].x : sites[i].y;
    }
    template <class Box>
    bool kdtree_get_bbox(Box&) const {
      return false;
    }
  };
  using Tree = nanoflann::KDTreeSingleIndexAdaptor<nanoflann::L2_Simple_Adaptor<float, Cloud>,
                                                   Cloud, 2, std::uint32_t>;

  Cloud cloud_;
  Tree tree_;
};

}  // namespace discoplan::bench
