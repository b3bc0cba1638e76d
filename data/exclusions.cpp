// SPDX-License-Identifier: MIT
#include "data/exclusions.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "data/left_out.h"
#include "data/number_text.h"
#include "data/plain_text.h"
#include "discoplan/analysis/sample.h"

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
  const bool frees = 2 * kept < wafer.x.size();
  for (std::vector<float>* column : {&wafer.x, &wafer.y, &wafer.value}) {
    column->resize(kept);
    if (frees) column->shrink_to_fit();
  }
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

/// Where sites lie in the square around them, 0 to 1, and in which square of a grid over it.
class Placing {
 public:
  explicit Placing(const Wafer& wafer) : around_(SquareAround(wafer)) {
    for (std::size_t i = 0; i < wafer.x.size(); ++i) {
      across_.push_back((wafer.x[i] - around_.left) / around_.side);
      up_.push_back((wafer.y[i] - around_.bottom) / around_.side);
    }
  }

  /// Whether no more than `most` squares of a grid of `side` by `side` hold sites.
  bool Fits(std::size_t most, std::size_t side) const {
    std::vector<bool> is_occupied(side * side, false);
    std::size_t occupied = 0;
    for (std::size_t i = 0; i < across_.size() && occupied <= most; ++i) {
      const std::size_t square = Index(up_[i], side) * side + Index(across_[i], side);
      occupied += !is_occupied[square];
      is_occupied[square] = true;
    }
    return occupied <= most;
  }

  /// The site nearest to the centre of each square, the first of several.
  std::vector<bool> Nearest(const Wafer& wafer, std::size_t side) const {
    constexpr std::size_t kNone = std::numeric_limits<std::size_t>::max();
    const double pitch = around_.side / static_cast<double>(side);
    std::vector<std::size_t> nearest(side * side, kNone);
    std::vector<double> distances(side * side);
    for (std::size_t i = 0; i < across_.size(); ++i) {
      const std::size_t column = Index(across_[i], side);
      const std::size_t row = Index(up_[i], side);
      const std::size_t square = row * side + column;
      const auto from_centre = [pitch](double offset, std::size_t index) {
        return offset - (static_cast<double>(index) + 0.5) * pitch;
      };
      const double distance = std::hypot(from_centre(wafer.x[i] - around_.left, column),
                                         from_centre(wafer.y[i] - around_.bottom, row));
      if (nearest[square] != kNone && !(distance < distances[square])) continue;
      nearest[square] = i;
      distances[square] = distance;
    }
    std::vector<bool> kept(across_.size(), false);
    for (const std::size_t site : nearest) {
      if (site != kNone) kept[site] = true;
    }
    return kept;
  }

 private:
  static std::size_t Index(double place, std::size_t side) {
    return std::min(static_cast<std::size_t>(place * static_cast<double>(side)), side - 1);
  }

  Square around_;
  std::vector<double> across_;
  std::vector<double> up_;
};

}  // namespace

void GiveSize(const ReadRequest& request, Wafer& wafer) {
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
    if (!(wafer.test_diameter > 0)) {
      throw DataError({request.path.string()},
                      "nothing is left of a wafer inside its --edge-exclusion; give less");
    }
  }
  if (!request.test_diameter) return;
  const auto asked = static_cast<float>(*request.test_diameter);
  if (asked > wafer.diameter) {
    throw DataError({request.path.string()},
                    "--test-diameter: " + LengthText(asked) + " mm is more than the wafer's " +
                        LengthText(wafer.diameter) + " mm; give less, or a larger --diameter");
  }
  wafer.test_diameter = request.edge_exclusion ? std::min(wafer.test_diameter, asked) : asked;
}

bool LeavesOut(const ReadRequest& request) {
  return request.thin || request.test_diameter || request.edge_exclusion || request.outliers;
}

void LeaveOutBeyond(const ReadRequest& request, Wafer& wafer) {
  if (!request.test_diameter && !request.edge_exclusion) return;
  const double radius = static_cast<double>(wafer.test_diameter) / 2 + kAreaTolerance;
  Keep(wafer, Reason::Beyond,
       [&](std::size_t i) { return std::hypot(double{wafer.x[i]}, double{wafer.y[i]}) <= radius; });
}

double Quantile(std::vector<float> values, double share) {
  return SortedQuantile(Sorted(std::move(values)), share);
}

std::optional<OutlierRule> ParseOutlierRule(std::string_view text) {
  const std::size_t letters = std::min(text.find_first_not_of("0123456789."), text.size());
  const ParsedNumber factor = ParseNumber(text.substr(0, letters));
  const std::string_view spread = text.substr(letters);
  if (factor.fault != NumberFault::None || !(factor.value > 0)) return {};
  if (spread == "iqr") return OutlierRule{factor.value, OutlierRule::Spread::Iqr};
  if (spread == "mad") return OutlierRule{factor.value, OutlierRule::Spread::Mad};
  return {};
}

bool LeaveOutOutliers(const OutlierRule& rule, Wafer& wafer) {
  if (wafer.value.empty()) return true;
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
    reach = rule.factor * analysis::kSigmaOfMedianDeviation * median;
  }
  if (!(reach > 0)) return sorted.front() == sorted.back();
  Keep(wafer, Reason::Outlier, [&](std::size_t i) {
    return wafer.value[i] >= low - reach && wafer.value[i] <= high + reach;
  });
  return true;
}

void Thin(std::int64_t most, Wafer& wafer) {
  const auto limit = static_cast<std::size_t>(most);
  if (wafer.x.size() <= limit) return;
  // Squares get occupied as they get smaller, if not strictly so; sites in a line need no finer.
  constexpr std::size_t kFinest = 1024;
  const Placing placing(wafer);
  std::size_t fits = 1;
  std::size_t too_fine = kFinest + 1;
  while (fits + 1 < too_fine) {
    const std::size_t side = (fits + too_fine) / 2;
    (placing.Fits(limit, side) ? fits : too_fine) = side;
  }
  const std::vector<bool> kept = placing.Nearest(wafer, fits);
  Keep(wafer, Reason::Thinned, [&](std::size_t i) { return kept[i]; });
}

}  // namespace discoplan::data
