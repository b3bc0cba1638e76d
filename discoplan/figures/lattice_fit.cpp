// SPDX-License-Identifier: MIT
#include "discoplan/figures/lattice_fit.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace discoplan::figures {
namespace {

/// Root mean square of what may be wrong at the sites; a shade of a map is 0.004.
constexpr double kPrecision = 0.0003;
constexpr std::size_t kPart = 10;      // of the sites is left out in a trial
constexpr std::size_t kEnough = 1000;  // sites in all trials
constexpr std::size_t kMany = 4000;    // bear knots farther apart than they are

template <class Visit>
void ForEachLeftOut(std::size_t count, std::size_t turn, Visit visit) {
  for (std::size_t i = turn; i < count; i += kPart) visit(i);
}

template <class Visit>
void ForEachKept(std::size_t count, std::size_t turn, Visit visit) {
  std::size_t left_out = turn;
  for (std::size_t i = 0; i < count; ++i) {
    if (i == left_out) {
      left_out += kPart;
    } else {
      visit(i);
    }
  }
}

}  // namespace

double SpacingOf(std::size_t count, double radius) {
  return radius * std::sqrt(3.14159 / static_cast<double>(count));
}

/// Solvers are kept once a second wafer has the same places: most figures are of one.
LatticeSpline::Aim LatticeFit::AimFor(double bending) const {
  return {bending, kPrecision * kPrecision * static_cast<double>(taps_.size()), again_};
}

LatticeFit::LatticeFit(const std::vector<Sample>& places, double radius)
    : spacing_(SpacingOf(places.size(), radius)) {
  double reach = radius;
  for (const Sample& place : places) {
    reach = std::max({reach, std::abs(place.x), std::abs(place.y)});
  }
  const double pitch = spacing_ * (places.size() <= kMany ? 1.0 : 2.0);
  const std::size_t turns = std::clamp<std::size_t>(kEnough / places.size(), 1, kPart);
  for (std::size_t turn = 0; turn < turns; ++turn) {
    Trial& trial = trials_.emplace_back(Trial{{reach, pitch}, turn, {}, {}});
    if (turn == 0) {
      taps_.reserve(places.size());
      for (const Sample& place : places) taps_.push_back(trial.spline.TapOf(place.x, place.y));
    }
    ForEachKept(taps_.size(), turn, [&](std::size_t i) { trial.spline.Add(taps_[i]); });
  }
}

double LatticeFit::SquaredErrors(Trial& trial, std::span<const float> values, double bending) {
  trial.spline.Improve(trial.sums, AimFor(bending), trial.found);
  double sum = 0;
  ForEachLeftOut(values.size(), trial.turn, [&](std::size_t i) {
    const double error = trial.spline.At(trial.found, taps_[i]) - values[i];
    sum += error * error;
  });
  return sum;
}

LatticeFit::Choice LatticeFit::Choose(std::span<const float> values) {
  static constexpr std::array kWeights = {10.0, 1.0, 0.1, 0.01, 0.001};
  std::size_t count = 0;
  for (Trial& trial : trials_) {
    trial.sums = trial.found = trial.spline.None();
    ForEachKept(values.size(), trial.turn,
                [&](std::size_t i) { trial.spline.AddValue(taps_[i], values[i], trial.sums); });
    ForEachLeftOut(values.size(), trial.turn, [&](std::size_t) { ++count; });
  }
  Choice best = {0, std::numeric_limits<double>::infinity(), {}};
  for (const double weight : kWeights) {
    const double bending = weight * spacing_ * spacing_;
    double sum = 0;
    for (Trial& trial : trials_) sum += SquaredErrors(trial, values, bending);
    const double error = std::sqrt(sum / static_cast<double>(count));
    // Less smoothing than the noise calls for only gets worse.
    if (error >= best.error) break;
    best = {bending, error, trials_.front().found};
  }
  return best;
}

LatticeFit::Result LatticeFit::Of(std::span<const float> values) {
  auto [bending, error, found] = Choose(values);
  // What the first trial left out makes it the spline of all.
  Trial& first = trials_.front();
  if (!spline_) {
    spline_ = values.size() > kMostKept ? std::move(first.spline) : first.spline.Copy();
    ForEachLeftOut(values.size(), first.turn, [&](std::size_t i) { spline_->Add(taps_[i]); });
  }
  ForEachLeftOut(values.size(), first.turn,
                 [&](std::size_t i) { spline_->AddValue(taps_[i], values[i], first.sums); });
  spline_->Improve(first.sums, AimFor(bending), found);
  again_ = true;
  return {spline_->KnotLattice(), spline_->Coefficients(found), error};
}

}  // namespace discoplan::figures
