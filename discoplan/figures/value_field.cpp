// SPDX-License-Identifier: MIT
#include "discoplan/figures/value_field.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "discoplan/figures/field_kinds.h"

namespace discoplan::figures {
namespace {

constexpr std::size_t kFewest = 4;
constexpr std::size_t kMostInOne = 160;  // sites that one exact spline takes

class ConstantField final : public ValueField {
 public:
  explicit ConstantField(double value) : value_(static_cast<float>(value)) {}
  void Evaluate(const Lattice&, double, std::span<float> values) const override {
    std::fill(values.begin(), values.end(), value_);
  }
  std::string Method() const override { return "mean of too few sites"; }

 private:
  float value_;
};

/// Through three sites, but little beyond their range: what lies far outside their triangle isn't
/// told by them.
class PlaneField final : public ValueField {
 public:
  PlaneField(const std::vector<Sample>& three, double determinant)
      : origin_(three[0]),
        low_(std::min({three[0].value, three[1].value, three[2].value})),
        high_(std::max({three[0].value, three[1].value, three[2].value})) {
    // As splines do, and no level of the values themselves runs along the ends.
    const double margin = 0.05 * (high_ - low_);
    low_ -= margin;
    high_ += margin;
    const Sample& b = three[1];
    const Sample& c = three[2];
    const double to_b = b.value - origin_.value;
    const double to_c = c.value - origin_.value;
    across_ = (to_b * (c.y - origin_.y) - to_c * (b.y - origin_.y)) / determinant;
    up_ = (to_c * (b.x - origin_.x) - to_b * (c.x - origin_.x)) / determinant;
  }
  void Evaluate(const Lattice& lattice, double, std::span<float> values) const override {
    float* value = values.data();
    for (int row = 0; row < lattice.rows; ++row) {
      for (int column = 0; column < lattice.columns; ++column) {
        const double plane = origin_.value + across_ * (lattice.X(column) - origin_.x) +
                             up_ * (lattice.Y(row) - origin_.y);
        *value++ = static_cast<float>(std::clamp(plane, low_, high_));
      }
    }
  }
  std::string Method() const override { return "plane through three sites"; }

 private:
  Sample origin_;
  double low_;
  double high_;
  double across_ = 0;
  double up_ = 0;
};

/// Of values that are far from 0 for what they differ by, as 32-bit floats hold them badly: found
/// about 0 and put back.
class ShiftedField final : public ValueField {
 public:
  ShiftedField(std::shared_ptr<const ValueField> field, double shift)
      : field_(std::move(field)), shift_(shift) {
    error_ = field_->LeaveOneOutError();
  }
  void Evaluate(const Lattice& lattice, double radius, std::span<float> values) const override {
    field_->Evaluate(lattice, radius, values);
    for (float& value : values) value = static_cast<float>(value + shift_);
  }
  std::string Method() const override { return field_->Method(); }

 private:
  std::shared_ptr<const ValueField> field_;
  double shift_;
};

/// Nothing where the values are near enough to 0.
std::optional<double> ShiftOf(const SiteView& sites) {
  constexpr double kFar = 2000;  // ranges
  if (sites.Size() == 0) return {};
  const auto [low, high] = std::minmax_element(sites.value.begin(), sites.value.end());
  const double range = static_cast<double>(*high) - *low;
  const double middle = (static_cast<double>(*high) + *low) / 2;
  if (!(range > 0) || std::abs(middle) < kFar * range) return {};
  return middle;
}

}  // namespace

double Determinant(const std::vector<Sample>& three) {
  const double bx = three[1].x - three[0].x;
  const double by = three[1].y - three[0].y;
  const double cx = three[2].x - three[0].x;
  const double cy = three[2].y - three[0].y;
  const double determinant = bx * cy - by * cx;
  const double sides = bx * bx + by * by + cx * cx + cy * cy;
  return std::abs(determinant) > 0.02 * sides ? determinant : 0;
}

std::shared_ptr<const ValueField> MakeField(const SiteView& sites, double radius,
                                            Interpolation interpolation) {
  PlacePlan plan;
  return MakeField(sites, radius, interpolation, plan);
}

std::shared_ptr<const ValueField> MakeField(const SiteView& sites, double radius,
                                            Interpolation interpolation, PlacePlan& plan) {
  if (const auto shift = ShiftOf(sites); shift && interpolation == Interpolation::Smooth) {
    std::vector<float> moved;
    for (const float value : sites.value) moved.push_back(static_cast<float>(value - *shift));
    return std::make_shared<ShiftedField>(
        MakeField({sites.x, sites.y, moved}, radius, interpolation, plan), *shift);
  }
  std::vector<Sample> samples = plan.Distinct(sites);
  if (samples.size() == 3 && interpolation == Interpolation::Smooth) {
    const double determinant = Determinant(samples);
    if (determinant != 0) return std::make_shared<PlaneField>(samples, determinant);
  }
  if (samples.size() < kFewest) {
    double sum = 0;
    for (const Sample& sample : samples) sum += sample.value;
    return std::make_shared<ConstantField>(
        samples.empty() ? 0 : sum / static_cast<double>(samples.size()));
  }
  if (interpolation == Interpolation::Idw4) return MakeIdw4Field(sites, samples, radius);
  if (samples.size() <= kMostInOne) return MakePlateField(samples, radius, plan);
  auto field = MakeLatticeField(std::move(samples), radius, plan);
  if (sites.Size() > LatticeFit::kMostKept) plan = {};
  return field;
}

}  // namespace discoplan::figures
