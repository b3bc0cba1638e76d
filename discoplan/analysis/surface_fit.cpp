// SPDX-License-Identifier: MIT
#include "discoplan/analysis/surface_fit.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <utility>

#include "discoplan/analysis/compensated_sum.h"
#include "discoplan/analysis/least_squares.h"
#include "discoplan/analysis/sample.h"
#include "discoplan/analysis/zernike.h"
#include "discoplan/base/bits.h"

namespace discoplan::analysis {
namespace {

constexpr double kDegrees = 180 / 3.14159265358979323846;

}  // namespace

double PlaneFit::Tilt() const { return std::hypot(slope_x, slope_y); }

double PlaneFit::Direction() const {
  const double degrees = std::atan2(slope_y, slope_x) * kDegrees;
  return degrees < 0 ? degrees + 360 : degrees;
}

PlaneFit FitPlane(std::span<const Site> sites) {
  return PlaneFitter().Fit(sites, DecimalsOf(sites));
}

/// By their bits: a zero of the other sign may give one in a result.
bool PlaneFitter::KnowsPlaces(std::span<const Site> places) const {
  if (!design_ || places.size() != places_.size()) return false;
  std::uint32_t differing = 0;
  for (std::size_t i = 0; i < places.size(); ++i) {
    differing |= BitCast<std::uint32_t>(places[i].x) ^ BitCast<std::uint32_t>(places_[i].x);
    differing |= BitCast<std::uint32_t>(places[i].y) ^ BitCast<std::uint32_t>(places_[i].y);
  }
  return differing == 0;
}

PlaneFit PlaneFitter::Fit(std::span<const Site> places, std::span<const double> values) {
  if (!KnowsPlaces(places)) {
    DesignMatrix design(places.size(), PlaneFit::kTerms, {.first = 1});
    for (std::size_t i = 0; i < places.size(); ++i) {
      design.At(i, 0) = 1;
      design.At(i, 1) = places[i].x;
      design.At(i, 2) = places[i].y;
    }
    design_.emplace(std::move(design));
    places_.assign(places.begin(), places.end());
  }
  values_.assign(values.begin(), values.end());
  std::array<double, PlaneFit::kTerms> terms{};
  design_->Solve(values_, terms);
  return {terms[0], terms[1], terms[2], design_->Rank()};
}

ZernikeFit FitZernike(std::span<const Site> sites, int order, double radius) {
  ZernikeFit result{order, radius > 0 ? radius : FarthestRadius(sites), {}, 0};
  if (!(result.radius > 0)) result.radius = 1;  // a lone site at the centre
  const auto terms = static_cast<std::size_t>(ZernikeTerms(order));
  DesignMatrix design(sites.size(), terms, {.order = order});
  for (std::size_t term = 0; term < terms; ++term) {
    const ZernikeIndex index = ZernikeOf(static_cast<int>(term));
    for (std::size_t i = 0; i < sites.size(); ++i) {
      design.At(i, term) = Zernike(index, sites[i].x / result.radius, sites[i].y / result.radius);
    }
  }
  LeastSquares fit = Solve(std::move(design), DecimalsOf(sites));
  result.coefficients = std::move(fit.coefficients);
  result.rank = fit.rank;
  return result;
}

double ZernikeFit::At(double x, double y) const {
  CompensatedSum sum;
  for (std::size_t term = 0; term < coefficients.size(); ++term) {
    if (coefficients[term] == 0) continue;
    sum += coefficients[term] * Zernike(ZernikeOf(static_cast<int>(term)), x / radius, y / radius);
  }
  return sum.Value();
}

double FarthestRadius(std::span<const Site> sites) {
  double farthest = 0;
  for (const Site& site : sites) farthest = std::max(farthest, std::hypot(1.0 * site.x, site.y));
  return farthest;
}

}  // namespace discoplan::analysis
