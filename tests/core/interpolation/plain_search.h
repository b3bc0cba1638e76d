// SPDX-License-Identifier: MIT
#pragma once

#include <cmath>
#include <cstddef>
#include <utility>
#include <vector>

#include "discoplan/core/wafer.h"

namespace discoplan {

/// The search told step by step, without any of the shortcuts: a list for each cell, every ring
/// walked in full, four named slots.
class PlainSearch {
 public:
  PlainSearch(std::vector<Site> sites, float diameter, float test_diameter)
      : sites_(std::move(sites)), diameter_(diameter), test_diameter_(test_diameter) {
    constexpr double kNearPi = 3.14159274101257324;  // the nearest 32-bit float
    const double r = diameter / 2.0;
    cell_ = static_cast<float>(std::sqrt(r * r * kNearPi * 4 / static_cast<double>(sites_.size())));
    half_ = std::lrint(r / cell_);
    cells_.assign(static_cast<std::size_t>((2 * half_ + 1) * (2 * half_ + 1)), {});
    for (std::size_t i = 0; i < sites_.size(); ++i) {
      cells_[Index(std::lrint(sites_[i].x / double{cell_} + static_cast<double>(half_)),
                   std::lrint(sites_[i].y / double{cell_} + static_cast<double>(half_)))]
          .push_back(i);
    }
  }

  float Interpolation(float x, float y) {
    const double rt = test_diameter_ / 2.0;
    d1_ = d2_ = d3_ = d4_ = static_cast<float>(9 * rt * rt);
    s1_ = s2_ = s3_ = s4_ = 0;
    const float u = static_cast<float>(x / double{cell_});
    const float v = static_cast<float>(y / double{cell_});
    const long cx = std::lrint(x / double{cell_} + static_cast<double>(half_));
    const long cy = std::lrint(y / double{cell_} + static_cast<double>(half_));
    double fu = u - std::floor(double{u});
    double fv = v - std::floor(double{v});
    if (fu >= 0.5) fu = 1 - fu;
    if (fv >= 0.5) fv = 1 - fv;
    double reach = fu < fv ? fu : fv;
    OfferCell(cx, cy, x, y);
    for (long r = 1; d1_ > reach * reach && r < 400; ++r) {
      reach += cell_;
      long column = cx - r;
      long row = cy + r;
      long a = 1;
      long b = 0;
      for (int side = 0; side < 4; ++side) {
        for (long step = 0; step < 2 * r; ++step) {
          OfferCell(column, row, x, y);
          column += a;
          row += b;
        }
        const long turned = -a;
        a = b;
        b = turned;
      }
    }
    if (d4_ == 0) return sites_[s4_].z;
    float numerator = 0;
    double denominator = 0;
    const std::pair<double, std::size_t> slots[] = {{d4_, s4_}, {d3_, s3_}, {d2_, s2_}, {d1_, s1_}};
    for (const auto& [d, s] : slots) {
      numerator = static_cast<float>(numerator + sites_[s].z / (d * d));
      denominator += 1 / (d * d);
    }
    return static_cast<float>(numerator / denominator);
  }

 private:
  std::size_t Index(long column, long row) const {
    return static_cast<std::size_t>(row * (2 * half_ + 1) + column);
  }

  void OfferCell(long column, long row, float x, float y) {
    if (column < 0 || row < 0 || column > 2 * half_ || row > 2 * half_) return;
    for (const std::size_t i : cells_[Index(column, row)]) Offer(i, x, y);
  }

  void Offer(std::size_t i, float x, float y) {
    const double dx = double{x} - sites_[i].x;
    const double dy = double{y} - sites_[i].y;
    double d = std::sqrt(dx * dx + dy * dy);
    const double far = 4 * (diameter_ / 2.0);
    if (d < d4_) {
      d1_ = d2_, s1_ = s2_;
      d2_ = d3_, s2_ = s3_;
      d3_ = d4_, s3_ = s4_;
      d4_ = d, s4_ = i;
      d = far;
    }
    if (d < d3_) {
      d1_ = d2_, s1_ = s2_;
      d2_ = d3_, s2_ = s3_;
      d3_ = d, s3_ = i;
      d = far;
    }
    if (d < d2_) {
      d1_ = d2_, s1_ = s2_;
      d2_ = d, s2_ = i;
      d = far;
    }
    if (d < d1_) d1_ = d, s1_ = i;
  }

  const std::vector<Site> sites_;
  const float diameter_;
  const float test_diameter_;
  float cell_ = 0;
  long half_ = 0;
  std::vector<std::vector<std::size_t>> cells_;
  double d1_ = 0, d2_ = 0, d3_ = 0, d4_ = 0;
  std::size_t s1_ = 0, s2_ = 0, s3_ = 0, s4_ = 0;
};

}  // namespace discoplan
