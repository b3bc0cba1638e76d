// SPDX-License-Identifier: MIT
#include "bindings/c/sample_reader.h"

#include <algorithm>
#include <cmath>

#include "bindings/c/measured.h"
#include "discoplan/core/stored_value.h"

namespace discoplan::c {
namespace {

/// The radius within which sites surely are in a wafer of these options, and in its test area;
/// nothing where that depends on the sites. Raises for bad options.
std::optional<double> SureRadius(const discoplan_wafer_options& options) {
  constexpr double kOfRadius = 1 - 1e-6;  // squares are rounded
  constexpr double kOfArea = 5e-4;        // mm; a site less than twice that beyond it stays
  const float centre = 0;
  const discoplan_array numbers{
      .data = &centre, .stride = 0, .type = DISCOPLAN_FLOAT32, .reserved = 0};
  const discoplan_sites site{.size = sizeof(discoplan_sites),
                             .reserved = 0,
                             .count = 1,
                             .x = numbers,
                             .y = numbers,
                             .value = numbers};
  const auto wafer = NewWafer(site, 0, 1, options);
  const bool has_area = options.test_diameter > 0 || options.edge_given != 0;
  const double radius = static_cast<double>(wafer->Measured().diameter) / 2 * kOfRadius;
  if (!(options.diameter > 0)) {
    if (has_area) return {};
    return static_cast<double>(data::StandardDiameters().back()) / 2 * kOfRadius;
  }
  if (!has_area) return radius;
  return std::min(radius, static_cast<double>(wafer->Measured().test_diameter) / 2 + kOfArea);
}

}  // namespace

SampleReader::SampleReader(const discoplan_sites& sites, const discoplan_wafer_options& options) {
  try {
    columns_ = {Numbers(sites.x, "x"), Numbers(sites.y, "y"), Numbers(sites.value, "value")};
    if (const auto radius = SureRadius(options)) {
      farthest_square_ = static_cast<float>(*radius * *radius);
    }
  } catch (const std::runtime_error&) {
    columns_.reset();  // each wafer is refused for that
  }
}

const analysis::Sample* SampleReader::Read(std::int64_t first, std::int64_t last) {
  const std::int64_t asked = last - first;
  if (!columns_ || asked < 1 || asked > data::kMostSites) return nullptr;
  const auto count = static_cast<std::size_t>(asked);
  for (std::vector<float>* column : {&x_, &y_, &value_}) column->resize(count);
  columns_->x.Copy(first, x_);
  columns_->y.Copy(first, y_);
  columns_->value.Copy(first, value_);
  std::int32_t doubtful = 0;
  for (std::size_t i = 0; i < count; ++i) {
    doubtful |= x_[i] * x_[i] + y_[i] * y_[i] <= farthest_square_ ? 0 : 1;
  }
  for (std::size_t i = 0; i < count; ++i) {
    doubtful |= std::abs(value_[i]) <= kSurelySummedValue ? 0 : 1;
  }
  if (doubtful != 0) return nullptr;
  sites_.resize(count);
  for (std::size_t i = 0; i < count; ++i) sites_[i] = {x_[i], y_[i], StoredValue(value_[i])};
  sample_.Take(sites_);
  return &sample_;
}

}  // namespace discoplan::c
