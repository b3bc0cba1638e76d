// SPDX-License-Identifier: MIT
#pragma once

/// Wafers of tests, freed by themselves.

#include <gtest/gtest.h>

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
