// SPDX-License-Identifier: MIT
#include "bindings/c/sample_reader.h"

#include <algorithm>
#include <cmath>

#include "bindings/c/measured.h"
#include "data/exclusions.h"
#include "data/repeats.h"
#include "discoplan/core/stored_value.h"

namespace discoplan::c {
namespace {

/// A wafer of one site at its centre. Raises for bad options.
std::shared_ptr<MeasuredWafer> Smallest(const discoplan_wafer_options& options) {
  const float centre = 0;
  const discoplan_array numbers{
      .data = &centre, .stride = 0, .type = DISCOPLAN_FLOAT32, .reserved = 0};
  const discoplan_sites site{.size = sizeof(discoplan_sites),
                             .reserved = 0,
                             .count = 1,
                             .x = numbers,
                             .y = numbers,
                             .value = numbers};
  return NewWafer(site, 0, 1, options);
}

float Square(const Site& site) { return site.x * site.x + site.y * site.y; }

bool IsFinite(const Site& site) {
  constexpr float kMost = std::numeric_limits<float>::max();
  return std::abs(site.x) <= kMost && std::abs(site.y) <= kMost && std::abs(site.z) <= kMost;
}

}  // namespace

SampleReader::SampleReader(const discoplan_sites& sites, const discoplan_wafer_options& options)
    : skips_invalid_(options.skip_invalid != 0) {
  try {
    columns_ = {Numbers(sites.x, "x"), Numbers(sites.y, "y"), Numbers(sites.value, "value")};
    SetReach(options);
  } catch (const std::runtime_error&) {
    columns_.reset();  // each wafer is refused for that
  }
}

void SampleReader::SetReach(const discoplan_wafer_options& options) {
  constexpr double kShare = 1e-6;  // more than rounding takes from a square or adds to it
  constexpr double kLeast = 1;     // mm; squares of less or of more may leave the range of floats
  constexpr double kMost = 1e15;
  const auto smallest = Smallest(options);
  const bool has_area = options.test_diameter > 0 || options.edge_given != 0;
  const bool has_size = static_cast<float>(options.diameter) > 0;
  if (has_area && !has_size) return;  // the area depends on the sites
  double taken = static_cast<double>(has_size ? smallest->Measured().diameter
                                              : data::StandardDiameters().back()) /
                 2;
  double left_out = std::numeric_limits<double>::quiet_NaN();
  if (has_area) {
    const double edge = static_cast<double>(smallest->Measured().test_diameter) / 2;
    taken = std::min(taken, edge + data::kAreaTolerance / 2);
    left_out = edge + data::kAreaTolerance * 3 / 2;
  }
  if (!(taken > kLeast && taken < kMost)) return;
  taken_ = static_cast<float>(taken * taken * (1 - 2 * kShare));
  left_out_ = static_cast<float>(left_out * left_out * (1 + 2 * kShare));
}

bool SampleReader::IsTaken(const Site& site) const {
  return Square(site) <= taken_ && std::abs(site.z) <= kSurelySummedValue;
}

bool SampleReader::IsLeftOut(const Site& site) const {
  return IsFinite(site) ? Square(site) >= left_out_ : skips_invalid_;
}

const analysis::Sample* SampleReader::Read(std::int64_t first, std::int64_t last) {
  const std::int64_t asked = last - first;
  if (!columns_ || asked < 1 || asked > data::kMostSites) return nullptr;
  const auto count = static_cast<std::size_t>(asked);
  for (std::vector<float>* column : {&x_, &y_, &value_}) column->resize(count);
  columns_->x.Copy(first, x_);
  columns_->y.Copy(first, y_);
  columns_->value.Copy(first, value_);
  const auto site = [&](std::size_t i) { return Site{x_[i], y_[i], value_[i]}; };
  std::int32_t others = 0;
  for (std::size_t i = 0; i < count; ++i) {
    others |= Square(site(i)) <= taken_ ? 0 : 1;
    others |= std::abs(value_[i]) <= kSurelySummedValue ? 0 : 1;
  }
  sites_.resize(count);
  std::size_t taken = 0;
  for (std::size_t i = 0; i < count; ++i) {
    sites_[taken] = {x_[i], y_[i], StoredValue(value_[i])};
    if (others == 0 || IsTaken(site(i))) {
      ++taken;
    } else if (!IsLeftOut(site(i))) {
      return nullptr;
    }
  }
  if (taken == 0 || data::RepeatedSites(x_, y_) > 0) return nullptr;
  sites_.resize(taken);
  sample_.Take(sites_);
  return &sample_;
}

}  // namespace discoplan::c
