// SPDX-License-Identifier: MIT
#include "discoplan/figures/coverage.h"

#include <cmath>
#include <limits>

#include "discoplan/figures/field_kinds.h"
#include "discoplan/figures/site_grid.h"
#include "discoplan/figures/ticks.h"

namespace discoplan::figures {
namespace {

/// Sites that don't make a surface.
double FarDistance(const SiteView& sites, double radius, bool triangle) {
  if (triangle) return 0.1 * radius;
  if (sites.Size() < 4) return 0.25 * radius;
  std::vector<Sample> samples;
  for (std::size_t i = 0; i < sites.Size(); ++i) samples.push_back({sites.x[i], sites.y[i], 0});
  const SiteGrid grid(samples);
  // Some hundred of them tell.
  const std::size_t stride = std::max<std::size_t>(1, samples.size() / 256);
  std::vector<double> next;
  for (std::size_t i = 0; i < samples.size(); i += stride) {
    double nearest = 2 * radius;
    for (const std::size_t near : grid.Nearest(samples[i].x, samples[i].y, 4)) {
      const double distance =
          std::hypot(samples[near].x - samples[i].x, samples[near].y - samples[i].y);
      if (near != i && distance > 1e-6 * radius) nearest = std::min(nearest, distance);
    }
    next.push_back(nearest);
  }
  std::sort(next.begin(), next.end());
  const double even = radius * std::sqrt(3.14159 / static_cast<double>(samples.size()));
  // No hole among the dies of a wafer is far from them.
  return std::max({1.5 * next[next.size() * 9 / 10], 0.75 * even, 0.1 * radius});
}

bool IsTriangle(const SiteView& sites) {
  if (sites.Size() != 3) return false;
  std::vector<Sample> corners;
  for (std::size_t i = 0; i < 3; ++i) corners.push_back({sites.x[i], sites.y[i], 0});
  return Determinant(corners) != 0;
}

/// How far each point of a lattice is outside the triangle of three sites; 0 within.
std::vector<float> DistancesToTriangle(const Lattice& lattice, const SiteView& sites) {
  std::vector<float> distances;
  for (int j = 0; j < lattice.rows; ++j) {
    for (int i = 0; i < lattice.columns; ++i) {
      double least = std::numeric_limits<double>::max();
      int left_of = 0;
      for (std::size_t k = 0; k < 3; ++k) {
        const Point from = {sites.x[k], sites.y[k]};
        const Point along = Point{sites.x[(k + 1) % 3], sites.y[(k + 1) % 3]} - from;
        const Point off = Point{lattice.X(i), lattice.Y(j)} - from;
        left_of += along.x * off.y >= along.y * off.x ? 1 : -1;
        const double part =
            (along.x * off.x + along.y * off.y) / (along.x * along.x + along.y * along.y);
        const Point to_side = off - along * std::clamp(part, 0.0, 1.0);
        least = std::min(least, std::hypot(to_side.x, to_side.y));
      }
      distances.push_back(std::abs(left_of) == 3 ? 0 : static_cast<float>(least));
    }
  }
  return distances;
}

}  // namespace

Coverage::Coverage(const WaferPlot& plot) {
  const double radius = plot.diameter / 2;
  const double reach = radius * 1.02;
  triangle_ = IsTriangle(plot.sites);
  far_ = FarDistance(plot.sites, radius, triangle_);
  lattice_ = {-reach, reach, 2 * reach / (kAcross - 1), kAcross, kAcross};
  distances_ = triangle_ ? DistancesToTriangle(lattice_, plot.sites)
                         : DistancesToSites(lattice_, plot.sites);
  const double inside = std::max(radius - plot.edge_exclusion, 0.05 * radius);
  for (int j = 0; j < kAcross && !has_far_; ++j) {
    for (int i = 0; i < kAcross; ++i) {
      has_far_ = has_far_ || (distances_[static_cast<std::size_t>(j * kAcross + i)] > far_ &&
                              std::hypot(lattice_.X(i), lattice_.Y(j)) < inside);
    }
  }
}

Coverage::Row Coverage::RowAt(double y) const {
  const double down = (lattice_.y0 - y) / lattice_.step;
  const int row = std::clamp(static_cast<int>(down), 0, kAcross - 2);
  return {distances_.data() + static_cast<std::size_t>(row * kAcross), down - row};
}

double Coverage::FindFar(double y, double distance, std::vector<Stretch>& stretches) const {
  constexpr double kNoEnd = std::numeric_limits<double>::infinity();
  const auto [upper, below] = RowAt(y);
  const float* lower = upper + kAcross;
  // Beyond the lattice nothing is known.
  if (!(below >= 0 && below <= 1)) {
    stretches.assign(1, {-kNoEnd, kNoEnd});
    return y;
  }
  stretches.assign(1, {-kNoEnd, lattice_.x0});
  for (int i = 0; i + 1 < kAcross; ++i) {
    // No place of a square is farther than its farthest corner.
    if (std::max({upper[i], upper[i + 1], lower[i], lower[i + 1]}) < distance) continue;
    const double left = lattice_.X(i);
    if (stretches.back().right < left) stretches.push_back({left, left});
    stretches.back().right = lattice_.X(i + 1);
  }
  stretches.push_back({lattice_.X(kAcross - 1), kNoEnd});
  return y - (1 - below) * lattice_.step;
}

std::string Coverage::Note(const char* look) const {
  if (!has_far_) return {};
  return std::string(look) + ": more than " + FixedText(far_, 0) +
         (triangle_ ? " mm outside the three sites" : " mm from every site");
}

std::vector<float> DistancesToSites(const Lattice& lattice, const SiteView& sites) {
  const auto width = static_cast<std::size_t>(lattice.columns);
  const auto height = static_cast<std::size_t>(lattice.rows);
  std::vector<int> nearest(lattice.Size(), -1);
  const auto squared = [&](std::size_t column, std::size_t row, int site) {
    const double dx = lattice.X(static_cast<int>(column)) - sites.x[static_cast<std::size_t>(site)];
    const double dy = lattice.Y(static_cast<int>(row)) - sites.y[static_cast<std::size_t>(site)];
    return dx * dx + dy * dy;
  };
  for (std::size_t i = 0; i < sites.Size(); ++i) {
    const double column = std::round((sites.x[i] - lattice.x0) / lattice.step);
    const double row = std::round((lattice.y0 - sites.y[i]) / lattice.step);
    if (!(column >= 0 && row >= 0 && column < lattice.columns && row < lattice.rows)) continue;
    nearest[static_cast<std::size_t>(row) * width + static_cast<std::size_t>(column)] =
        static_cast<int>(i);
  }
  const auto offer = [&](std::size_t column, std::size_t row, std::size_t from_column,
                         std::size_t from_row) {
    const int offered = nearest[from_row * width + from_column];
    int& kept = nearest[row * width + column];
    if (offered < 0 || offered == kept) return;
    if (kept < 0 || squared(column, row, offered) < squared(column, row, kept)) kept = offered;
  };
  // Each point asks its neighbours, forward and back again (P.-E. Danielsson, 1980).
  for (int turn = 0; turn < 2; ++turn) {
    for (std::size_t j = 0; j < height; ++j) {
      const std::size_t row = turn == 0 ? j : height - 1 - j;
      if (j > 0) {
        const std::size_t before = turn == 0 ? row - 1 : row + 1;
        for (std::size_t column = 0; column < width; ++column) {
          offer(column, row, column, before);
          if (column > 0) offer(column, row, column - 1, before);
          if (column + 1 < width) offer(column, row, column + 1, before);
        }
      }
      for (std::size_t column = 1; column < width; ++column) offer(column, row, column - 1, row);
      for (std::size_t column = width - 1; column-- > 0;) offer(column, row, column + 1, row);
    }
  }
  std::vector<float> distances(lattice.Size(), std::numeric_limits<float>::max());
  for (std::size_t row = 0; row < height; ++row) {
    for (std::size_t column = 0; column < width; ++column) {
      const int site = nearest[row * width + column];
      if (site >= 0) {
        distances[row * width + column] = static_cast<float>(std::sqrt(squared(column, row, site)));
      }
    }
  }
  return distances;
}

}  // namespace discoplan::figures
