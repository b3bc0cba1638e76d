// SPDX-License-Identifier: MIT
#include "discoplan/figures/value_field.h"

#include <algorithm>

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

/// Sites in one place become one.
std::vector<Sample> Distinct(const SiteView& sites) {
  std::vector<Sample> samples;
  for (std::size_t i = 0; i < sites.Size(); ++i) {
    samples.push_back({sites.x[i], sites.y[i], sites.value[i]});
  }
  std::sort(samples.begin(), samples.end(),
            [](const Sample& a, const Sample& b) { return a.x != b.x ? a.x < b.x : a.y < b.y; });
  std::size_t kept = 0;
  for (std::size_t i = 0; i < samples.size();) {
    Sample sample = samples[i];
    std::size_t end = i + 1;
    for (; end < samples.size() && samples[end].x == sample.x && samples[end].y == sample.y; ++end)
      sample.value += samples[end].value;
    sample.value /= static_cast<double>(end - i);
    samples[kept++] = sample;
    i = end;
  }
  samples.resize(kept);
  return samples;
}

}  // namespace

std::shared_ptr<const ValueField> MakeField(const SiteView& sites, double radius,
                                            Interpolation interpolation) {
  PlateStore store;
  return MakeField(sites, radius, interpolation, store);
}

std::shared_ptr<const ValueField> MakeField(const SiteView& sites, double radius,
                                            Interpolation interpolation, PlateStore& store) {
  std::vector<Sample> samples = Distinct(sites);
  if (samples.size() < kFewest) {
    double sum = 0;
    for (const Sample& sample : samples) sum += sample.value;
    return std::make_shared<ConstantField>(
        samples.empty() ? 0 : sum / static_cast<double>(samples.size()));
  }
  if (interpolation == Interpolation::Idw4) return MakeIdw4Field(sites, samples, radius);
  return samples.size() <= kMostInOne ? MakePlateField(std::move(samples), radius, store)
                                      : MakeLatticeField(std::move(samples), radius);
}

}  // namespace discoplan::figures
