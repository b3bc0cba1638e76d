// SPDX-License-Identifier: MIT
#include "discoplan/figures/place_plan.h"

#include <algorithm>
#include <numeric>
#include <tuple>
#include <utility>

namespace discoplan::figures {

std::vector<Sample> PlacePlan::Distinct(const SiteView& sites) {
  const auto same = [](const std::vector<float>& kept, std::span<const float> now) {
    return std::equal(kept.begin(), kept.end(), now.begin(), now.end());
  };
  if (!same(x_, sites.x) || !same(y_, sites.y)) {
    x_.assign(sites.x.begin(), sites.x.end());
    y_.assign(sites.y.begin(), sites.y.end());
    Forget();
    order_.resize(sites.Size());
    std::iota(order_.begin(), order_.end(), 0u);
    std::sort(order_.begin(), order_.end(), [this](std::uint32_t a, std::uint32_t b) {
      return std::tie(x_[a], y_[a], a) < std::tie(x_[b], y_[b], b);
    });
  }
  std::vector<Sample> samples;
  samples.reserve(order_.size());
  for (std::size_t i = 0; i < order_.size();) {
    const std::uint32_t site = order_[i];
    Sample sample = {x_[site], y_[site], sites.value[site]};
    std::size_t end = i + 1;
    for (; end < order_.size() && x_[order_[end]] == x_[site] && y_[order_[end]] == y_[site]; ++end)
      sample.value += sites.value[order_[end]];
    sample.value /= static_cast<double>(end - i);
    samples.push_back(sample);
    i = end;
  }
  // Of so many nothing is kept.
  if (order_.size() > LatticeFit::kMostKept) {
    x_ = std::vector<float>();
    y_ = std::vector<float>();
    order_ = std::vector<std::uint32_t>();
  }
  return samples;
}

void PlacePlan::KeepFor(double radius) {
  if (radius == radius_) return;
  radius_ = radius;
  Forget();
}

void PlacePlan::Forget() {
  of_smoothing_.clear();
  plate_kernels_.clear();
  asked_for_kernels_ = false;
  lattice_.reset();
}

std::vector<float>* PlacePlan::PlateKernels() {
  constexpr std::size_t kMostSites = 80;  // 1 MB
  const bool again = std::exchange(asked_for_kernels_, true);
  return again && x_.size() <= kMostSites ? &plate_kernels_ : nullptr;
}

const PlateEquations& PlacePlan::Plate(const std::vector<Sample>& samples, double radius,
                                       double smoothing) {
  KeepFor(radius);
  return of_smoothing_.try_emplace(smoothing, samples, radius, smoothing).first->second;
}

LatticeFit& PlacePlan::LatticeOf(const std::vector<Sample>& samples, double radius) {
  KeepFor(radius);
  if (!lattice_) lattice_.emplace(samples, radius);
  return *lattice_;
}

}  // namespace discoplan::figures
