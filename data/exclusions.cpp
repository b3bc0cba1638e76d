// SPDX-License-Identifier: MIT
#include "data/exclusions.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "data/left_out.h"

namespace discoplan::data {
namespace {

/// Keeps the sites whose number is kept, in their order.
template <typename Keeps>
void Keep(Wafer& wafer, Reason reason, const Keeps& keeps) {
  std::size_t kept = 0;
  for (std::size_t i = 0; i < wafer.x.size(); ++i) {
    if (!keeps(i)) continue;
    wafer.x[kept] = wafer.x[i];
    wafer.y[kept] = wafer.y[i];
    wafer.value[kept] = wafer.value[i];
    ++kept;
  }
  Count(reason, wafer.left_out, static_cast<std::int64_t>(wafer.x.size() - kept));
  for (std::vector<float>* column : {&wafer.x, &wafer.y, &wafer.value}) column->resize(kept);
}

double SortedQuantile(const std::vector<float>& sorted, double share) {
  const double place = share * static_cast<double>(sorted.size() - 1);
  const auto below = static_cast<std::size_t>(place);
  const std::size_t above = std::min(below + 1, sorted.size() - 1);
  const double low = sorted[below];
  return low + (static_cast<double>(sorted[above]) - low) * (place - static_cast<double>(below));
}

std::vector<float> Sorted(std::vector<float> values) {
  std::sort(values.begin(), values.end());
  return values;
}

struct Square {
  double left, bottom, side;  // around all sites
};

Square SquareAround(const Wafer& wafer) {
  const auto [left, right] = std::minmax_element(wafer.x.begin(), wafer.x.end());
  const auto [bottom, top] = std::minmax_element(wafer.y.begin(), wafer.y.end());
  const double side =
      std::max(static_cast<double>(*right) - *left, static_cast<double>(*top) - *bottom);
  return {*left, *bottom, side > 0 ? side : 1};
}

/// The squares of a grid over the wafer, and in each the site nearest to its centre.
class Grid {
 public:
  Grid(const Wafer& wafer, std::size_t side)
      : around_(SquareAround(wafer)), side_(side), nearest_(side * side, kNone) {
    std::vector<double> distances(side * side);
    for (std::size_t i = 0; i < wafer.x.size(); ++i) {
      const double column = Index(wafer.x[i] - around_.left);
      const double row = Index(wafer.y[i] - around_.bottom);
      const auto square = static_cast<std::size_t>(row) * side_ + static_cast<std::size_t>(column);
      const double pitch = around_.side / static_cast<double>(side_);
      const double distance = std::hypot(wafer.x[i] - around_.left - (column + 0.5) * pitch,
                                         wafer.y[i] - around_.bottom - (row + 0.5) * pitch);
      if (nearest_[square] == kNone) {
        ++occupied_;
      } else if (!(distance < distances[square])) {
        continue;
      }
      nearest_[square] = i;
      distances[square] = distance;
    }
  }

  std::size_t occupied() const { return occupied_; }
  std::vector<bool> Kept(std::size_t sites) const {
    std::vector<bool> kept(sites, false);
    for (const std::size_t site : nearest_) {
      if (site != kNone) kept[site] = true;
    }
    return kept;
  }

 private:
  static constexpr std::size_t kNone = std::numeric_limits<std::size_t>::max();

  double Index(double offset) const {
    const auto side = static_cast<double>(side_);
    return std::min(std::floor(offset / around_.side * side), side - 1);
  }

  Square around_;
  std::size_t side_;
  std::size_t occupied_ = 0;
  std::vector<std::size_t> nearest_;
};

}  // namespace

void GiveSize(const ReadRequest& request, Wafer& wafer) {
  const DataError small({request.path.string()},
                        "nothing is left of a wafer inside its --edge-exclusion; give less");
  const WaferSize size = SizeFor(wafer.x, wafer.y);
  const float stated = static_cast<float>(request.diameter.value_or(wafer.diameter));
  wafer.diameter = size.diameter;
  wafer.test_diameter = size.test_diameter;
  if (stated > 0) {
    const float margin = size.diameter - size.test_diameter;
    wafer.diameter = stated;
    wafer.test_diameter = wafer.diameter > margin ? wafer.diameter - margin : wafer.diameter;
  }
  if (request.edge_exclusion) {
    wafer.test_diameter =
        static_cast<float>(static_cast<double>(wafer.diameter) - 2 * *request.edge_exclusion);
    if (!(wafer.test_diameter > 0)) throw small;
  }
  if (!request.test_diameter) return;
  const auto asked = static_cast<float>(*request.test_diameter);
  wafer.test_diameter = request.edge_exclusion ? std::min(wafer.test_diameter, asked) : asked;
}

void LeaveOutBeyond(const ReadRequest& request, Wafer& wafer) {
  if (!request.test_diameter && !request.edge_exclusion) return;
  constexpr double kRounding = 1e-3;
  const double radius = static_cast<double>(wafer.test_diameter) / 2 + kRounding;
  Keep(wafer, Reason::Beyond,
       [&](std::size_t i) { return std::hypot(double{wafer.x[i]}, double{wafer.y[i]}) <= radius; });
}

double Quantile(std::vector<float> values, double share) {
  return SortedQuantile(Sorted(std::move(values)), share);
}

void LeaveOutOutliers(const OutlierRule& rule, Wafer& wafer) {
  if (wafer.value.empty()) return;
  const std::vector<float> sorted = Sorted(wafer.value);
  double low = SortedQuantile(sorted, 0.25);
  double high = SortedQuantile(sorted, 0.75);
  double reach = rule.factor * (high - low);
  if (rule.spread == OutlierRule::Spread::Mad) {
    low = high = SortedQuantile(sorted, 0.5);
    std::vector<double> distances;
    for (const float value : sorted) distances.push_back(std::abs(value - low));
    std::sort(distances.begin(), distances.end());
    const std::size_t middle = distances.size() / 2;
    const double median = distances.size() % 2 == 1
                              ? distances[middle]
                              : (distances[middle - 1] + distances[middle]) / 2;
    constexpr double kNormal = 1.4826;
    reach = rule.factor * kNormal * median;
  }
  if (!(reach > 0)) return;
  Keep(wafer, Reason::Outlier, [&](std::size_t i) {
    return wafer.value[i] >= low - reach && wafer.value[i] <= high + reach;
  });
}

void Thin(std::int64_t most, Wafer& wafer) {
  const auto limit = static_cast<std::size_t>(most);
  if (wafer.x.size() <= limit) return;
  // Squares get occupied as they get smaller, if not strictly so; sites in a line need no finer.
  constexpr std::size_t kFinest = 1024;
  std::size_t fits = 1;
  std::size_t too_fine = kFinest + 1;
  while (fits + 1 < too_fine) {
    const std::size_t side = (fits + too_fine) / 2;
    (Grid(wafer, side).occupied() <= limit ? fits : too_fine) = side;
  }
  const std::vector<bool> kept = Grid(wafer, fits).Kept(wafer.x.size());
  Keep(wafer, Reason::Thinned, [&](std::size_t i) { return kept[i]; });
}

}  // namespace discoplan::data
