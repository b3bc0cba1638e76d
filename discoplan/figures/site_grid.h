// SPDX-License-Identifier: MIT
#pragma once

/// Sites in square cells, for those that are nearest to a point.

#include <algorithm>
#include <cmath>
#include <vector>

#include "discoplan/figures/thin_plate.h"

namespace discoplan::figures {

class SiteGrid {
 public:
  /// Some sites a cell. Reads `samples` as long as it lives; they aren't empty.
  explicit SiteGrid(const std::vector<Sample>& samples) : samples_(samples) {
    double reach = 0;
    for (const Sample& s : samples) reach = std::max({reach, std::abs(s.x), std::abs(s.y)});
    side_ = std::max(1, static_cast<int>(std::sqrt(static_cast<double>(samples.size()) / 2)));
    pitch_ = std::max(2 * reach / side_ * (1 + 1e-9), 1e-6);
    corner_ = -pitch_ * side_ / 2;
    starts_.assign(Cells() + 1, 0);
    for (const Sample& s : samples) ++starts_[CellOf(s.x, s.y) + 1];
    for (std::size_t i = 1; i < starts_.size(); ++i) starts_[i] += starts_[i - 1];
    sites_.resize(samples.size());
    std::vector<std::size_t> next = starts_;
    for (std::size_t i = 0; i < samples.size(); ++i) {
      sites_[next[CellOf(samples[i].x, samples[i].y)]++] = i;
    }
  }

  /// The `count` nearest, or all, in no certain order.
  std::vector<std::size_t> Nearest(double x, double y, std::size_t count) const {
    struct Found {
      double square;
      std::size_t site;
    };
    std::vector<Found> found;
    const int column = Slot(x);
    const int row = Slot(y);
    const auto nearer = [](const Found& a, const Found& b) { return a.square < b.square; };
    for (int ring = 0; ring <= 2 * side_; ++ring) {
      for (int j = std::max(0, row - ring); j <= std::min(side_ - 1, row + ring); ++j) {
        const bool edge = j == row - ring || j == row + ring;
        for (int i = column - ring; i <= column + ring; i += edge || ring == 0 ? 1 : 2 * ring) {
          if (i < 0 || i >= side_) continue;
          const std::size_t cell = Cell(i, j);
          for (std::size_t k = starts_[cell]; k < starts_[cell + 1]; ++k) {
            const Sample& s = samples_[sites_[k]];
            found.push_back({(s.x - x) * (s.x - x) + (s.y - y) * (s.y - y), sites_[k]});
          }
        }
      }
      if (found.size() < std::min(count, samples_.size())) continue;
      const auto last = found.begin() + static_cast<std::ptrdiff_t>(std::min(count, found.size()));
      std::nth_element(found.begin(), last - 1, found.end(), nearer);
      if ((last - 1)->square <= ring * pitch_ * ring * pitch_ || found.size() == samples_.size())
        break;
    }
    std::vector<std::size_t> sites;
    for (std::size_t i = 0; i < std::min(count, found.size()); ++i) sites.push_back(found[i].site);
    return sites;
  }

 private:
  std::size_t Cells() const {
    return static_cast<std::size_t>(side_) * static_cast<std::size_t>(side_);
  }
  int Slot(double place) const {
    return static_cast<int>(std::clamp((place - corner_) / pitch_, 0.0, side_ - 1.0));
  }
  std::size_t Cell(int column, int row) const {
    return static_cast<std::size_t>(row) * static_cast<std::size_t>(side_) +
           static_cast<std::size_t>(column);
  }
  std::size_t CellOf(double x, double y) const { return Cell(Slot(x), Slot(y)); }

  const std::vector<Sample>& samples_;
  std::vector<std::size_t> starts_;
  std::vector<std::size_t> sites_;
  double pitch_ = 1;
  double corner_ = 0;
  int side_ = 1;
};

}  // namespace discoplan::figures
