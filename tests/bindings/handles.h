// SPDX-License-Identifier: MIT
#pragma once

/// Wafers of tests, freed by themselves. Nothing of the C++ library is linked.

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "bindings/c/discoplan.h"

/// The vectors must outlive the sites, but for the time of a call.
inline discoplan_sites SitesOf(const std::vector<float>& x, const std::vector<float>& y,
                               const std::vector<float>& value) {
  discoplan_sites sites{};
  sites.size = sizeof sites;
  sites.count = static_cast<int64_t>(value.size());
  sites.x.data = x.data();
  sites.y.data = y.data();
  sites.value.data = value.data();
  return sites;
}

class Wafer {
 public:
  explicit Wafer(const discoplan_sites& sites) {
    EXPECT_EQ(discoplan_wafer_new(&sites, nullptr, &wafer_), DISCOPLAN_OK) << discoplan_error();
  }
  Wafer(const discoplan_sites& sites, const discoplan_wafer_options& options) {
    EXPECT_EQ(discoplan_wafer_new(&sites, &options, &wafer_), DISCOPLAN_OK) << discoplan_error();
  }
  Wafer(const Wafer&) = delete;
  Wafer& operator=(const Wafer&) = delete;
  ~Wafer() { discoplan_free(wafer_); }

  discoplan_wafer* Get() const { return wafer_; }
  discoplan_wafer_info Info() const {
    discoplan_wafer_info info{};
    info.size = sizeof info;
    EXPECT_EQ(discoplan_wafer_describe(wafer_, &info), DISCOPLAN_OK);
    return info;
  }

 private:
  discoplan_wafer* wafer_ = nullptr;
};

inline constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

/// Rings of sites on a 300 mm wafer whose value grows along X.
struct Ramp {
  std::vector<float> x = {0};
  std::vector<float> y = {0};
  std::vector<float> value = {100};

  Ramp() {
    for (int ring = 1; ring <= 4; ++ring) {
      for (int i = 0; i < 8 * ring; ++i) {
        const double angle = 2 * 3.14159265358979 * i / (8 * ring) + 0.3 * ring;
        x.push_back(static_cast<float>(35 * ring * std::cos(angle)));
        y.push_back(static_cast<float>(35 * ring * std::sin(angle)));
        value.push_back(100 + x.back() / 10);
      }
    }
  }
  discoplan_sites Sites() const { return SitesOf(x, y, value); }
};

inline double FigureNamed(discoplan_wafer* wafer, const std::string& key) {
  int64_t count = 0;
  EXPECT_EQ(discoplan_figure_count(&count), DISCOPLAN_OK);
  std::vector<double> values(static_cast<std::size_t>(count));
  EXPECT_EQ(discoplan_wafer_statistics(wafer, values.data(), count), DISCOPLAN_OK);
  for (int64_t i = 0; i < count; ++i) {
    discoplan_figure figure{};
    figure.size = sizeof figure;
    EXPECT_EQ(discoplan_figure_describe(i, &figure), DISCOPLAN_OK);
    if (key == figure.key) return values[static_cast<std::size_t>(i)];
  }
  ADD_FAILURE() << "no figure " << key;
  return 0;
}

inline int64_t NumberOf(const std::string& key) {
  discoplan_figure figure{};
  figure.size = sizeof figure;
  for (int64_t i = 0; discoplan_figure_describe(i, &figure) == DISCOPLAN_OK; ++i) {
    if (key == figure.key) return i;
  }
  ADD_FAILURE() << "no figure " << key;
  return 0;
}

inline uint64_t MaskOf(const std::vector<std::string>& keys) {
  uint64_t mask = 0;
  for (const std::string& key : keys) mask |= uint64_t{1} << NumberOf(key);
  return mask;
}
